// tests/dialects/mysql_test.cpp — what no whole script shows of MySQL.
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

std::shared_ptr<MySQLExporter> mysql() { return create<MySQLExporter>(); }

/// A live database that says yes to whatever is asked.
struct LiveDatabase : SQLExportDialect {
    bool indexExists(SQLIndex&) override { return knowsIndexes; }
    bool indexExistsNamed(SQLTable&, std::string_view) override { return knowsIndexes; }
    bool isOnlyIndexForTableForeignKey(SQLField&, std::string_view) override { return true; }
    std::string_view className() const override { return "JDBCExportMySQL"; }
    bool knowsIndexes = false;
};

TEST(MySQL, ColumnsWriteTheirOptionsInOrder) {
    auto container = document("t(a int; b varchar(9); c TIMESTAMP; d timestamp)");
    for (const char* key : {keys::zeroFill, keys::unsigned_, keys::binary})
        for (const char* name : {"a", "b"}) field(*container, "t", name)->setPropertyAsBoolean(key, true);
    field(*container, "t", "b")->setProperty(keys::fieldCharacterSet, "utf8");
    field(*container, "t", "b")->setProperty(keys::fieldCollation, "utf8_bin");
    for (const char* name : {"c", "d"})
        field(*container, "t", name)->setProperty(keys::onUpdateFieldValue, "CURRENT_TIMESTAMP");
    const auto definition = [&](const char* name) { return mysql()->exportSQLField(*field(*container, "t", name)); };
    EXPECT_EQ(definition("a"), "a int ZEROFILL  UNSIGNED");
    EXPECT_EQ(definition("b"), "b varchar(9) ZEROFILL  UNSIGNED BINARY CHARACTER SET utf8 COLLATE utf8_bin");
    EXPECT_EQ(definition("c"), "c TIMESTAMP ON UPDATE CURRENT_TIMESTAMP");
    EXPECT_EQ(definition("d"), "d timestamp") << "the type word is exact here";
}

TEST(MySQL, TablesWriteTheirOptionsInOrder) {
    auto container = document("t(a int)");
    SQLTable& t = *table(*container, "t");
    t.setTableType("InnoDB");
    t.setComment("it's");
    t.setProperty(keys::tableAutoIncrementStart, "5");
    t.setProperty(keys::tableCharacterSet, "utf8");
    t.setProperty(keys::tableCollation, "utf8_bin");
    EXPECT_EQ(mysql()->tablePropertiesNode(t)->string(),
              R"( ENGINE=InnoDB COMMENT='it\\\'s' AUTO_INCREMENT=5 CHARACTER SET=utf8 COLLATE=utf8_bin)");
}

TEST(MySQL, IndexesHavePrefixSizesAndTwoForms) {
    auto container = document("t(a varchar(9); b text; c int; index i UNIQUE (a(3),b,c(4)))");
    SQLIndex& index = *table(*container, "t")->indexObjectsInTable().front();
    EXPECT_EQ(mysql()->addIndex(index), "CREATE UNIQUE INDEX i ON t (a(3),b(50),c);\n");
    auto forced = mysql();
    forced->setOverrideShouldUseAlterTableForIndex(true);
    index.setIndexType("UNIQUE ");
    EXPECT_EQ(forced->addIndex(index), "ALTER TABLE t ADD UNIQUE  INDEX i (a(3),b(50),c);\n") << "the type as it is";
}

TEST(MySQL, IndexedAndReferencingColumnsGetIndexes) {
    auto container = document("u(x int pk);;t(a varchar(9) indexed; b int -> u.x; c int unique -> u.x)");
    SQLTable& t = *table(*container, "t");
    t.getFieldByName("a")->setProperty(keys::indexSize, "4");
    auto exporter = mysql();
    const auto indexOf = [&](const char* name) {
        return exporter->createFieldIndexOnField(*t.getFieldByName(name), t);
    };
    EXPECT_EQ(indexOf("a"), "CREATE INDEX a_idx ON t (a(4));");
    EXPECT_EQ(indexOf("b"), "") << "without a live database none is written";
    auto live = create<LiveDatabase>();
    exporter->setCurrentExporter(live);
    EXPECT_EQ(indexOf("b"), "CREATE INDEX b_idxfk ON t (b);");
    EXPECT_EQ(indexOf("c"), "") << "a unique column has its index";
    live->knowsIndexes = true;
    EXPECT_EQ(indexOf("b"), "");
    EXPECT_EQ(exporter->setIndex(*t.getFieldByName("b"), nullptr), "CREATE INDEX b_idxfk ON t (b)");
}

TEST(MySQL, IndexNamesOfUnnamedKeysAreNumberedWithinOneExport) {
    auto exporter = mysql();
    for (const char* expected : {"a_idxfk", "a_idxfk_1", "a_idxfk_2"})
        EXPECT_EQ(exporter->getUniqueForeignKeyName("a_idxfk"), expected);
    (void)exporter->exportSQLContainer(*document(""));
    EXPECT_EQ(exporter->getUniqueForeignKeyName("a_idxfk"), "a_idxfk");
}

TEST(MySQL, AlteredTables) {
    auto next = document("t(a int; b int auto)");
    auto current = document("t(a int; b int)");
    SQLTable& t = *table(*next, "t");
    SQLTable& old = *table(*current, "t");
    EXPECT_THAT(mysql()->alterAsVector(t, old, nullptr), ElementsAre("", "", "ALTER TABLE t CHANGE b b int"));
    t.setTableType("InnoDB");
    old.setTableType("MyISAM");
    t.setComment("it's");
    EXPECT_EQ(mysql()->alterTableEngine(t, old), "ALTER TABLE t ENGINE = InnoDB");
    EXPECT_EQ(mysql()->alterTableComment(t, old), R"(ALTER TABLE t COMMENT = 'it\\\'s')");
    old.setTableType("innodb");
    EXPECT_EQ(mysql()->alterTableEngine(t, old), "");

    const auto keyChange = [](const char* newColumns, const char* oldColumns) {
        auto wanted = document(newColumns), present = document(oldColumns);
        return mysql()->alterPrimaryKeyForTable(*table(*wanted, "t"), *table(*present, "t"))->string();
    };
    const char* keyed = "t(a int pk; b int pk)";
    EXPECT_EQ(keyChange(keyed, "t(a int pk; b int)"), "ALTER TABLE t DROP PRIMARY KEY, ADD PRIMARY KEY (a,b);");
    EXPECT_EQ(keyChange(keyed, "t(a int; b int)"), "ALTER TABLE t ADD PRIMARY KEY (a,b);");
    EXPECT_EQ(keyChange("t(a int; b int)", keyed), "ALTER TABLE t DROP PRIMARY KEY;");
    EXPECT_EQ(keyChange(keyed, keyed), "");
}

TEST(MySQL, ComparedColumnsAreLogged) {
    const auto alter = [](std::string_view next, std::string_view current) {
        return altered(next, current, [](SQLField& a, SQLField& b) { return mysql()->alterAsVector(a, b, nullptr); });
    };
    LogCapture log;
    (void)alter("a int", "a int");
    (void)alter("a bigint", "a int");
    EXPECT_THAT(log.lines(), ElementsAre("a bigint <-|-> a int"));
    (void)alter("a BOOL", "a TINYINT");
    EXPECT_THAT(log.lines(), ::testing::Contains("type types are synonymous (not modified)"));
    EXPECT_THAT(alter("a BOOL(1)", "a TINYINT(4)"), ElementsAre("", "")) << "whatever size a synonym has";
    EXPECT_THAT(alter("a BOOL(1) notnull", "a TINYINT(4)"), ElementsAre("ALTER TABLE t CHANGE a a BOOL(1) NOT NULL", ""));
    ScopedPreference sizes(prefs::preventTypeSizeUpdateWhenNil);
    EXPECT_THAT(alter("a int pk auto", "a int(11) pk auto"), ElementsAre("", "")) << "the key keeps AUTO_INCREMENT";
}

TEST(MySQL, DroppedIndexesAndKeys) {
    auto container = document("u(x int pk);;t(a int unique -> u.x; index a (a); index i (a); key k (a) -> u(x))");
    SQLTable& t = *table(*container, "t");
    SQLForeignKey& key = *t.foreignKeyObjectsInTable().front();
    SQLField& column = *t.getFieldByName("a");
    auto exporter = mysql();
    LogCapture log;
    EXPECT_EQ(exporter->drop(*t.indexObjectsInTable().at(0)), "ALTER TABLE t DROP INDEX a") << "the unique column's";
    EXPECT_EQ(exporter->drop(*t.indexObjectsInTable().at(1)), "");
    EXPECT_THAT(log.lines(), ElementsAre("attempting to drop index that does not exist i"));
    EXPECT_EQ(exporter->dropSQLForeignKey(key), "ALTER TABLE t DROP FOREIGN KEY k");
    EXPECT_EQ(exporter->dropSQLForeignKey(key), "") << "never twice";
    EXPECT_EQ(exporter->dropForeignKey(column),
              "/* Need to DROP Foreign Key constraint from field t(a), but constraint name unknown */");
    column.setReferenceId("fk");
    EXPECT_EQ(exporter->dropForeignKey(column), "ALTER TABLE t DROP FOREIGN KEY fk");
}

}  // namespace
}  // namespace vellicor
