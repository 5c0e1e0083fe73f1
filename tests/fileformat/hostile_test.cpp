// tests/fileformat/hostile_test.cpp — documents that mean harm: depth, entities, nesting, wrong kinds, random damage.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "tests/support/log_capture.h"
#include "tests/support/temp_folder.h"
#include "vellicor/fileformat/document_file.h"
#include "vellicor/fileformat/parser.h"
#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using ::testing::HasSubstr;
using testing::LogCapture;
using testing::TempFolder;

std::string repeated(std::string_view piece, std::size_t count) {
    std::string all;
    all.reserve(piece.size() * count);
    while (count-- > 0) all += piece;
    return all;
}

TEST(Hostile, AMillionLevelsAreRead) {
    const LogCapture log;
    constexpr std::size_t depth = 1'000'000;
    auto container = SQLContainer::newContainer();
    Parser parser;
    parser.parseXMLFromData("<SQLContainer>" + repeated("<p>", depth) + repeated("</p>", depth) + "</SQLContainer>",
                            *container);
    EXPECT_TRUE(container->hasProperty("p"));
    EXPECT_THROW(parser.parseXMLFromData("<SQLContainer>" + repeated("<p>", depth), *container), SQLException);
    parser.resetParser();
    constexpr std::size_t tables = 20'000;
    parser.parseXMLFromData(
        "<SQLContainer>" + repeated("<SQLTable>", tables) + repeated("</SQLTable>", tables) + "</SQLContainer>",
        *container);
    EXPECT_EQ(container->count(), 1u);
    EXPECT_EQ(log.lines().size(), tables - 1);
    parser.parseXMLFromData(repeated("<SQLContainer>", tables) + repeated("</SQLContainer>", tables), *container);
    EXPECT_EQ(container->count(), 1u);
}

TEST(Hostile, EntitiesDoNotExplodeOrLeaveTheFolder) {
    const LogCapture log;
    std::string bomb = "<!DOCTYPE b [<!ENTITY a0 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'>";
    for (int i = 1; i < 12; ++i) {
        const std::string inner = text("&a%d;", i - 1);
        bomb += text("<!ENTITY a%d '%@'>", i, repeated(inner, 10));
    }
    const auto messageOf = [](std::string_view document) {
        try {
            (void)loadDocumentData(document, "input");
        } catch (const DocumentFileError& failure) {
            return failure.reason();
        }
        return std::string();
    };
    EXPECT_THAT(messageOf(bomb + "]><SQLContainer><n>&a11;</n></SQLContainer>"),
                HasSubstr("entities of the document expand"));
    EXPECT_THAT(messageOf("<!DOCTYPE b [<!ENTITY e SYSTEM 'http://example.com/x'>]><SQLContainer>&e;</SQLContainer>"),
                HasSubstr("&e;"));
}

TEST(Hostile, ADocumentMaySetOnlyWhatTheTablesList) {
    const LogCapture log;
    auto container = SQLContainer::newContainer();
    Parser().parseXMLFromData(
        "<SQLContainer><objects>1</objects><documentInfo>1</documentInfo><dialectExporter>x</dialectExporter>"
        "<container>1</container><objectLabelManager/><fkObjectGraph>1</fkObjectGraph><isTempContainer>0</"
        "isTempContainer>"
        "<debug>99999999999</debug><name>n</name><uid>U</uid>"
        "<SQLTable><zorder>4000000000</zorder><fields/><removeAll/><delete>1</delete><SQLField><name>a</name>"
        "<observingFkTable>x</observingFkTable><sourceForeignKey>x</sourceForeignKey></SQLField></SQLTable>"
        "<SQLTable><zorder>-9223372036854775808</zorder></SQLTable><SQLTable><zorder>none</zorder></SQLTable></"
        "SQLContainer>",
        *container);
    container->postLoadProcess();
    EXPECT_EQ(container->getDebug(), 2147483647);
    EXPECT_EQ(container->count(), 3u);
    EXPECT_EQ(container->getProperty("objects"), "1");
    EXPECT_TRUE(container->documentInfo());
    EXPECT_TRUE(container->objectLabelManager());
    EXPECT_EQ(container->getName(), "");
}

TEST(Hostile, CyclesOfReferencesEnd) {
    const LogCapture log;
    std::string document = "<SQLContainer>";
    for (int i = 0; i < 50; ++i) {
        document += text(
            "<SQLTable><name>t%d</name><SQLField><name>a</name><primaryKey>1</primaryKey>"
            "<referencesTable>t%d</referencesTable></SQLField></SQLTable>",
            i, (i + 1) % 50);
    }
    auto container = SQLContainer::newContainer();
    Parser().parseXMLFromData(document + "</SQLContainer>", *container);
    container->postLoadProcess();
    auto* field = as<SQLTable>(container->getObjectByName("t0"))->getFieldByName("a");
    EXPECT_EQ(field->getReferences(), "t1(a)");
    EXPECT_TRUE(field->isCircularFK());
    EXPECT_FALSE(container->xmlDocument().empty());
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
    int loaded = 0;
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
                ++loaded;
            } catch (const DocumentFileError&) {
                // Refused with a reason.
            }
        }
    }
    EXPECT_GT(loaded, 25);
}

}  // namespace
}  // namespace vellicor
