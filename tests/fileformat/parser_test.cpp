// tests/fileformat/parser_test.cpp — how elements become objects and properties, on both routes of setting them.
#include "vellicor/fileformat/parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "tests/support/log_capture.h"
#include "tests/support/temp_folder.h"
#include "vellicor/dialects/dialect_manager.h"
#include "vellicor/model/archive_reading.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::LogCapture;
using ::testing::StartsWith;
using testing::TempFolder;

enum class Route { Setters, Safe };

std::shared_ptr<SQLContainer> read(const std::string& inside, Route route = Route::Setters) {
    Parser parser;
    parser.setForceSafePropertySetter(route == Route::Safe);
    auto container = SQLContainer::newContainer();
    parser.parseXMLFromData("<SQLContainer>" + inside + "</SQLContainer>", *container);
    return container;
}

std::shared_ptr<SQLTable> first(const std::shared_ptr<SQLContainer>& container) {
    return as<SQLTable>(container->objectList().at(0));
}

/// The first table of a document that holds `inside` within a table.
std::shared_ptr<SQLTable> table(const std::string& inside, Route route = Route::Setters) {
    return first(read("<SQLTable>" + inside + "</SQLTable>", route));
}

std::shared_ptr<SQLField> column(const std::string& xml, Route route = Route::Setters) {
    return as<SQLField>(table(xml, route)->getFields().at(0));
}

/// "name: reason" of what `action` raises.
std::string failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const SQLException& failure) {
        return failure.name() + ": " + failure.reason();
    }
    return "nothing was raised";
}

TEST(Parser, FlagsAreOneOrYes) {
    const auto flag = [](std::string_view written, Route route = Route::Setters) {
        return column(text("<SQLField><primaryKey>%@</primaryKey></SQLField>", written), route)->getPrimaryKey();
    };
    for (const char* written : {"1", "YES", "yes", "Yes"}) EXPECT_TRUE(flag(written)) << written;
    for (const char* written : {"true", "y", "01", " 1", "0", ""}) EXPECT_FALSE(flag(written)) << written;
    // Kept: the safe route reads flags as it reads boolean properties.
    for (const char* written : {"true", " 01"}) EXPECT_TRUE(flag(written, Route::Safe)) << written;
}

TEST(Parser, NumbersAreScannedAndClamped) {
    const auto field = column(
        "<SQLField><deleteAction>18446744073709551615</deleteAction><updateAction> 2x</updateAction>"
        "<sourceCardinality>-1</sourceCardinality></SQLField>");
    EXPECT_EQ(field->deleteAction(), 9223372036854775807u);
    EXPECT_EQ(field->updateAction(), 2u);
    EXPECT_EQ(field->sourceCardinality(), 18446744073709551615u);
}

TEST(Parser, NamesOfOperationsThatTakeObjectsAreProperties) {
    for (const char* name :
         {"label", "container", "parent", "properties", "undoManager", "frame", "fields", "objectStyle",
          "primaryKeyToFieldNames", "objectFont", "Location", "Size", "locationFromObject", "visualTheme", "NAME"}) {
        const auto container = read(text("<SQLTable><%@>x</%@></SQLTable>", name, name));
        EXPECT_EQ(first(container)->getProperty(name), "x") << name;
        EXPECT_EQ(first(container)->topLevelContainer(), container.get()) << name;
    }
}

TEST(Parser, WhatStandsInTheWrongPlaceIsLoggedAndLeftOut) {
    const std::string misplaced = "Incorrect file structure, SQLObject incorrectly nested (not inside SQLContainer) ";
    const struct {
        const char* inside;
        std::string firstLine;  // empty: nothing is said
    } cases[] = {
        {"<SQLField><name>f</name></SQLField>", "Warning: stray field object found"},
        {"<p><SQLIndex/></p>", "Warning: stray field object found"},
        {"<SQLTable><SQLComment/></SQLTable>", misplaced},
        {"<SQLTable><SQLIndexEntry/></SQLTable>", misplaced},
        {"<p><SQLTable/></p>", misplaced},
        {"<SQLObjectLabel><QVObjectStyle/></SQLObjectLabel>", misplaced},
        {"<SQLTable><SQLIndex><SQLForeignKeyEntry/></SQLIndex></SQLTable>", ""},
        {"<SQLSchema><name>s</name></SQLSchema>", "attempted to add object failed Warning adding object of type "},
        {"<SQLContainer><SQLContainer/></SQLContainer>",
         "attempted to add object failed A document cannot hold itself"},
    };
    for (const auto& [inside, firstLine] : cases) {
        LogCapture log;
        const auto container = read(inside);
        container->postLoadProcess();
        EXPECT_EQ(log.lines().empty(), firstLine.empty()) << inside;
        EXPECT_THAT(log.lines().empty() ? "" : log.lines().front(), StartsWith(firstLine)) << inside;
        EXPECT_TRUE(container->isEmpty() || first(container)->getFields().size() < 2) << inside;
    }
    EXPECT_EQ(read("<allowsFieldObject>1</allowsFieldObject><SQLField><name>f</name></SQLField>")->count(), 1u);
}

TEST(Parser, ElementsInsidePropertyElementsBelongToNothing) {
    LogCapture log;
    const std::string nested = "<p>a<q>b</q><location><x>1</x></location>c</p>";
    EXPECT_EQ(table(nested)->getProperty("p"), "ac");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(table(nested, Route::Safe)->getProperty("p"), "ac");
    EXPECT_THAT(log.lines(),
                ElementsAre("warning - called setSafePropertyValue on QVParserElement with key q value b",
                            "warning - called setSafePropertyValue on QVParserElement with key location value {1, 0}"));
    // A point has no other places to keep things in.
    EXPECT_EQ(table("<location><x>1</x><z>2</z><size/></location>")->location(), (Point{1, 0}));
}

TEST(Parser, ForeignClassesDuplicatesAndEmptyIndexColumnsStopTheLoad) {
    std::vector<std::string> refused{"SQLObject", "SQLTableComponent", "SQLValue", "Parser", "QVParserElement",
                                     "SybaseStyleExporter", "MySQLIndexExporter", "SQLForeignKeyObjectGraph",
                                     "QVVisualThemeDark", "ProgressWatcher"};
    for (const auto& dialect : DialectManager::getDialectManager().exporterList())
        refused.emplace_back(dialect->exporter()->className());
    for (const std::string& name : refused) {
        EXPECT_EQ(failureOf([&] { (void)table(text("<%@/>", name)); }),
                  text("XML Security Exception: Object (%@) did not implement protocol SQLObjectImportable", name));
    }
    EXPECT_EQ(table("<NSString>x</NSString>")->getProperty("NSString"), "x");
    EXPECT_EQ(table("<SQLComparisonIndex><name>i</name></SQLComparisonIndex>")->getFields().size(), 1u);

    const LogCapture log;
    EXPECT_EQ(failureOf([] {
                  (void)table("<name>t</name><SQLField><name>a</name></SQLField><SQLField><name>A</name></SQLField>");
              }),
              "DuplicateFieldException: Duplicate field exception on t(A)");
    EXPECT_EQ(failureOf([] { (void)table("<SQLIndex><fieldName/></SQLIndex>"); }),
              "NilIndexFieldException: Index name passed to index was empty");
}

TEST(Parser, FailuresSayWhatAndWhere) {
    const TempFolder folder;
    const auto file = folder.write("d.xml", "<SQLContainer>\n<a></b>");
    Parser parser;
    const std::string place =
        "Error 76, Description: A closing tag does not match the element that is open, Line: 2, Column: 6";
    EXPECT_EQ(failureOf([&] { (void)parser.parseXMLFromPath(file); }), "XMLParseException: " + place);
    auto container = SQLContainer::newContainer();
    EXPECT_EQ(failureOf([&] { parser.parseXMLFromData("<SQLContainer>\n<a></b>", *container); }),
              "FileParseException: " + place + "\n (null)");
    EXPECT_THAT(failureOf([&] { (void)parser.parseXMLFromPath(folder.path() / "none.xml"); }),
                StartsWith("XMLParseException: Error 0, Description: "));
    EXPECT_TRUE(parser.parseXMLFromPath(folder.write("f.xml", "<foo/>"))->isEmpty());
}

TEST(Parser, TextIsUTF8WhateverItSays) {
    const LogCapture log;
    Parser parser;
    const std::string latin = "<?xml version='1.0' encoding='ISO-8859-1'?><SQLContainer><n>";
    EXPECT_EQ(parser.parseXMLFromString(latin + "é</n></SQLContainer>")->getProperty("n"), "é");
    EXPECT_EQ(parser.parseXMLFromString("<SQLContainer><n>a\xFFz</n></SQLContainer>")->getProperty("n"), "a\uFFFDz");
    const auto container = SQLContainer::newContainer();
    parser.parseXMLFromData(latin + "\xE9</n></SQLContainer>", *container);
    EXPECT_EQ(container->getProperty("n"), "é");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(Parser, ArchivedObjectsComeWithoutADocument) {
    LogCapture log;
    const auto object = objectFromArchivedXML(
        "<SQLTable><name>t</name><zorder>4</zorder><SQLField><name>a</name></SQLField></SQLTable>");
    ASSERT_TRUE(as<SQLTable>(object));
    EXPECT_EQ(object->container(), nullptr);
    EXPECT_EQ(object->getProperty(keys::zorder), "4");
    EXPECT_EQ(objectFromArchivedXML("<SQLField><name>a</name></SQLField>")->getName(), "a");
    for (const char* other : {"<SQLContainer/>", "<p/>"}) EXPECT_EQ(objectFromArchivedXML(other), nullptr);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(objectFromArchivedXML("<SQLTable>"), nullptr);
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("archived object cannot be read")));
}

}  // namespace
}  // namespace vellicor
