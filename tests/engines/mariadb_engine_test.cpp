// tests/engines/mariadb_engine_test.cpp — runnable scripts of the dialect MySQL on MariaDB.
#include <gtest/gtest.h>

#include "tests/engines/alter_steps.h"
#include "tests/engines/classic_refusals.h"
#include "tests/engines/engine_steps.h"
#include "tests/engines/generated_documents.h"
#include "tests/engines/import_steps.h"
#include "tests/engines/migration_cases.h"
#include "tests/engines/migration_pairs.h"
#include "tests/engines/server_fixture.h"
#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {
namespace {

const DocumentTraits kMariaDBTraits{
    .types = {{"INTEGER", {{"0"}, {"42", true}, {"-7"}, {"1 + 1", true}, {"NULL"}, {"'5'"}}},
              {"INT", {{"7"}}, true, true},
              {"BIGINT", {{"12345678901"}}},
              {"DECIMAL(10,2)", {{"1.50"}, {"0.00", true}}},
              {"VARCHAR(40)",
               {{"new"},
                {"it's"},
                {"'quoted'"},
                {"'it''s'"},
                {"''"},
                {"upper('a')", true},
                {"back\\slash"},
                {"*/ -- x;"},
                {"now()"}}},
              {"TEXT", {{"say \"hi\""}}},
              {"DATE", {{"2024-02-29"}, {"CURRENT_DATE"}, {"curdate()"}}},
              {"DATETIME", {{"CURRENT_TIMESTAMP"}, {"now()"}, {"2024-02-29 12:00:00"}}},
              {"TIMESTAMP", {{"CURRENT_TIMESTAMP", true}, {"current_timestamp"}, {"2024-02-29 12:00:00"}, {"NULL"}}},
              {"BOOLEAN", {{"true"}, {"FALSE"}, {"0"}}},
              {"JSON", {{"{\"a\": \"f(x)\"}"}}, false},
              {"ENUM('a','b')", {{"a"}}},
              {"YEAR", {{"2024"}}},
              {"DOUBLE", {{"2.5"}}}},
    .keysLeaveSchemas = false};

class MariaDBOn : public ServerFixture<MariaDBServer> {};

TEST_F(MariaDBOn, ShopKeepsItsRules) { expectExampleOnEngine(engine(), "shop"); }
TEST_F(MariaDBOn, WarehouseKeepsItsRules) { expectExampleOnEngine(engine(), "warehouse"); }
TEST_F(MariaDBOn, LegacyKeepsItsRules) { expectExampleOnEngine(engine(), "legacy"); }
TEST_F(MariaDBOn, AlterStatementsRun) { expectAlterStatementsRun(engine()); }
TEST_F(MariaDBOn, ClassicAlterStatementsAreRefused) { expectClassicAlterStatementsAreRefused(engine()); }
TEST_F(MariaDBOn, ClassicScriptsAreRefused) { expectClassicScriptsAreRefused(engine()); }
TEST_F(MariaDBOn, ClassicScriptsAreMisread) { expectClassicScriptsAreMisread(engine()); }
TEST_F(MariaDBOn, AwkwardDocumentsRun) { expectAwkwardDocumentsRun(engine()); }
TEST_F(MariaDBOn, GeneratedDocumentsHoldWhatTheySay) { expectGeneratedDocumentsOnEngine(engine(), kMariaDBTraits, 60); }
TEST_F(MariaDBOn, MigrationCasesLeadToTheNewDocument) { expectMigrationCasesOnEngine(engine()); }
TEST_F(MariaDBOn, GeneratedMigrationsLeadToTheNewDocument) { expectGeneratedMigrationsOnEngine(engine(), 1, 6); }

TEST_F(MariaDBOn, ImportsKeepDocuments) {
    expectImportsKeepDocuments(freshDatabasesOf(engine()), "mysql", kMariaDBTraits, 0);
}

TEST_F(MariaDBOn, KeywordsMayBeNames) {
    ScopedPreference runnable(prefs::runnableScripts);
    expectKeywordsAsNames(engine(), false);
}

TEST_F(MariaDBOn, CommentsAreCutAtTheLimitOfTheServer) {
    ScopedPreference runnable(prefs::runnableScripts);
    auto made = document("t(a INTEGER)");
    std::string text;
    for (int i = 0; i < 2100; ++i) text += "ß";
    table(*made, "t")->setComment(text);
    field(*made, "t", "a")->setComment(text);
    engine().clear();
    ASSERT_EQ(engine().run(scriptOf("mysql", *made)), "");
    EXPECT_EQ(engine().query(
                  "SELECT CHAR_LENGTH(table_comment), CHAR_LENGTH(column_comment) FROM information_schema.tables"
                  " JOIN information_schema.columns USING (table_schema, table_name) WHERE table_schema = 'vellicor'"),
              (Rows{{"2048", "1024"}}));
}

}  // namespace
}  // namespace vellicor::testing
