// tests/model/container_document_test.cpp — a document as XML, JSON, copy, archive and SQL.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/export/export_dialect.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/label.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using vellicor::testing::LogCapture;
using vellicor::testing::ScopedPreference;
using Document = std::shared_ptr<SQLContainer>;

std::shared_ptr<SQLTable> addTable(const Document& document, std::string_view name) {
    auto added = SQLTable::tableWithName(std::string(name));
    document->add(added);
    return added;
}

std::vector<std::string> names(const SQLContainer::Objects& objects) {
    std::vector<std::string> names;
    for (const auto& object : objects) names.push_back(object->getName());
    return names;
}

/// A document with two tables, a comment, properties and a label.
Document sample() {
    const Document document = SQLContainer::newContainer();
    const auto orders = addTable(document, "sales.orders");
    orders->setUid("b");
    orders->add(SQLField::fieldWithName("id", "int"));
    orders->setComment("holds ]]> and\nlines");
    addTable(document, "customers")->setUid("C");
    const auto note = create<SQLComment>();
    note->setName("note");
    document->add(note);
    note->setUid("A");
    document->setProperty("AllowsIndexRenamingOnInsert", "1");
    document->objectLabelManager()->addLabel(SQLObjectLabel::labelWithName("red", Color::sRGB(1, 0, 0)), false);
    return document;
}

TEST(ContainerDocument, StreamedDocumentIsTheTreeAsText) {
    const Document document = sample();
    for (bool labels : {false, true}) {
        ScopedPreference preference(prefs::documentLevelLabels, Value::boolean(labels));
        const std::string xml = document->xmlDocument();
        EXPECT_EQ(xml, std::string(xmlDeclaration) + document->exportToXMLNode().text());
        EXPECT_EQ(xml.find("<SQLObjectLabel>") != std::string::npos, labels);
        const XMLElement wrapper("wrapper");
        document->exportToXMLNode(&wrapper);
        EXPECT_THAT(wrapper.text(), HasSubstr("\n    <SQLContainer>\n        <SQLComment>\n"));
        std::size_t last = 0;
        for (const char* part :
             {"<SQLComment>", "sales", "customers", "<SQLDocumentInfo>", "\n    <AllowsIndexRenamingOnInsert>"}) {
            const std::size_t place = xml.find(part);
            EXPECT_TRUE(place != xml.npos && place > last) << part;
            last = place;
        }
    }
    const Document empty = SQLContainer::newContainer();
    EXPECT_EQ(empty->xmlDocument(), std::string(xmlDeclaration) + empty->exportToXMLNode().text());
}

TEST(ContainerDocument, StrayColumnsAreNotWritten) {
    const Document document = SQLContainer::newContainer();
    const auto column = SQLField::fieldWithName("id", "int");
    document->setObjects({column});
    LogCapture log;
    EXPECT_EQ(document->xmlDocument().find("SQLField"), std::string::npos);
    EXPECT_THAT(log.lines(), ElementsAre("removed stray SQLField from container\n" + column->exportToXML() + "\n"));
}

TEST(ContainerDocument, Json) {
    const Document document = sample();
    Value::Map json = document->jsonDictionary();
    EXPECT_EQ(json["ClassType"], Value("SQLContainer"));
    EXPECT_EQ(*json["documentInfo"].find("ClassType"), Value("SQLDocumentInfo"));
    EXPECT_EQ(json["objects"].asList()->size(), 3u);
    EXPECT_EQ(*json["objects"].asList()->front().find("ClassType"), Value("SQLComment"));
    EXPECT_EQ(json["hasTables"], Value::boolean(true));
    EXPECT_FALSE(json.contains("hasViews"));
    EXPECT_EQ(*json["properties"].find("AllowsIndexRenamingOnInsert"), Value("1"));
    document->add(SQLView::viewWithName("v"));
    EXPECT_EQ(document->jsonDictionary()["hasViews"], Value::boolean(true));
}

TEST(ContainerDocument, CopyStandsForItself) {
    const Document document = sample();
    document->documentInfo()->setHeader("top");
    const auto copy = copyOf(*document);
    EXPECT_EQ(names(copy->objectList()), names(document->objectList()));
    for (const auto& object : copy->objectList()) {
        EXPECT_FALSE(document->contains(*object));
        EXPECT_EQ(object->container(), copy.get());
        EXPECT_NE(document->getObjectWithUID(object->uid()), nullptr);
    }
    EXPECT_EQ(copy->documentInfo()->getHeader(), "top");
    EXPECT_EQ(copy->getProperty("AllowsIndexRenamingOnInsert"), "1");
    ASSERT_EQ(copy->objectLabelManager()->labelList().size(), 1u);
    EXPECT_EQ(copy->objectLabelManager()->labelList()[0]->uid(), document->objectLabelManager()->labelList()[0]->uid());
    EXPECT_NE(copy->objectLabelManager()->labelList()[0], document->objectLabelManager()->labelList()[0]);
}

TEST(ContainerDocument, ArchivesHoldObjectsButNoLinks) {
    const Document document = sample();
    document->getObjectByName("note")->setZOrder(0);
    KeyedArchiver archiver;
    document->encodeWithCoder(archiver);
    EXPECT_EQ(archiver.entries().at("name"), Value("SQLContainer"));
    EXPECT_TRUE(archiver.entries().contains("documentInfo"));
    EXPECT_FALSE(archiver.entries().contains("labelManager"));
    {
        ScopedPreference labels(prefs::documentLevelLabels);
        KeyedArchiver other;
        document->encodeWithCoder(other);
        EXPECT_EQ(*other.entries().at("labelManager").find("labels")->asList()->front().find("name"), Value("red"));
    }

    const auto decoded = SQLContainer::initWithCoder(KeyedUnarchiver::fromData(archiver.data()));
    EXPECT_EQ(names(decoded->objectList()), (std::vector<std::string>{"note", "sales.orders", "customers"}));
    EXPECT_EQ(names(decoded->objectListByZOrder()), names(document->objectListByZOrder()));
    EXPECT_NE(decoded->getObjectWithUID("A"), nullptr);
    EXPECT_FALSE(decoded->uidInContainer("A"));
    EXPECT_EQ(decoded->firstElement()->container(), nullptr);
    EXPECT_NE(as<SQLTable>(decoded->getObjectByName("sales.orders"))->getFieldByName("id"), nullptr);
}

TEST(ContainerDocument, OwnScript) {
    const Document document = SQLContainer::newContainer();
    EXPECT_EQ(document->exportToSQLInternal(), "");
    document->add(create<SQLCanvasArea>());
    EXPECT_EQ(document->exportToSQLInternal(), "/* Vellicor export */\n\n\n");
    const auto a = addTable(document, "a"), b = addTable(document, "b");
    a->add(SQLField::fieldWithName("id", "int"));
    b->add(SQLField::fieldWithName("a_id", "int"));
    b->getFieldByName("a_id")->setFkField(a->getFieldByName("id"));
    const std::string script = document->exportToSQLInternal();
    EXPECT_TRUE(
        script.starts_with("/* Vellicor export */\n\n\n" + a->exportToSQL() + "\n\n" + b->exportToSQL() + "\n\n"))
        << script;
    EXPECT_TRUE(script.ends_with("/* Foreign keys */\n" + a->exportSQLForeignKey() + b->exportSQLForeignKey() + "\n"))
        << script;
}

TEST(ContainerDocument, AnExporterRunsAfterTheTablesAreInOrder) {
    struct Probe : SQLExportDialect {
        std::string export_(SQLObject& object) override {
            if (fails) throw SQLException("Probe", "no");
            std::string sql = currentWasCleared ? "cleared" : "kept";
            if (auto* document = object.asContainer())
                for (const auto& each : document->objectList()) sql += " " + each->getName();
            return sql;
        }
        void setCurrentExporter(std::shared_ptr<SQLExportDialect> exporter) override { currentWasCleared = !exporter; }
        bool fails = false;
        bool currentWasCleared = false;
    };
    const Document document = SQLContainer::newContainer();
    const auto a = addTable(document, "a"), b = addTable(document, "b");
    a->add(SQLField::fieldWithName("b_id", "int"));
    b->add(SQLField::fieldWithName("id", "int"));
    a->getFieldByName("b_id")->setFkField(b->getFieldByName("id"));
    const auto probe = create<Probe>();
    EXPECT_EQ(document->exportToSQL(*probe), "cleared b a");
    probe->fails = true;
    EXPECT_THROW((void)document->exportToSQL(*probe), SQLException);

    document->documentInfo()->setExportDialect("MySQL");
    ASSERT_NE(document->dialectExporter(), nullptr);
    EXPECT_EQ(document->dialectExporter()->getName(), "MySQL (2)");
    EXPECT_EQ(document->currentDialectExporter()->getName(), "MySQL (2)");
    EXPECT_EQ(document->exportToSQLWithDialect("mysql"),
              document->exportToSQLWithDocumentInfo(shared(document->documentInfo())));
    EXPECT_EQ(document->exportObjectToSQLWithDocumentInfo(*b, nullptr).find("b_id"), std::string::npos);
    LogCapture log;
    document->debug();
    EXPECT_EQ(log.lines().back(), "SQLContainer debug\n" + document->exportToSQL() + "\n");
}

}  // namespace
}  // namespace vellicor
