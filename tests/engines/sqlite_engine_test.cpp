// tests/engines/sqlite_engine_test.cpp — runnable scripts on SQLite.
#include <gtest/gtest.h>

#include "tests/engines/alter_steps.h"
#include "tests/engines/classic_refusals.h"
#include "tests/engines/engine_steps.h"
#include "tests/engines/generated_documents.h"
#include "tests/engines/import_steps.h"
#include "tests/engines/migration_cases.h"
#include "tests/engines/migration_pairs.h"
#include "tests/engines/sqlite_engine.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {
namespace {

using Default = DocumentTraits::Default;

const DocumentTraits kSQLiteTraits{
    .types = {{"INTEGER", {{"0"}, {"42", true}, {"-7"}, {"1 + 1", true}, {"NULL"}, {"abs(-3)", true}}},
              {"NUMERIC(10,2)", {{"1.5", true}, {"0", true}}},
              {"VARCHAR(40)",
               {{"new"},
                {"it's"},
                {"'quoted'"},
                {"'it''s'"},
                {"''"},
                {"upper('a')", true},
                {"back\\slash"},
                {"*/ -- x;"},
                {"null"}}},
              {"TEXT", {{"say \"hi\""}, {"two\nlines"}, {"lower('A') || 'b'", true}}},
              {"DATE", {{"2024-02-29"}, {"CURRENT_DATE"}}},
              {"TIMESTAMP", {{"CURRENT_TIMESTAMP", true}, {"current_timestamp"}, {"2024-02-29 12:00:00"}}},
              {"BOOLEAN", {{"true"}, {"FALSE"}, {"1", true}}},
              {"DOUBLE PRECISION", {{"2.5", true}}}}};

class SQLiteOn : public ::testing::Test {
protected:
    SQLiteEngine engine;
};

TEST_F(SQLiteOn, ShopKeepsItsRules) { expectExampleOnEngine(engine, "shop"); }
TEST_F(SQLiteOn, WarehouseKeepsItsRules) { expectExampleOnEngine(engine, "warehouse"); }
TEST_F(SQLiteOn, LegacyKeepsItsRules) { expectExampleOnEngine(engine, "legacy"); }
TEST_F(SQLiteOn, AlterStatementsRun) { expectAlterStatementsRun(engine); }
TEST_F(SQLiteOn, ClassicAlterStatementsAreRefused) { expectClassicAlterStatementsAreRefused(engine); }
TEST_F(SQLiteOn, ClassicScriptsAreRefused) { expectClassicScriptsAreRefused(engine); }
TEST_F(SQLiteOn, ClassicScriptsAreMisread) { expectClassicScriptsAreMisread(engine); }
TEST_F(SQLiteOn, AwkwardDocumentsRun) { expectAwkwardDocumentsRun(engine); }
TEST_F(SQLiteOn, GeneratedDocumentsHoldWhatTheySay) { expectGeneratedDocumentsOnEngine(engine, kSQLiteTraits, 200); }
TEST_F(SQLiteOn, MigrationCasesLeadToTheNewDocument) { expectMigrationCasesOnEngine(engine); }
TEST_F(SQLiteOn, GeneratedMigrationsLeadToTheNewDocument) { expectGeneratedMigrationsOnEngine(engine, 1, 150); }

std::unique_ptr<DatabaseConnection> freshSQLite() {
    return DatabaseConnection::open(DatabaseUrl::parse("sqlite::memory:"), DatabaseAccess::ReadWrite);
}

TEST(SQLiteImport, KeepsDocuments) { expectImportsKeepDocuments(freshSQLite, "SQLite", kSQLiteTraits, 60); }

TEST_F(SQLiteOn, KeywordsMayBeNames) {
    ScopedPreference runnable(prefs::runnableScripts);
    expectKeywordsAsNames(engine, true);
}

}  // namespace
}  // namespace vellicor::testing
