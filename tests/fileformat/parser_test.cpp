// tests/fileformat/parser_test.cpp — how elements become objects and properties, on both routes of setting them.
#include "vellicor/fileformat/parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "tests/support/temp_folder.h"
#include "vellicor/fileformat/xml_export.h"
#include "vellicor/model/archive_reading.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/label.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/presentation/object_style.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::LogCapture;
using testing::ScopedPreference;
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

template <class T = SQLTable>
std::shared_ptr<T> first(const std::shared_ptr<SQLContainer>& container) {
    return as<T>(container->objectList().at(0));
}

/// The first table of a document that holds `inside` within a table.
std::shared_ptr<SQLTable> table(const std::string& inside, Route route = Route::Setters) {
    return first(read("<SQLTable>" + inside + "</SQLTable>", route));
}

template <class T = SQLField>
std::shared_ptr<T> component(const std::string& xml, Route route = Route::Setters) {
    const auto parent = table(xml, route);
    return as<T>(parent->getFields().at(0));
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

class ParserRoutes : public ::testing::TestWithParam<Route> {};
INSTANTIATE_TEST_SUITE_P(Both, ParserRoutes, ::testing::Values(Route::Setters, Route::Safe));

TEST_P(ParserRoutes, EveryKindOfObjectFindsItsPlaceAndItsValues) {
    const LogCapture log;
    const auto container = read(
        "<SQLTable><name>t</name><schema>s</schema><comment>'c'</comment><tableType>InnoDB</tableType>"
        "<location><x>12.25</x><y>-3</y></location><size><width>200</width><height>100.5</height></size><zorder>0</"
        "zorder>"
        "<SQLField><name>id</name><type>NUMERIC(10,2)</type><primaryKey>1</primaryKey><notNull>1</notNull>"
        "<deleteAction>3</deleteAction><referencesTable>u</referencesTable><uid>F</uid></SQLField>"
        "<SQLIndex><name>i</name><fieldName>id</fieldName><SQLIndexEntry><name>id</name><prefixSize>7</prefixSize>"
        "<fieldUid>F</fieldUid></SQLIndexEntry><indexType>FULLTEXT</indexType></SQLIndex>"
        "<SQLConstraint><name>c</name><indexType>CHECK</indexType><checkConstraint>a &lt; "
        "b</checkConstraint></SQLConstraint>"
        "<SQLForeignKey><name>k</name><updateAction>1</updateAction><targetTableName>u</"
        "targetTableName><SQLForeignKeyEntry>"
        "<sourceFieldName>id</sourceFieldName><targetFieldName>x</targetFieldName></SQLForeignKeyEntry></SQLForeignKey>"
        "<QVObjectStyle><font key='objectFont' name='Serif' size='11.5'/></QVObjectStyle>"
        "<isLocked>1</isLocked><somethingNew><![CDATA[]]]]><![CDATA[>]]></somethingNew><uid>T</uid></SQLTable>"
        "<SQLView><name>v</name><SQLViewEntry><name>columns</name><type>label</type></SQLViewEntry>"
        "<queryString>SELECT 1</queryString></SQLView>"
        "<SQLCanvasArea><name>a</name><comment>text</comment></SQLCanvasArea>"
        "<SQLObjectLabel><name>red</name><colorString>{1,0,0,1,sRGBColorSpace}</colorString><hidden>1</hidden></"
        "SQLObjectLabel>"
        "<SQLDocumentInfo><exportDialect>SQLite</exportDialect><uid>D</uid></SQLDocumentInfo><note>n</note>",
        GetParam());
    EXPECT_THAT(log.lines(), IsEmpty());
    ASSERT_EQ(container->count(), 3u);
    const auto& t = first(container);
    EXPECT_EQ(t->getName(), "s.t");
    EXPECT_EQ(t->getComment(), "c");
    EXPECT_EQ(t->getTableType(), "InnoDB");
    EXPECT_EQ(t->frame(), (Rect{{12.25, -3}, {200, 100.5}}));
    EXPECT_EQ(t->getProperty("somethingNew"), "]]>");
    EXPECT_TRUE(t->getPropertyAsBoolean(keys::isLocked));
    EXPECT_EQ(t->objectFont().size, 11.5);
    EXPECT_EQ(container->getObjectWithUID("T"), t.get());
    EXPECT_EQ(container->getProperty("note"), "n");
    EXPECT_EQ(container->documentInfo()->uid(), "D");
    EXPECT_EQ(container->documentInfo()->exportDialect(), "SQLite");
    const auto labels = container->objectLabelManager()->labelList();
    ASSERT_EQ(labels.size(), 1u);
    EXPECT_TRUE(labels[0]->isHidden());
    EXPECT_EQ(container->objectsOfClass("SQLCanvasArea").at(0)->getComment(), "text");
    EXPECT_EQ(as<SQLView>(container->getObjectByName("v"))->getFields().at(0)->getProperty("type"), "label");

    container->postLoadProcess();
    auto* field = t->getFieldByName("id");
    ASSERT_TRUE(field);
    EXPECT_EQ(field->getType(), "NUMERIC(10,2)");
    EXPECT_TRUE(field->getPrimaryKey());
    EXPECT_EQ(field->deleteAction(), action::setNull);
    auto* index = as<SQLIndex>(t->objectOfClass(isKindOf<SQLIndex>, 0));
    EXPECT_THAT(index->getFieldNameListWithPrefixes(true), ElementsAre("id(7)"));
    EXPECT_EQ(as<SQLConstraint>(t->objectOfClass(isKindOf<SQLConstraint>, 0))->checkConstraintExpression(), "a < b");
    auto* key = as<SQLForeignKey>(t->objectOfClass(isKindOf<SQLForeignKey>, 0));
    EXPECT_EQ(key->updateAction(), action::cascade);
    EXPECT_EQ(key->getKeyPairCount(), 1u);
}

TEST_P(ParserRoutes, OldCompoundReferencesAreKeptForTheConversion) {
    const auto container = read(
        "<SQLTable><name>p</name><SQLField><name>a</name><primaryKey>1</primaryKey></SQLField><SQLField><name>b</name>"
        "<primaryKey>1</primaryKey></SQLField></SQLTable><SQLTable><name>c</name><SQLField><name>a</name>"
        "<referencesTable>p</referencesTable><referencesField>a</referencesField><referenceDependentField>B"
        "</referenceDependentField></SQLField><SQLField><name>b</name><uid>B</uid></SQLField></SQLTable>",
        GetParam());
    container->postLoadProcess();
    auto* child = as<SQLTable>(container->getObjectByName("c"));
    auto* key = as<SQLForeignKey>(child->objectOfClass(isKindOf<SQLForeignKey>, 0));
    ASSERT_TRUE(key);
    EXPECT_EQ(key->getTestCompareString(), "(a,b) references (a,b)");
    EXPECT_FALSE(child->getFieldByName("a")->hasProperty("referenceDependentField"));
}

TEST(Parser, FlagsAreOneOrYes) {
    const std::pair<const char*, bool> cases[] = {{"1", true},     {"YES", true}, {"yes", true}, {"Yes", true},
                                                  {"true", false}, {"y", false},  {"01", false}, {" 1", false},
                                                  {"0", false},    {"", false}};
    for (const auto& [written, flag] : cases)
        EXPECT_EQ(component(text("<SQLField><primaryKey>%@</primaryKey></SQLField>", written))->getPrimaryKey(), flag)
            << written;
    // Kept: the safe route reads flags as it reads boolean properties.
    EXPECT_TRUE(component("<SQLField><primaryKey>true</primaryKey></SQLField>", Route::Safe)->getPrimaryKey());
    EXPECT_TRUE(component("<SQLField><primaryKey> 01</primaryKey></SQLField>", Route::Safe)->getPrimaryKey());
}

TEST(Parser, NumbersAreScannedAndClamped) {
    const auto field = component(
        "<SQLField><deleteAction>18446744073709551615</deleteAction><updateAction> 2x</updateAction>"
        "<sourceCardinality>-1</sourceCardinality></SQLField>");
    EXPECT_EQ(field->deleteAction(), 9223372036854775807u);
    EXPECT_EQ(field->updateAction(), 2u);
    EXPECT_EQ(field->sourceCardinality(), 18446744073709551615u);
    // Kept: sizes pass through single precision, points do not; on the safe route neither does.
    const std::string frame =
        "<location><x>0.1</x><y>inf</y></location><size><width>0.1</width><height>1e999</height></size>";
    EXPECT_EQ(table(frame)->frame().origin, (Point{0.1, 0}));
    EXPECT_EQ(table(frame)->frame().size.width, 0.1f);
    EXPECT_EQ(table(frame, Route::Safe)->frame().size.width, 0.1);
}

TEST(Parser, TheFirstLetterOfANameCountsInEitherCase) {
    const auto loaded = table("<Name>t</Name><Comment>c</Comment><Uid>U</Uid>");
    EXPECT_EQ(loaded->getName(), "t");
    EXPECT_EQ(loaded->getComment(), "c");
    EXPECT_EQ(loaded->uid(), "U");
    EXPECT_EQ(table("<NAME>t</NAME>")->getProperty("NAME"), "t");
}

TEST(Parser, NamesOfOperationsThatTakeObjectsAreProperties) {
    for (const char* name :
         {"label", "container", "parent", "properties", "undoManager", "frame", "fields", "objectStyle",
          "primaryKeyToFieldNames", "objectFont", "Location", "Size", "locationFromObject", "visualTheme"}) {
        const auto container = read(text("<SQLTable><%@>x</%@></SQLTable>", name, name));
        EXPECT_EQ(first(container)->getProperty(name), "x") << name;
        EXPECT_EQ(first(container)->topLevelContainer(), container.get()) << name;
    }
    const auto field = component("<SQLField><fkField>x</fkField><location><x>1</x></location></SQLField>");
    EXPECT_EQ(field->getProperty("fkField"), "x");
    EXPECT_EQ(field->getFkField(), nullptr);
}

TEST(Parser, WhatStandsInTheWrongPlaceIsLoggedAndLeftOut) {
    const std::string misplaced = "Incorrect file structure, SQLObject incorrectly nested (not inside SQLContainer) ";
    const struct {
        const char* inside;
        std::string firstLine;  // empty: nothing is said
    } cases[] = {
        {"<SQLField><name>f</name></SQLField>", "Warning: stray field object found"},
        {"<SQLTable><SQLIndex><SQLField/></SQLIndex></SQLTable>", "Warning: stray field object found"},
        {"<p><SQLIndex/></p>", "Warning: stray field object found"},
        {"<SQLTable><SQLComment/></SQLTable>", misplaced},
        {"<SQLTable><SQLContainer/></SQLTable>", misplaced},
        {"<SQLTable><SQLIndexEntry/></SQLTable>", misplaced},
        {"<p><SQLTable/></p>", misplaced},
        {"<SQLObjectLabel><QVObjectStyle/></SQLObjectLabel>", misplaced},
        {"<SQLTable><SQLIndex><SQLForeignKeyEntry/></SQLIndex></SQLTable>", ""},
        {"<SQLTable><SQLForeignKey><SQLIndexEntry/></SQLForeignKey></SQLTable>", ""},
        {"<SQLSchema><name>s</name></SQLSchema>", "attempted to add object failed Warning adding object of type "},
        {"<SQLContainer><SQLContainer/></SQLContainer>",
         "attempted to add object failed A document cannot hold itself"},
    };
    for (const auto& [inside, firstLine] : cases) {
        LogCapture log;
        const auto container = read(inside);
        container->postLoadProcess();
        if (firstLine.empty())
            EXPECT_THAT(log.lines(), IsEmpty()) << inside;
        else
            EXPECT_THAT(log.lines().at(0), StartsWith(firstLine)) << inside;
        EXPECT_TRUE(container->isEmpty() || first(container)->getFields().size() < 2) << inside;
    }
    EXPECT_EQ(read("<allowsFieldObject>1</allowsFieldObject><SQLField><name>f</name></SQLField>")->count(), 1u);
    EXPECT_EQ(component<SQLIndex>("<SQLIndex><name>i</name><QVObjectStyle><font key='objectFont' name='F' size='9'/>"
                                  "</QVObjectStyle></SQLIndex>")
                  ->objectFont()
                  .name,
              "F");
}

TEST(Parser, ElementsInsidePropertyElementsBelongToNothing) {
    LogCapture log;
    EXPECT_EQ(table("<p>a<q>b</q><location><x>1</x></location>c</p>")->getProperty("p"), "ac");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(table("<p>a<q>b</q><location><x>1</x></location>c</p>", Route::Safe)->getProperty("p"), "ac");
    EXPECT_THAT(log.lines(),
                ElementsAre("warning - called setSafePropertyValue on QVParserElement with key q value b",
                            "warning - called setSafePropertyValue on QVParserElement with key location value {1, 0}"));
    // A point has no other places to keep things in.
    EXPECT_EQ(table("<location><x>1</x><z>2</z><size/></location>")->location(), (Point{1, 0}));
}

TEST(Parser, AStyleReadsAttributesOnly) {
    LogCapture log;
    const auto style = table(
                           "<QVObjectStyle><font key='objectFont' name='' size='9'/><ink key='k'/>"
                           "<hasFontSetting>1</hasFontSetting></QVObjectStyle>")
                           ->objectStyle();
    EXPECT_TRUE(style->isEmpty());
    EXPECT_TRUE(style->hasFontSetting());
    EXPECT_THAT(log.lines(), ElementsAre(StartsWith("failed to read font "), "QVObjectStyle doesn't support ink keys"));
}

TEST(Parser, ClassesThatAreNoPartOfADocumentStopTheLoad) {
    for (const char* name : {"SQLObject", "SQLTableComponent", "SQLValue", "Parser", "QVParserElement",
                             "SQLiteExporter", "SQLForeignKeyObjectGraph", "QVVisualThemeDark", "ProgressWatcher"}) {
        EXPECT_EQ(failureOf([&] { (void)table(text("<%@/>", name)); }),
                  text("XML Security Exception: Object (%@) did not implement protocol SQLObjectImportable", name));
    }
    EXPECT_EQ(table("<NSString>x</NSString>")->getProperty("NSString"), "x");
    EXPECT_EQ(table("<SQLComparisonIndex><name>i</name></SQLComparisonIndex>")->getFields().size(), 1u);
}

TEST(Parser, DuplicatesAndEmptyIndexColumnsAreErrors) {
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
    EXPECT_EQ(parser.stack().count(), 1u);
    parser.resetParser();
    EXPECT_TRUE(parser.stack().isEmpty());
}

TEST(Parser, TextIsUTF8WhateverItSays) {
    const LogCapture log;
    Parser parser;
    auto container =
        parser.parseXMLFromString("<?xml version='1.0' encoding='ISO-8859-1'?><SQLContainer><n>é</n></SQLContainer>");
    EXPECT_EQ(container->getProperty("n"), "é");
    EXPECT_EQ(parser.parseXMLFromString("<SQLContainer><n>a\xFFz</n></SQLContainer>")->getProperty("n"), "a\uFFFDz");
    container = SQLContainer::newContainer();
    parser.parseXMLFromData("<?xml version='1.0' encoding='ISO-8859-1'?><SQLContainer><n>\xE9</n></SQLContainer>",
                            *container);
    EXPECT_EQ(container->getProperty("n"), "é");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(Parser, TheSafeRouteIsForcedOrPreferred) {
    Parser parser;
    EXPECT_FALSE(parser.useSafePropertySetter());
    {
        const ScopedPreference preferred(prefs::useNewXMLFileLoader);
        EXPECT_TRUE(parser.useSafePropertySetter());
    }
    parser.setForceSafePropertySetter(true);
    EXPECT_TRUE(parser.useSafePropertySetter());
}

TEST(Parser, AContainerHearsOfDataThatWasRead) {
    struct Listening : SQLContainer {
        int updates = 0;
        void updateZOrder() override { ++updates; }
    };
    auto container = create<Listening>();
    container->updates = 0;
    Parser().parseXMLFromData("<SQLContainer/>", *container);
    EXPECT_EQ(container->updates, 1);
    EXPECT_THROW(Parser().parseXMLFromData("<SQLContainer>", *container), SQLException);
    EXPECT_EQ(container->updates, 1);
}

TEST(Parser, ArchivedObjectsComeWithoutADocument) {
    LogCapture log;
    const auto object = objectFromArchivedXML(
        "<SQLTable><name>t</name><zorder>4</zorder><SQLField><name>a</name></SQLField></SQLTable>");
    ASSERT_TRUE(as<SQLTable>(object));
    EXPECT_EQ(object->container(), nullptr);
    EXPECT_EQ(object->getProperty(keys::zorder), "4");
    EXPECT_EQ(objectFromArchivedXML("<SQLField><name>a</name></SQLField>")->getName(), "a");
    EXPECT_EQ(objectFromArchivedXML("<SQLContainer/>"), nullptr);
    EXPECT_EQ(objectFromArchivedXML("<p/>"), nullptr);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(objectFromArchivedXML("<SQLTable>"), nullptr);
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("archived object cannot be read")));
}

TEST(ParserElement, KeepsListsOfTextsByKey) {
    QVParserElement element("e", {{"k", "v"}});
    EXPECT_EQ(element.attributes()->at("k"), "v");
    element.setProperty("a", "1");
    element.setProperty("a", "2");
    EXPECT_THAT(element.properties()->at("a"), ElementsAre("1", "2"));
    EXPECT_EQ(XMLExport::cdataElementWithName("n", "a]]>b").text(), "<n><![CDATA[a]]]]><![CDATA[>b]]></n>\n");
}

}  // namespace
}  // namespace vellicor
