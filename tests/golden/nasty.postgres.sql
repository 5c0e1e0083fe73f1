-- before
DROP TABLE IF EXISTS ignored CASCADE;
DROP TABLE IF EXISTS "Main Schema"."Zwei Wörter" CASCADE;
DROP TABLE IF EXISTS "no columns" CASCADE;
DROP TABLE IF EXISTS child CASCADE;
DROP TABLE IF EXISTS "order" CASCADE;
DROP VIEW "open orders";
DROP VIEW unwritten;

/* Export disabled for ignored */

CREATE TABLE "Main Schema"."Zwei Wörter"
(
a INTEGER NOT NULL,
b VARCHAR(8) NOT NULL,
"ORDER" BIGINT,
CONSTRAINT PRIMARY KEY (a,b)
);

CREATE TABLE "no columns"
(

);

CREATE TABLE "order"
(
"select" SERIAL NOT NULL,
"two words" VARCHAR(20) DEFAULT 'it\'s',
MixedCase VARCHAR(10) DEFAULT '',
quote CHAR(4) DEFAULT 'new',
größe DECIMAL(8,2) NOT NULL DEFAULT 1.50,
moment TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP,
day DATE DEFAULT CURRENT_DATE,
flag BOOLEAN DEFAULT TRUE,
count INTEGER DEFAULT 7 UNIQUE ,
formula VARCHAR(40) DEFAULT upper('x'),
nothing INTEGER DEFAULT NULL,

/*it's "said" */ here*/
remark TEXT,
CONSTRAINT "positive size" CHECK ("größe" > 0),
CONSTRAINT formula_check_cons CHECK (formula <> ''),
CONSTRAINT PRIMARY KEY ("select")
);

CREATE TABLE child
(
none INTEGER,
cascade INTEGER NOT NULL,
restrict INTEGER,
setnull INTEGER,
noaction INTEGER,
setdefault INTEGER DEFAULT 0,
a INTEGER,
b VARCHAR(8)
);

CREATE VIEW "open orders"  AS SELECT a FROM child;

/* VIEW unwritten - no query specified */

CREATE INDEX "Zwei Wörter_ORDER_idx" ON "Main Schema"."Zwei Wörter"("ORDER");

CREATE  INDEX idx ON "Main Schema"."Zwei Wörter" ("ORDER");

CREATE INDEX order_nothing_idx ON "order"(nothing);

COMMENT ON COLUMN "order".remark is 'it\'s \"said\" */ here'
COMMENT ON COLUMN "order".remark is 'it\'s \"said\" */ here'
CREATE  INDEX idx ON "order" ("two words",remark);

/*CREATE  INDEX "empty index" ON "order" ();
*/

ALTER TABLE "order" ADD CONSTRAINT "Only" UNIQUE (MixedCase);

ALTER TABLE "order" ADD CONSTRAINT pair UNIQUE (day,flag);

COMMENT ON TABLE "order" is 'ends */ early, it\'s so'
ALTER TABLE child ADD CONSTRAINT "fk none" FOREIGN KEY (none) REFERENCES "order" ("select");

ALTER TABLE child ADD FOREIGN KEY (cascade) REFERENCES "order" ("select") ON DELETE CASCADE  ON UPDATE CASCADE;

ALTER TABLE child ADD FOREIGN KEY (restrict) REFERENCES "order" ("select") ON DELETE RESTRICT  ON UPDATE RESTRICT;

ALTER TABLE child ADD FOREIGN KEY (setnull) REFERENCES "order" ("select") ON DELETE SET NULL  ON UPDATE SET NULL;

ALTER TABLE child ADD FOREIGN KEY (noaction) REFERENCES "order" ("select") ON DELETE NO ACTION  ON UPDATE NO ACTION;

ALTER TABLE child ADD FOREIGN KEY (setdefault) REFERENCES "order" ("select") ON DELETE SET DEFAULT  ON UPDATE SET DEFAULT;

ALTER TABLE child ADD CONSTRAINT "both" FOREIGN KEY (a,b) REFERENCES "Main Schema"."Zwei Wörter" (a,b) ON DELETE SET NULL  ON UPDATE CASCADE  DEFERRABLE INITIALLY DEFERRED;

/*Foreign Key child leads nowhere not exportable, No Columns Set, No Target Table*/
/*Foreign Key child without columns not exportable, No Columns Set*/
-- after