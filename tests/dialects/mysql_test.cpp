// tests/dialects/mysql_test.cpp — MySQL's text, byte for byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/dialects/mysql_exporter.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::shared_ptr<MySQLExporter> mysql() { return create<MySQLExporter>(); }

/// A live database that says yes to whatever is asked.
struct LiveDatabase : SQLExportDialect {
    bool indexExists(SQLIndex&) override { return knowsIndexes; }
    bool indexExistsNamed(SQLTable&, std::string_view) override { return knowsIndexes; }
    bool isOnlyIndexForTableForeignKey(SQLField&, std::string_view) override { return true; }
    std::string_view className() const override { return "JDBCExportMySQL"; }
    bool knowsIndexes = false;
};

TEST(MySQL, ColumnTypes) {
    const std::pair<const char*, const char*> cases[] = {
        {"a varchar", "a varchar(255)"},   {"a varchar(20)", "a varchar(20)"}, {"a int", "a int"},
        {"a text(5)", "a TEXT"},           {"a date", "a DATE"},               {"a geometry(2)", "a geometry(2)"},
        {"a enum('x','y')", "a enum('x','y')"}};
    for (const auto& [part, expected] : cases) EXPECT_EQ(columnOf("mysql", part), expected);

    auto container = document("t(a int; b varchar(9); c text)");
    for (const char* key : {keys::zeroFill, keys::unsigned_, keys::binary})
        for (const char* name : {"a", "b", "c"}) field(*container, "t", name)->setPropertyAsBoolean(key, true);
    field(*container, "t", "b")->setProperty(keys::fieldCharacterSet, "utf8");
    field(*container, "t", "b")->setProperty(keys::fieldCollation, "utf8_bin");
    EXPECT_EQ(mysql()->fieldType(*field(*container, "t", "a")), "int ZEROFILL  UNSIGNED");
    EXPECT_EQ(mysql()->fieldType(*field(*container, "t", "b")),
              "varchar(9) ZEROFILL  UNSIGNED BINARY CHARACTER SET utf8 COLLATE utf8_bin");
    EXPECT_EQ(mysql()->fieldType(*field(*container, "t", "c")), "TEXT ZEROFILL  UNSIGNED BINARY");
}

TEST(MySQL, ColumnsWriteTheirOptionsInOrder) {
    EXPECT_EQ(columnOf("mysql", "a int pk auto notnull unique comment=it's"), R"(a int NOT NULL AUTO_INCREMENT UNIQUE  COMMENT 'it\'s')");
    EXPECT_EQ(columnOf("mysql", "a int auto"), "a int") << "neither key nor index";
    EXPECT_EQ(columnOf("mysql", "a TIMESTAMP default=null"), "a TIMESTAMP NULL  DEFAULT null");
    EXPECT_EQ(columnOf("mysql", "a text default=x"), "a TEXT") << "a TEXT column has no default";
    EXPECT_EQ(columnOf("mysql", "a int default=0"), "a int DEFAULT 0");
    EXPECT_EQ(columnOf("mysql", "a date default=2020-01-01"), "a DATE DEFAULT '2020-01-01'");
    EXPECT_EQ(columnOf("mysql", "a varchar(2) default='"), R"(a varchar(2) DEFAULT '\'')");
    EXPECT_EQ(columnOf("mysql", "a varchar(2) default=''"), "a varchar(2) DEFAULT ''");
    EXPECT_EQ(columnOf("mysql", "a int check=a>0"), "a int") << "no checks";
    auto container = document("t(a TIMESTAMP; b timestamp)");
    for (const char* name : {"a", "b"}) field(*container, "t", name)->setProperty(keys::onUpdateFieldValue, "CURRENT_TIMESTAMP");
    EXPECT_EQ(mysql()->exportSQLField(*field(*container, "t", "a")), "a TIMESTAMP ON UPDATE CURRENT_TIMESTAMP");
    EXPECT_EQ(mysql()->exportSQLField(*field(*container, "t", "b")), "b timestamp") << "the type word is exact here";
}

TEST(MySQL, TablesWriteTheirOptionsAndKeysTheirIndexes) {
    auto container = document("u(x int pk);;t(a int pk auto; b int; key k (b) -> u(x) delete=5 update=5; index i FULLTEXT (b))");
    SQLTable& t = *table(*container, "t");
    t.setTableType("InnoDB");
    t.setComment("it's");
    t.setProperty(keys::tableAutoIncrementStart, "5");
    t.setProperty(keys::tableCharacterSet, "utf8");
    t.setProperty(keys::tableCollation, "utf8_bin");
    EXPECT_EQ(scriptOf("mysql", *container),
              "\n"
              "\nCREATE TABLE u\n(\nx int,\nPRIMARY KEY (x)\n);\n"
              "\nCREATE TABLE t\n(\na int AUTO_INCREMENT,\nb int,\nPRIMARY KEY (a)\n)"
              R"( ENGINE=InnoDB COMMENT='it\\\'s' AUTO_INCREMENT=5 CHARACTER SET=utf8 COLLATE=utf8_bin;)" "\n"
              "\n"
              "ALTER TABLE t ADD CONSTRAINT k FOREIGN KEY k (b) REFERENCES u (x);\n\n"
              "CREATE FULLTEXT INDEX i ON t (b);\n");
}

TEST(MySQL, DropsViewsAndQuoting) {
    auto container = document("t(a int)");
    EXPECT_EQ(mysql()->dropTableInstruction(*table(*container, "t")), "\nDROP TABLE IF EXISTS t;\n");
    EXPECT_EQ(mysql()->viewCreateStringPart("v"), "CREATE OR REPLACE VIEW v ");
    ScopedPreference characters(prefs::autoQuoteIdentifiersWithInvalidCharacters);
    const std::pair<const char*, const char*> cases[] = {
        {"123", "`123`"}, {"a b", "`a b`"}, {"a$_9", "a$_9"}, {"größe", "größe"}, {"a😀", "`a😀`"}, {"a1", "a1"}, {"a-b", "`a-b`"}};
    for (const auto& [name, expected] : cases) EXPECT_EQ(mysql()->quoteIdentifier(name), expected);
}

TEST(MySQL, IndexesHavePrefixSizesAndTwoForms) {
    auto container = document("t(a varchar(9); b text; c int; index i UNIQUE (a(3),b,c(4)); index e ())");
    SQLTable& t = *table(*container, "t");
    SQLIndex& index = *t.indexObjectsInTable().at(0);
    EXPECT_EQ(mysql()->addIndex(index), "CREATE UNIQUE INDEX i ON t (a(3),b(50),c);\n");
    EXPECT_EQ(mysql()->addIndex(*t.indexObjectsInTable().at(1)), "/*CREATE INDEX e ON t;\n*/\n");
    auto forced = mysql();
    forced->setOverrideShouldUseAlterTableForIndex(true);
    EXPECT_EQ(forced->addIndex(index), "ALTER TABLE t ADD UNIQUE INDEX i (a(3),b(50),c);\n");
    ScopedPreference alter(prefs::useAlterTableForMySQLIndexCreation);
    EXPECT_EQ(mysql()->addIndex(index), forced->addIndex(index));
    index.setIndexType("UNIQUE ");
    EXPECT_EQ(mysql()->addIndex(index), "ALTER TABLE t ADD UNIQUE  INDEX i (a(3),b(50),c);\n") << "the type as it is";
}

TEST(MySQL, IndexedAndReferencingColumnsGetIndexes) {
    auto container = document("u(x int pk);;t(a varchar(9) indexed; b int -> u.x; c int unique -> u.x)");
    SQLTable& t = *table(*container, "t");
    t.getFieldByName("a")->setProperty(keys::indexSize, "4");
    EXPECT_EQ(mysql()->createFieldIndexOnField(*t.getFieldByName("a"), t), "CREATE INDEX a_idx ON t (a(4));");
    EXPECT_EQ(mysql()->createFieldIndexOnField(*t.getFieldByName("b"), t), "") << "without a live database none is written";
    auto exporter = mysql();
    auto live = create<LiveDatabase>();
    exporter->setCurrentExporter(live);
    EXPECT_EQ(exporter->createFieldIndexOnField(*t.getFieldByName("b"), t), "CREATE INDEX b_idxfk ON t (b);");
    EXPECT_EQ(exporter->createFieldIndexOnField(*t.getFieldByName("c"), t), "") << "a unique column has its index";
    live->knowsIndexes = true;
    EXPECT_EQ(exporter->createFieldIndexOnField(*t.getFieldByName("b"), t), "");
    EXPECT_EQ(exporter->setIndex(*t.getFieldByName("b"), nullptr), "CREATE INDEX b_idxfk ON t (b)");
}

TEST(MySQL, IndexNamesOfUnnamedKeysAreNumberedWithinOneExport) {
    auto exporter = mysql();
    EXPECT_EQ(exporter->getUniqueForeignKeyName("a_idxfk"), "a_idxfk");
    EXPECT_EQ(exporter->getUniqueForeignKeyName("a_idxfk"), "a_idxfk_1");
    EXPECT_EQ(exporter->getUniqueForeignKeyName("a_idxfk"), "a_idxfk_2");
    (void)exporter->exportSQLContainer(*document(""));
    EXPECT_EQ(exporter->getUniqueForeignKeyName("a_idxfk"), "a_idxfk");
}

TEST(MySQL, AlteredTables) {
    auto next = document("t(a int; b int auto)");
    auto current = document("t(a int; b int)");
    SQLTable& t = *table(*next, "t");
    SQLTable& old = *table(*current, "t");
    EXPECT_THAT(mysql()->alterAsVector(t, old), ElementsAre("", "", "ALTER TABLE t CHANGE b b int"));
    t.setTableType("InnoDB");
    old.setTableType("MyISAM");
    t.setComment("it's");
    EXPECT_EQ(mysql()->alterTableEngine(t, old), "ALTER TABLE t ENGINE = InnoDB");
    EXPECT_EQ(mysql()->alterTableComment(t, old), R"(ALTER TABLE t COMMENT = 'it\\\'s')");
    old.setTableType("innodb");
    EXPECT_EQ(mysql()->alterTableEngine(t, old), "");

    auto keyed = document("t(a int pk; b int pk)");
    auto plain = document("t(a int; b int)");
    auto single = document("t(a int pk; b int)");
    EXPECT_EQ(mysql()->alterPrimaryKeyForTable(*table(*keyed, "t"), *table(*single, "t"))->string(),
              "ALTER TABLE t DROP PRIMARY KEY, ADD PRIMARY KEY (a,b);");
    EXPECT_EQ(mysql()->alterPrimaryKeyForTable(*table(*keyed, "t"), *table(*plain, "t"))->string(), "ALTER TABLE t ADD PRIMARY KEY (a,b);");
    EXPECT_EQ(mysql()->alterPrimaryKeyForTable(*table(*plain, "t"), *table(*single, "t"))->string(), "ALTER TABLE t DROP PRIMARY KEY;");
    EXPECT_FALSE(mysql()->alterPrimaryKeyForTable(*table(*keyed, "t"), *table(*keyed, "t"))->isVisible());
}

TEST(MySQL, AlteredColumns) {
    const auto alter = [](std::string_view next, std::string_view current) {
        return altered(next, current, [](SQLField& a, SQLField& b) { return mysql()->alterSQLFieldAsVector(a, b, nullptr); });
    };
    LogCapture log;
    EXPECT_THAT(alter("a int", "a int"), ElementsAre("", ""));
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(alter("a bigint", "a int"), ElementsAre("ALTER TABLE t CHANGE a a bigint", ""));
    EXPECT_THAT(log.lines(), ElementsAre("a bigint <-|-> a int"));
    EXPECT_THAT(alter("a int comment=x", "a int"), ElementsAre("ALTER TABLE t CHANGE a a int COMMENT 'x'", ""));
    EXPECT_THAT(alter("a BOOL", "a TINYINT"), ElementsAre("", ""));
    EXPECT_THAT(log.lines(), ::testing::Contains("type types are synonymous (not modified)"));
    EXPECT_THAT(alter("a bool", "a tinyint"), ElementsAre("ALTER TABLE t CHANGE a a bool", "")) << "exact words";
    EXPECT_THAT(alter("a int", "a int unique"), ElementsAre("ALTER TABLE t CHANGE a a int", "ALTER TABLE t DROP INDEX a"));
    EXPECT_THAT(alter("a int", "a int(11)"), ElementsAre("ALTER TABLE t CHANGE a a int", ""));
    ScopedPreference sizes(prefs::preventTypeSizeUpdateWhenNil);
    EXPECT_THAT(alter("a int", "a int(11)"), ElementsAre("", ""));
    EXPECT_THAT(alter("a int pk auto", "a int(11) pk auto"), ElementsAre("", "")) << "the key keeps AUTO_INCREMENT";
}

TEST(MySQL, DroppedIndexesAndKeys) {
    auto container = document("u(x int pk);;t(a int unique -> u.x; index a (a); index i (a); key k (a) -> u(x))");
    SQLTable& t = *table(*container, "t");
    LogCapture log;
    EXPECT_EQ(mysql()->dropSQLIndex(*t.indexObjectsInTable().at(0)), "ALTER TABLE t DROP INDEX a") << "the unique column's index";
    EXPECT_EQ(mysql()->dropSQLIndex(*t.indexObjectsInTable().at(1)), "");
    EXPECT_THAT(log.lines(), ElementsAre("attempting to drop index that does not exist i"));
    auto exporter = mysql();
    SQLForeignKey& key = *t.foreignKeyObjectsInTable().front();
    EXPECT_EQ(exporter->dropSQLForeignKey(key), "ALTER TABLE t DROP FOREIGN KEY k");
    EXPECT_EQ(exporter->dropSQLForeignKey(key), "") << "never twice";
    SQLField& column = *t.getFieldByName("a");
    EXPECT_EQ(exporter->dropForeignKey(column), "/* Need to DROP Foreign Key constraint from field t(a), but constraint name unknown */");
    column.setReferenceId("fk");
    EXPECT_EQ(exporter->dropForeignKey(column), "ALTER TABLE t DROP FOREIGN KEY fk");
}

}  // namespace
}  // namespace vellicor
