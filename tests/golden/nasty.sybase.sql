-- before
DROP TABLE ignored;
DROP TABLE 'Main Schema'.'Zwei Wörter';
DROP TABLE 'no columns';
DROP TABLE child;
DROP TABLE 'order';
DROP VIEW 'open orders';
DROP VIEW unwritten;

/* Export disabled for ignored */

CREATE TABLE 'Main Schema'.'Zwei Wörter'
(
a INTEGER NOT NULL,
b VARCHAR(8) NOT NULL,
'ORDER' BIGINT,
CONSTRAINT 'Zwei Wörter_pkey' PRIMARY KEY (a,b)
);

CREATE TABLE 'no columns'
(

);

/*ends */ early, it's so*/
CREATE TABLE 'order'
(
'select' INTEGER NOT NULL IDENTITY,
'two words' VARCHAR(20) DEFAULT it's,
MixedCase VARCHAR(10) DEFAULT '',
quote CHAR(4) DEFAULT 'new',
größe DECIMAL(8,2) NOT NULL DEFAULT 1.50,
moment TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP,
day DATE DEFAULT CURRENT_DATE,
flag BOOLEAN DEFAULT TRUE,
count INTEGER DEFAULT 7,
formula VARCHAR(40) DEFAULT upper('x'),
nothing INTEGER DEFAULT NULL,

/*it's "said" */ here*/
remark TEXT,
CONSTRAINT 'positive size' CHECK ("größe" > 0),
CONSTRAINT formula_check_cons CHECK (formula <> ''),
CONSTRAINT order_pkey PRIMARY KEY ('select')
);

CREATE TABLE child
(
none INTEGER,
'cascade' INTEGER NOT NULL,
'restrict' INTEGER,
setnull INTEGER,
noaction INTEGER,
setdefault INTEGER DEFAULT 0,
a INTEGER,
b VARCHAR(8)
);

CREATE VIEW 'open orders'  AS SELECT a FROM child;

/* VIEW unwritten - no query specified */

CREATE UNIQUE INDEX PrimaryIndex on 'Main Schema.Zwei Wörter' (a,b)

CREATE  INDEX idx ON 'Main Schema'.'Zwei Wörter' ('ORDER');

CREATE UNIQUE INDEX PrimaryIndex on 'order' ('select')

CREATE  INDEX idx ON 'order' ('two words',remark);

/*CREATE  INDEX 'empty index' ON 'order' ();
*/

CREATE UNIQUE INDEX Only ON 'order' (MixedCase);

CREATE UNIQUE INDEX pair ON 'order' (day,flag);

-- after