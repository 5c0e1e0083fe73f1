// tests/dialects/oracle_filemaker_test.cpp — the text of Oracle, FileMaker and OpenBase, byte for byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/dialects/filemaker_exporter.h"
#include "vellicor/dialects/oracle_exporter.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using namespace testing;
using ::testing::ElementsAre;

std::shared_ptr<OracleSQLExporter> oracle() { return create<OracleSQLExporter>(); }
std::shared_ptr<FilemakerExporter> filemaker() { return create<FilemakerExporter>(); }

TEST(Oracle, ActionsTypesAndStatements) {
    for (std::uint64_t code = 0; code < 7; ++code) {
        const char* expected = code == 1 ? " ON DELETE CASCADE" : code == 3 ? " ON DELETE SET NULL" : "";
        EXPECT_EQ(oracle()->getDeleteActionStringForCode(code), expected);
        EXPECT_EQ(oracle()->getUpdateActionStringForCode(code), "");
    }
    auto container = document("t(a TIMESTAMP; b timestamp; c int; index i (c); index u unique (c,a); index e UNIQUE ())");
    SQLTable& t = *table(*container, "t");
    for (const char* name : {"a", "b"}) t.getFieldByName(name)->setPropertyAsBoolean(keys::timezone, true);
    EXPECT_EQ(oracle()->fieldType(*t.getFieldByName("a")), "TIMESTAMP WITH TIMEZONE ");
    EXPECT_EQ(oracle()->fieldType(*t.getFieldByName("b")), "timestamp") << "the type word is exact here";
    const auto indexes = t.indexObjectsInTable();
    EXPECT_EQ(oracle()->addIndex(*indexes.at(0)), "CREATE  INDEX i ON t (c);\n");
    EXPECT_EQ(oracle()->addIndex(*indexes.at(1)), "ALTER TABLE t ADD CONSTRAINT u UNIQUE (c,a);\n");
    EXPECT_EQ(oracle()->addIndex(*indexes.at(2)), "/*ALTER TABLE t ADD CONSTRAINT e UNIQUE ();*/\n");
    SQLField& c = *t.getFieldByName("c");
    EXPECT_EQ(oracle()->addField(c, t), "ALTER TABLE t ADD  c int;\n");
    EXPECT_EQ(oracle()->addColumn(c), "ALTER TABLE t ADD c int");
    EXPECT_EQ(oracle()->dropSQLField(c), "ALTER TABLE t  DROP COLUMN c");
    EXPECT_EQ(oracle()->viewCreateStringPart("v"), "CREATE OR REPLACE VIEW v ");
}

TEST(Oracle, AlteredColumns) {
    const auto alter = [](std::string_view next, std::string_view current) {
        return altered(next, current, [](SQLField& a, SQLField& b) { return oracle()->alterSQLFieldAsVector(a, b, nullptr); });
    };
    EXPECT_THAT(alter("a int", "a int"), ElementsAre("", ""));
    EXPECT_THAT(alter("a int default=5", "a int"), ElementsAre("", "ALTER TABLE t MODIFY a DEFAULT '5'"));
    EXPECT_THAT(alter("a int", "a int default=5"), ElementsAre("", "ALTER TABLE t MODIFY a DEFAULT NULL"));
    EXPECT_THAT(alter("a number", "a int"), ElementsAre("ALTER TABLE t MODIFY a number", ""));
    EXPECT_THAT(alter("a int notnull", "a int"), ElementsAre("ALTER TABLE t MODIFY a int NOT NULL", ""));
    EXPECT_THAT(alter("a int", "a int notnull"), ElementsAre("ALTER TABLE t MODIFY a int NULL", ""));
    EXPECT_THAT(alter("a int pk", "a int"), ElementsAre("ALTER TABLE t MODIFY a int NOT NULL", ""));
}

TEST(FileMaker, ColumnsAndTypes) {
    const std::pair<const char*, const char*> cases[] = {
        {"a varchar(20)", "\"a\" varchar(20)"}, {"a VARCHAR", "\"a\" VARCHAR"}, {"a BLOB", "\"a\" container"},
        {"a numeric(9)", "\"a\" number"},       {"a strange", "\"a\" strange"},
        {"a date pk notnull unique default=x", "\"a\" date PRIMARY KEY DEFAULT 'x' NOT NULL UNIQUE"}};
    for (const auto& [part, expected] : cases) EXPECT_EQ(columnOf("FileMaker", part), expected);
    EXPECT_EQ(filemaker()->jdbcFieldTypeFromNative("NUMERIC"), "number");
    EXPECT_EQ(filemaker()->jdbcFieldTypeFromNative("Date"), "date");
    EXPECT_EQ(filemaker()->jdbcFieldTypeFromNative("Strange"), "Strange");
}

TEST(FileMaker, ScriptsHoldTablesAndColumnIndexesOnly) {
    EXPECT_EQ(scriptOf("FileMaker", "u(x int pk; y int pk);;t(a int indexed -> u.x; b int check=b>0; key k (b) -> u(x); index i (b))"),
              "\n"
              "\nCREATE TABLE \"u\"\n(\n\"x\" int PRIMARY KEY,\n\"y\" int\n);\n"
              "\nCREATE TABLE \"t\"\n(\n\"a\" int,\n\"b\" int\n);\n"
              "\n"
              "CREATE INDEX ON \"t\"(\"a\");\n");
}

TEST(FileMaker, AlterAndDrop) {
    LogCapture log;
    EXPECT_EQ(altered("a varchar(9)", "a date", [](SQLField& a, SQLField& b) { return filemaker()->alterType(a, b); }),
              "ALTER TABLE \"t\" ALTER COLUMN \"a\" \"a\" varchar(9)");
    EXPECT_EQ(altered("a DATE", "a date", [](SQLField& a, SQLField& b) { return filemaker()->alterType(a, b); }), "");
    EXPECT_THAT(log.lines(), ElementsAre("newField type = varchar(9), curField type date", "newField type = DATE, curField type date"));
    auto container = document("t(a int indexed; b int)");
    SQLTable& t = *table(*container, "t");
    EXPECT_EQ(filemaker()->dropIndex(*t.getFieldByName("a"), t), "DROP INDEX ON \"t\"(\"a\");\n");
    EXPECT_EQ(filemaker()->dropIndex(*t.getFieldByName("b"), t), "");
}

TEST(FileMaker, ItsWords) {
    const auto words = filemaker()->reservedWords();
    for (const char* word : {"ABSOLUTE", "ACTION", "YEAR", "ZONE"}) EXPECT_NE(std::ranges::find(words, word), words.end()) << word;
}

TEST(OpenBase, NamesAreNeverQuotedByPreference) {
    ScopedPreference always(prefs::quoteIdentifiersOnExport);
    EXPECT_EQ(columnOf("OpenBase", "a int pk auto"), "a INT AUTO_INCREMENT ");
}

}  // namespace
}  // namespace vellicor
