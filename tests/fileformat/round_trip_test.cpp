// tests/fileformat/round_trip_test.cpp — what is written reads back as it was, and is written again byte for byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "tests/support/temp_folder.h"
#include "vellicor/fileformat/document_file.h"
#include "vellicor/fileformat/parser.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::LogCapture;
using ::testing::Not;
using testing::ScopedPreference;
using testing::TempFolder;

std::filesystem::path example(const char* name) {
    return std::filesystem::path(VELLICOR_SOURCE_DIR) / "examples" / name;
}

std::string resaved(const std::filesystem::path& file) {
    const TempFolder folder;
    const LoadedDocument document = loadDocument(file);
    EXPECT_FALSE(document.recovered);
    saveDocument(*document.container, folder.path() / "saved.xml");
    EXPECT_EQ(document.container->xmlDocument(), TempFolder::read(folder.path() / "saved.xml"));
    return TempFolder::read(folder.path() / "saved.xml");
}

class ExamplesOnBothRoutes : public ::testing::TestWithParam<bool> {
    ScopedPreference _safeRoute{prefs::useNewXMLFileLoader, Value::boolean(GetParam())};
    ScopedPreference _labels{prefs::documentLevelLabels};
};
INSTANTIATE_TEST_SUITE_P(Routes, ExamplesOnBothRoutes, ::testing::Bool());

TEST_P(ExamplesOnBothRoutes, AreWrittenAsTheyWereRead) {
    const LogCapture log;
    EXPECT_EQ(resaved(example("shop.xml")), TempFolder::read(example("shop.xml")));
    EXPECT_EQ(resaved(example("warehouse.xml")), TempFolder::read(example("warehouse.xml")));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(Examples, LabelsThatOnlyTablesCarryKeepTheirUids) {
    const TempFolder folder;
    const std::string first = resaved(example("warehouse.xml"));
    EXPECT_THAT(first, Not(HasSubstr("<SQLObjectLabel>")));
    EXPECT_EQ(resaved(folder.write("again.xml", first)), first);
}

TEST(Examples, AnOldDocumentIsBroughtUpToDateOnce) {
    const LogCapture log;
    const TempFolder folder;
    const LoadedDocument old = loadDocument(example("legacy.xml"));
    EXPECT_THAT(log.lines(), IsEmpty());
    SQLContainer& container = *old.container;
    EXPECT_EQ(container.getObjectByName("companies")->getComment(), "The companies of the group");
    auto* employees = as<SQLTable>(container.getObjectByName("employees"));
    EXPECT_EQ(employees->getFieldByName("company_no")->getReferences(), std::nullopt);
    ASSERT_THAT(employees->foreignKeyObjectsInTable(), ::testing::SizeIs(1));
    EXPECT_EQ(employees->foreignKeyObjectsInTable()[0]->getTestCompareString(),
              "(company_no,department_no) references (company_no,department_no)");
    EXPECT_TRUE(container.documentInfo()->getSnapToGrid());

    const std::string first = container.xmlDocument();
    EXPECT_THAT(first, HasSubstr("<tableIcon><![CDATA[people]]></tableIcon>"));
    EXPECT_THAT(first, Not(HasSubstr("referenceDependentField")));
    EXPECT_EQ(resaved(folder.write("again.xml", first)), first);
}

// Every key that documents hold, on every kind of object; what a class makes of it is its own affair, but it may not
// lose it.
constexpr const char* kTextKeys[] = {
    keys::objectComment, keys::labelColor, keys::labelUid, keys::primaryKeyName, keys::tablespace,
    keys::tableAutoIncrementStart, keys::tableCharacterSet, keys::tableCollation, keys::fieldBackgroundColor,
    keys::indexNamePrefix, keys::refTableName, keys::refFieldName, keys::connectorMidPoint,
    keys::referenceLinkName, keys::uniqueIndexName, keys::defaultValue, keys::indexedKeyName, keys::indexSize,
    keys::fieldCharacterSet, keys::fieldCollation, keys::onUpdateFieldValue, keys::foreignKeyName,
    keys::checkConstraint, keys::indexType, keys::prefixSize, keys::fieldUid, keys::targetTableName,
    keys::queryString, keys::commentTitle, keys::generatorVersion, keys::generator, keys::fileFormatVersion,
    keys::exportDialect, keys::header, keys::footer, keys::postExportSQL, keys::prologueExportSQL,
    keys::cardinalityNotationStyle, "checkConstraintName", "a_key_of_a_later_version", "Größe"};
constexpr const char* kFlagKeys[] = {
    keys::hidden, keys::allowsIndexRenamingOnInsert, keys::isVisibleCleanupPostImport,
    keys::documentRecoveryOccurred, keys::ignoreWhenExporting, keys::cannotLinkToObject, keys::isLocked,
    keys::incompleteReferenceTarget, keys::deferrable, keys::initiallyDeferred, keys::connectorHidden,
    keys::notNull, keys::unique, keys::forcedUnique, keys::noQuoteDefault, keys::autoIncrement, keys::unsigned_,
    keys::zeroFill, keys::binary, keys::timezone, keys::indexed, keys::unknownReferenceType,
    keys::hideConstraintName, keys::targetsPrimaryKey, keys::shouldDrawFrame, keys::pageBoundariesVisible,
    keys::pageGridVisible, keys::snapToGrid, keys::dropTableOption, keys::autoSizeTablesOption};

std::string valueFor(std::string_view key) { return text("<%@> ]]> & 'ü' \U0001F600\n\tend ", key); }

void fill(SQLObject& object) {
    for (const char* key : kTextKeys) object.setProperty(key, valueFor(key));
    for (const char* key : kFlagKeys) object.setProperty(key, "1");
    object.setProperty(keys::documentScaleFactor, "1.5");  // a number wherever the class reads it
    object.setProperty(keys::labelWindowIndex, "3");
    object.setProperty("MEM-secret", "1");
    object.setProperty("empty", "");
}

void expectFilled(const SQLObject& object) {
    for (const std::string key : kTextKeys) {
        // Rows of views take part in no reference; they take these names and keep nothing.
        const bool kept = object.getClassType() != "SQLViewEntry" ||
                          (key != keys::referenceLinkName && key != keys::foreignKeyName);
        EXPECT_EQ(object.getProperty(key), kept ? valueFor(key) : "") << object.getClassType();
    }
    for (const char* key : kFlagKeys) EXPECT_EQ(object.getProperty(key), "1") << object.getClassType() << " " << key;
    EXPECT_EQ(object.getProperty(keys::documentScaleFactor), "1.5") << object.getClassType();
    EXPECT_EQ(object.labelIndex(), 3) << object.getClassType();
    EXPECT_FALSE(object.hasProperty("MEM-secret") || object.hasProperty("empty"));
}

/// The document, its information, its objects and what tables hold.
std::vector<SQLObject*> objectsOf(SQLContainer& container) {
    std::vector<SQLObject*> objects{&container, container.documentInfo()};
    for (const auto& peer : container.objectList()) {
        objects.push_back(peer.get());
        if (auto* table = as<SQLTable>(peer.get()))
            for (const auto& held : table->getFields()) objects.push_back(held.get());
    }
    return objects;
}

class PropertiesOnBothRoutes : public ::testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Routes, PropertiesOnBothRoutes, ::testing::Bool());

TEST_P(PropertiesOnBothRoutes, EveryKeyOfEveryKindOfObjectSurvives) {
    auto container = SQLContainer::newContainer();
    auto table = SQLTable::tableWithName("t");
    table->add(SQLField::fieldWithName("f", "INTEGER"));
    table->add(SQLIndex::indexWithName("i"));
    table->add(SQLConstraint::constraint());
    table->add(SQLForeignKey::initWithName("k"));
    auto view = SQLView::viewWithName("v");
    view->add(SQLViewEntry::viewEntryWithName("columns", "label"));
    container->add(table);
    container->add(view);
    container->add(SQLComment::initWithComment("c"));
    container->add(SQLCanvasArea::initWithString("a"));
    for (SQLObject* object : objectsOf(*container)) fill(*object);
    for (const char* key : {keys::referenceLinkName, keys::foreignKeyName}) view->getFields()[0]->removeProperty(key);

    Parser parser;
    parser.setForceSafePropertySetter(GetParam());
    const LogCapture log;
    auto again = SQLContainer::newContainer();
    parser.parseXMLFromData(container->xmlDocument(), *again);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(objectsOf(*again).size(), 11u);
    for (const SQLObject* object : objectsOf(*again)) expectFilled(*object);
    EXPECT_TRUE(again->xmlDocument() == container->xmlDocument());
}

TEST(RoundTrip, StackingOrderAndStylesComeBackInAnyOrderOfUids) {
    auto container = SQLContainer::newContainer();
    for (int i = 0; i < 20; ++i) container->add(SQLTable::tableWithName(text("t%d", i)));
    container->setZorderForObject(*as<SQLObjectPeer>(container->getObjectByName("t7")), 0);
    container->getObjectByName("t3")->setObjectFont(Font{"Serif", 13.5});
    const auto namesOf = [](const SQLContainer& document) {
        std::vector<std::string> names;
        for (const auto& object : document.objectListByZOrder()) names.push_back(object->getName());
        return names;
    };
    const auto again = Parser().parseXMLFromString(container->xmlDocument());
    EXPECT_EQ(namesOf(*again), namesOf(*container));
    EXPECT_EQ(namesOf(*again).front(), "t7");
    EXPECT_EQ(again->getObjectByName("t3")->objectFont(), container->getObjectByName("t3")->objectFont());
    EXPECT_TRUE(again->xmlDocument() == container->xmlDocument());
}

}  // namespace
}  // namespace vellicor
