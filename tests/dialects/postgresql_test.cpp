// tests/dialects/postgresql_test.cpp — the text of PostgreSQL and Redshift, byte for byte.
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
using ::testing::HasSubstr;

std::shared_ptr<PostgresqlExporter> postgres() { return create<PostgresqlExporter>(); }

TEST(Postgresql, ColumnTypes) {
    const std::pair<const char*, const char*> cases[] = {
        {"id bigint auto", "id BIGSERIAL"},       {"id INT(11) auto", "id SERIAL"},    {"a varchar(20)", "a varchar(20)"},
        {"a integer(11)", "a integer"},           {"a numeric(10,2)", "a numeric(10,2)"}, {"a text unique", "a text UNIQUE "},
        {"a int notnull default=0 check=a>0", "a int NOT NULL DEFAULT 0 CHECK (a>0)"}};
    for (const auto& [part, expected] : cases) EXPECT_EQ(columnOf("postgres", part), expected);
    auto container = document("t(a timestamp(3); b date)");
    for (const char* name : {"a", "b"}) field(*container, "t", name)->setPropertyAsBoolean(keys::timezone, true);
    EXPECT_EQ(postgres()->fieldType(*field(*container, "t", "a")), "timestamp(3) WITH TIME ZONE ");
    EXPECT_EQ(postgres()->fieldType(*field(*container, "t", "b")), "date");
    ScopedPreference upper(prefs::postgresTypesUppercase);
    EXPECT_EQ(columnOf("postgres", "a varchar(20)"), "a VARCHAR(20)");
}

TEST(Postgresql, NamesAreQuotedByTheirCase) {
    ScopedPreference characters(prefs::autoQuoteIdentifiersWithInvalidCharacters);
    const std::pair<const char*, bool> cases[] = {{"abc_1$", false}, {"ABC", false}, {"aBc", true}, {"_9", false}, {"9a", true},
                                                  {"a b", true},     {"été", false}, {"日本", true}, {"", false}};
    for (const auto& [name, quoted] : cases) EXPECT_EQ(postgres()->objectNameRequiresQuoting(name), quoted) << name;
    ScopedPreference lowerOnly(prefs::postgresQuoteSolelyUppercaseIdentifiers);
    EXPECT_TRUE(postgres()->objectNameRequiresQuoting("ABC"));
    EXPECT_FALSE(postgres()->objectNameRequiresQuoting("abc"));
}

TEST(Postgresql, DefaultsAreQuotedByTypeAndValue) {
    auto container = document("t(a timestamp; b int; c varchar(9); d text expression=now())");
    const auto quoted = [&](const char* column, const char* value) {
        return postgres()->quoteDefaultValue(value, *field(*container, "t", column));
    };
    const char* bare[] = {"CURRENT_TIMESTAMP", "current_timestamp (3)", "localtime(3) x", "LocalTime", "null", "'x'", "current_date"};
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
    EXPECT_EQ(block(), "CONSTRAINT pk PRIMARY KEY (a)");
}

TEST(Postgresql, TablesDropsAndTablespaces) {
    auto container = document("t(a int)");
    SQLTable& t = *table(*container, "t");
    t.setComment("note");
    t.setProperty(keys::tablespace, "fast");
    EXPECT_EQ(postgres()->exportSQLTable(t), "/*note*/\nCREATE TABLE t\n(\na int\n) TABLESPACE fast;\n\n");
    EXPECT_EQ(postgres()->dropTableInstruction(t), "DROP TABLE IF EXISTS t CASCADE;\n");
    auto exporter = postgres();
    EXPECT_EQ(exporter->dropTable(t), "");
    container->documentInfo()->setDropTableOption(true);
    exporter->setDocumentInfo(shared(container->documentInfo()));
    EXPECT_EQ(exporter->dropTable(t), "\nDROP TABLE IF EXISTS t CASCADE;\n\n");
}

TEST(Postgresql, RunnableScriptsCreateEachSchemaOnce) {
    constexpr auto design = "s.t(a int);;s.u(b int)";
    const std::string tables = "\nCREATE TABLE s.t\n(\na int\n);\n\nCREATE TABLE s.u\n(\nb int\n);\n\n";
    EXPECT_EQ(scriptOf("postgres", design), "\n" + tables);
    ScopedPreference runnable(prefs::runnableScripts);
    EXPECT_EQ(scriptOf("postgres", design), "\nCREATE SCHEMA IF NOT EXISTS s;\n" + tables);
}

TEST(Postgresql, UniqueIndexesAreConstraints) {
    auto container = document("t(a int; b int; index i (a,b); index u UNIQUE (a,b); constraint c CHECK [a > 0])");
    SQLTable& t = *table(*container, "t");
    const auto indexes = t.indexObjectsInTable();
    EXPECT_EQ(postgres()->addIndex(*indexes.at(0)), "CREATE  INDEX i ON t (a,b);\n");
    EXPECT_EQ(postgres()->addIndex(*indexes.at(1)), "ALTER TABLE t ADD CONSTRAINT u UNIQUE (a,b);\n");
    indexes.at(1)->setDeferrable(true);
    indexes.at(1)->setInitiallyDeferred(true);
    EXPECT_EQ(postgres()->addIndex(*indexes.at(1)), "ALTER TABLE t ADD CONSTRAINT u UNIQUE (a,b) DEFERRABLE INITIALLY DEFERRED;\n");
    EXPECT_EQ(postgres()->addConstraint(*indexes.at(2)), "ALTER TABLE t  ADD CONSTRAINT c CHECK (a > 0);\n");
}

TEST(Postgresql, ForeignKeysSayWhenTheyAreChecked) {
    EXPECT_THAT(postLoadOf("postgres", "u(x int pk);;t(a int; key k (a) -> u(x) delete=1 deferrable deferred)"),
                ElementsAre("ALTER TABLE t ADD CONSTRAINT k FOREIGN KEY (a) REFERENCES u (x) ON DELETE CASCADE  DEFERRABLE INITIALLY DEFERRED;\n"));
    auto container = document("u(x int pk);;t(a int; key k (a) -> u(x); key old (a) -> u(x) deferrable deferred)");
    const auto keys = table(*container, "t")->foreignKeyObjectsInTable();
    EXPECT_EQ(postgres()->foreignKeyDeferredBlock(*keys.at(0), keys.at(1))->string(), "NOT DEFERRABLE INITIALLY IMMEDIATE");
    EXPECT_EQ(postgres()->foreignKeyDeferredBlock(*keys.at(0), nullptr)->string(), "");
    auto exporter = postgres();
    exporter->setAddExplicitDeferrable(true);
    EXPECT_EQ(exporter->foreignKeyDeferredBlock(*keys.at(0), nullptr)->string(), "NOT DEFERRABLE");
}

TEST(Postgresql, ConstraintsCompareTheirInitialStateWithTheOldDeferrability) {
    auto container = document("t(a int; constraint new UNIQUE (a); constraint old UNIQUE (a))");
    const auto indexes = table(*container, "t")->indexObjectsInTable();
    indexes.at(1)->setDeferrable(true);
    EXPECT_EQ(postgres()->constraintDeferrableBlock(*indexes.at(0), indexes.at(1))->string(), " NOT DEFERRABLE INITIALLY IMMEDIATE");
    indexes.at(1)->setDeferrable(false);
    indexes.at(1)->setInitiallyDeferred(true);
    EXPECT_EQ(postgres()->constraintDeferrableBlock(*indexes.at(0), indexes.at(1))->string(), "");
    EXPECT_EQ(postgres()->alterSQLConstraint(*as<SQLConstraint>(indexes.at(0)), *as<SQLConstraint>(indexes.at(1))),
              "ALTER TABLE t DROP CONSTRAINT old, ADD CONSTRAINT new UNIQUE (a);\n");
}

TEST(Postgresql, CommentsAsStatements) {
    ScopedPreference statements(prefs::usePostgresComments);
    auto container = document("s.t(a int comment=it's)");
    table(*container, "s.t")->setComment("note");
    constexpr auto column = R"(COMMENT ON COLUMN s.t.a is 'it\'s')";
    auto exporter = postgres();
    EXPECT_THAT(exporter->postLoadAsVectorSQLContainer(*container), ElementsAre(column, column, "COMMENT ON TABLE s.t is 'note'"));
    EXPECT_THAT(exporter->exportSQLTable(*table(*container, "s.t")), ::testing::Not(HasSubstr("/*note*/")));
    ScopedPreference runnable(prefs::runnableScripts);
    EXPECT_THAT(exporter->postLoadAsVectorSQLContainer(*container),
                ElementsAre("COMMENT ON COLUMN s.t.a is 'it''s';", "COMMENT ON TABLE s.t is 'note';"));
}

TEST(Postgresql, AlteredColumnsWriteOneStatementAnAttribute) {
    const auto alter = [](std::string_view next, std::string_view current) {
        return altered(next, current, [](SQLField& a, SQLField& b) {
            Statements statements = postgres()->alterSQLFieldAsVector(a, b, nullptr);
            EXPECT_EQ(statements.size(), 5u);
            std::erase(statements, "");
            return statements;
        });
    };
    EXPECT_THAT(alter("a int", "a int"), ElementsAre());
    EXPECT_THAT(alter("a bigint", "a int"), ElementsAre("ALTER TABLE t ALTER COLUMN a TYPE bigint"));
    EXPECT_THAT(alter("a int notnull", "a int"), ElementsAre("ALTER TABLE t ALTER COLUMN a SET NOT NULL"));
    EXPECT_THAT(alter("a int", "a int notnull"), ElementsAre("ALTER TABLE t ALTER COLUMN a DROP NOT NULL"));
    EXPECT_THAT(alter("a text default=x", "a text"), ElementsAre("ALTER TABLE t ALTER COLUMN a SET DEFAULT 'x'"));
    EXPECT_THAT(alter("a text", "a text default=x"), ElementsAre("ALTER TABLE t ALTER COLUMN a DROP DEFAULT"));
}

TEST(Postgresql, AlteredTablesAndDrops) {
    auto next = document("t(a int pk; index i (a); constraint c UNIQUE (a))");
    auto current = document("t(a int pk)");
    SQLTable& t = *table(*next, "t");
    t.setProperty(keys::tablespace, "fast");
    EXPECT_THAT(postgres()->alterAsVector(t, *table(*current, "t")), ElementsAre("ALTER TABLE t SET TABLESPACE \"fast\"", ""));
    EXPECT_EQ(postgres()->changeOwnerToCurrent(t), "ALTER TABLE t OWNER TO current_user");
    t.setPrimaryKeyConstraintName("pk");
    EXPECT_EQ(postgres()->dropPrimaryKeyInstruction(t)->string(), "ALTER TABLE t DROP CONSTRAINT pk CASCADE;");
}

TEST(Postgresql, RedshiftDiffersInItsNameOnly) {
    constexpr auto design = "u(x int pk);;t(id bigint auto; a varchar(9) unique; b int; key k (b) -> u(x) deferrable; index i UNIQUE (a))";
    EXPECT_EQ(scriptOf("Redshift", design), scriptOf("postgres", design));
    ScopedPreference title(prefs::includeTitleHeaderInExport);
    EXPECT_THAT(scriptOf("Redshift", design), ::testing::StartsWith("/* Vellicor (Redshift)*/\n"));
}

}  // namespace
}  // namespace vellicor
