// tests/dialects/postgresql_test.cpp — what no whole script shows of PostgreSQL.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/dialects/postgresql_exporter.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using namespace testing;
using ::testing::ElementsAre;

/// In the form that is set when it is made.
std::shared_ptr<PostgresqlExporter> postgres() {
    return std::dynamic_pointer_cast<PostgresqlExporter>(exporterOf("postgres"));
}

TEST(Postgresql, TypesWithTimeZones) {
    auto container = document("t(a timestamp(3); b date)");
    for (const char* name : {"a", "b"}) field(*container, "t", name)->setPropertyAsBoolean(keys::timezone, true);
    EXPECT_EQ(postgres()->fieldType(*field(*container, "t", "a")), "timestamp(3) WITH TIME ZONE ");
    EXPECT_EQ(postgres()->fieldType(*field(*container, "t", "b")), "date");
}

TEST(Postgresql, DefaultsAreQuotedByTypeAndValue) {
    auto container = document("t(a timestamp; b int; c varchar(9); d text expression=now())");
    const auto quoted = [&](const char* column, const char* value) {
        return postgres()->quoteDefaultValue(value, *field(*container, "t", column));
    };
    const char* bare[] = {"CURRENT_TIMESTAMP", "current_timestamp (3)", "localtime(3) x", "LocalTime", "null", "'x'"};
    for (const char* value : bare) EXPECT_EQ(quoted("a", value), value);
    EXPECT_EQ(quoted("a", "now()"), "'now()'");
    EXPECT_EQ(quoted("a", "current_timestamp()"), "'current_timestamp()'");
    EXPECT_EQ(quoted("b", "5"), "5");
    EXPECT_EQ(quoted("c", "it's"), R"('it\'s')");
    EXPECT_EQ(quoted("d", "now()"), "now()");
    ScopedPreference runnable(prefs::runnableScripts);
    EXPECT_EQ(quoted("c", "it's"), "'it''s'");
}

TEST(Postgresql, PrimaryKeysAreNamedOnlyWhenTheyWereGivenAName) {
    auto container = document("t(a int pk)");
    SQLTable& t = *table(*container, "t");
    const auto block = [&] { return postgres()->primaryKeyBlock(t)->string(); };
    EXPECT_EQ(block(), "CONSTRAINT PRIMARY KEY (a)");
    {
        ScopedPreference runnable(prefs::runnableScripts);
        EXPECT_EQ(block(), "CONSTRAINT t_pkey PRIMARY KEY (a)");
    }
    t.setPrimaryKeyConstraintName("");
    EXPECT_EQ(block(), "CONSTRAINT t_pkey PRIMARY KEY (a)");
    t.setPrimaryKeyConstraintName("pk");
    EXPECT_EQ(postgres()->dropPrimaryKeyInstruction(t)->string(), "ALTER TABLE t DROP CONSTRAINT pk CASCADE;");
}

TEST(Postgresql, TablespacesAndDrops) {
    auto container = document("t(a int)"), other = document("t(a int)");
    SQLTable& t = *table(*container, "t");
    t.setProperty(keys::tablespace, "fast");
    EXPECT_EQ(postgres()->exportSQLTable(t), "CREATE TABLE t\n(\na int\n) TABLESPACE fast;\n\n");
    EXPECT_THAT(postgres()->alterAsVector(t, *table(*other, "t"), nullptr),
                ElementsAre("ALTER TABLE t SET TABLESPACE \"fast\"", ""));
    EXPECT_EQ(postgres()->changeOwnerToCurrent(t), "ALTER TABLE t OWNER TO current_user");
    auto exporter = postgres();
    EXPECT_EQ(exporter->dropTable(t), "");
    container->documentInfo()->setDropTableOption(true);
    exporter->setDocumentInfo(shared(container->documentInfo()));
    EXPECT_EQ(exporter->dropTable(t), "\nDROP TABLE IF EXISTS t CASCADE;\n\n");
}

TEST(Postgresql, ConstraintsAndKeysSayWhenTheyAreChecked) {
    auto container = document("t(a int; b int; index u UNIQUE (a,b); constraint c CHECK [a > 0])");
    const auto indexes = table(*container, "t")->indexObjectsInTable();
    indexes.at(0)->setDeferrable(true);
    indexes.at(0)->setInitiallyDeferred(true);
    EXPECT_EQ(postgres()->addIndex(*indexes.at(0)),
              "ALTER TABLE t ADD CONSTRAINT u UNIQUE (a,b) DEFERRABLE INITIALLY DEFERRED;\n");
    EXPECT_EQ(postgres()->addConstraint(*indexes.at(1)), "ALTER TABLE t  ADD CONSTRAINT c CHECK (a > 0);\n");

    container = document("u(x int pk);;t(a int; key k (a) -> u(x); key old (a) -> u(x) deferrable deferred)");
    const auto keys = table(*container, "t")->foreignKeyObjectsInTable();
    auto exporter = postgres();
    const auto deferral = [&](SQLForeignKey* old) {
        return exporter->foreignKeyDeferredBlock(*keys.at(0), old)->string();
    };
    EXPECT_EQ(deferral(keys.at(1)), "NOT DEFERRABLE INITIALLY IMMEDIATE");
    EXPECT_EQ(deferral(nullptr), "");
    exporter->setAddExplicitDeferrable(true);
    EXPECT_EQ(deferral(nullptr), "NOT DEFERRABLE");
}

TEST(Postgresql, ConstraintsCompareTheirInitialStateWithTheOldDeferrability) {
    auto container = document("t(a int; constraint new UNIQUE (a); constraint old UNIQUE (a))");
    const auto indexes = table(*container, "t")->indexObjectsInTable();
    indexes.at(1)->setDeferrable(true);
    const auto deferral = [&] {
        return postgres()->constraintDeferrableBlock(*indexes.at(0), indexes.at(1))->string();
    };
    EXPECT_EQ(deferral(), " NOT DEFERRABLE INITIALLY IMMEDIATE");
    indexes.at(1)->setDeferrable(false);
    indexes.at(1)->setInitiallyDeferred(true);
    EXPECT_EQ(deferral(), "");
    EXPECT_EQ(postgres()->alterSQLConstraint(*as<SQLConstraint>(indexes.at(0)), *as<SQLConstraint>(indexes.at(1))),
              "ALTER TABLE t DROP CONSTRAINT old, ADD CONSTRAINT new UNIQUE (a);\n");
}

TEST(Postgresql, CommentStatementsComeOnceAndEndInRunnableScripts) {
    ScopedPreference statements(prefs::usePostgresComments);
    ScopedPreference runnable(prefs::runnableScripts);
    auto container = document("s.t(a int comment=it's)");
    table(*container, "s.t")->setComment("note");
    EXPECT_THAT(postgres()->postLoadAsVectorSQLContainer(*container),
                ElementsAre("COMMENT ON COLUMN s.t.a is 'it''s';", "COMMENT ON TABLE s.t is 'note';"));
}

}  // namespace
}  // namespace vellicor
