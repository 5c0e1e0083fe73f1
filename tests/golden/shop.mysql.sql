

CREATE TABLE customers
(
id INTEGER NOT NULL AUTO_INCREMENT,
email VARCHAR(255) NOT NULL UNIQUE  COMMENT 'Also the login name.',
name VARCHAR(120) NOT NULL,
phone VARCHAR(40),
created_at TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP,
PRIMARY KEY (id)
) COMMENT='People and companies that have an account.';

CREATE TABLE orders
(
id INTEGER NOT NULL AUTO_INCREMENT,
customer_id INTEGER NOT NULL,
status VARCHAR(20) NOT NULL DEFAULT 'new' COMMENT 'new, paid, sent or cancelled.',
ordered_at TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP,
note TEXT,
PRIMARY KEY (id)
) COMMENT='One row for each order, whatever became of it.';

CREATE TABLE products
(
id INTEGER NOT NULL AUTO_INCREMENT,
sku VARCHAR(32) NOT NULL UNIQUE  COMMENT 'Number on the label of the shelf.',
title VARCHAR(200) NOT NULL,
price NUMERIC(10,2) NOT NULL DEFAULT 0 COMMENT 'With tax, in the currency of the shop.',
stock INTEGER NOT NULL DEFAULT 0,
PRIMARY KEY (id)
) COMMENT='What the shop sells.';

CREATE TABLE order_items
(
order_id INTEGER NOT NULL,
line_no INTEGER NOT NULL COMMENT 'Counts from 1 in each order.',
product_id INTEGER NOT NULL,
quantity INTEGER NOT NULL DEFAULT 1,
unit_price NUMERIC(10,2) NOT NULL COMMENT 'The price on the day of the order.',
PRIMARY KEY (order_id,line_no)
) COMMENT='The lines of an order.';

CREATE INDEX customers_name_idx ON customers (name);

CREATE INDEX customer_id_idx ON orders (customer_id);
ALTER TABLE orders ADD CONSTRAINT orders_customer_fk FOREIGN KEY orders_customer_fk (customer_id) REFERENCES customers (id) ON DELETE RESTRICT  ON UPDATE CASCADE;

CREATE INDEX orders_status_idx ON orders (status,ordered_at);

ALTER TABLE order_items ADD CONSTRAINT order_items_order_fk FOREIGN KEY order_items_order_fk (order_id) REFERENCES orders (id) ON DELETE CASCADE  ON UPDATE CASCADE;

ALTER TABLE order_items ADD CONSTRAINT order_items_product_fk FOREIGN KEY order_items_product_fk (product_id) REFERENCES products (id) ON DELETE RESTRICT  ON UPDATE CASCADE;

CREATE UNIQUE INDEX order_items_product_unique ON order_items (order_id,product_id);
