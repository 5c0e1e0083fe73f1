-- before
DROP TABLE "ignored";
DROP TABLE "Main Schema"."Zwei Wörter";
DROP TABLE "no columns";
DROP TABLE "child";
DROP TABLE "order";

/* Export disabled for "ignored" */

CREATE TABLE "Main Schema"."Zwei Wörter"
(
"a" INTEGER PRIMARY KEY NOT NULL,
"b" VARCHAR(8) NOT NULL,
"ORDER" BIGINT
);

CREATE TABLE "no columns"
(

);

/*ends */ early, it's so*/
CREATE TABLE "order"
(
"select" INTEGER PRIMARY KEY NOT NULL,
"two words" VARCHAR(20) DEFAULT 'it\'s',
"MixedCase" VARCHAR(10) DEFAULT '',
"quote" CHAR DEFAULT 'new',
"größe" DECIMAL DEFAULT '1.50' NOT NULL,
"moment" TIMESTAMP DEFAULT CURRENT_TIMESTAMP NOT NULL,
"day" DATE DEFAULT 'CURRENT_DATE',
"flag" BOOLEAN DEFAULT 'TRUE',
"count" INTEGER DEFAULT '7' UNIQUE,
"formula" VARCHAR(40) DEFAULT upper('x'),
"nothing" INTEGER DEFAULT NULL,

/*it's "said" */ here*/
"remark" TEXT
);

CREATE TABLE "child"
(
"none" INTEGER,
"cascade" INTEGER NOT NULL,
"restrict" INTEGER,
"setnull" INTEGER,
"noaction" INTEGER,
"setdefault" INTEGER DEFAULT '0',
"a" INTEGER,
"b" VARCHAR(8)
);

CREATE INDEX ON "Main Schema"."Zwei Wörter"("ORDER");

CREATE INDEX ON "order"("nothing");

-- after