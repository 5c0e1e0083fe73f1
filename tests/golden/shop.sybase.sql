

/*People and companies that have an account.*/
CREATE TABLE customers
(
id INTEGER NOT NULL IDENTITY,

/*Also the login name.*/
email VARCHAR(255) NOT NULL,
name VARCHAR(120) NOT NULL,
phone VARCHAR(40),
created_at TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP,
CONSTRAINT customers_pkey PRIMARY KEY (id)
);

/*One row for each order, whatever became of it.*/
CREATE TABLE orders
(
id INTEGER NOT NULL IDENTITY,
customer_id INTEGER NOT NULL,

/*new, paid, sent or cancelled.*/
status VARCHAR(20) NOT NULL DEFAULT new,
ordered_at TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP,
note TEXT,
CONSTRAINT orders_pkey PRIMARY KEY (id)
);

/*What the shop sells.*/
CREATE TABLE products
(
id INTEGER NOT NULL IDENTITY,

/*Number on the label of the shelf.*/
sku VARCHAR(32) NOT NULL,
title VARCHAR(200) NOT NULL,

/*With tax, in the currency of the shop.*/
price NUMERIC(10,2) NOT NULL DEFAULT 0,
stock INTEGER NOT NULL DEFAULT 0,
CONSTRAINT products_price_check CHECK (price >= 0),
CONSTRAINT products_pkey PRIMARY KEY (id)
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

CREATE UNIQUE INDEX PrimaryIndex on customers (id)

CREATE  INDEX customers_name_idx ON customers (name);

CREATE UNIQUE INDEX PrimaryIndex on orders (id)

CREATE  INDEX orders_status_idx ON orders (status,ordered_at);

CREATE UNIQUE INDEX PrimaryIndex on products (id)

CREATE UNIQUE INDEX PrimaryIndex on order_items (order_id,line_no)

CREATE UNIQUE INDEX order_items_product_unique ON order_items (order_id,product_id);
