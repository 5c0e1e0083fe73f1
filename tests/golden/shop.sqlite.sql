

/*People and companies that have an account.*/
CREATE TABLE customers
(
id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,

/*Also the login name.*/
email VARCHAR(255) NOT NULL UNIQUE,
name VARCHAR(120) NOT NULL,
phone VARCHAR(40),
created_at TIMESTAMP DEFAULT CURRENT_TIMESTAMP NOT NULL
);

/*One row for each order, whatever became of it.*/
CREATE TABLE orders
(
id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
customer_id INTEGER NOT NULL REFERENCES customers (id) ON DELETE RESTRICT ON UPDATE CASCADE,

/*new, paid, sent or cancelled.*/
status VARCHAR(20) DEFAULT 'new' NOT NULL,
ordered_at TIMESTAMP DEFAULT CURRENT_TIMESTAMP NOT NULL,
note TEXT
);

/*What the shop sells.*/
CREATE TABLE products
(
id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,

/*Number on the label of the shelf.*/
sku VARCHAR(32) NOT NULL UNIQUE,
title VARCHAR(200) NOT NULL,

/*With tax, in the currency of the shop.*/
price NUMERIC(10,2) DEFAULT 0 NOT NULL,
stock INTEGER DEFAULT 0 NOT NULL,
CONSTRAINT products_price_check CHECK (price >= 0)
);

/*The lines of an order.*/
CREATE TABLE order_items
(
order_id INTEGER NOT NULL,

/*Counts from 1 in each order.*/
line_no INTEGER NOT NULL,
product_id INTEGER NOT NULL,
quantity INTEGER DEFAULT 1 NOT NULL,

/*The price on the day of the order.*/
unit_price NUMERIC(10,2) NOT NULL,
FOREIGN KEY (order_id) REFERENCES orders (id) ON DELETE CASCADE  ON UPDATE CASCADE ,
FOREIGN KEY (product_id) REFERENCES products (id) ON DELETE RESTRICT  ON UPDATE CASCADE ,
PRIMARY KEY (order_id,line_no)
);

CREATE  INDEX customers_name_idx ON customers (name);

CREATE INDEX orders_customer_id_idx ON orders(customer_id);

CREATE  INDEX orders_status_idx ON orders (status,ordered_at);

CREATE UNIQUE INDEX order_items_product_unique ON order_items (order_id,product_id);
