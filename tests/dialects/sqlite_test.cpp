// tests/dialects/sqlite_test.cpp — SQLite's text, byte for byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/dialects/sqlite_exporter.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(SQLite, AutoincrementNeedsTheTypeSpelledInteger) {
    EXPECT_EQ(columnOf("SQLite", "id integer pk auto"), "id INTEGER PRIMARY KEY");
    EXPECT_EQ(columnOf("SQLite", "id INTEGER pk auto"), "id INTEGER PRIMARY KEY AUTOINCREMENT");
    EXPECT_EQ(columnOf("SQLite", "id INTEGER pk; b INTEGER pk"), "id INTEGER");
}

TEST(SQLite, ColumnsWriteTheDefaultBeforeNotNull) {
    EXPECT_EQ(columnOf("SQLite", "a varchar(9) notnull unique default=x check=a<>'' "), "a VARCHAR(9) DEFAULT 'x' NOT NULL UNIQUE CHECK (a<>'')");
    EXPECT_EQ(columnOf("SQLite", "a text default=Current_Timestamp"), "a TEXT DEFAULT Current_Timestamp");
    EXPECT_EQ(columnOf("SQLite", "a text default=current_time_x"), "a TEXT DEFAULT 'current_time_x'");
}

TEST(SQLite, ReferencesAndKeysStandInline) {
    EXPECT_EQ(scriptOf("SQLite", "b(x INTEGER pk; y INTEGER pk);;a(x INTEGER; y INTEGER -> b.x delete=1 update=3; key k (x,y) -> b(x,y) delete=2)"),
              "\n"
              "\nCREATE TABLE b\n(\nx INTEGER,\ny INTEGER,\nPRIMARY KEY (x,y)\n);\n"
              "\nCREATE TABLE a\n(\nx INTEGER,\ny INTEGER REFERENCES b (x) ON DELETE CASCADE ON UPDATE SET NULL,\n"
              "FOREIGN KEY (x,y) REFERENCES b (x,y) ON DELETE RESTRICT\n);\n"
              "\n");
}

TEST(SQLite, ComponentsStandInThreeGroups) {
    auto container = document("b(x INT pk);;a(x INT; index i (x); key k (x) -> b(x); y INT; index j (y))");
    std::vector<std::string> names;
    for (const auto& component : exporterOf("SQLite")->fieldListForTable(*table(*container, "a"))) names.push_back(component->getName());
    EXPECT_THAT(names, ElementsAre("x", "y", "i", "j", "k"));
}

TEST(SQLite, IndexesFollowTheTables) {
    ScopedPreference exists(prefs::useIfNotExistsOnTableExport);
    EXPECT_THAT(scriptOf("SQLite", "t(a INT indexed; b INT; index i (a,b(3)); index u UNIQUE (b); index e ())"),
                HasSubstr("CREATE TABLE IF NOT EXISTS t\n"));
    EXPECT_THAT(postLoadOf("SQLite", "t(a INT indexed; b INT; index i (a,b(3)); index u UNIQUE (b); index e ())"),
                ElementsAre("CREATE INDEX t_a_idx ON t(a);\n", "CREATE  INDEX IF NOT EXISTS i ON t (a,b);\n",
                            "CREATE UNIQUE INDEX IF NOT EXISTS u ON t (b);\n", "/*CREATE  INDEX IF NOT EXISTS e ON t ();\n*/\n"));
}

TEST(SQLite, WhatCannotBeAlteredSaysSoOrNothing) {
    auto container = document("sales.t(a INT indexed pk; constraint c UNIQUE (a))");
    auto other = document("sales.t(a TEXT; index old (a))");
    auto exporter = create<SQLiteExporter>();
    SQLTable& owner = *table(*container, "sales.t");
    SQLField& column = *owner.getFieldByName("a");
    EXPECT_EQ(exporter->dropSQLField(column), "/* SQLite cannot drop column sales.t(a)*/");
    EXPECT_EQ(exporter->dropSQLConstraint(*as<SQLConstraint>(owner.indexObjectsInTable().front())), "/* SQLite cannot drop constraint sales.t(c)*/");
    EXPECT_EQ(exporter->alterType(column, *field(*other, "sales.t", "a")), "");
    EXPECT_FALSE(exporter->alterPrimaryKeyForTable(owner, *table(*other, "sales.t"))->isVisible());
    LogCapture log;
    EXPECT_EQ(exporter->dropIndex(column, owner), "DROP INDEX a_idx\n");
    EXPECT_THAT(log.lines().at(0), HasSubstr("dropIndexName = a_idx "));
    column.setProperty(keys::indexedKeyName, "named");
    EXPECT_EQ(exporter->dropIndex(column, owner), "DROP INDEX named\n");
    EXPECT_EQ(exporter->prefixForIndexedProperty(column), "t_");
    auto keyed = document("k(a TEXT pk; b integer pk; c INTEGER pk)");
    EXPECT_FALSE(exporter->fieldIsFirstIntegerPK(*field(*keyed, "k", "a")));
    EXPECT_TRUE(exporter->fieldIsFirstIntegerPK(*field(*keyed, "k", "b")));
    EXPECT_FALSE(exporter->fieldIsFirstIntegerPK(*field(*keyed, "k", "c")));
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

TEST(SQLite, ClassicViewsForgetTheNamesOfARunnableScript) {
    auto container = document("sales.t(a INT)");
    auto view = SQLView::viewWithName("v");
    view->setQueryString("SELECT a FROM sales.t");
    container->add(view);
    auto exporter = create<SQLiteExporter>();
    {
        ScopedPreference runnable(prefs::runnableScripts);
        EXPECT_THAT(exporter->export_(*container), HasSubstr("CREATE VIEW v  AS SELECT a FROM sales_t;"));
    }
    EXPECT_EQ(exporter->export_(*view), "CREATE VIEW v  AS SELECT a FROM sales.t;");
}

}  // namespace
}  // namespace vellicor
