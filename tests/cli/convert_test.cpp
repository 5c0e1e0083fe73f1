// tests/cli/convert_test.cpp — documents in other forms, and names that mean something there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/tool_run.h"
#include "vellicor/platform/json.h"
#include "vellicor/platform/xml_events.h"

namespace vellicor {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using testing::kExamples;
using ::testing::Not;
using testing::Outcome;
using testing::ToolRun;

/// Two tables whose names hold what the forms use for themselves, and one reference that may be null.
constexpr const char* kNasty = R"(<SQLContainer>
<SQLTable><name><![CDATA[a | <c> \ {e}; #f & %%g]]></name><uid>A</uid>
  <comment><![CDATA[# first
*second* | third]]></comment>
  <SQLField><name><![CDATA[_id_ x]]></name><type>DECIMAL(10,2)</type><primaryKey>1</primaryKey><uid>AF</uid></SQLField>
  <SQLField><name>id.x</name><type><![CDATA[ENUM('x','y')]]></type><comment><![CDATA[say "hi"]]></comment></SQLField>
</SQLTable>
<SQLTable><name>style</name>
  <SQLField><name>PK</name><type>INTEGER</type>
    <referencesTable>a</referencesTable><referencesField>id</referencesField>
    <referencesTableUID>A</referencesTableUID><referencesFieldUID>AF</referencesFieldUID>
    <foreignKeyName><![CDATA[fk "1"\N]]></foreignKeyName><deleteAction>3</deleteAction></SQLField>
</SQLTable>
<SQLView><name>v</name><queryString><![CDATA[SELECT '```' FROM t]]></queryString></SQLView>
</SQLContainer>)";

std::string converted(const ToolRun& tool, const std::string& form) {
    const Outcome outcome = tool({"convert", "-", "--to", form, "-o", "-"}, kNasty);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return outcome.out;
}

TEST(Convert, ToXmlKeepsTheWholeDocument) {
    ToolRun tool;
    for (const char* name : {"shop", "warehouse", "legacy"}) {
        EXPECT_EQ(tool({"convert", kExamples + name + ".xml", "-o", "once.xml"}).code, 0);
        EXPECT_EQ(tool({"convert", "once.xml", "-o", "twice.xml"}).code, 0);
        EXPECT_EQ(tool.content("once.xml"), tool.content("twice.xml")) << name;
        EXPECT_EQ(tool({"export", "once.xml"}).out, tool({"export", kExamples + name + ".xml"}).out) << name;
    }
    // In place, and with its labels whatever the preference is by default.
    tool.write("w.xml", ToolRun::read(kExamples + "warehouse.xml"));
    EXPECT_EQ(tool({"convert", "w.xml", "-o", "w.xml"}).code, 0);
    EXPECT_THAT(tool.content("w.xml"), HasSubstr("<SQLObjectLabel>"));
    EXPECT_EQ(tool({"convert", "w.xml", "-o", "w.xml", "--set", "documentLevelLabels=0"}).code, 0);
    EXPECT_THAT(tool.content("w.xml"), Not(HasSubstr("<SQLObjectLabel>")));
}

TEST(Convert, TheFormFollowsTheExtensionOrTheFlag) {
    ToolRun tool;
    const std::string shop = kExamples + "shop.xml";
    const std::pair<const char*, const char*> forms[] = {
        {"xml", "<?xml"}, {"json", "{"}, {"md", "# "}, {"mmd", "erDiagram"}, {"dot", "digraph"}};
    for (const auto& [extension, start] : forms) {
        EXPECT_EQ(tool({"convert", shop, "-o", std::string("x.") + extension}).code, 0);
        EXPECT_THAT(tool.content(std::string("x.") + extension), ::testing::StartsWith(start));
    }
    EXPECT_EQ(tool({"convert", shop, "-o", ".", "--to", "markdown"}).code, 0);
    EXPECT_THAT(tool.content("shop.md"), HasSubstr("\n### customers\n"));
    const Value told = valueFromJson(tool({"convert", shop, "-o", "x.md", "--json"}).out);
    EXPECT_EQ(*told.find("form"), Value("markdown"));
    EXPECT_EQ(*told.find("output"), Value("x.md"));
    const Value part =
        valueFromJson(tool({"convert", shop, "-o", "-", "--to", "json", "--tables", "orders", "-q"}).out);
    EXPECT_EQ(part.find("objects")->asList()->size(), 2u);  // the table, and a remark on the canvas
}

TEST(Convert, TheSourceIsNeverReplacedByLess) {
    ToolRun tool;
    const std::string damaged = "<SQLContainer><SQLTable><name>t</name><n>a\x01z</n></SQLTable></SQLContainer>";
    tool.write("d.xml", damaged);
    tool.write("whole.xml", ToolRun::read(kExamples + "shop.xml"));
    std::filesystem::create_symlink("d.xml", tool.path() / "link.xml");
    const std::vector<ToolRun::Arguments> refused = {
        {"convert", "d.xml", "-o", "d.xml"},      {"convert", "link.xml", "-o", "d.xml"},
        {"convert", "d.xml", "-o", "link.xml"},   {"convert", "whole.xml", "--tables", "orders", "-o", "whole.xml"},
        {"convert", "d.xml", "-o", "."},          {"convert", "whole.xml", "--tables", "orders", "--in-place"},
        {"convert", "whole.xml"},                 {"convert", "-", "--in-place", "--to", "xml"}};
    for (const auto& arguments : refused) EXPECT_EQ(tool(arguments).code, 64) << ::testing::PrintToString(arguments);
    EXPECT_EQ(tool.content("d.xml"), damaged);
    const Outcome once = tool({"convert", "link.xml", "--in-place"});
    EXPECT_EQ(once.code, 0) << once.err;
    EXPECT_THAT(once.err, AllOf(HasSubstr("1 bytes that are no text were dropped"), HasSubstr("link.xml.bak")));
    EXPECT_EQ(tool.content("link.xml.bak"), damaged);
    EXPECT_THAT(tool.content("d.xml"), HasSubstr("<n><![CDATA[az]]></n>"));
    EXPECT_EQ(tool({"convert", "whole.xml", "--in-place"}).code, 0);
    EXPECT_EQ(tool.content("whole.xml.bak"), "");
}

TEST(Convert, WarningsSayWhichObjectAndWhere) {
    const Outcome outcome = ToolRun()({"convert", "/dev/stdin", "-o", "-", "--to", "xml"},
                                      "<SQLContainer>\n<SQLTable><name>t</name><SQLIndex><name>i</name>\n"
                                      "<fieldName>x</fieldName></SQLIndex></SQLTable>\n<SQLField><name>f</name></SQLField>"
                                      "<SQLTabel/></SQLContainer>");
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("'x' not found) (index i of table t, line 2)"),
                                   HasSubstr("stray field object found (column f, line 4)"),
                                   HasSubstr("nobody knows the element \"SQLTabel\"")));
}

TEST(Convert, MarkdownMeansWhatTheNamesSay) {
    const std::string text = converted(ToolRun(), "markdown");
    EXPECT_THAT(text, HasSubstr("\n### a \\| \\<c\\> \\\\ {e}; \\#f \\& %%g\n\n\\# first<br>\\*second\\* \\| third\n"));
    EXPECT_THAT(text, HasSubstr("| \\_id\\_ x | DECIMAL(10,2) | no | primary |  |  |\n"));
    EXPECT_THAT(text, HasSubstr("- fk \"1\"\\\\N: (PK) references a \\|"));
    EXPECT_THAT(text, HasSubstr("on delete set null\n"));
    EXPECT_THAT(text, HasSubstr("\n````sql\nSELECT '```' FROM t\n````\n"));
}

TEST(Convert, MermaidTakesNoNameForSyntax) {
    const std::string text = converted(ToolRun(), "mermaid");
    EXPECT_EQ(text,
              "erDiagram\n"
              "    a_c_e_f_g[\"a #124; #60;c#62; #92; #123;e#125;#59; #35;f #38; #37;#37;g\"] {\n"
              "        DECIMAL(10-2) c_id_x PK \"_id_ x: DECIMAL(10,2)\"\n"
              "        ENUM id_x \"id.x: ENUM(#39;x#39;,#39;y#39;): say #34;hi#34;\"\n"
              "    }\n"
              "    table_style[\"style\"] {\n"
              "        INTEGER PK_ FK \"PK\"\n"
              "    }\n"
              "    a_c_e_f_g |o--o{ table_style : \"fk #34;1#34;#92;N\"\n");
}

TEST(Convert, DotTakesNoNameForSyntax) {
    const std::string text = converted(ToolRun(), "dot");
    EXPECT_THAT(text, HasSubstr("<B>a | &lt;c&gt; \\ {e}; #f &amp; %%g</B>"));
    EXPECT_THAT(text, HasSubstr("<TR><TD PORT=\"c0\" ALIGN=\"LEFT\"><U>_id_ x</U> DECIMAL(10,2)</TD></TR>"));
    EXPECT_THAT(text, HasSubstr("    t1:c0 -> t0:c0 [label=\"fk \\\"1\\\"\\\\N\"];\n"));
    // The markup of each label is well-formed.
    struct Ignore : XMLEventHandler {
        void startElement(std::string_view, const XMLAttributes&) override {}
        void characters(std::string_view) override {}
        void endElement(std::string_view) override {}
    } ignore;
    for (auto at = text.find("label=<"); at != std::string::npos; at = text.find("label=<", at + 1)) {
        std::string markup = text.substr(at + 7, text.find(">];", at) - at - 7);
        for (auto quote = markup.find("&quot;"); quote != std::string::npos; quote = markup.find("&quot;"))
            markup.replace(quote, 6, "'");
        EXPECT_NO_THROW(parseXML(markup, ignore)) << markup;
    }
}

}  // namespace
}  // namespace vellicor
