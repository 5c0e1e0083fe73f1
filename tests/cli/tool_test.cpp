// tests/cli/tool_test.cpp — the commands of the tool, their data, messages and exit codes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/cli/tool_run.h"
#include "vellicor/dialects/dialect_manager.h"
#include "vellicor/platform/json.h"
#include "vellicor/platform/known_preferences.h"
#include "vellicor/platform/text.h"

namespace vellicor {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::kExamples;
using testing::lineCount;
using ::testing::Not;
using testing::Outcome;
using ::testing::StartsWith;
using testing::ToolRun;

const std::string kShop = kExamples + "shop.xml";
const std::string kWarehouse = kExamples + "warehouse.xml";

/// A document that needs recovery: one closing tag lost its slash.
constexpr const char* kDamaged = R"(<SQLContainer><SQLTable><name>t</name><SQLField><name>a</name><type>INTEGER</type>
<referenceDependentField><![CDATA[x]]>referenceDependentField></SQLField></SQLTable></SQLContainer>)";

std::string document(const std::string& content) { return "<SQLContainer>" + content + "</SQLContainer>"; }

/// What bash offers at the end of a line, by the tool's own script.
std::string bashCompletions(const ToolRun& tool, const std::string& line) {
    tool.write("completion.bash", tool({"completion", "bash"}).out);
    return tool
        .run("bash", {"-c", "set -f; . ./completion.bash; COMP_WORDS=(" + line +
                                "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _vellicor; echo \"${COMPREPLY[*]}\""})
        .out;
}

TEST(Tool, EveryFailureIsOneLineAndAnExitCode) {
    ToolRun tool;
    tool.write("cut.xml", "<SQLContainer>\n<SQLTable><name>t");
    tool.write("other.xml", "<html><body/></html>");
    tool.write("text.xml", "CREATE TABLE t");
    tool.write("list.plist", "<plist version=\"1.0\"><array/></plist>");
    const struct {
        ToolRun::Arguments arguments;
        int code;
        std::vector<std::string> words;
    } cases[] = {
        {{}, 64, {"needs a command", "export", "help"}},
        {{"exprot", kShop}, 64, {"'exprot'", "did you mean 'export'"}},
        {{"export"}, 64, {"DOC is required"}},
        {{"export", kShop, "more"}, 64, {"'more'"}},
        {{"export", kShop, "--classik"}, 64, {"'--classik'", "did you mean '--classic'", "vellicor export --help"}},
        {{"export", kShop, "--sort", "size"}, 64, {"--sort", "size", "document", "name"}},
        {{"export", kShop, "-d", "postgrse"}, 64, {"'postgrse'", "did you mean 'postgres'", "generic, OpenBase"}},
        {{"export", kShop, "-d", "MySQL (2)"}, 64, {"'MySQL (2)'", "mysql"}},
        {{"export", kShop, "--set", "sybaseUseGo"}, 64, {"KEY=VALUE"}},
        {{"export", kShop, "--set", "sybaseUseGo=perhaps"}, 64, {"'perhaps'", "true or false"}},
        {{"export", kShop, "--tables", "none*", "--schema", "x"}, 64, {"--tables 'none*' --schema 'x'"}},
        {{"export", kShop, "-q", "-v"}, 64, {"--quiet", "--verbose"}},
        {{"export", "other.xml"}, 65, {"other.xml", "\"html\"", "\"SQLContainer\""}},
        {{"info", "cut.xml"}, 65, {"cut.xml", "line 2, column 18", "cut off"}},
        {{"convert", "text.xml", "-o", "x.json"}, 65, {"text.xml", "line 1, column 1", "not XML"}},
        {{"export", kShop, "--config", "list.plist"}, 65, {"list.plist", "no dictionary"}},
        {{"export", "missing.xml"}, 66, {"missing.xml", "No such file"}},
        {{"info", "."}, 66, {".", "directory"}},
        {{"export", kShop, "-o", "no/folder/x.sql"}, 73, {"no/folder/x.sql", "there is no folder no/folder"}},
        {{"export", kShop, "-o", "/dev/full"}, 73, {"/dev/full", "No space left"}},
        {{"convert", kShop, "-o", "x.sql"}, 64, {"'x.sql'", "xml, json, markdown, mermaid, dot", "--to"}},
        {{"convert", kShop}, 64, {"--output is required"}},
        {{"prefs"}, 64, {"get, set, unset, list"}},
        {{"prefs", "get", "nothing"}, 64, {"'nothing'", "prefs list"}},
        {{"prefs", "set", "exportObjectSortOrder", "1.5"}, 64, {"'1.5'", "whole number"}},
        {{"completion", "tcsh"}, 64, {"tcsh", "bash"}},
    };
    const auto before = tool.files();
    for (const auto& test : cases) {
        const Outcome outcome = tool(test.arguments);
        const std::string& about = test.words.front();
        EXPECT_EQ(outcome.code, test.code) << about << outcome.err;
        EXPECT_EQ(outcome.out, "") << about;
        EXPECT_EQ(lineCount(outcome.err), 1u) << outcome.err;
        EXPECT_THAT(outcome.err, StartsWith("vellicor: error: "));
        for (const std::string& word : test.words) EXPECT_THAT(outcome.err, HasSubstr(word));
    }
    EXPECT_EQ(tool.files(), before);
}

TEST(Tool, AnExistingOutputSurvivesFailures) {
    ToolRun tool;
    tool.write("out.sql", "old");
    tool.write("damaged.xml", kDamaged);
    tool.write("design.xml", document("<SQLTable><name>t</name></SQLTable>"));
    const ToolRun::Arguments failing[] = {{"export", "missing.xml", "-o", "out.sql"},
                                          {"export", kShop, "-d", "unknown", "-o", "out.sql"},
                                          {"export", kShop, "--tables", "none", "-o", "out.sql"},
                                          {"convert", "damaged.xml", "--strict", "--to", "json", "-o", "out.sql"},
                                          {"export", "design.xml", "-o", "design.xml"},
                                          {"convert", "design.xml", "--to", "dot", "-o", "./design.xml"}};
    for (const ToolRun::Arguments& arguments : failing) {
        EXPECT_NE(tool(arguments).code, 0);
        EXPECT_EQ(tool.content("out.sql"), "old");
        EXPECT_THAT(tool.content("design.xml"), StartsWith("<SQLContainer>"));
    }
    EXPECT_THAT(tool.files(), ElementsAre("damaged.xml", "design.xml", "out.sql"));
}

TEST(ToolExport, WritesEveryDialect) {
    ToolRun tool;
    for (const auto& record : DialectManager::getDialectManager().exporterList()) {
        const std::string& dialect = record->getName();
        const Outcome outcome = tool({"export", kShop, "-d", dialect, "--types", "keep"});
        EXPECT_EQ(outcome.code, 0) << dialect;
        EXPECT_THAT(outcome.out, HasSubstr("CREATE TABLE ")) << dialect;
        EXPECT_EQ(outcome.err, "") << dialect;
    }
    EXPECT_EQ(tool({"export", kShop, "-o", "."}).code, 0);
    EXPECT_EQ(tool.content("shop.sql"), tool({"export", "-", "-o", "-"}, ToolRun::read(kShop)).out);
}

TEST(ToolExport, TranslatesTypesForAnotherDialect) {
    ToolRun tool;
    tool.write("d.xml", document("<SQLTable><name>t</name><SQLField><name>a</name><type>int(11)</type><unsigned>1</unsigned>"
                                 "<autoIncrement>1</autoIncrement><primaryKey>1</primaryKey></SQLField>"
                                 "<SQLField><name>b</name><type>enum('x','it''s')</type><defaultValue>x</defaultValue></SQLField>"
                                 "<SQLField><name>C</name><type>time</type><defaultValue>nothing()</defaultValue>"
                                 "<noQuoteDefault>1</noQuoteDefault></SQLField></SQLTable>"
                                 "<SQLDocumentInfo><exportDialect>mysql</exportDialect></SQLDocumentInfo>"));
    const Outcome made = tool({"export", "d.xml", "-d", "pg"});
    EXPECT_THAT(made.out, AllOf(HasSubstr("a BIGSERIAL"), HasSubstr("b VARCHAR(4) DEFAULT 'x' CHECK"),
                                HasSubstr("(b IN ('x','it''s'))"), Not(HasSubstr("nothing"))));
    EXPECT_THAT(made.err, AllOf(HasSubstr("column t.C: the type time: TIME(0) stops at 24 hours"),
                                HasSubstr("column t.C: the default nothing()")));
    EXPECT_EQ(tool({"export", "d.xml", "-d", "pg", "--strict"}).code, 1);
    EXPECT_THAT(tool({"export", "d.xml", "-d", "pg", "--types", "keep"}).out, HasSubstr("b enum "));
    EXPECT_EQ(tool({"export", "d.xml"}).err, "");
    EXPECT_THAT(tool({"dialects", "--types", "-d", "sqlite3"}).out,
                AllOf(StartsWith("SQLite  INTEGER "), HasSubstr("postgres   BIGINT "), Not(HasSubstr("TINYTEXT"))));
}

TEST(ToolExport, TakesTheDialectFromTheDocumentOrByAnyOfItsNames) {
    ToolRun tool;
    const auto header = [&tool](const ToolRun::Arguments& more, const std::string& content) {
        const std::string out = tool.with({"export", "-", "--header"}, more, content).out;
        return out.substr(0, out.find('\n'));
    };
    const std::string table = "<SQLTable><name>t</name></SQLTable>";
    const auto naming = [&](const std::string& dialect) {
        return document(table + "<SQLDocumentInfo><exportDialect>" + dialect + "</exportDialect></SQLDocumentInfo>");
    };
    EXPECT_EQ(header({}, naming("Oracle")), "/* Vellicor (Oracle)*/");
    EXPECT_EQ(header({}, document(table)), "/* Vellicor (Generic SQL)*/");
    for (const char* name : {"pg", "PostgreSQL", "POSTGRES"})
        EXPECT_EQ(header({"-d", name}, naming("Oracle")), "/* Vellicor (Postgres)*/");
    EXPECT_EQ(header({"-d", "mssql"}, naming("")), "/* Vellicor (SQLServer)*/");

    const Outcome unknown = tool({"export", "-", "--header"}, naming("dBase"));
    EXPECT_THAT(unknown.out, StartsWith("/* Vellicor (Generic SQL)*/"));
    EXPECT_THAT(unknown.err, AllOf(StartsWith("vellicor: warning: "), HasSubstr("'dBase'")));
}

TEST(ToolExport, FlagsAreWaysToSetPreferencesAndSettings) {
    ToolRun tool;
    const std::string content = document(
        "<SQLTable><name>zebras</name><comment>ends */ early</comment>"
        "<SQLField><name>order</name><type>INT</type></SQLField>"
        "<SQLField><name>two words</name><type>INT</type></SQLField></SQLTable>"
        "<SQLTable><name>apes</name><ignoreWhenExporting>1</ignoreWhenExporting>"
        "<SQLField><name>a</name></SQLField></SQLTable>"
        "<SQLDocumentInfo><exportDialect>SQLite</exportDialect><dropTableOption>1</dropTableOption></SQLDocumentInfo>");
    const auto script = [&](const ToolRun::Arguments& flags) {
        const Outcome outcome = tool.with({"export", "-"}, flags, content);
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        return outcome.out;
    };
    const std::string plain = script({});
    EXPECT_THAT(plain, AllOf(HasSubstr("DROP TABLE"), Not(HasSubstr("Vellicor")), Not(HasSubstr("\"zebras\"")),
                             HasSubstr("\"order\" INT"), HasSubstr("* / early")));
    EXPECT_THAT(script({"--no-drop"}), Not(HasSubstr("DROP TABLE")));
    EXPECT_THAT(script({"--header"}), StartsWith("/* Vellicor (SQLite)*/\n"));
    EXPECT_EQ(script({"--no-header", "--set", "IncludeTitleHeaderInExport=yes"}), plain);
    EXPECT_THAT(script({"--if-not-exists"}), HasSubstr("CREATE TABLE IF NOT EXISTS zebras"));
    EXPECT_THAT(script({"--honor-ignore"}), HasSubstr("/* Export disabled for apes */"));
    EXPECT_THAT(script({"--classic"}), HasSubstr("ends */ early"));
    EXPECT_THAT(script({"--set", "runnableScripts=0"}), HasSubstr("ends */ early"));
    EXPECT_LT(script({"--sort", "name"}).find("TABLE apes\n("), script({"--sort", "name"}).find("TABLE zebras\n("));
    const auto quoted = [&](const char* way) {
        const std::string sql = script({"--quote", way});
        std::string names;
        for (const char* name : {"order", "two words", "zebras"})
            if (sql.find("\"" + std::string(name) + "\"") != std::string::npos) names += std::string(name) + ";";
        return names;
    };
    const std::pair<const char*, const char*> ways[] = {{"always", "order;two words;zebras;"}, {"reserved", "order;"},
                                                        {"spaces", "two words;"}, {"needed", "order;two words;"}};
    for (const auto& [way, names] : ways) EXPECT_EQ(quoted(way), names) << way;
    EXPECT_THAT(script({"--quote", "never", "--set", "quoteIdentifiersOnExport=1"}), Not(HasSubstr("\"")));
}

TEST(ToolExport, APartLeavesOutOtherTablesAndTheKeysToThem) {
    ToolRun tool;
    const auto part = [&tool](const ToolRun::Arguments& flags) {
        return tool.with({"export", kWarehouse, "-d", "pg"}, flags);
    };
    const Outcome stock = part({"--schema", "STOCK"});
    EXPECT_EQ(stock.code, 0);
    EXPECT_EQ(stock.err, "");
    EXPECT_THAT(stock.out, AllOf(HasSubstr("CREATE TABLE stock.bins"), HasSubstr("CREATE VIEW stock.low_stock"),
                                 Not(HasSubstr("CREATE TABLE purchasing"))));

    const Outcome purchasing = part({"--label", "purch*", "--tables", "deliver*", "--tables", "suppliers"});
    EXPECT_EQ(purchasing.code, 0);
    EXPECT_EQ(lineCount(purchasing.err), 2u) << purchasing.err;
    EXPECT_THAT(purchasing.err,
                AllOf(HasSubstr("from purchasing.delivery_lines(warehouse_code,bin_code) to stock.bins"),
                      HasSubstr("from purchasing.delivery_lines(article_no) to stock.articles")));
    EXPECT_THAT(purchasing.out, AllOf(HasSubstr("REFERENCES purchasing.deliveries"), Not(HasSubstr("stock."))));

    const Outcome view = part({"--tables", "*.late_deliveries"});
    EXPECT_THAT(view.err, HasSubstr("the view purchasing.late_deliveries asks for deliveries"));

    // A column keeps the type that a key to a table left out forced on it.
    const std::string forced = document(
        "<SQLTable><name>a</name><SQLField><name>id</name><type>BIGINT</type></SQLField></SQLTable>"
        "<SQLTable><name>b</name><SQLField><name>a_id</name><type>INT</type>"
        "<referencesTable>a</referencesTable><referencesField>id</referencesField></SQLField></SQLTable>");
    const Outcome typed = tool({"export", "-", "--tables", "b", "--set", "forceForeignKeyTypeMatching=1"}, forced);
    EXPECT_THAT(typed.out, AllOf(HasSubstr("a_id BIGINT"), Not(HasSubstr("REFERENCES"))));
    EXPECT_EQ(lineCount(typed.err), 1u) << typed.err;
}

TEST(ToolExport, TellsMachinesWhatItDid) {
    ToolRun tool;
    const Value result =
        valueFromJson(tool({"export", kWarehouse, "-o", "out.sql", "--tables", "suppliers", "--json"}).out);
    EXPECT_EQ(*result.find("dialect"), Value("postgres"));
    EXPECT_EQ(*result.find("output"), Value("out.sql"));
    EXPECT_EQ(*result.find("recovered"), Value::boolean(false));
    EXPECT_EQ(*result.find("counts")->find("SQLTable"), Value::integer(1));
    EXPECT_EQ(result.find("text"), nullptr);

    const Outcome outcome = tool({"export", "-", "-d", "mysql", "--json", "-v"}, kDamaged);
    const Value repaired = valueFromJson(outcome.out);
    EXPECT_EQ(*repaired.find("recovered"), Value::boolean(true));
    EXPECT_THAT(*repaired.find("text")->asText(), HasSubstr("CREATE TABLE t"));
    EXPECT_TRUE(repaired.find("output")->isNull());
    std::vector<std::string> events;
    std::string lines;
    for (const Value& event : *repaired.find("events")->asList()) {
        events.push_back(*event.find("level")->asText() + ": " + *event.find("text")->asText());
        lines += "vellicor: " + events.back() + "\n";
    }
    EXPECT_EQ(outcome.err, lines) << "the same events, for people";
    EXPECT_THAT(events, ElementsAre("note: Loaded Plugins:", StartsWith("note: Error occurred during parsing :"),
                                    "note: [NOTE] Found 1 occurances of broken referenceDependentField and fixed them",
                                    StartsWith("warning: standard input is damaged")));
}

TEST(ToolExport, CountsItsStepsOnATerminal) {
    ToolRun tool;
    const std::string line = "(sleep 2; cat '" + kShop + "') | '" VELLICOR_TOOL "' export - -o out.sql";
    const std::string shown =
        tool.run("env", {"TERM=xterm", "SHELL=/bin/sh", "script", "-qec", line, "/dev/null"}).out;
    EXPECT_THAT(shown, StartsWith("\r\033[Kvellicor: reading standard input, step 1 of 2, 1 s"));
    EXPECT_THAT(shown, ::testing::EndsWith("\r\033[K")) << "the line goes away";
}

TEST(Tool, WarningsGoToStandardErrorUnlessQuietAndNotesOnlyWhenVerbose) {
    ToolRun tool;
    const auto lines = [&tool](const ToolRun::Arguments& flags, int code) {
        const Outcome outcome = tool.with({"info", "-"}, flags, kDamaged);
        EXPECT_EQ(outcome.code, code);
        EXPECT_EQ(outcome.out.empty(), code != 0);
        return outcome.err;
    };
    const std::string warnings = lines({}, 0);
    EXPECT_EQ(lineCount(warnings), 1u) << warnings;
    EXPECT_THAT(warnings,
                AllOf(StartsWith("vellicor: warning: "), HasSubstr("repaired while reading"), Not(HasSubstr("note:"))));
    EXPECT_EQ(lines({"-q"}, 0), "");
    EXPECT_THAT(lines({"-v"}, 0), HasSubstr("vellicor: note: [NOTE] Found 1"));
    EXPECT_THAT(lines({"--strict"}, 1),
                AllOf(HasSubstr(warnings), HasSubstr("vellicor: error: 1 warning under --strict")));
    EXPECT_EQ(lineCount(lines({"--strict", "-q"}, 1)), 1u);
    EXPECT_EQ(tool({"export", kWarehouse, "--strict"}).code, 0);
}

TEST(ToolInfo, ShowsWhatADocumentIsAndHolds) {
    ToolRun tool;
    const Value facts = valueFromJson(tool({"info", kWarehouse, "--json"}).out);
    EXPECT_EQ(*facts.find("fileFormatVersion"), Value("4"));
    EXPECT_EQ(*facts.find("counts")->find("SQLForeignKey"), Value::integer(7));
    EXPECT_EQ(*facts.find("labels")->asList()->front().find("objects"), Value::integer(4));
    EXPECT_THAT(tool({"info", kWarehouse}).out, AllOf(HasSubstr("state               intact\n"),
                                                      HasSubstr("schemas             purchasing (4), stock (5)\n"),
                                                      HasSubstr("SQLTable            7\n")));

    // A repaired document stays known as one once it is saved.
    EXPECT_EQ(tool({"convert", "-", "-o", "saved.xml"}, kDamaged).code, 0);
    EXPECT_THAT(tool({"info", "-"}, kDamaged).out, HasSubstr("damaged, repaired while reading"));
    EXPECT_THAT(tool({"info", "saved.xml"}).out, HasSubstr("repaired before it was saved"));
}

TEST(ToolDialects, ListsTheRegistryWithWhatEachCanDo) {
    ToolRun tool;
    const std::string lines = tool({"dialects"}).out;
    const Value result = valueFromJson(tool({"dialects", "--json"}).out);
    std::vector<std::string> names;
    std::map<std::string, std::string> able;  // those of a few dialects that can do a thing
    const std::set<std::string> few{"generic", "OpenBase", "SQLite", "FileMaker", "mysql", "Oracle"};
    std::vector<std::string> registered;
    for (const auto& record : DialectManager::getDialectManager().exporterList())
        registered.push_back(record->getName());
    for (const Value& dialect : *result.find("dialects")->asList()) {
        names.push_back(*dialect.find("name")->asText());
        const std::string ownName = *dialect.find("ownName")->asText();
        EXPECT_THAT(lines, HasSubstr(names.back() + "\n    own name      " + ownName + "\n"));
        for (const Value& driver : *dialect.find("drivers")->asList()) EXPECT_THAT(lines, HasSubstr(*driver.asText()));
        for (const char* what : {"views", "ifNotExists", "indexPrefixSizes"})
            if (few.contains(names.back()) && *dialect.find("capabilities")->find(what) == Value::boolean(true))
                able[what] += names.back() + " ";
    }
    EXPECT_EQ(names, registered);
    EXPECT_EQ(able["views"], "generic SQLite mysql Oracle ");
    EXPECT_EQ(able["ifNotExists"], "SQLite mysql ");
    EXPECT_EQ(able["indexPrefixSizes"], "mysql ");
}

TEST(ToolDialects, IncludeThoseOfPlugIns) {
    ToolRun tool;
    const auto plugins = tool.path() / "Application Support/Vellicor/Plugins";
    std::filesystem::create_directories(plugins);
    std::filesystem::copy(VELLICOR_EXAMPLE_PLUGIN, plugins / "StandardSQL.bundle",
                          std::filesystem::copy_options::recursive);
    EXPECT_THAT(tool({"dialects"}).out, HasSubstr("\nStandard SQL\n    own name      Standard SQL\n"));
    const Outcome script = tool({"export", kShop, "-d", "standard sql"});
    EXPECT_EQ(script.err, "");
    EXPECT_THAT(script.out, HasSubstr("CREATE TABLE \"customers\""));
    EXPECT_EQ(bashCompletions(tool, "vellicor export -d Stan"), "Standard\\ SQL\n");
}

TEST(ToolPrefs, KeepsPreferencesInAPropertyList) {
    ToolRun tool;
    const auto value = [&tool](const char* key) { return tool({"prefs", "get", key}).out; };
    EXPECT_EQ(value("runnableScripts"), "true\n");
    EXPECT_THAT(tool.files(), IsEmpty());

    EXPECT_EQ(tool({"prefs", "set", "exportObjectSortOrder", "1"}).code, 0);
    EXPECT_EQ(tool({"prefs", "set", "IncludeTitleHeaderInExport", "on"}).code, 0);
    EXPECT_EQ(tool({"prefs", "set", "TableBackgroundColor", "1 0 0 1"}).code, 0);
    EXPECT_THAT(tool.content("Vellicor/preferences.plist"),
                AllOf(HasSubstr("<key>exportObjectSortOrder</key>\n\t<integer>1</integer>"), HasSubstr("<true/>")));
    EXPECT_EQ(value("TableBackgroundColor"), "1 0 0 1\n");
    EXPECT_THAT(tool({"export", kShop}).out, StartsWith("/* Vellicor (SQLite)*/"));

    tool.write("other.plist", "<plist version=\"1.0\"><dict><key>mine</key><string>x</string></dict></plist>");
    EXPECT_THAT(tool({"export", kShop, "--config", "other.plist"}).out, Not(HasSubstr("Vellicor")));
    EXPECT_EQ(tool({"prefs", "set", "--config", "other.plist", "sybaseUseGo", "yes"}).code, 0);
    EXPECT_EQ(tool({"prefs", "get", "--config", "other.plist", "mine"}).out, "x\n");
    EXPECT_THAT(tool({"prefs", "set", "quoteReservedWord", "1"}).err, HasSubstr("did you mean 'quoteReservedWords'"));

    EXPECT_EQ(tool({"prefs", "unset", "IncludeTitleHeaderInExport"}).code, 0);
    EXPECT_EQ(value("IncludeTitleHeaderInExport"), "false\n");
    EXPECT_THAT(tool({"prefs", "list"}).out,
                AllOf(HasSubstr("exportObjectSortOrder "), HasSubstr("not a preference of the library")));

    // Every preference with its type, default and meaning, for people and for machines.
    const std::string lines = "\n" + tool({"prefs", "list", "--config", "other.plist"}).out;
    const Value list = valueFromJson(tool({"prefs", "list", "--json", "--config", "other.plist"}).out);
    const Value::List& rows = *list.find("preferences")->asList();
    ASSERT_EQ(rows.size(), knownPreferences().size() + 1);
    for (std::size_t i = 0; i < knownPreferences().size(); ++i) {
        const KnownPreference& known = knownPreferences()[i];
        const bool isSet = known.key == "sybaseUseGo";
        EXPECT_EQ(*rows[i].find("key"), Value(known.key));
        EXPECT_EQ(*rows[i].find("value"), isSet ? Value::boolean(true) : Value()) << known.key;
        const std::size_t start = lines.find("\n" + std::string(known.key) + " ") + 1;
        ASSERT_NE(start, 0u) << known.key;
        EXPECT_THAT(lines.substr(start, lines.find('\n', start) - start),
                    AllOf(HasSubstr(std::string(preferenceTypeName(known.type)) + " "),
                          HasSubstr(isSet ? "  true   set, default false  " : *rows[i].find("default")->asText() + " "),
                          ::testing::EndsWith(*rows[i].find("meaning")->asText())));
    }
    EXPECT_EQ(*rows.back().find("key"), Value("mine"));
}

TEST(ToolHelp, ExplainsEveryCommandAndOption) {
    ToolRun tool;
    const std::string help = tool({"--help"}).out;
    EXPECT_THAT(tool({"--version"}).out, ::testing::MatchesRegex("vellicor [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    for (const char* command : {"export", "diff", "info", "convert", "dialects", "prefs", "completion", "help"}) {
        EXPECT_THAT(help, HasSubstr(std::string("\n  ") + command + " "));
        EXPECT_EQ(tool({"help", command}).out, tool({command, "--help"}).out);
    }
    EXPECT_THAT(tool({"help", "prefs", "set"}).out, HasSubstr("Usage: vellicor prefs set"));
    EXPECT_THAT(tool({"help", "export"}).out, HasSubstr("--quote always|reserved|spaces|needed|never"));
}

TEST(ToolCompletion, KnowsTheCommandLine) {
    ToolRun tool;
    const std::pair<const char*, const char*> lines[] = {
        {"ex", "export"},
        {"export --di", "--dialect"},
        {"export x.xml -d SQL", "SQLite SQLServer"},
        {"export --quote ''", "always reserved spaces needed never"},
        {"export compl", "completion.bash"},
        {"prefs ''", "get set unset list"},
        {"prefs set sybase", "sybaseUseGo"},
        {"convert --to m", "markdown mermaid"},
    };
    for (const auto& [line, offered] : lines)
        EXPECT_EQ(bashCompletions(tool, std::string("vellicor ") + line), std::string(offered) + "\n");
    for (const char* shell : {"zsh", "fish"}) {
        const std::string script = tool({"completion", shell}).out;
        for (const char* word : {"honor-ignore", "vellicor prefs set", "SQLServer", "mermaid", "quoteReservedWords"})
            EXPECT_THAT(script, HasSubstr(word)) << shell;
    }
}

TEST(Readme, ShowsWhatItsExamplesDo) {
    ToolRun tool;
    const std::string readme = ToolRun::read(VELLICOR_SOURCE_DIR "/README.md");
    const auto block = [&readme](const std::string& language) {
        const std::string fence = "```" + language + "\n";
        const auto begin = readme.find(fence) + fence.size();
        return readme.substr(begin, readme.find("```", begin) - begin);
    };
    std::string program = ToolRun::read(VELLICOR_SOURCE_DIR "/examples/hello.cpp");
    EXPECT_EQ(block("cpp"), program.erase(0, program.find('\n') + 1));
    const auto withoutOuterSpace = [](const std::string& text) { return std::string(trimmed(text)) + "\n"; };
    EXPECT_EQ(withoutOuterSpace(tool.run(VELLICOR_HELLO, {}).out), block("sql"));
    const std::string line = "vellicor() { '" VELLICOR_TOOL "' \"$@\"; }; " + block("sh");
    EXPECT_EQ(withoutOuterSpace(tool.run("bash", {"-c", line}).out), block("sql"));
}

}  // namespace
}  // namespace vellicor
