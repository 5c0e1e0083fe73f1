-- before

DROP TABLE IF EXISTS ignored;

DROP TABLE IF EXISTS `Main Schema`.`Zwei Wörter`;

DROP TABLE IF EXISTS `no columns`;

DROP TABLE IF EXISTS child;

DROP TABLE IF EXISTS `order`;
DROP VIEW `open orders`;
DROP VIEW unwritten;

/* Export disabled for ignored */

CREATE TABLE `Main Schema`.`Zwei Wörter`
(
a INTEGER NOT NULL,
b VARCHAR(8) NOT NULL,
`ORDER` BIGINT,
PRIMARY KEY (a,b)
);

CREATE TABLE `no columns`
(

);

CREATE TABLE `order`
(
`select` INTEGER NOT NULL AUTO_INCREMENT,
`two words` VARCHAR(20) DEFAULT 'it\'s',
MixedCase VARCHAR(10) DEFAULT '',
quote CHAR(4) DEFAULT 'new',
größe DECIMAL(8,2) NOT NULL DEFAULT 1.50,
moment TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP,
day DATE DEFAULT 'CURRENT_DATE',
flag BOOLEAN DEFAULT TRUE,
count INTEGER DEFAULT 7 UNIQUE ,
formula VARCHAR(40) DEFAULT upper('x'),
nothing INTEGER DEFAULT NULL,
remark TEXT COMMENT 'it\'s \"said\" */ here',
PRIMARY KEY (`select`)
) COMMENT='ends */ early, it\\\'s so';

CREATE TABLE child
(
none INTEGER,
`cascade` INTEGER NOT NULL,
`restrict` INTEGER,
setnull INTEGER,
noaction INTEGER,
setdefault INTEGER DEFAULT 0,
a INTEGER,
b VARCHAR(8)
);

CREATE OR REPLACE VIEW `open orders`  AS SELECT a FROM child;

/* VIEW unwritten - no query specified */

CREATE INDEX ORDER_idx ON `Main Schema`.`Zwei Wörter` (`ORDER`);
CREATE INDEX idx ON `Main Schema`.`Zwei Wörter` (`ORDER`);

CREATE INDEX nothing_idx ON `order` (nothing);
CREATE INDEX idx ON `order` (`two words`,remark(10));

/*CREATE INDEX `empty index` ON `order`;
*/

CREATE UNIQUE INDEX Only ON `order` (MixedCase);

CREATE UNIQUE INDEX pair ON `order` (day,flag);

ALTER TABLE child ADD CONSTRAINT `fk none` FOREIGN KEY fk none (none) REFERENCES `order` (`select`);

ALTER TABLE child ADD FOREIGN KEY cascade_idxfk (`cascade`) REFERENCES `order` (`select`) ON DELETE CASCADE  ON UPDATE CASCADE;

ALTER TABLE child ADD FOREIGN KEY restrict_idxfk (`restrict`) REFERENCES `order` (`select`) ON DELETE RESTRICT  ON UPDATE RESTRICT;

ALTER TABLE child ADD FOREIGN KEY setnull_idxfk (setnull) REFERENCES `order` (`select`) ON DELETE SET NULL  ON UPDATE SET NULL;

ALTER TABLE child ADD FOREIGN KEY noaction_idxfk (noaction) REFERENCES `order` (`select`) ON DELETE NO ACTION  ON UPDATE NO ACTION;

ALTER TABLE child ADD FOREIGN KEY setdefault_idxfk (setdefault) REFERENCES `order` (`select`);

ALTER TABLE child ADD CONSTRAINT `both` FOREIGN KEY both (a,b) REFERENCES `Main Schema`.`Zwei Wörter` (a,b) ON DELETE SET NULL  ON UPDATE CASCADE;

/*Foreign Key child leads nowhere not exportable, No Columns Set, No Target Table*/
/*Foreign Key child without columns not exportable, No Columns Set*/
-- after