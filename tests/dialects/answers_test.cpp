// tests/dialects/answers_test.cpp — single answers of the dialects that no whole script shows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/dialects/filemaker_exporter.h"
#include "vellicor/dialects/sql_server_exporter.h"
#include "vellicor/dialects/sqlite_exporter.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Engine : DatabaseMetaData {
    std::string databaseProductName() override { return "Engine"; }
    std::string databaseProductVersion() override { return "9"; }
};

// === several dialects

TEST(Answers, OnlyTheFormWithThreeArgumentsComparesObjects) {
    auto next = document("t(a bigint)"), current = document("t(a int)");
    for (const char* dialect : {"generic", "sybase", "FileMaker", "SQLServer", "Oracle"})
        EXPECT_THAT(exporterOf(dialect)->alterAsVector(*field(*next, "t", "a"), *field(*current, "t", "a")), IsEmpty());
}

TEST(Answers, ClassicDefaultsAreQuotedInEveryDialect) {
    auto container = document("t(a int)");
    SQLField& column = *field(*container, "t", "a");
    for (const char* dialect : {"generic", "OpenBase", "SQLite", "sybase", "FileMaker", "SQLServer", "Oracle"})
        for (const char* value : {"5", "getdate()", "USER"})
            EXPECT_EQ(exporterOf(dialect)->quoteDefaultValue(value, column), "'" + std::string(value) + "'") << dialect;
}

TEST(Answers, ALiveDatabaseTakesNoConditionAndNoSeparator) {
    ScopedPreference condition(prefs::useIfNotExistsOnTableExport);
    auto container = document("t(a int; index i (a); index u unique (a); index e UNIQUE ())");
    SQLTable& t = *table(*container, "t");
    const auto indexes = t.indexObjectsInTable();
    auto sqlite = exporterOf("SQLite");
    sqlite->setJDBCMetaData(std::make_shared<Engine>());
    EXPECT_EQ(sqlite->getCreateTableString(t), "CREATE TABLE t");
    EXPECT_EQ(sqlite->addIndex(*indexes.at(0)), "CREATE  INDEX i ON t (a);\n");
    auto oracle = exporterOf("Oracle");
    EXPECT_EQ(oracle->addIndex(*indexes.at(2)), "/*ALTER TABLE t ADD CONSTRAINT e UNIQUE ();*/\n");
    oracle->setJDBCMetaData(std::make_shared<Engine>());
    EXPECT_EQ(oracle->addIndex(*indexes.at(1)), "ALTER TABLE t ADD CONSTRAINT u UNIQUE (a)\n");
    EXPECT_EQ(oracle->addIndex(*indexes.at(2)), "ALTER TABLE t ADD CONSTRAINT e UNIQUE ()\n");
}

// === Oracle and FileMaker

TEST(Oracle, TypesAndStatements) {
    auto oracle = exporterOf("Oracle");
    auto container = document("t(a TIMESTAMP; b timestamp; c int)");
    SQLTable& t = *table(*container, "t");
    for (const char* name : {"a", "b"}) t.getFieldByName(name)->setPropertyAsBoolean(keys::timezone, true);
    EXPECT_EQ(oracle->fieldType(*t.getFieldByName("a")), "TIMESTAMP WITH TIMEZONE ");
    EXPECT_EQ(oracle->fieldType(*t.getFieldByName("b")), "timestamp") << "the type word is exact here";
    SQLField& c = *t.getFieldByName("c");
    EXPECT_EQ(oracle->addField(c, t), "ALTER TABLE t ADD  c int;\n");
    EXPECT_EQ(oracle->addColumn(c), "ALTER TABLE t ADD c int");
    EXPECT_EQ(oracle->drop(c), "ALTER TABLE t  DROP COLUMN c");
}

TEST(FileMaker, TypesAndStatements) {
    auto filemaker = create<FilemakerExporter>();
    EXPECT_EQ(filemaker->jdbcFieldTypeFromNative("NUMERIC"), "number");
    EXPECT_EQ(filemaker->jdbcFieldTypeFromNative("Date"), "date");
    EXPECT_EQ(filemaker->jdbcFieldTypeFromNative("Strange"), "Strange");
    const auto words = filemaker->reservedWords();
    for (const char* word : {"ABSOLUTE", "ACTION", "YEAR", "ZONE"})
        EXPECT_NE(std::ranges::find(words, word), words.end()) << word;
    auto container = document("t(a int indexed; b text)");
    SQLTable& t = *table(*container, "t");
    SQLField &a = *t.getFieldByName("a"), &b = *t.getFieldByName("b");
    EXPECT_EQ(filemaker->dropIndex(a, t), "DROP INDEX ON \"t\"(\"a\");\n");
    EXPECT_EQ(filemaker->dropIndex(b, t), "");
    LogCapture log;
    (void)filemaker->alterType(a, b);
    EXPECT_THAT(log.lines(), ElementsAre("newField type = int, curField type text"));
}

// === SQL Server and Sybase

TEST(SqlServer, IndexesAndDrops) {
    auto exporter = create<SQLServerExporter>();
    auto container = document("sales.t(a int pk; index i (a); constraint u UNIQUE (a); constraint x FULLTEXT (a))");
    SQLTable& t = *table(*container, "sales.t");
    const auto indexes = t.indexObjectsInTable();
    EXPECT_EQ(exporter->addIndex(*indexes.at(1)), "CREATE UNIQUE CONSTRAINT u ON sales.t (a);\n");
    EXPECT_EQ(exporter->addIndex(*indexes.at(2)), "");
    EXPECT_EQ(exporter->drop(*indexes.at(0)), "DROP INDEX i ON sales.t");
    EXPECT_EQ(exporter->addColumn(*t.getFieldByName("a")), "ALTER TABLE sales.t ADD a INT NOT NULL");
    EXPECT_EQ(exporter->dropPrimaryKeyInstruction(t, " pk "), "ALTER TABLE sales.t DROP CONSTRAINT pk");
    EXPECT_THAT(scriptOf("SQLServer", "t(a int auto; b int auto)"), HasSubstr("a INT IDENTITY,\nb INT\n"));
}

TEST(Sybase, ThePrimaryKeyGetsAUniqueIndexInFrontOfTheOthers) {
    EXPECT_THAT(postLoadOf("sybase", "s.t(a int pk; b int pk; c int indexed; index i (c))"),
                ElementsAre("CREATE UNIQUE INDEX PrimaryIndex on s.t (a,b)\n", "CREATE  INDEX i ON s.t (c);\n"));
}

// === SQLite

TEST(SQLite, WhatCannotBeAlteredSaysSoOrNothing) {
    auto container = document("sales.t(a INT indexed pk; constraint c UNIQUE (a))");
    auto other = document("sales.t(a TEXT; index old (a))");
    auto exporter = create<SQLiteExporter>();
    SQLTable& owner = *table(*container, "sales.t");
    SQLField& column = *owner.getFieldByName("a");
    EXPECT_EQ(exporter->dropSQLField(column), "/* SQLite cannot drop column sales.t(a)*/");
    EXPECT_EQ(exporter->drop(*owner.indexObjectsInTable().front()), "/* SQLite cannot drop constraint sales.t(c)*/");
    EXPECT_EQ(exporter->alterType(column, *field(*other, "sales.t", "a")), "");
    EXPECT_FALSE(exporter->alterPrimaryKeyForTable(owner, *table(*other, "sales.t"))->isVisible());
    LogCapture log;
    EXPECT_EQ(exporter->dropIndex(column, owner), "DROP INDEX a_idx\n");
    EXPECT_THAT(log.lines().at(0), HasSubstr("dropIndexName = a_idx "));
    column.setProperty(keys::indexedKeyName, "named");
    EXPECT_EQ(exporter->dropIndex(column, owner), "DROP INDEX named\n");
    EXPECT_EQ(exporter->prefixForIndexedProperty(column), "t_");
    auto keyed = document("k(a TEXT pk; b integer pk; c INTEGER pk)");
    for (const char* name : {"a", "b", "c"})
        EXPECT_EQ(exporter->fieldIsFirstIntegerPK(*field(*keyed, "k", name)), *name == 'b') << name;
}

TEST(SQLite, AlteredIndexKeepsItsDoubledSeparator) {
    auto container = document("t(a INT; index i (a))");
    auto other = document("t(a INT; index old (a))");
    SQLIndex& index = *table(*container, "t")->indexObjectsInTable().front();
    SQLIndex& old = *table(*other, "t")->indexObjectsInTable().front();
    const auto changed = [&] { return exporterOf("SQLite")->alterSQLIndex(index, old); };
    EXPECT_EQ(changed(), "DROP INDEX old;;\nADD  INDEX i (a);\n");
    ScopedPreference runnable(prefs::runnableScripts);
    EXPECT_EQ(changed(), "DROP INDEX IF EXISTS old;\nCREATE  INDEX i ON t (a);\n");
    EXPECT_EQ(exporterOf("SQLite")->alterSQLIndex(*SQLIndex::index(), *SQLIndex::index()), "");
    ScopedPreference prefixes(prefs::addTablePrefixToIndexNamesInExport);
    EXPECT_EQ(changed(), "DROP INDEX IF EXISTS t_old;\nCREATE  INDEX t_i ON t (a);\n") << "as it was made";
}

TEST(SQLite, TheFormIsChosenWhenAnExporterIsMade) {
    auto container = document("sales.t(a INT)");
    auto view = SQLView::viewWithName("v");
    view->setQueryString("SELECT a FROM sales.t");
    container->add(view);
    const auto classic = exporterOf("SQLite");
    std::shared_ptr<SQLExportDialect> runnable;
    {
        ScopedPreference preference(prefs::runnableScripts);
        runnable = exporterOf("SQLite")->newInstance();
        EXPECT_THAT(classic->export_(*container), HasSubstr("CREATE VIEW v  AS SELECT a FROM sales.t;"));
    }
    EXPECT_THAT(runnable->export_(*container), HasSubstr("CREATE VIEW v  AS SELECT a FROM sales_t;"));
    EXPECT_NE(dynamic_cast<SQLiteExporter*>(runnable.get()), nullptr) << "the dialect's class, whatever the form";
}

}  // namespace
}  // namespace vellicor
