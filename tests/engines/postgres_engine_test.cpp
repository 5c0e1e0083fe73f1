// tests/engines/postgres_engine_test.cpp — runnable scripts on PostgreSQL.
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

const DocumentTraits kPostgresTraits{
    .types = {{"INTEGER", {{"0"}, {"42", true}, {"-7"}, {"1 + 1", true}, {"NULL"}, {"'5'"}}},
              {"BIGINT", {{"12345678901"}}},
              {"NUMERIC(10,2)", {{"1.50"}, {"0", true}}},
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
              {"TEXT", {{"say \"hi\""}, {"two\nlines"}, {"lower('A') || 'b'", true}, {"null"}}},
              {"CHAR(8)", {{"12345678"}}},
              {"DATE", {{"2024-02-29"}, {"CURRENT_DATE"}}},
              {"TIMESTAMP",
               {{"CURRENT_TIMESTAMP", true}, {"current_timestamp(3)"}, {"2024-02-29 12:00:00"}, {"now()"}}},
              {"TIMESTAMP", {{"now()"}}, true, false, true},
              {"INTERVAL", {{"1 day"}}},
              {"BOOLEAN", {{"true"}, {"FALSE"}, {"0"}, {"1"}}},
              {"UUID", {{"00000000-0000-0000-0000-000000000001"}}},
              {"JSONB", {{"{\"a\": \"f(x)\"}"}, {"'[]'::jsonb", true}}, false},
              {"BIT(4)", {{"B'0101'", true}}},
              {"DOUBLE PRECISION", {{"2.5"}}}}};

class PostgreSQLOn : public ServerFixture<PostgresServer> {};

TEST_F(PostgreSQLOn, ShopKeepsItsRules) { expectExampleOnEngine(engine(), "shop"); }
TEST_F(PostgreSQLOn, WarehouseKeepsItsRules) { expectExampleOnEngine(engine(), "warehouse"); }
TEST_F(PostgreSQLOn, LegacyKeepsItsRules) { expectExampleOnEngine(engine(), "legacy"); }
TEST_F(PostgreSQLOn, AlterStatementsRun) { expectAlterStatementsRun(engine()); }
TEST_F(PostgreSQLOn, ClassicAlterStatementsAreRefused) { expectClassicAlterStatementsAreRefused(engine()); }
TEST_F(PostgreSQLOn, ClassicScriptsAreRefused) { expectClassicScriptsAreRefused(engine()); }
TEST_F(PostgreSQLOn, ClassicScriptsAreMisread) { expectClassicScriptsAreMisread(engine()); }
TEST_F(PostgreSQLOn, AwkwardDocumentsRun) { expectAwkwardDocumentsRun(engine()); }
TEST_F(PostgreSQLOn, GeneratedDocumentsHoldWhatTheySay) { expectGeneratedDocumentsOnEngine(engine(), kPostgresTraits, 60); }
TEST_F(PostgreSQLOn, MigrationCasesLeadToTheNewDocument) { expectMigrationCasesOnEngine(engine()); }
TEST_F(PostgreSQLOn, GeneratedMigrationsLeadToTheNewDocument) { expectGeneratedMigrationsOnEngine(engine(), 1, 6); }

TEST_F(PostgreSQLOn, ImportsKeepDocuments) {
    expectImportsKeepDocuments(freshDatabasesOf(engine()), "postgres", kPostgresTraits, 25);
}

TEST_F(PostgreSQLOn, KeywordsMayBeNames) {
    ScopedPreference runnable(prefs::runnableScripts);
    expectKeywordsAsNames(engine(), true);
}

TEST_F(PostgreSQLOn, DeferredKeysWaitForTheEndOfTheTransaction) {
    ScopedPreference runnable(prefs::runnableScripts);
    engine().clear();
    ASSERT_EQ(
        engine().run(scriptOf("postgres", "b(x INTEGER pk);;a(x INTEGER; key k (x) -> b(x) deferrable deferred)")), "");
    EXPECT_EQ(engine().run("BEGIN; INSERT INTO a VALUES (1); INSERT INTO b VALUES (1); COMMIT;"), "");
    EXPECT_NE(engine().run("BEGIN; INSERT INTO a VALUES (2); COMMIT;"), "");
}

}  // namespace
}  // namespace vellicor::testing
