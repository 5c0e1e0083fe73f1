

/*People and companies that have an account.*/
CREATE TABLE customers
(
id SERIAL NOT NULL,

/*Also the login name.*/
email VARCHAR(255) NOT NULL UNIQUE ,
name VARCHAR(120) NOT NULL,
phone VARCHAR(40),
created_at TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP,
CONSTRAINT PRIMARY KEY (id)
);

/*One row for each order, whatever became of it.*/
CREATE TABLE orders
(
id SERIAL NOT NULL,
customer_id INTEGER NOT NULL,

/*new, paid, sent or cancelled.*/
status VARCHAR(20) NOT NULL DEFAULT 'new',
ordered_at TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP,
note TEXT,
CONSTRAINT PRIMARY KEY (id)
);

/*What the shop sells.*/
CREATE TABLE products
(
id SERIAL NOT NULL,

/*Number on the label of the shelf.*/
sku VARCHAR(32) NOT NULL UNIQUE ,
title VARCHAR(200) NOT NULL,

/*With tax, in the currency of the shop.*/
price NUMERIC(10,2) NOT NULL DEFAULT 0,
stock INTEGER NOT NULL DEFAULT 0,
CONSTRAINT products_price_check CHECK (price >= 0),
CONSTRAINT PRIMARY KEY (id)
);

/*The lines of an order.*/
CREATE TABLE order_items
(
order_id INTEGER NOT NULL,

/*Counts from 1 in each order.*/
line_no INTEGER NOT NULL,
product_id INTEGER NOT NULL,
quantity INTEGER NOT NULL DEFAULT 1,

/*The price on the day of the order.*/
unit_price NUMERIC(10,2) NOT NULL,
CONSTRAINT order_items_pk PRIMARY KEY (order_id,line_no)
);

CREATE  INDEX customers_name_idx ON customers (name);

CREATE INDEX orders_customer_id_idx ON orders(customer_id);

ALTER TABLE orders ADD CONSTRAINT orders_customer_fk FOREIGN KEY (customer_id) REFERENCES customers (id) ON DELETE RESTRICT  ON UPDATE CASCADE;

CREATE  INDEX orders_status_idx ON orders (status,ordered_at);

ALTER TABLE order_items ADD CONSTRAINT order_items_order_fk FOREIGN KEY (order_id) REFERENCES orders (id) ON DELETE CASCADE  ON UPDATE CASCADE;

ALTER TABLE order_items ADD CONSTRAINT order_items_product_fk FOREIGN KEY (product_id) REFERENCES products (id) ON DELETE RESTRICT  ON UPDATE CASCADE;

ALTER TABLE order_items ADD CONSTRAINT order_items_product_unique UNIQUE (order_id,product_id);
