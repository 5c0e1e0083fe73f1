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

std::shared_ptr<SQLContainer> saved(const SQLContainer& container) {
    auto again = Parser().parseXMLFromString(container.xmlDocument());
    again->postLoadProcess();
    return again;
}

TEST(Lossless, NamesComeBackAsTheyWere) {
    const LogCapture log;
    // As it is typed, and the name that this means.
    const std::pair<const char*, std::string> names[] = {
        {"`my.table`", "my.table"}, {"`a\"b`", "a\"b"},   {"\"it's\"", "it's"},       {"`\"q\"`", "\"q\""},
        {"\"a`b\"", "a`b"},         {"end\\", "end\\"},   {"a\\\"b'c.d'", "a\\\"bc.d"}, {"'\\é\"'", "\\é\""},
        {"plain", "plain"},
    };
    for (const auto& [typed, name] : names) {
        const auto survives = [&, &typed = typed, &name = name] {
            auto container = SQLContainer::newContainer();
            auto table = SQLTable::tableWithName("t");
            table->setBaseName(typed);
            table->setSchemaName(typed);
            container->add(table);
            table->add(SQLField::fieldWithName(typed, "INTEGER"));
            auto index = SQLIndex::indexWithName(typed);
            index->addIndexField(*as<SQLField>(table->getFields()[0]));
            table->add(index);
            const auto read = saved(*container);
            const auto* again = as<SQLTable>(read->objectList()[0].get());
            auto* indexAgain = as<SQLIndex>(again->getFields()[1].get());
            return again->getBaseName() == name && again->getSchemaName() == name &&
                   again->getFields()[0]->getName() == name && indexAgain->getFieldNameList() == std::vector{name};
        };
        EXPECT_EQ(survives(), name == "plain" || name == "end\\") << name;
        const ScopedPreference lossless(prefs::losslessDocuments);
        EXPECT_TRUE(survives()) << name;
    }
}

constexpr const char* kUnresolved = R"(<SQLContainer><SQLTable><name>t</name>
<SQLField><name>a</name><type>timestamp(3) with time zone</type><uid>A</uid><referencesTable>gone</referencesTable>
<referencesField>id</referencesField><referencesTableUID>G</referencesTableUID><referencesFieldUID>GF</referencesFieldUID>
<deleteAction>1</deleteAction><updateAction>3</updateAction></SQLField>
<SQLForeignKey><name>k</name><deleteAction>2</deleteAction><targetTableName>gone</targetTableName><targetTableUid>G</targetTableUid>
<SQLForeignKeyEntry><targetFieldName>id</targetFieldName><targetFieldUid>GF</targetFieldUid>
<sourceFieldName>a</sourceFieldName><sourceFieldUid>A</sourceFieldUid></SQLForeignKeyEntry></SQLForeignKey>
</SQLTable></SQLContainer>)";

TEST(Lossless, KeysToMissingTablesAndTextBehindTypesAreKept) {
    LogCapture log;
    const auto savedTwice = [] { return saved(*saved(*Parser().parseXMLFromString(kUnresolved)))->xmlDocument(); };
    EXPECT_THAT(savedTwice(), Not(HasSubstr("GF")));
    EXPECT_THAT(log.lines(), ::testing::Contains(HasSubstr("\"with time zone\" behind the type of the column a of table t")));
    EXPECT_THAT(log.lines(), ::testing::Contains(HasSubstr("the column id of the foreign key k of table t")));
    const ScopedPreference lossless(prefs::losslessDocuments);
    const std::string kept = savedTwice();
    for (const char* part : {"<type>timestamp(3) with time zone<", "<deleteAction>1<", "<updateAction>3<", "<referencesFieldUID><![CDATA[GF",
                             "<targetFieldUid><![CDATA[GF", "<targetTableUid><![CDATA[G]", "<targetFieldName><![CDATA[id"})
        EXPECT_THAT(kept, HasSubstr(part));
    // The table comes in later.
    auto document = saved(*Parser().parseXMLFromString(kept));
    const auto other = Parser().parseXMLFromString(
        "<SQLContainer><SQLTable><name>gone</name><uid>G</uid><SQLField><name>id</name><uid>GF</uid></SQLField></SQLTable></SQLContainer>");
    document->merge(*other);
    auto* column = as<SQLField>(as<SQLTable>(document->getObjectByName("t"))->getFieldByName("a"));
    EXPECT_TRUE(column->getFkField());
}

TEST(RoundTrip, WhatNoReaderTakesIsNotWritten) {
    LogCapture log;
    auto container = SQLContainer::newContainer();
    auto table = SQLTable::tableWithName("t");
    container->add(table);
    table->add(SQLField::fieldWithName("c", "INTEGER"));
    auto index = SQLIndex::indexWithName("i");
    index->addIndexField(*as<SQLField>(table->getFields()[0]));
    table->add(index);
    table->getFields()[0]->setName("\"\"");
    for (const char* key : {"SQLObject", "SQLTable", "SQL Table", "SQLContainer", "size", "schema", "Comment"}) {
        table->setProperty(key, "x");
        EXPECT_FALSE(table->hasProperty(key)) << key;
    }
    EXPECT_EQ(log.lines().size(), 7u);
    EXPECT_EQ(saved(*container)->count(), 1u);
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
