// tests/platform/xml_test.cpp — XML read as events, its errors and external entities; XML written from elements.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>

#include "tests/support/temp_folder.h"
#include "vellicor/platform/xml_element.h"
#include "vellicor/platform/xml_events.h"

namespace vellicor {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

/// Writes down the events: "<name a=1>", text with neighbouring pieces joined, "</name>".
struct Trace : XMLEventHandler {
    std::string events;
    void startElement(std::string_view name, const XMLAttributes& attributes) override {
        events.append("<").append(name);
        for (const auto& [key, value] : attributes) events.append(" ").append(key).append("=").append(value);
        events += ">";
    }
    void characters(std::string_view text) override { events += text; }
    void endElement(std::string_view name) override { events.append("</").append(name).append(">"); }
};

std::string eventsOf(std::string_view bytes, bool bytesAreUTF8 = false) {
    Trace trace;
    parseXML(bytes, trace, bytesAreUTF8);
    return trace.events;
}

std::string eventsOfFile(const std::filesystem::path& file) {
    Trace trace;
    parseXMLFile(file, trace);
    return trace.events;
}

XMLError errorOf(const std::function<void()>& parse) {
    try {
        parse();
    } catch (const XMLError& error) {
        return error;
    }
    return XMLError(-1, "no error", -1, -1);
}

TEST(XMLEvents, AttributesTextAndCDATAArriveInOrder) {
    EXPECT_EQ(eventsOf("<?xml version=\"1.0\"?><!-- c --><r><f b='2' a='1&lt;'/><f c='3'/><g/><?pi x?>"
                       "<a:b> 1 <![CDATA[x<]]]]><![CDATA[>y]]></a:b>&amp;\r\n</r>"),
              "<r><f a=1< b=2></f><f c=3></f><g></g><a:b> 1 x<]]>y</a:b>&\n</r>");
    EXPECT_EQ(eventsOf("<!DOCTYPE r [<!ENTITY e 'in<b/>side'><!ENTITY % p '<!ENTITY q \"Q\">'>%p;]><r>&e;&q;</r>"),
              "<r>in<b></b>sideQ</r>");
}

TEST(XMLEvents, EncodingsAreDecodedUnlessTheCallerKnowsBetter) {
    EXPECT_EQ(eventsOf("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE9</r>"), "<r>é</r>");
    EXPECT_EQ(eventsOf("<?xml version='1.0' encoding='windows-1252'?><r a='\x80'>\x80</r>"), "<r a=€>€</r>");
    EXPECT_EQ(eventsOf("<?xml version='1.0' encoding='windows-1252'?><r>€</r>", true), "<r>€</r>");
    EXPECT_EQ(eventsOf("\xEF\xBB\xBF<r>é</r>"), "<r>é</r>");
    using namespace std::string_literals;
    const auto declared = [](const std::string& encoding, const std::string& text) {
        return "<?xml version='1.0' encoding='" + encoding + "'?><r>" + text + "</r>";
    };
    const std::pair<std::string, std::string> cases[] = {
        {declared("Shift_JIS", "\x93\xFA\x96\x7B"), "日本"},  {declared("EUC-JP", "\xC6\xFC\xCB\xDC"), "日本"},
        {declared("GB18030", "\x94\x39\xFC\x36"), "😀"},     {declared("utf8", "é😀"), "é😀"},
        {declared("UTF8", "é"), "é"},                          {declared("UTF-16", "é"), "é"},
        {declared("US-ASCII", "é"), "é"},                      {"\xFF\xFE<\0r\0>\0\xE9\0<\0/\0r\0>\0"s, "é"},
        {"\0<\0r\0>\0\xE9\0<\0/\0r\0>"s, "é"},             {"\xEF\xBB\xBF" + declared("ISO-8859-1", "é"), "é"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_THAT(eventsOf(bytes), HasSubstr("<r>" + text + "</r>")) << bytes;
    const XMLError bad = errorOf([&] { eventsOf(declared("Shift_JIS", "\n\x93")); });
    EXPECT_EQ(bad.line(), 2);
    EXPECT_THAT(bad.description(), HasSubstr("Shift_JIS"));
    EXPECT_THAT(errorOf([] { eventsOf("<r>Stra\xDF" "e und \xDC" "bung, gr\xFC\xDF" "en</r>"); }).description(),
                AllOf(HasSubstr("not UTF-8"), HasSubstr("ISO-8859-1")));
}

TEST(XMLEvents, LongInputIsReadWhole) {
    testing::TempFolder folder;
    const std::string text(1000000, 'x');
    EXPECT_EQ(eventsOf("<r><![CDATA[" + text + "]]></r>").size(), text.size() + 7);
    EXPECT_EQ(eventsOfFile(folder.write("long.xml", "<r><a/>" + text + "</r>")), "<r><a></a>" + text + "</r>");
}

TEST(XMLEvents, ErrorsHaveANumberWordsAndAPlace) {
    struct Case {
        std::string bytes;
        int code, line, column;  // of the bomb any column
    };
    std::string bomb = "<!DOCTYPE r [<!ENTITY a0 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa'>";
    for (int i = 1; i < 9; ++i) {
        bomb += "<!ENTITY a" + std::to_string(i) + " '";
        for (int j = 0; j < 10; ++j) bomb += "&a" + std::to_string(i - 1) + ";";
        bomb += "'>";
    }
    const Case cases[] = {
        {"", 5, 1, 1},                {"<r>\n<a>", 5, 2, 4},     {"CREATE TABLE", 4, 1, 1},   {"<r>\nb\2</r>", 9, 2, 2},
        {"<r>\xFF</r>", 9, 1, 4},     {"<r>a < b</r>", 68, 1, 7}, {"<r>a & b</r>", 68, 1, 7},  {"<r/><s/>", 5, 1, 5},
        {"<r>&e;</r>", 26, 1, 4},     {"<r>&#1;</r>", 9, 1, 4},   {"<r><![CDATA[x", 5, 1, 14}, {"<r><a", 73, 1, 4},
        {"<r a=1/>", 1, 1, 6},        {"<r>\n <a x='1' x='2'/></r>", 42, 2, 11},
        {"<r><![CDATA[x]]>r>\n</q>", 76, 2, 3},                  {" <?xml version='1.0'?><r/>", 64, 1, 2},
        {"<?xml version='1.0' encoding='x-none'?><r/>", 32, 1, 31}, {bomb + "]><r>&a8;</r>", 89, 1, 0},
    };
    for (const auto& [bytes, code, line, column] : cases) {
        const XMLError error = errorOf([&bytes = bytes] { eventsOf(bytes); });
        EXPECT_EQ(error.code(), code) << bytes;
        EXPECT_EQ(error.line(), line) << bytes;
        EXPECT_EQ(error.column(), column ? column : error.column()) << bytes;
        EXPECT_FALSE(error.description().empty()) << bytes;
    }
    const XMLError error = errorOf([] { eventsOf("<r>\n<a></b></r>"); });
    EXPECT_EQ(error.name(), "XMLParseException");
    EXPECT_EQ(error.reason(), "Error 76, Description: " + error.description() + ", Line: 2, Column: 6");

    const XMLError missing = errorOf([] { eventsOfFile("/nowhere/at/all.xml"); });
    EXPECT_EQ(missing.code(), 0);
    EXPECT_EQ(missing.line(), 0);
    EXPECT_THAT(missing.description(), HasSubstr("No such file or directory"));
    EXPECT_EQ(errorOf([] { eventsOfFile("/"); }).code(), 0);
}

TEST(XMLEvents, AnExceptionOfTheHandlerStopsTheParseAndReachesItsCaller) {
    struct Refusing : Trace {
        void startElement(std::string_view name, const XMLAttributes& attributes) override {
            if (name == "bad") throw SQLException("Refused", "bad");
            Trace::startElement(name, attributes);
        }
        void characters(std::string_view) override { throw 42; }
    } handler;
    EXPECT_THROW(parseXML("<r><a/><bad/><c/></r>", handler), SQLException);
    EXPECT_EQ(handler.events, "<r><a></a>");
    EXPECT_THROW(parseXML("<r>x<c/></r", handler), int);

    testing::TempFolder folder;
    folder.write("part.xml", "<ok/><bad/>");
    handler.events.clear();
    const auto file = folder.write("d.xml", "<!DOCTYPE r [<!ENTITY p SYSTEM 'part.xml'>]><r>&p;<c/></r>");
    EXPECT_THROW(parseXMLFile(file, handler), SQLException);
    EXPECT_EQ(handler.events, "<r><ok></ok>");
}

TEST(XMLEvents, BytesNeverReachOutsideThemselves) {
    const std::tuple<const char*, const char*, const char*> refused[] = {
        {"<!DOCTYPE r [<!ENTITY logo SYSTEM '/etc/passwd'>]><r>&logo;</r>", "&logo;", "/etc/passwd"},
        {"<!DOCTYPE r [<!ENTITY % more SYSTEM 'more.dtd'>%more;]><r/>", "%more;", "more.dtd"},
        {"<!DOCTYPE r [<!ENTITY logo SYSTEM 'x'>]><r a='&logo;'/>", "&logo;", ""},
        {"<!DOCTYPE r SYSTEM 'r.dtd'><r>1&inDtd;2</r>", "&inDtd;", ""},
    };
    for (const auto& [bytes, entity, place] : refused)
        EXPECT_THAT(errorOf([&bytes = bytes] { eventsOf(bytes); }).description(), AllOf(HasSubstr(entity), HasSubstr(place)));
    // Neither a type declaration nor an entity that nobody refers to hurts.
    EXPECT_EQ(eventsOf("<!DOCTYPE r SYSTEM 'r.dtd' [<!ENTITY e SYSTEM 'x'><!ENTITY i 'in'>]><r>&i;</r>"), "<r>in</r>");
}

TEST(XMLEvents, FilesIncludeRegularFilesAtOrBelowTheirFolder) {
    testing::TempFolder outer;
    outer.write("secret.txt", "secret");
    outer.write("doc/part.xml", "<p>é</p>");
    outer.write("doc/sub/outer.xml", "[&inner;]");
    outer.write("doc/sub/inner.xml", "<?xml version='1.0' encoding='ISO-8859-1'?>in\xE9");
    outer.write("doc/big.xml", std::string(1024 * 1024 + 1, 'x'));
    outer.write("doc/full.xml", std::string(1024 * 1024, 'x'));
    outer.write("doc/broken.xml", "\n<p></q>");
    outer.write("doc/more.dtd", "<!ENTITY fromMore 'more'>");
    outer.write("doc-other/x.txt", "x");
    std::filesystem::path folder = outer.path() / "doc";
    std::filesystem::create_symlink("../secret.txt", folder / "out.xml");
    std::filesystem::create_directory_symlink("..", folder / "up");
    std::filesystem::create_symlink("part.xml", folder / "in.xml");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);

    auto document = [&](const std::string& declarations, const std::string& text) {
        return outer.write("doc/d.xml", "<!DOCTYPE r [" + declarations + "]><r>" + text + "</r>");
    };
    auto including = [&](const std::string& systemId) {
        return document("<!ENTITY e SYSTEM '" + systemId + "'>", "&e;");
    };
    using Texts = std::vector<std::string>;
    for (const auto& systemId : Texts{"part.xml", "./sub/../part.xml", "in.xml", (folder / "part.xml").string()})
        EXPECT_EQ(eventsOfFile(including(systemId)), "<r><p>é</p></r>") << systemId;
    EXPECT_EQ(eventsOfFile(document("<!ENTITY o SYSTEM 'sub/outer.xml'><!ENTITY inner SYSTEM 'sub/inner.xml'>",
                                    "&o;&inner;")),
              "<r>[iné]iné</r>");
    EXPECT_EQ(eventsOfFile(including("full.xml")).size(), 1024u * 1024 + 7);
    EXPECT_EQ(eventsOfFile(document("<!ENTITY % m SYSTEM 'more.dtd'>%m;", "&fromMore;")), "<r>more</r>");

    for (const auto& systemId : Texts{"../secret.txt", "out.xml", "up/secret.txt", "/etc/passwd", "file:///etc/passwd",
                                      "http://example.org/x", "../doc-other/x.txt", "sub", ".", "pipe", "missing.xml",
                                      "big.xml", (outer.path() / "secret.txt").string()}) {
        const XMLError error = errorOf([&] { eventsOfFile(including(systemId)); });
        EXPECT_THAT(error.description(), AllOf(HasSubstr("&e;"), HasSubstr(systemId)));
        EXPECT_EQ(error.line(), 1);
    }
    // Two entities that share a file; names of files are addresses.
    outer.write("doc/two words.xml", "[]");
    EXPECT_EQ(eventsOfFile(including("two%20words.xml")), "<r>[]</r>");
    const std::string both = "<!ENTITY a SYSTEM '%2e%2e/secret.txt'><!ENTITY b SYSTEM '%2e%2e/secret.txt'>";
    EXPECT_THAT(errorOf([&] { eventsOfFile(document(both, "&b;")); }).description(), HasSubstr("&b;"));
    EXPECT_THAT(errorOf([&] { eventsOfFile(document("<!ENTITY % p SYSTEM 'no'><!ENTITY % q SYSTEM 'no'>%q;", "")); })
                    .description(), HasSubstr("%q;"));

    const XMLError broken = errorOf([&] { eventsOfFile(including("broken.xml")); });
    EXPECT_EQ(broken.code(), 76);
    EXPECT_EQ(broken.line(), 2);
    EXPECT_THAT(broken.description(), HasSubstr("broken.xml"));
}

TEST(XMLEvents, IncludedFilesNestEightDeep) {
    testing::TempFolder folder;
    std::string declarations;
    for (int i = 1; i <= 9; ++i) {
        std::string name = "e" + std::to_string(i);
        declarations += "<!ENTITY " + name + " SYSTEM '" + name + ".xml'>";
        folder.write(name + ".xml", i < 9 ? "&e" + std::to_string(i + 1) + ";" : "end");
    }
    const auto parse = [&](const std::string& text) {
        return eventsOfFile(folder.write("d.xml", "<!DOCTYPE r [" + declarations + "]><r>" + text + "</r>"));
    };
    EXPECT_EQ(parse("&e2;&e3;"), "<r>endend</r>");
    EXPECT_THAT(errorOf([&] { parse("&e1;"); }).description(), HasSubstr("&e9;"));
    folder.write("e9.xml", "&e9;");
    EXPECT_GT(errorOf([&] { parse("&e9;"); }).code(), 0);
}

TEST(XMLElement, PrintsFourBlanksALevelAndNoneBesideText) {
    XMLElement root("SQLTable");
    root.addCDataElement("name", "a]]>b");
    root.addTextElement("type", "<& >");
    root.addTextElement("none", "");
    root.addCDataElement("blank", "");
    XMLElement font = root.addElement("font");
    font.setAttribute("key", "old");
    font.setAttribute("key", "a\"<");
    std::string expected =
        "<SQLTable>\n"
        "    <name><![CDATA[a]]]]><![CDATA[>b]]></name>\n"
        "    <type>&lt;&amp; &gt;</type>\n"
        "    <none />\n"
        "    <blank><![CDATA[]]></blank>\n"
        "    <font key=\"a&quot;&lt;\" />\n"
        "</SQLTable>\n";
    EXPECT_EQ(root.text(), expected);

    XMLElement container("SQLContainer");
    container.addCopy(root);
    root.addElement("later");
    EXPECT_EQ(container.text(1).substr(0, 37), "    <SQLContainer>\n        <SQLTable>");
    EXPECT_THAT(container.text(), ::testing::Not(HasSubstr("later")));
    std::string out(xmlDeclaration);
    font.appendText(out);
    EXPECT_EQ(out, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<font key=\"a&quot;&lt;\" />\n");
}

TEST(XMLElement, EveryTextComesBackExceptWhatXMLForbids) {
    const std::pair<std::string_view, std::string> cases[] = {
        {"]]>]]>", "]]>]]>"},
        {" \t\n<&\">' é 日本 😀 \x7F", " \t\n<&\">' é 日本 😀 \x7F"},
        {std::string_view("a\0\x01\x1F" "b", 5), "ab"},
        {"x\xEF\xBF\xBEy\xEF\xBF\xBFz\xEF\xBF\xBD", "xyz\xEF\xBF\xBD"},
        {"bad \xFF byte", "bad \xEF\xBF\xBD byte"},
        {"", ""},
    };
    for (const auto& [written, read] : cases) {
        XMLElement root("r");
        root.addCDataElement("c", written);
        root.addTextElement("t", written);
        root.addElement("a").setAttribute("v", written);
        std::string events = eventsOf(std::string(xmlDeclaration) + root.text());
        EXPECT_THAT(events, AllOf(HasSubstr("<c>" + read + "</c>"), HasSubstr("<t>" + read + "</t>"),
                                  HasSubstr("<a v=" + read + ">")));
    }
}

TEST(XMLElement, NamesAreMadeSuchThatTheReaderTakesThem) {
    const std::pair<const char*, std::string> cases[] = {
        {"a.b-c_9", "a.b-c_9"}, {"x:y", "x:y"}, {"größe", "größe"}, {"two words", "twowords"}, {"9lives", "_9lives"},
        {"-x", "_-x"}, {"<>", "_"}, {"", "_"}, {"a b:c", "abc"}, {"smile😀", "smile"}, {"a×b", "ab"}, {"\xFF" "a", "a"},
    };
    for (const auto& [given, written] : cases) {
        XMLElement element(given);
        element.setAttribute(given, "1");
        EXPECT_EQ(element.name(), written);
        EXPECT_EQ(eventsOf(element.text()), "<" + written + " " + written + "=1></" + written + ">");
    }
}

}  // namespace
}  // namespace vellicor
