// tests/fileformat/recovery_test.cpp — damaged documents: each repair by itself and in a load; whole files.
#include "vellicor/fileformat/recovery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "tests/support/log_capture.h"
#include "tests/support/temp_folder.h"
#include "vellicor/fileformat/document_file.h"
#include "vellicor/fileformat/parser.h"
#include "vellicor/model/field.h"
#include "vellicor/model/table.h"

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

const std::string kTable = "<SQLTable><name>t</name><SQLField><name>a</name>";

struct Damage {
    const char* what;
    std::string inside;    // of the document
    std::string loggedBy;  // a line of the repair; empty when it says nothing
};

TEST(Recovery, EachDamageIsRepairedAndRemembered) {
    const Damage cases[] = {
        {"a control character", kTable + "<objectComment>x\x02y</objectComment></SQLField></SQLTable>", ""},
        {"a byte of another encoding", kTable + "<objectComment>x\xE9y</objectComment></SQLField></SQLTable>", ""},
        {"a lost slash",
         kTable + "<referenceDependentField><![CDATA[U]]>referenceDependentField></SQLField></SQLTable>",
         "[NOTE] Found 1 occurances"},
        {"a key that is no name", kTable + "</SQLField><django:model(x)>m</django:model(x)></SQLTable>", "FIX: "},
        {"two columns of a name", kTable + "</SQLField><SQLField><name>A</name></SQLField></SQLTable>",
         "recovery mode: may need to rename curObject t(A)"},
    };
    for (const Damage& damage : cases) {
        LogCapture log;
        auto container = SQLContainer::newContainer();
        Parser().parseXMLWithRecoveryFromData("<SQLContainer>" + damage.inside + "</SQLContainer>", *container);
        ASSERT_EQ(container->count(), 1u) << damage.what;
        EXPECT_TRUE(container->getPropertyAsBoolean(keys::documentRecoveryOccurred)) << damage.what;
        auto table = as<SQLTable>(container->objectList()[0]);
        EXPECT_TRUE(table->getFieldByName("a")) << damage.what;
        const auto lines = log.lines();
        EXPECT_THAT(lines.at(0),
                    AllOf(StartsWith("Error occurred during parsing :"), HasSubstr(".\n Attempting Recovery\n")));
        if (damage.loggedBy.empty())
            EXPECT_EQ(table->getFieldByName("a")->getComment(), "xy") << damage.what;
        else
            EXPECT_THAT(lines.at(1), StartsWith(damage.loggedBy));
    }
    EXPECT_FALSE(Parser().parseXMLFromString("<SQLContainer/>")->hasProperty(keys::documentRecoveryOccurred));
}

TEST(Recovery, WhatCannotBeRepairedReachesTheCaller) {
    LogCapture log;
    auto container = SQLContainer::newContainer();
    Parser parser;
    EXPECT_THROW(
        parser.parseXMLWithRecoveryFromData("<SQLContainer><SQLTable/><SQLObject/></SQLContainer>", *container),
        SQLException);
    EXPECT_EQ(log.lines().size(), 1u);
    // The flag of the second attempt is gone: a duplicate is an error again.
    EXPECT_THROW(parser.parseXMLFromData("<SQLContainer>" + kTable +
                                             "</SQLField><SQLField><name>a</name></SQLField></SQLTable></SQLContainer>",
                                         *container),
                 SQLException);
}

std::optional<DocumentFileError> failureOf(const std::filesystem::path& file) {
    try {
        (void)loadDocument(file);
    } catch (const DocumentFileError& failure) {
        return failure;
    }
    return std::nullopt;
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
    EXPECT_THAT(loadDocumentData("<SQLContainer><n>a\x01z</n></SQLContainer>", "input").damage,
                StartsWith("line 1, column 19: "));
}

TEST(DocumentFile, FailuresNameTheFileAndTheRemedy) {
    LogCapture log;
    using Kind = DocumentFileError::Kind;
    const TempFolder folder;
    const struct {
        std::filesystem::path file;
        Kind kind;
        const char* name;
        const char* reason;
    } cases[] = {
        {folder.path() / "none.xml", Kind::CannotRead, "XMLParseException", "none.xml cannot be read: "},
        {folder.path(), Kind::CannotRead, "XMLParseException", " cannot be read: "},
        {folder.write("a.xml", "<SQLContainer>"), Kind::NotADocument, "XMLParseException",
         "a.xml cannot be read as a design document, and repairing it did not help: line 1, column 15: "},
        {folder.write("b.xml", "<SQLContainer><Parser/></SQLContainer>"), Kind::NotADocument, "XML Security Exception",
         "did not help: Object (Parser) did not implement"},
        {folder.write("c.xml", "<svg/>"), Kind::NotADocument, "ParsingException", "its outermost element is \"svg\""},
        {folder.write("e.xml",
                      "<!DOCTYPE x [<!ENTITY e SYSTEM '/etc/hostname'>]><SQLContainer><n>&e;</n></SQLContainer>"),
         Kind::NotADocument, "XMLParseException", "&e;"},
    };
    for (const auto& expected : cases) {
        const auto failure = failureOf(expected.file);
        ASSERT_TRUE(failure) << expected.file;
        EXPECT_EQ(failure->kind(), expected.kind) << expected.file;
        EXPECT_EQ(failure->name(), expected.name) << expected.file;
        EXPECT_THAT(failure->reason(), HasSubstr(expected.reason));
    }
    try {
        saveDocument(*SQLContainer::newContainer(), folder.path() / "no" / "such" / "folder.xml");
        FAIL();
    } catch (const DocumentFileError& failure) {
        EXPECT_EQ(failure.kind(), Kind::CannotWrite);
        EXPECT_THAT(failure.reason(), HasSubstr("folder.xml cannot be written: "));
    }
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

}  // namespace
}  // namespace vellicor
