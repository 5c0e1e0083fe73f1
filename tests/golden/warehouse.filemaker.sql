

CREATE TABLE "purchasing"."suppliers"
(
"supplier_no" INTEGER PRIMARY KEY NOT NULL,
"name" VARCHAR(120) NOT NULL UNIQUE,
"email" VARCHAR(255)
);

CREATE TABLE "purchasing"."deliveries"
(
"supplier_no" INTEGER PRIMARY KEY NOT NULL,

/*The number on the delivery note; each supplier has its own.*/
"delivery_no" VARCHAR(20) NOT NULL,
"expected_on" DATE NOT NULL,
"arrived_at" TIMESTAMP
);

CREATE TABLE "stock"."articles"
(
"article_no" INTEGER PRIMARY KEY NOT NULL,
"title" VARCHAR(200) NOT NULL,
"unit" VARCHAR(10) DEFAULT 'piece' NOT NULL,
"reorder_level" number DEFAULT 0 NOT NULL
);

/*Every place where goods are kept.*/
CREATE TABLE "stock"."warehouses"
(
/*Short code as painted on the gate.*/
"warehouse_code" VARCHAR(8) PRIMARY KEY NOT NULL,
"name" VARCHAR(100) NOT NULL,
"city" VARCHAR(80)
);

/*The bins of a warehouse. A bin is known by its code inside its warehouse only.*/
CREATE TABLE "stock"."bins"
(
"warehouse_code" VARCHAR(8) PRIMARY KEY NOT NULL,
"bin_code" VARCHAR(12) NOT NULL,
"capacity" INTEGER DEFAULT 1 NOT NULL,

/*1 for a cooled bin.*/
"is_cold" SMALLINT DEFAULT 0 NOT NULL
);

/*One row for each article of a delivery. The bin is empty until the goods are put away.*/
CREATE TABLE "purchasing"."delivery_lines"
(
"supplier_no" INTEGER PRIMARY KEY NOT NULL,
"delivery_no" VARCHAR(20) NOT NULL,
"line_no" INTEGER NOT NULL,
"article_no" INTEGER NOT NULL,
"quantity" number NOT NULL,
"warehouse_code" VARCHAR(8),
"bin_code" VARCHAR(12)
);

/*What lies where.*/
CREATE TABLE "stock"."stock_levels"
(
"warehouse_code" VARCHAR(8) PRIMARY KEY NOT NULL,
"bin_code" VARCHAR(12) NOT NULL,
"article_no" INTEGER NOT NULL,
"quantity" number DEFAULT 0 NOT NULL,
"counted_on" DATE
);

