-- before
DROP TABLE ignored;
DROP TABLE "Main Schema"."Zwei Wörter";
DROP TABLE "no columns";
DROP TABLE child;
DROP TABLE "order";
DROP VIEW "open orders";
DROP VIEW unwritten;

/* Export disabled for ignored */

CREATE TABLE "Main Schema"."Zwei Wörter"
(
a INTEGER NOT NULL,
b VARCHAR(8) NOT NULL,
"ORDER" BIGINT,
PRIMARY KEY (a,b)
);

CREATE TABLE "no columns"
(

);

/*ends */ early, it's so*/
CREATE TABLE "order"
(
"select" INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
"two words" VARCHAR(20) DEFAULT 'it\'s',
MixedCase VARCHAR(10) DEFAULT '',
quote CHAR(4) DEFAULT 'new',
größe DECIMAL(8,2) DEFAULT '1.50' NOT NULL,
moment TIMESTAMP DEFAULT CURRENT_TIMESTAMP NOT NULL,
day DATE DEFAULT CURRENT_DATE,
flag BOOLEAN DEFAULT 'TRUE',
count INTEGER DEFAULT '7' UNIQUE,
formula VARCHAR(40) DEFAULT upper('x'),
nothing INTEGER DEFAULT NULL,

/*it's "said" */ here*/
remark TEXT,
CONSTRAINT "positive size" CHECK ("größe" > 0),
CONSTRAINT formula_check_cons CHECK (formula <> '')
);

CREATE TABLE child
(
none INTEGER REFERENCES "order" ("select"),
"cascade" INTEGER NOT NULL REFERENCES "order" ("select") ON DELETE CASCADE ON UPDATE CASCADE,
"restrict" INTEGER REFERENCES "order" ("select") ON DELETE RESTRICT ON UPDATE RESTRICT,
setnull INTEGER REFERENCES "order" ("select") ON DELETE SET NULL ON UPDATE SET NULL,
noaction INTEGER REFERENCES "order" ("select") ON DELETE NO ACTION ON UPDATE NO ACTION,
setdefault INTEGER DEFAULT '0' REFERENCES "order" ("select") ON DELETE SET DEFAULT ON UPDATE SET DEFAULT,
a INTEGER,
b VARCHAR(8),
FOREIGN KEY (a,b) REFERENCES "Main Schema"."Zwei Wörter" (a,b) ON DELETE SET NULL  ON UPDATE CASCADE ,
/*Foreign Key child leads nowhere not exportable, No Columns Set, No Target Table*/,
/*Foreign Key child without columns not exportable, No Columns Set*/
);

CREATE VIEW "open orders"  AS SELECT a FROM child;

/* VIEW unwritten - no query specified */

CREATE INDEX "Zwei Wörter_ORDER_idx" ON "Main Schema"."Zwei Wörter"("ORDER");

CREATE  INDEX idx ON "Main Schema"."Zwei Wörter" ("ORDER");

CREATE INDEX order_nothing_idx ON "order"(nothing);

CREATE  INDEX idx ON "order" ("two words",remark);

/*CREATE  INDEX "empty index" ON "order" ();
*/

CREATE UNIQUE INDEX Only ON "order" (MixedCase);

CREATE UNIQUE INDEX pair ON "order" (day,flag);

-- after