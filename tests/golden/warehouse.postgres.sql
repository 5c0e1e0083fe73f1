

CREATE TABLE purchasing.suppliers
(
supplier_no INTEGER NOT NULL,
name VARCHAR(120) NOT NULL UNIQUE ,
email VARCHAR(255),
CONSTRAINT suppliers_pk PRIMARY KEY (supplier_no)
);

CREATE TABLE purchasing.deliveries
(
supplier_no INTEGER NOT NULL,

/*The number on the delivery note; each supplier has its own.*/
delivery_no VARCHAR(20) NOT NULL,
expected_on DATE NOT NULL,
arrived_at TIMESTAMP,
CONSTRAINT deliveries_pk PRIMARY KEY (supplier_no,delivery_no)
);

CREATE TABLE stock.articles
(
article_no INTEGER NOT NULL,
title VARCHAR(200) NOT NULL,
unit VARCHAR(10) NOT NULL DEFAULT 'piece',
reorder_level NUMERIC(12,3) NOT NULL DEFAULT 0,
CONSTRAINT articles_pk PRIMARY KEY (article_no)
);

/*Every place where goods are kept.*/
CREATE TABLE stock.warehouses
(
/*Short code as painted on the gate.*/
warehouse_code VARCHAR(8) NOT NULL,
name VARCHAR(100) NOT NULL,
city VARCHAR(80),
CONSTRAINT warehouses_pk PRIMARY KEY (warehouse_code)
);

/*The bins of a warehouse. A bin is known by its code inside its warehouse only.*/
CREATE TABLE stock.bins
(
warehouse_code VARCHAR(8) NOT NULL,
bin_code VARCHAR(12) NOT NULL,
capacity INTEGER NOT NULL DEFAULT 1,

/*1 for a cooled bin.*/
is_cold SMALLINT NOT NULL DEFAULT 0,
CONSTRAINT bins_capacity_check CHECK (capacity > 0),
CONSTRAINT bins_pk PRIMARY KEY (warehouse_code,bin_code)
);

/*One row for each article of a delivery. The bin is empty until the goods are put away.*/
CREATE TABLE purchasing.delivery_lines
(
supplier_no INTEGER NOT NULL,
delivery_no VARCHAR(20) NOT NULL,
line_no INTEGER NOT NULL,
article_no INTEGER NOT NULL,
quantity NUMERIC(12,3) NOT NULL,
warehouse_code VARCHAR(8),
bin_code VARCHAR(12),
CONSTRAINT delivery_lines_pk PRIMARY KEY (supplier_no,delivery_no,line_no)
);

/*What lies where.*/
CREATE TABLE stock.stock_levels
(
warehouse_code VARCHAR(8) NOT NULL,
bin_code VARCHAR(12) NOT NULL,
article_no INTEGER NOT NULL,
quantity NUMERIC(12,3) NOT NULL DEFAULT 0,
counted_on DATE,
CONSTRAINT stock_levels_quantity_check CHECK (quantity >= 0),
CONSTRAINT stock_levels_pk PRIMARY KEY (warehouse_code,bin_code,article_no)
);

CREATE VIEW purchasing.late_deliveries  AS SELECT supplier_no, delivery_no, expected_on
FROM purchasing.deliveries
WHERE arrived_at IS NULL AND expected_on < CURRENT_DATE;

CREATE VIEW stock.low_stock  AS SELECT a.article_no, a.title, SUM(l.quantity) AS quantity
FROM stock.articles a
JOIN stock.stock_levels l ON l.article_no = a.article_no
GROUP BY a.article_no, a.title, a.reorder_level
HAVING SUM(l.quantity) < a.reorder_level;

ALTER TABLE purchasing.deliveries ADD CONSTRAINT deliveries_supplier_fk FOREIGN KEY (supplier_no) REFERENCES purchasing.suppliers (supplier_no) ON DELETE NO ACTION  ON UPDATE CASCADE;

CREATE  INDEX deliveries_expected_idx ON purchasing.deliveries (expected_on,supplier_no);

CREATE  INDEX articles_title_idx ON stock.articles (title);

ALTER TABLE stock.bins ADD CONSTRAINT bins_warehouse_fk FOREIGN KEY (warehouse_code) REFERENCES stock.warehouses (warehouse_code) ON DELETE RESTRICT  ON UPDATE CASCADE;

ALTER TABLE purchasing.delivery_lines ADD CONSTRAINT delivery_lines_delivery_fk FOREIGN KEY (supplier_no,delivery_no) REFERENCES purchasing.deliveries (supplier_no,delivery_no) ON DELETE CASCADE  ON UPDATE CASCADE  DEFERRABLE INITIALLY DEFERRED;

ALTER TABLE purchasing.delivery_lines ADD CONSTRAINT delivery_lines_bin_fk FOREIGN KEY (warehouse_code,bin_code) REFERENCES stock.bins (warehouse_code,bin_code) ON DELETE SET NULL  ON UPDATE CASCADE  DEFERRABLE;

ALTER TABLE purchasing.delivery_lines ADD CONSTRAINT delivery_lines_article_fk FOREIGN KEY (article_no) REFERENCES stock.articles (article_no) ON DELETE RESTRICT  ON UPDATE NO ACTION;

ALTER TABLE purchasing.delivery_lines ADD CONSTRAINT delivery_lines_article_unique UNIQUE (supplier_no,delivery_no,article_no);

ALTER TABLE stock.stock_levels ADD CONSTRAINT stock_levels_bin_fk FOREIGN KEY (warehouse_code,bin_code) REFERENCES stock.bins (warehouse_code,bin_code) ON DELETE CASCADE  ON UPDATE CASCADE;

ALTER TABLE stock.stock_levels ADD CONSTRAINT stock_levels_article_fk FOREIGN KEY (article_no) REFERENCES stock.articles (article_no) ON DELETE RESTRICT  ON UPDATE NO ACTION;
