// tests/cli/import_test.cpp — databases as sources of the tool.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/tool_run.h"

namespace vellicor::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const char* const kShop =
    "CREATE TABLE customer (id INTEGER PRIMARY KEY AUTOINCREMENT, email VARCHAR(80) UNIQUE COLLATE NOCASE);\n"
    "CREATE TABLE bill (no INTEGER, customer INT REFERENCES customer, total NUMERIC(10,2) DEFAULT 0,\n"
    "  CONSTRAINT bill_pk PRIMARY KEY (no), CONSTRAINT positive CHECK (total >= 0 /* sum ) */));\n"
    "CREATE INDEX late ON bill (lower(total) DESC) WHERE total > 9;\n"
    "CREATE VIEW open AS SELECT * FROM bill;\n"
    "CREATE TRIGGER t AFTER INSERT ON bill BEGIN SELECT 1; END;\n";

TEST(Import, MakesADocumentOfAFileOfSQL) {
    const ToolRun tool;
    tool.write("shop.sql", kShop);
    const Outcome made = tool({"import", "shop.sql", "-d", "sqlite3", "-o", "shop.xml"});
    EXPECT_EQ(made.code, 0);
    EXPECT_THAT(made.err, HasSubstr("warning: the document does not hold trigger t of table bill"));
    const std::string first = tool.content("shop.xml");
    EXPECT_EQ(tool({"import", "shop.sql", "-d", "sqlite", "-o", "-", "-q"}).out, first);
    for (const char* fact : {"<queryString><![CDATA[SELECT * FROM bill]]>", "<checkConstraint><![CDATA[total >= 0]]>",
                             "<indexParts><![CDATA[(lower(total)) DESC]]>", "<indexCondition><![CDATA[total > 9]]>",
                             "<columnCollation><![CDATA[NOCASE]]>", "<PK_KEY_NAME><![CDATA[bill_pk]]>"})
        EXPECT_THAT(first, HasSubstr(fact));
    EXPECT_EQ(tool({"import", "shop.sql", "-d", "sqlite", "-o", "other.xml", "--strict"}).code, 1);
    EXPECT_EQ(tool({"info", "sqlite:shop.xml"}).code, 1);
    EXPECT_THAT(tool.files(), ::testing::ElementsAre("shop.sql", "shop.xml"));
}

TEST(Import, SaysWhatIsWrongWithASource) {
    const ToolRun tool;
    tool.write("broken.sql", "CREATE TABLE t (a INTEGER");
    const struct {
        ToolRun::Arguments arguments;
        int code;
        const char* text;
    } kCases[] = {
        {{"import", "sqlite:missing.db", "-o", "x.xml"}, 66, "no such file"},
        {{"export", "sqlite:missing.db"}, 66, "no such file"},
        {{"import", "missing.sql", "-d", "sqlite", "-o", "x.xml"}, 66, "missing.sql cannot be read"},
        {{"import", "broken.sql", "-d", "sqlite", "-o", "x.xml"}, 1, "incomplete input"},
        {{"import", "broken.sql", "-o", "x.xml"}, 64, "say with -d"},
        {{"import", "sqlite:", "-o", "x.xml"}, 64, "path of a database"},
        {{"import", "shop.xml", "-o", "x.xml"}, 64, "no database"},
        {{"import", "postgres://u:secret@h/d", "-o", "x.xml"}, 64, "password does not belong"},
        {{"import", "postgres://h/d?password=secret", "-o", "x.xml"}, 64, "password does not belong"},
        {{"import", "mysql://h/d?colour=red", "-o", "x.xml"}, 64, "takes no 'colour'"},
    };
    for (const auto& test : kCases) {
        const Outcome outcome = tool(test.arguments);
        EXPECT_EQ(outcome.code, test.code) << test.text;
        EXPECT_THAT(outcome.err, HasSubstr(test.text));
        EXPECT_THAT(outcome.err, Not(HasSubstr("secret")));
        EXPECT_EQ(lineCount(outcome.err), 1u) << outcome.err;
        EXPECT_THAT(outcome.out, IsEmpty());
    }
    EXPECT_THAT(tool.files(), ::testing::ElementsAre("broken.sql"));
}

}  // namespace
}  // namespace vellicor::testing
