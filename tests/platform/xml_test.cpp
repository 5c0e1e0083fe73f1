// tests/platform/xml_test.cpp — XML read as events, its errors and external entities; XML written from elements.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <optional>

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

std::optional<XMLError> errorOf(const std::function<void()>& parse) {
    try {
        parse();
    } catch (const XMLError& error) {
        return error;
    }
    return std::nullopt;
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
}

TEST(XMLEvents, LongInputIsReadWhole) {
    std::string text(1000000, 'x');
    EXPECT_EQ(eventsOf("<r><![CDATA[" + text + "]]></r>").size(), text.size() + 7);
    testing::TempFolder folder;
    EXPECT_EQ(eventsOfFile(folder.write("long.xml", "<r><a/>" + text + "</r>")), "<r><a></a>" + text + "</r>");
    std::string deep;
    for (int i = 0; i < 100000; ++i) deep += "<d>";
    EXPECT_EQ(errorOf([&] { eventsOf(deep); })->code(), 5);
}

TEST(XMLEvents, ErrorsHaveANumberWordsAndAPlace) {
    struct Case {
        std::string bytes;
        int code, line, column;
    };
    std::string bomb = "<!DOCTYPE r [<!ENTITY a0 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa'>";
    for (int i = 1; i < 9; ++i) {
        bomb += "<!ENTITY a" + std::to_string(i) + " '";
        for (int j = 0; j < 10; ++j) bomb += "&a" + std::to_string(i - 1) + ";";
        bomb += "'>";
    }
    for (const Case& c : {Case{"", 5, 1, 1},
                          {"<r>\n<a>", 5, 2, 4},
                          {"CREATE TABLE", 4, 1, 1},
                          {"\x01<r/>", 4, 1, 1},
                          {"<r>\nab\x02</r>", 9, 2, 3},
                          {"<r>\xFF</r>", 9, 1, 4},
                          {"<r>a < b</r>", 68, 1, 7},
                          {"<r>a & b</r>", 68, 1, 7},
                          {"<r>\n <a x='1' x='2'/></r>", 42, 2, 11},
                          {"<r><a></b></r>", 76, 1, 9},
                          {"<r><![CDATA[x]]>r>\n</q>", 76, 2, 3},
                          {"<r/><s/>", 5, 1, 5},
                          {"<r>&e;</r>", 26, 1, 4},
                          {"<r>&#1;</r>", 9, 1, 4},
                          {" <?xml version='1.0'?><r/>", 64, 1, 2},
                          {"<?xml version='1.0' encoding='x-none'?><r/>", 32, 1, 31},
                          {"<r><![CDATA[x", 5, 1, 14},
                          {"<r><a", 73, 1, 4},
                          {"<r a=1/>", 1, 1, 6},
                          {bomb + "]><r>&a8;</r>", 89, 1, 0}}) {
        auto error = errorOf([&] { eventsOf(c.bytes); });
        ASSERT_TRUE(error) << c.bytes;
        EXPECT_EQ(error->code(), c.code) << c.bytes;
        EXPECT_EQ(error->line(), c.line) << c.bytes;
        EXPECT_EQ(error->column(), c.column ? c.column : error->column()) << c.bytes;
        EXPECT_FALSE(error->description().empty()) << c.bytes;
    }
    auto error = errorOf([] { eventsOf("<r>\n<a></b></r>"); });
    EXPECT_EQ(error->name(), "XMLParseException");
    EXPECT_EQ(error->reason(), "Error 76, Description: " + error->description() + ", Line: 2, Column: 6");
    EXPECT_THAT(errorOf([] { eventsOf("<r>&nbsp;</r>"); })->description(), HasSubstr("&nbsp;"));

    auto missing = errorOf([] { eventsOfFile("/nowhere/at/all.xml"); });
    EXPECT_EQ(missing->code(), 0);
    EXPECT_EQ(missing->line(), 0);
    EXPECT_THAT(missing->description(), HasSubstr("No such file or directory"));
    EXPECT_EQ(errorOf([] { eventsOfFile("/"); })->code(), 0);
}

TEST(XMLEvents, AnExceptionOfTheHandlerStopsTheParseAndReachesItsCaller) {
    struct Refusing : Trace {
        std::string what;
        void startElement(std::string_view name, const XMLAttributes& attributes) override {
            if (what == name) throw SQLException("Refused", "no " + what);
            Trace::startElement(name, attributes);
        }
        void characters(std::string_view text) override {
            if (what == text) throw 42;
            Trace::characters(text);
        }
    } handler;
    handler.what = "bad";
    EXPECT_THROW(parseXML("<r><a/><bad/><c/></r>", handler), SQLException);
    EXPECT_EQ(handler.events, "<r><a></a>");
    handler.what = "x";
    EXPECT_THROW(parseXML("<r>x<c/></r", handler), int);

    testing::TempFolder folder;
    folder.write("part.xml", "<ok/><bad/>");
    auto file = folder.write("d.xml", "<!DOCTYPE r [<!ENTITY p SYSTEM 'part.xml'>]><r>&p;<c/></r>");
    handler.what = "bad";
    handler.events.clear();
    EXPECT_THROW(parseXMLFile(file, handler), SQLException);
    EXPECT_EQ(handler.events, "<r><ok></ok>");
}

TEST(XMLEvents, BytesNeverReachOutsideThemselves) {
    auto refusal = [](std::string_view bytes) {
        auto error = errorOf([&] { eventsOf(bytes); });
        return error ? error->description() : std::string();
    };
    EXPECT_THAT(refusal("<!DOCTYPE r [<!ENTITY logo SYSTEM '/etc/passwd'>]><r>&logo;</r>"),
                AllOf(HasSubstr("&logo;"), HasSubstr("/etc/passwd")));
    EXPECT_THAT(refusal("<!DOCTYPE r [<!ENTITY % more SYSTEM 'more.dtd'>%more;]><r/>"),
                AllOf(HasSubstr("%more;"), HasSubstr("more.dtd")));
    EXPECT_THAT(refusal("<!DOCTYPE r [<!ENTITY logo SYSTEM 'x'>]><r a='&logo;'/>"), HasSubstr("&logo;"));
    EXPECT_THAT(refusal("<!DOCTYPE r SYSTEM 'r.dtd'><r>1&inDtd;2</r>"), HasSubstr("&inDtd;"));
    // Neither a type declaration nor an entity that nobody refers to hurts.
    EXPECT_EQ(eventsOf("<!DOCTYPE r PUBLIC '-//x' 'http://example.org/r.dtd'><r>1</r>"), "<r>1</r>");
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
    for (const std::string& systemId : {std::string("part.xml"), std::string("./sub/../part.xml"),
                                        std::string("in.xml"), (folder / "part.xml").string()}) {
        EXPECT_EQ(eventsOfFile(including(systemId)), "<r><p>é</p></r>") << systemId;
    }
    EXPECT_EQ(eventsOfFile(document("<!ENTITY o SYSTEM 'sub/outer.xml'><!ENTITY inner SYSTEM 'sub/inner.xml'>",
                                    "&o;&inner;")),
              "<r>[iné]iné</r>");
    EXPECT_EQ(eventsOfFile(including("full.xml")).size(), 1024u * 1024 + 7);
    EXPECT_EQ(eventsOfFile(document("<!ENTITY % m SYSTEM 'more.dtd'>%m;", "&fromMore;")), "<r>more</r>");

    for (const std::string& systemId :
         {std::string("../secret.txt"), std::string("out.xml"), std::string("up/secret.txt"),
          (outer.path() / "secret.txt").string(), std::string("/etc/passwd"), std::string("file:///etc/passwd"),
          std::string("http://example.org/x"), std::string("../doc-other/x.txt"), std::string("sub"), std::string("."),
          std::string("pipe"), std::string("missing.xml"), std::string("big.xml")}) {
        auto error = errorOf([&] { eventsOfFile(including(systemId)); });
        ASSERT_TRUE(error) << systemId;
        EXPECT_THAT(error->description(), AllOf(HasSubstr("&e;"), HasSubstr(systemId)));
        EXPECT_EQ(error->line(), 1);
    }
    auto broken = errorOf([&] { eventsOfFile(including("broken.xml")); });
    EXPECT_EQ(broken->code(), 76);
    EXPECT_EQ(broken->line(), 2);
    EXPECT_THAT(broken->description(), HasSubstr("broken.xml"));
}

TEST(XMLEvents, IncludedFilesNestEightDeep) {
    testing::TempFolder folder;
    std::string declarations;
    for (int i = 1; i <= 9; ++i) {
        std::string name = "e" + std::to_string(i);
        declarations += "<!ENTITY " + name + " SYSTEM '" + name + ".xml'>";
        folder.write(name + ".xml", i < 9 ? "&e" + std::to_string(i + 1) + ";" : "end");
    }
    auto document = [&](const char* text) {
        return folder.write("d.xml", "<!DOCTYPE r [" + declarations + "]><r>" + text + "</r>");
    };
    EXPECT_EQ(eventsOfFile(document("&e2;&e3;")), "<r>endend</r>");
    EXPECT_THAT(errorOf([&] { eventsOfFile(document("&e1;")); })->description(), HasSubstr("&e9;"));
    folder.write("e9.xml", "&e9;");
    EXPECT_TRUE(errorOf([&] { eventsOfFile(document("&e9;")); }));
}

TEST(XMLElement, PrintsFourBlanksALevelAndNoneBesideText) {
    XMLElement root("SQLTable");
    EXPECT_TRUE(root.isEmpty());
    root.addCDataElement("name", "a]]>b");
    root.addTextElement("type", "<& >");
    root.addTextElement("none", "");
    root.addCDataElement("blank", "");
    XMLElement font = root.addElement("font");
    font.setAttribute("key", "old");
    font.setAttribute("key", "a\"<");
    EXPECT_FALSE(font.isEmpty());
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
    struct Case {
        std::string_view written, read;
    };
    for (const Case& c : {Case{"", ""},
                          {"]]>]]>", "]]>]]>"},
                          {" \t\n<&\">' é 日本 😀 \x7F", " \t\n<&\">' é 日本 😀 \x7F"},
                          {std::string_view("a\0\x01\x1F" "b", 5), "ab"},
                          {"x\xEF\xBF\xBEy\xEF\xBF\xBFz\xEF\xBF\xBD", "xyz\xEF\xBF\xBD"},
                          {"bad \xFF byte", "bad \xEF\xBF\xBD byte"}}) {
        XMLElement root("r");
        root.addCDataElement("c", c.written);
        root.addTextElement("t", c.written);
        root.addElement("a").setAttribute("v", c.written);
        std::string read(c.read);
        std::string events = eventsOf(std::string(xmlDeclaration) + root.text());
        EXPECT_THAT(events, AllOf(HasSubstr("<c>" + read + "</c>"), HasSubstr("<t>" + read + "</t>"),
                                  HasSubstr("<a v=" + read + ">")));
    }
}

TEST(XMLElement, NamesAreMadeSuchThatTheReaderTakesThem) {
    struct Case {
        const char *given, *written;
    };
    for (const Case& c : {Case{"a.b-c_9", "a.b-c_9"}, {"x:y", "x:y"}, {"größe", "größe"}, {"two words", "twowords"},
                          {"9lives", "_9lives"}, {"-x", "_-x"}, {"<>", "_"}, {"", "_"}, {"a b:c", "abc"},
                          {"prix é", "prixé"}, {"smile😀", "smile"}, {"a×b", "ab"}, {"\xFF" "a", "a"}, {"a>b", "ab"}}) {
        XMLElement element(c.given);
        element.setAttribute(c.given, "1");
        EXPECT_EQ(element.name(), c.written);
        EXPECT_EQ(eventsOf(element.text()), "<" + std::string(c.written) + " " + c.written + "=1></" + c.written + ">");
    }
}

}  // namespace
}  // namespace vellicor
