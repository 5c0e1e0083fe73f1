

/*People and companies that have an account.*/
CREATE TABLE "customers"
(
"id" INTEGER PRIMARY KEY NOT NULL,

/*Also the login name.*/
"email" VARCHAR(255) NOT NULL UNIQUE,
"name" VARCHAR(120) NOT NULL,
"phone" VARCHAR(40),
"created_at" TIMESTAMP DEFAULT CURRENT_TIMESTAMP NOT NULL
);

/*One row for each order, whatever became of it.*/
CREATE TABLE "orders"
(
"id" INTEGER PRIMARY KEY NOT NULL,
"customer_id" INTEGER NOT NULL,

/*new, paid, sent or cancelled.*/
"status" VARCHAR(20) DEFAULT 'new' NOT NULL,
"ordered_at" TIMESTAMP DEFAULT CURRENT_TIMESTAMP NOT NULL,
"note" TEXT
);

/*What the shop sells.*/
CREATE TABLE "products"
(
"id" INTEGER PRIMARY KEY NOT NULL,

/*Number on the label of the shelf.*/
"sku" VARCHAR(32) NOT NULL UNIQUE,
"title" VARCHAR(200) NOT NULL,

/*With tax, in the currency of the shop.*/
"price" number DEFAULT 0 NOT NULL,
"stock" INTEGER DEFAULT 0 NOT NULL
);

/*The lines of an order.*/
CREATE TABLE "order_items"
(
"order_id" INTEGER PRIMARY KEY NOT NULL,

/*Counts from 1 in each order.*/
"line_no" INTEGER NOT NULL,
"product_id" INTEGER NOT NULL,
"quantity" INTEGER DEFAULT 1 NOT NULL,

/*The price on the day of the order.*/
"unit_price" number NOT NULL
);

CREATE INDEX ON "orders"("customer_id");
