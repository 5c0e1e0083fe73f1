// tests/fileformat/recovery_test.cpp — damaged documents, repaired or refused, and those that mean harm.
#include "vellicor/fileformat/recovery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <fstream>
#include <random>
#include <thread>

#include "tests/support/log_capture.h"
#include "tests/support/temp_folder.h"
#include "vellicor/fileformat/document_file.h"
#include "vellicor/fileformat/parser.h"
#include "vellicor/model/field.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::LogCapture;
using ::testing::StartsWith;
using testing::TempFolder;

TEST(Recovery, OnlyCertainBytesAreKept) {
    const std::pair<std::string, std::string> cases[] = {
        {std::string("a\0b\x01\x1F\x7F~ \t\n\r", 11), "ab~ \t\n\r"},
        {"é ß €", "é ß €"},
        {"x\U0001F600y", "xy"},                        // Kept: four bytes are dropped
        {"\xC3(\xA9)", "()"},                          // a lead without its tail, a tail without its lead
        {"\xE2\x82\xC3\xA9", "é"},                     // the broken sequence does not eat the whole one behind it
        {"\xC0\xAF\xC1\xBF\xE0\x80\xAF|", "|"},        // overlong
        {"\xED\xA0\x80\xED\x9F\xBF", "\xED\x9F\xBF"},  // a surrogate; the last character before them
        {"end\xE2\x82", "end"},
    };
    for (const auto& [damaged, kept] : cases) EXPECT_EQ(dataByRemovingInvalidCharacters(damaged), kept) << damaged;
}

TEST(Recovery, LostSlashesOfReferencesAreCountedAndPutBack) {
    LogCapture log;
    EXPECT_EQ(attemptBrokenReference("<![CDATA[x]]></referenceDependentField>"),
              "<![CDATA[x]]></referenceDependentField>");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(attemptBrokenReference("a]]>referenceDependentField>b]]>referenceDependentField>"),
              "a]]></referenceDependentField>b]]></referenceDependentField>");
    EXPECT_THAT(log.lines(), ElementsAre("[NOTE] Found 2 occurances of broken referenceDependentField and fixed them"));
}

TEST(Recovery, DjangoKeysBecomeNames) {
    EXPECT_EQ(filteredKeyString("a b<ü>Z0-9._!"), "abZ0-9._");
    LogCapture log;
    // Kept: the slash of an empty element goes with the rest; "django" alone is no match.
    EXPECT_EQ(attemptDjangoFix("é€<django a=b>x</django a=b><django/><django><!djangox>"),
              "é€<djangoab>x</djangoab><django><django><!djangox>");
    EXPECT_THAT(log.lines(), ElementsAre("FIX: [{3, 10}] replaced string \"django a=b\" with \"djangoab\"",
                                         "FIX: [{15, 10}] replaced string \"django a=b\" with \"djangoab\"",
                                         "FIX: [{25, 7}] replaced string \"django/\" with \"django\""));
}

TEST(Recovery, AMillionOpenDjangoKeysTakeNoTime) {
    std::string open;
    while (open.size() < 7'000'000) open += "<django";
    EXPECT_EQ(attemptDjangoFix(open), open);
    EXPECT_THAT(attemptDjangoFix(open + ">"), ::testing::SizeIs(open.size() / 7 * 6 + 2));
}

const std::string kTable = "<SQLTable><name>t</name><SQLField><name>a</name>";

TEST(Recovery, EachDamageIsRepairedAndRemembered) {
    const struct {
        std::string inside;    // of the document
        const char* loggedBy;  // a line of the repair; empty when it says nothing
    } cases[] = {
        {kTable + "<objectComment>x\x02y</objectComment></SQLField></SQLTable>", ""},
        {kTable + "<objectComment>x\xE9y</objectComment></SQLField></SQLTable>", ""},  // of another encoding
        {kTable + "<referenceDependentField><![CDATA[U]]>referenceDependentField></SQLField></SQLTable>",
         "[NOTE] Found 1 occurances"},
        {kTable + "</SQLField><django:model(x)>m</django:model(x)></SQLTable>", "FIX: "},
        {kTable + "</SQLField><SQLField><name>A</name></SQLField></SQLTable>",
         "recovery mode: may need to rename curObject t(A)"},
        {kTable + "</SQLField><SQLIndex><fieldName/><fieldName>a</fieldName></SQLIndex></SQLTable>",
         "recovery mode: left out fieldName"},
    };
    for (const auto& [inside, loggedBy] : cases) {
        LogCapture log;
        auto container = SQLContainer::newContainer();
        Parser().parseXMLWithRecoveryFromData("<SQLContainer>" + inside + "</SQLContainer>", *container);
        ASSERT_EQ(container->count(), 1u) << inside;
        EXPECT_TRUE(container->getPropertyAsBoolean(keys::documentRecoveryOccurred)) << inside;
        const auto* column = as<SQLTable>(container->objectList()[0])->getFieldByName("a");
        ASSERT_TRUE(column) << inside;
        const auto lines = log.lines();
        EXPECT_THAT(lines, ::testing::Contains(
                    AllOf(StartsWith("Error occurred during parsing :"), HasSubstr(".\n Attempting Recovery\n"))));
        if (*loggedBy)
            EXPECT_THAT(lines, ::testing::Contains(StartsWith(loggedBy)));
        else
            EXPECT_EQ(column->getComment(), "xy") << inside;
    }
    EXPECT_FALSE(Parser().parseXMLFromString("<SQLContainer/>")->hasProperty(keys::documentRecoveryOccurred));
}

TEST(Recovery, WhatCannotBeRepairedReachesTheCaller) {
    LogCapture log;
    auto container = SQLContainer::newContainer();
    Parser parser;
    EXPECT_THROW(parser.parseXMLWithRecoveryFromData("<SQLContainer><SQLObject/></SQLContainer>", *container),
                 SQLException);
    EXPECT_EQ(log.lines().size(), 1u);
    // The flag of the second attempt is gone: a duplicate is an error again.
    const std::string twice = kTable + "</SQLField><SQLField><name>a</name></SQLField></SQLTable>";
    EXPECT_THROW(parser.parseXMLFromData("<SQLContainer>" + twice + "</SQLContainer>", *container), SQLException);
}

TEST(DocumentFile, AReadOnceStreamIsRepairedAndWhatChangedIsTold) {
    LogCapture log;
    const TempFolder folder;
    const std::string damaged = "<SQLContainer>" + kTable +
                                "\x01</SQLField><SQLIndex><name>i</name><fieldName/></SQLIndex>\n<SQLTabel><name>x</name>"
                                "</SQLTabel></SQLTable></SQLContainer>";
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(pipe) << damaged; });
    SQLTable::resetPosition();
    const LoadedDocument document = loadDocument(pipe);
    writer.join();
    EXPECT_TRUE(document.recovered);
    EXPECT_THAT(document.changes,
                ElementsAre("1 bytes that are no text were dropped",
                            "the element \"fieldName\" of the index i, line 1 was left out (Index name passed to index was empty)"));
    EXPECT_THAT(document.unknownElements, ElementsAre("nobody knows the element \"SQLTabel\" in the table t, line 1; what "
                                                      "stands in it is left out"));
    EXPECT_EQ(document.container->objectList()[0]->location().x, 2 * 210);  // the second of two passes
}

TEST(DocumentFile, DeclaredEncodingsAreRepairedInTheirOwnCharacters) {
    const LogCapture log;
    const std::string latin = "<?xml version='1.0' encoding='ISO-8859-1'?><SQLContainer><n>\xE9\x01</n></SQLContainer>";
    EXPECT_EQ(loadDocumentData(latin, "d").container->getProperty("n"), "é");
    try {
        const TempFolder folder;
        folder.write("p.xml", "x");
        (void)loadDocument(folder.write("d.xml", "<!DOCTYPE r [<!ENTITY e SYSTEM 'p.xml'>]><SQLContainer>&e;<n>\x01</n>"));
        FAIL();
    } catch (const DocumentFileError& error) {
        EXPECT_THAT(error.reason(), AllOf(HasSubstr("cannot be repaired"), HasSubstr("&e;")));
    }
}

TEST(DocumentFile, ADamagedFileIsLoadedAndItsDamageTold) {
    LogCapture log;
    const TempFolder folder;
    const LoadedDocument damaged = loadDocument(folder.write("d.xml", "<SQLContainer>\n<n>a\x01z</n></SQLContainer>"));
    EXPECT_TRUE(damaged.recovered);
    EXPECT_THAT(damaged.damage, StartsWith("line 2, column 5: "));
    EXPECT_EQ(damaged.container->getProperty("n"), "az");
    // A document that was recovered once and saved is whole again.
    saveDocument(*damaged.container, folder.path() / "saved.xml");
    const LoadedDocument whole = loadDocument(folder.path() / "saved.xml");
    EXPECT_FALSE(whole.recovered);
    EXPECT_THAT(whole.damage, IsEmpty());
    EXPECT_TRUE(whole.container->getPropertyAsBoolean(keys::documentRecoveryOccurred));
}

TEST(DocumentFile, FailuresNameTheFileAndTheRemedy) {
    LogCapture log;
    using Kind = DocumentFileError::Kind;
    const TempFolder folder;
    const auto expectFailure = [](const auto& action, Kind kind, const char* name, const char* reason) {
        try {
            action();
            ADD_FAILURE() << "no failure: " << reason;
        } catch (const DocumentFileError& failure) {
            EXPECT_EQ(failure.kind(), kind) << reason;
            EXPECT_EQ(failure.name(), name) << reason;
            EXPECT_THAT(failure.reason(), HasSubstr(reason));
        }
    };
    const std::tuple<std::filesystem::path, Kind, const char*, const char*> cases[] = {
        {folder.path() / "none.xml", Kind::CannotRead, "XMLParseException", "none.xml cannot be read: "},
        {folder.path(), Kind::CannotRead, "XMLParseException", " cannot be read: "},
        {folder.write("a.xml", "<SQLContainer>"), Kind::NotADocument, "XMLParseException",
         "a.xml cannot be read as a design document, and repairing it did not help: line 1, column 15: "},
        {folder.write("b.xml", "<SQLContainer><Parser/></SQLContainer>"), Kind::NotADocument, "XML Security Exception",
         "did not help: Object (Parser) did not implement"},
        {folder.write("c.xml", "<svg/>"), Kind::NotADocument, "ParsingException", "its outermost element is \"svg\""},
        {folder.write("e.xml", "<!DOCTYPE x [<!ENTITY e SYSTEM '/etc/hostname'>]><SQLContainer>&e;</SQLContainer>"),
         Kind::NotADocument, "XMLParseException", "&e;"},
    };
    for (const auto& [file, kind, name, reason] : cases)
        expectFailure([&file = file] { (void)loadDocument(file); }, kind, name, reason);
    const auto save = [&] { saveDocument(*SQLContainer::newContainer(), folder.path() / "no/such/folder.xml"); };
    expectFailure(save, Kind::CannotWrite, "DocumentWriteException", "folder.xml cannot be written: ");
}

TEST(DocumentFile, FilesBesideADocumentMayBelongToIt) {
    const TempFolder folder;
    folder.write("parts/t.xml", "<SQLTable><name>t</name></SQLTable>");
    const auto file =
        folder.write("d.xml", "<!DOCTYPE x [<!ENTITY t SYSTEM 'parts/t.xml'>]><SQLContainer>&t;</SQLContainer>");
    EXPECT_TRUE(loadDocument(file).container->getObjectByName("t"));
    LogCapture log;
    EXPECT_THROW((void)loadDocumentData(TempFolder::read(file), "input"), DocumentFileError);
}

std::string repeated(std::string_view piece, std::size_t count) {
    std::string all;
    while (count-- > 0) all += piece;
    return all;
}

std::shared_ptr<SQLContainer> loaded(std::string_view document) {
    auto container = SQLContainer::newContainer();
    Parser().parseXMLFromData(document, *container);
    container->postLoadProcess();
    return container;
}

TEST(Hostile, AMillionLevelsAreRead) {
    const LogCapture log;
    constexpr std::size_t depth = 1'000'000, tables = 20'000;
    const auto nested = [](std::string_view name, std::size_t levels) {
        return repeated(text("<%@>", name), levels) + repeated(text("</%@>", name), levels);
    };
    EXPECT_TRUE(loaded("<SQLContainer>" + nested("p", depth) + "</SQLContainer>")->hasProperty("p"));
    EXPECT_THROW(loaded("<SQLContainer>" + repeated("<p>", depth)), SQLException);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(loaded("<SQLContainer>" + nested("SQLTable", tables) + "</SQLContainer>")->count(), 1u);
    EXPECT_EQ(log.lines().size(), tables - 1);
    EXPECT_EQ(loaded(nested("SQLContainer", tables))->count(), 0u);
}

TEST(Hostile, ADocumentMaySetOnlyWhatTheTablesList) {
    const LogCapture log;
    const auto container = loaded(
        "<SQLContainer><objects>1</objects><documentInfo>1</documentInfo><dialectExporter>x</dialectExporter>"
        "<container>1</container><objectLabelManager/><fkObjectGraph>1</fkObjectGraph>"
        "<isTempContainer>0</isTempContainer><debug>99999999999</debug><name>n</name><uid>U</uid>"
        "<SQLTable><zorder>4000000000</zorder><fields/><removeAll/><delete>1</delete><SQLField><name>a</name>"
        "<observingFkTable>x</observingFkTable><sourceForeignKey>x</sourceForeignKey></SQLField></SQLTable>"
        "<SQLTable><zorder>-9223372036854775808</zorder></SQLTable><SQLTable><zorder>none</zorder></SQLTable>"
        "</SQLContainer>");
    EXPECT_EQ(container->getDebug(), 2147483647);
    EXPECT_EQ(container->count(), 3u);
    EXPECT_EQ(container->getProperty("objects"), "1");
    EXPECT_TRUE(container->documentInfo() && container->objectLabelManager());
    EXPECT_EQ(container->getName(), "");
}

/// Bytes put in, taken out, doubled, exchanged; pieces of the document moved to other places.
void damage(std::string& document, std::minstd_rand& random) {
    static const char* const kPieces[] = {
        "<SQLTable>", "</SQLTable>", "<SQLField>", "</SQLField>", "<SQLContainer>", "]]>",  "<![CDATA[",
        "&amp;",      "<location>",  "<uid>",      "<x/>",        "<fieldName/>",   "\xFF", "<QVObjectStyle>"};
    const auto below = [&](std::size_t limit) { return random() % std::max<std::size_t>(limit, 1); };
    for (std::size_t times = 1 + below(2); times > 0; --times) {
        const std::size_t at = below(document.size());
        switch (below(5)) {
            case 0: document.erase(at, below(40)); break;
            case 1: document.insert(at, kPieces[below(std::size(kPieces))]); break;
            case 2: document[at] = static_cast<char>(below(256)); break;
            case 3: document.insert(at, document.substr(below(document.size()), below(400))); break;
            default: std::swap(document[at], document[below(document.size())]); break;
        }
    }
}

TEST(Hostile, RandomDamageEndsInADocumentOrAnError) {
    const LogCapture log;
    const auto folder = std::filesystem::path(VELLICOR_SOURCE_DIR) / "examples";
    std::minstd_rand random(1);
    int survived = 0;
    for (const char* name : {"shop.xml", "legacy.xml"}) {
        const std::string whole = TempFolder::read(folder / name);
        for (int round = 0; round < 100; ++round) {
            std::string document = whole;
            damage(document, random);
            try {
                const auto result = loadDocumentData(document, "input");
                // What was read can be written, and what was written can be read.
                const auto again = loadDocumentData(result.container->xmlDocument(), "again");
                EXPECT_EQ(again.container->count(), result.container->count()) << round;
                ++survived;
            } catch (const DocumentFileError&) {
                // Refused with a reason.
            }
        }
    }
    EXPECT_GT(survived, 25);
}

}  // namespace
}  // namespace vellicor
