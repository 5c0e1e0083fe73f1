// tests/cli/diff_test.cpp — what differs between two documents, as the tool says it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/tool_run.h"

namespace vellicor {
namespace {

using ::testing::HasSubstr;
using testing::Outcome;
using testing::ToolRun;

std::string column(const std::string& uid, const std::string& more) {
    return "<SQLField>" + more + "<uid>" + uid + "</uid></SQLField>";
}

TEST(Diff, TellsRenamesChangesAndLayoutApart) {
    ToolRun tool;
    const auto document = [](const std::string& table, const std::string& x, const std::string& columns) {
        return "<SQLContainer><SQLTable><name>" + table + "</name><location><x>" + x +
               "</x><y>1</y></location><uid>T</uid>" + columns + "</SQLTable></SQLContainer>";
    };
    const std::string plain = column("B", "<name>b</name><type>INTEGER</type><referencesTable>t</referencesTable>"
                                          "<referencesField>a</referencesField>");
    tool.write("old.xml", document("t", "1", column("A", "<name>a</name><type>INTEGER</type>") + plain));
    // The key of b follows the renamed table and column: that is no difference of b.
    tool.write("new.xml", document("s", "2",
                                   column("A", "<name>x</name><type>BIGINT</type>") +
                                       column("B", "<name>b</name><type>INTEGER</type><referencesTable>s</referencesTable>"
                                                   "<referencesField>x</referencesField>")));
    const std::string schema = "table s: renamed from t\n    name: 't' -> 's'\n"
                               "column s.x: renamed from t.a\n    name: 'a' -> 'x'\n    type: 'INTEGER' -> 'BIGINT'\n";
    const struct {
        ToolRun::Arguments arguments;
        int code;
        std::string out;
    } cases[] = {
        {{"diff", "old.xml", "new.xml"}, 2, schema},
        {{"diff", "old.xml", "new.xml", "--layout"}, 2, schema + "table s: changed\n    location: '1,1' -> '2,1'\n"},
        {{"diff", "old.xml", "old.xml", "--layout"}, 0, ""},
        {{"diff", "old.xml", "new.xml", "--match", "name"}, 2, "table s: added\ntable t: removed\n"},
    };
    for (const auto& expected : cases) {
        const Outcome outcome = tool(expected.arguments);
        EXPECT_EQ(outcome.code, expected.code) << outcome.err;
        EXPECT_EQ(outcome.out, expected.out);
    }
    tool.write("fresh.xml", document("t", "1", column("Q", "<name>A</name><type>INTEGER</type>") + plain));
    EXPECT_THAT(tool({"diff", "old.xml", "fresh.xml", "--json"}).out, HasSubstr("\"column t.A was matched by name\""));
    EXPECT_THAT(tool({"diff", "old.xml", "fresh.xml", "--match", "uid"}).out, HasSubstr("column t.A: added"));
    // One uid on objects of two kinds joins nothing.
    tool.write("other.xml", "<SQLContainer><SQLView><name>t</name><uid>T</uid></SQLView></SQLContainer>");
    EXPECT_EQ(tool({"diff", "old.xml", "other.xml"}).out, "view t: added\ntable t: removed\n");
}

}  // namespace
}  // namespace vellicor
