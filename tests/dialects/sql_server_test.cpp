// tests/dialects/sql_server_test.cpp — the text of SQL Server and Sybase, byte for byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/dialects/sql_server_exporter.h"
#include "vellicor/dialects/sybase_exporter.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::shared_ptr<SQLServerExporter> sqlServer() { return create<SQLServerExporter>(); }

TEST(SqlServer, Columns) {
    const std::pair<const char*, const char*> cases[] = {
        {"a varchar(50)", "a varchar(50)"},     {"a int(11)", "a INT"},          {"a strange(3)", "a strange(3)"},
        {"a int auto", "a INT IDENTITY"},       {"a int pk", "a INT NOT NULL"},  {"a int default=NULL", "a INT DEFAULT NULL"},
        {"my~a int default=x~y", "mya INT DEFAULT xy"}, {"a int notnull check=a>0", "a INT NOT NULL CHECK (a>0)"},
        {"order int default=order", "order INT DEFAULT order"}};
    for (const auto& [part, expected] : cases) EXPECT_EQ(columnOf("SQLServer", part), expected);
    ScopedPreference reserved(prefs::quoteReservedWords);
    EXPECT_EQ(columnOf("SQLServer", "order int default=order"), "[order] INT DEFAULT order") << "only the name is a name";
    ScopedPreference whitespace(prefs::autoQuoteIdentifiersWithWhitespace);
    EXPECT_EQ(columnOf("SQLServer", "my~a int default=x~y"), "[my a] INT DEFAULT [x y]");
    ScopedPreference nullable(prefs::sqlServerAddNullable);
    EXPECT_EQ(columnOf("SQLServer", "a int"), "a INT NULL");
    ScopedPreference runnable(prefs::runnableScripts);
    EXPECT_EQ(columnOf("SQLServer", "a varchar(9) default=x~y"), "a varchar(9) NULL DEFAULT 'x y'");
    EXPECT_EQ(columnOf("SQLServer", "a int default=5"), "a INT NULL DEFAULT 5");
    EXPECT_EQ(columnOf("SQLServer", "a datetime default=getdate()"), "a DATETIME NULL DEFAULT getdate()");
}

TEST(SqlServer, OnlyTheFirstAutoIncrementColumnIsIdentity) {
    EXPECT_THAT(scriptOf("SQLServer", "t(a int auto; b int auto)"), HasSubstr("a INT IDENTITY,\nb INT\n"));
}

TEST(SqlServer, UniqueColumnsAreNamedConstraints) {
    EXPECT_EQ(scriptOf("SQLServer", "sales.my~t(a int pk; b int unique; c int unique)"),
              "\n\nCREATE TABLE sales.myt\n(\na INT NOT NULL,\nb INT,\nc INT,\n"
              "CONSTRAINT myt_pkey PRIMARY KEY (a),\nCONSTRAINT sales_myt_b_unique UNIQUE (b),\nCONSTRAINT sales_myt_c_unique UNIQUE (c)\n);\n\n");
}

TEST(SqlServer, IndexesAndDrops) {
    auto container = document("sales.t(a int pk; index i (a); constraint u UNIQUE (a); constraint x FULLTEXT (a))");
    SQLTable& t = *table(*container, "sales.t");
    const auto indexes = t.indexObjectsInTable();
    EXPECT_EQ(sqlServer()->addIndex(*indexes.at(0)), "CREATE  INDEX i ON sales.t (a);\n");
    EXPECT_EQ(sqlServer()->addIndex(*indexes.at(1)), "CREATE UNIQUE CONSTRAINT u ON sales.t (a);\n");
    EXPECT_EQ(sqlServer()->addIndex(*indexes.at(2)), "");
    EXPECT_EQ(sqlServer()->dropSQLIndex(*indexes.at(0)), "DROP INDEX i ON sales.t");
    EXPECT_EQ(sqlServer()->addColumn(*t.getFieldByName("a")), "ALTER TABLE sales.t ADD a INT NOT NULL");
    EXPECT_EQ(sqlServer()->dropPrimaryKeyInstruction(t, " pk "), "ALTER TABLE sales.t DROP CONSTRAINT pk");
    EXPECT_EQ(sqlServer()->dropPrimaryKeyInstruction(t, std::nullopt),
              "/*[WARNING] Drop primary key contraint instruction requires that constraint name is set for primary key being dropped*/\n"
              "/* ALTER TABLE sales.t DROP CONSTRAINT  (primary key)*/");
    ScopedPreference find(prefs::sqlServerFindPKNameForDrop);
    EXPECT_EQ(sqlServer()->dropPrimaryKeyInstruction(t, ""),
              "/* (need to discover primary key name first) */\nDECLARE @SQL VARCHAR(4000);\n"
              "SET @SQL = 'ALTER TABLE sales.t DROP CONSTRAINT |ConstraintName| ;'\n"
              "SET @SQL = REPLACE(@SQL, '|ConstraintName|', ( SELECT   name FROM     sysobjects WHERE    xtype = 'PK' AND parent_obj = OBJECT_ID('sales.t') ));\n"
              "EXEC (@SQL)");
}

TEST(SqlServer, AlteredColumns) {
    const auto alter = [](std::string_view next, std::string_view current) {
        return altered(next, current, [](SQLField& a, SQLField& b) { return sqlServer()->alterSQLFieldAsVector(a, b, nullptr); });
    };
    EXPECT_THAT(alter("a int", "a int"), ElementsAre(""));
    EXPECT_THAT(alter("a bigint", "a int"), ElementsAre("ALTER TABLE t ALTER COLUMN a bigint NULL"));
    EXPECT_THAT(alter("a int notnull", "a int"), ElementsAre("ALTER TABLE t ALTER COLUMN a int NOT NULL"));
    EXPECT_THAT(alter("a int pk", "a int pk notnull"), ElementsAre("")) << "a key is not null anyway";
    EXPECT_THAT(alter("a int pk", "a int"), ElementsAre("ALTER TABLE t ALTER COLUMN a int NOT NULL"));
    EXPECT_THAT(alter("a int pk notnull", "a int notnull"), ElementsAre(""));
}

TEST(Sybase, StatementsEndInGoWhereTheUserWantsIt) {
    ScopedPreference go(prefs::sybaseUseGo);
    EXPECT_EQ(scriptOf("sybase", "t(a int notnull auto)"), "\n\nCREATE TABLE t\n(\na INT NOT NULL IDENTITY\n)\ngo\n\n");
}

TEST(Sybase, ThePrimaryKeyGetsAUniqueIndexInFrontOfTheOthers) {
    EXPECT_THAT(postLoadOf("sybase", "s.t(a int pk; b int pk; c int indexed; index i (c))"),
                ElementsAre("CREATE UNIQUE INDEX PrimaryIndex on s.t (a,b)\n", "CREATE  INDEX i ON s.t (c);\n"));
    EXPECT_THAT(postLoadOf("sybase", "t(a int; index i (a))"), ElementsAre("CREATE  INDEX i ON t (a);\n"));
}

}  // namespace
}  // namespace vellicor
