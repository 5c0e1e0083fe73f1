// tests/model/container_document_test.cpp — a document's orders and schemas; as XML, JSON, copy, archive and SQL.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/model/documents.h"
#include "tests/support/document_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/model/export_dialect.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/label.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/schema.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using vellicor::testing::addTable;
using vellicor::testing::Document;
using testing::LogCapture;
using vellicor::testing::names;
using testing::ScopedPreference;

SQLTable& named(const Document& document, std::string_view name) {
    return *as<SQLTable>(document->getObjectByName(std::string(name)));
}

std::string orderedByForeignKeys(const Document& document) {
    document->reorderByForeignKeys();
    return names(document->objectList());
}

TEST(ContainerOrder, ByNameUidAndStacking) {
    const Document document =
        testing::document("b10(id INT);; B9(id INT);; a_b(id INT);; a1(id INT);; sales.a(id INT)");
    std::size_t place = 0;
    for (const char* uid : {"b", "A", "a_", "a1", "C"}) document->objectList()[place++]->setUid(uid);
    EXPECT_EQ(names(document->objectListSortedByName()), "a_b a1 B9 b10 sales.a");
    EXPECT_EQ(names(document->objectListSortedByUid()), "B9 a1 a_b b10 sales.a");
    named(document, "a1").setZOrder(0);
    EXPECT_EQ(names(document->objectListSortedByZOrder()), "a1 b10 B9 a_b sales.a");
    EXPECT_EQ(names(document->objectList()), "b10 B9 a_b a1 sales.a");
    document->reorderByZOrder();
    EXPECT_EQ(names(document->objectList()), "a1 b10 B9 a_b sales.a");
    document->reorderByUID();
    EXPECT_EQ(names(document->objectList()), "B9 a1 a_b b10 sales.a");

    const auto flat = document->flatObjectList();
    ASSERT_EQ(flat.size(), 10u);
    EXPECT_EQ(flat[9].get(), named(document, "sales.a").getFieldByName("id"));
}

TEST(ContainerOrder, ReferencedTablesComeFirst) {
    const std::pair<const char*, const char*> cases[] = {
        {"c(id INT);; b(id INT);; a(id INT)", "a b c"},
        // Positions tie at three: the one that references yields.
        {"customers(id INT);; order_items(o INT -> orders.id; p INT -> products.id);;"
         " orders(id INT; c INT -> customers.id);; products(id INT)",
         "customers orders products order_items"},
        {"a(id INT -> b.id);; b(id INT -> c.id);; c(id INT -> d.id);; d(id INT -> e.id);; e(id INT)", "e d c b a"},
        {"a(id INT -> a.id);; b(id INT)", "a b"},                        // itself
        {"b(id INT -> a.id);; a(id INT -> b.id);; c(id INT)", "c a b"},  // a ring ends after five passes
    };
    for (const auto& [text, expected] : cases) {
        const Document document = testing::document(text);
        EXPECT_EQ(orderedByForeignKeys(document), expected);
        EXPECT_EQ(orderedByForeignKeys(document), expected) << "again";
        EXPECT_EQ(names(document->objectListSortedByForeignKeyOrder()), expected);
    }
    std::string chain = "j(id INT)";
    for (char name = 'i'; name >= 'a'; --name)
        chain = std::string(1, name) + "(id INT -> " + std::string(1, static_cast<char>(name + 1)) + ".id);; " + chain;
    EXPECT_NE(orderedByForeignKeys(testing::document(chain)), "j i h g f e d c b a") << "five passes";
}

TEST(ContainerOrder, OtherObjectsKeepTheirPlacesAndViewsStandBehind) {
    const Document document = SQLContainer::newContainer();
    document->add(SQLView::viewWithName("a_view"));
    addTable(document, "z");
    const auto note = create<SQLComment>();
    document->add(note);
    const auto key = SQLForeignKey::initWithName("a_fk");
    addTable(document, "a")->add(key);
    key->setTargetTable(&named(document, "z"));
    EXPECT_EQ(orderedByForeignKeys(document), "z a comment a_view");
    EXPECT_EQ(named(document, "a_view").getSortPosition(), 1 + 4);
    note->setZOrder(0);
    EXPECT_EQ(orderedByForeignKeys(document), "comment z a a_view");
}

TEST(ContainerOrder, TargetListsHoldTheTablesThatReferByColumns) {
    const Document document = testing::document(
        "a(c_id INT -> c.id; key k (c_id) -> b(id));; b(id INT; c_id INT -> c.id);; c(id INT -> c.id)");
    for (int run = 0; run < 2; ++run) {
        document->updateTargetTableLists();
        EXPECT_THAT(named(document, "c").getTargetTableForFKList(),
                    ElementsAre(&named(document, "a"), &named(document, "b"), &named(document, "c")));
        EXPECT_THAT(named(document, "b").getTargetTableForFKList(), IsEmpty());
    }
}

std::string schemas(const Document& document) {
    std::string names;
    for (const auto& schema : document->schemaList())
        names += schema->displayName() + ":" + std::to_string(schema->objectList().size()) + " ";
    return names;
}

TEST(ContainerSchemas, FollowTheObjects) {
    const Document document = SQLContainer::newContainer();
    const auto orders = addTable(document, "sales.orders"), items = addTable(document, "sales.items");
    addTable(document, "plain");
    document->add(SQLView::viewWithName("reports.v"));
    document->add(create<SQLComment>());
    EXPECT_EQ(schemas(document), "(none):1 sales:2 reports:1 ");
    items->setSchemaName("stock");
    EXPECT_EQ(schemas(document), "(none):1 sales:1 reports:1 stock:1 ");
    orders->setName("orders");
    EXPECT_EQ(schemas(document), "(none):2 reports:1 stock:1 ") << "an empty schema goes";
    document->remove(*items);
    EXPECT_EQ(schemas(document), "(none):2 reports:1 ");
}

TEST(ContainerSchemas, RenamingMovesTheObjectsAlong) {
    const Document document = SQLContainer::newContainer();
    const auto orders = addTable(document, "sales.orders");
    const auto schema = document->schemaForName("sales");
    schema->setName("shop");
    EXPECT_EQ(orders->getName(), "shop.orders");
    EXPECT_EQ(document->getObjectByName("shop.orders"), orders.get());
    EXPECT_THAT(document->objectsWithSchema(*schema), ElementsAre(orders));
    EXPECT_EQ(schemas(document), "(none):0 shop:1 ");
    EXPECT_NE(document->schemaForName("Shop"), schema) << "exactly that name";
}

TEST(ContainerSchemas, RemovingIsOneUndoStepThatBringsTheSchemaBack) {
    const Document document = SQLContainer::newContainer();
    const auto undo = std::make_shared<StandardUndoManager>();
    addTable(document, "sales.orders");
    const auto items = addTable(document, "sales.items");
    document->setUndoManager(undo);
    const auto sales = document->schemaForName("sales");
    undo->beginUndoGrouping();
    document->removeSchema(sales);
    undo->endUndoGrouping();
    EXPECT_EQ(schemas(document), "(none):2 ");
    EXPECT_EQ(undo->undoActionName(), "delete schema");
    undo->undo();
    EXPECT_EQ(schemas(document), "(none):0 sales:2 ");
    EXPECT_EQ(document->schemaList()[1], sales);
    EXPECT_EQ(items->getName(), "sales.items");
    EXPECT_FALSE(undo->canUndo());
    undo->redo();
    EXPECT_EQ(schemas(document), "(none):2 ");

    undo->removeAllActions();
    document->addSchema(SQLSchema::schemaWithName("extra"));
    document->addSchema(document->schemaList()[1]);
    EXPECT_EQ(schemas(document), "(none):2 extra:0 ");
    undo->undo();
    EXPECT_EQ(schemas(document), "(none):2 ");
    EXPECT_FALSE(undo->canUndo());
}

TEST(ContainerSchemas, SweepingAndClearing) {
    const Document document = SQLContainer::newContainer();
    for (const char* name : {"a", "b", "c"}) document->addSchema(SQLSchema::schemaWithName(name));
    document->schemaList()[2]->setAutoDeleteWhenEmpty(false);
    document->schemaList()[3]->setIsDefault(true);
    document->removeAllSchema();
    EXPECT_EQ(schemas(document), "(none):0 b:0 c:0 ");
    addTable(document, "d.t");
    EXPECT_EQ(schemas(document), "(none):0 c:0 d:1 ") << "every addition sweeps, a default schema stays";
}

TEST(ContainerSchemas, ListsAreCopiesThatMayBeWalkedWhileTheDocumentChanges) {
    const Document document = SQLContainer::newContainer();
    for (const char* name : {"a.t", "b.t", "c.t", "d.t"}) addTable(document, name);
    for (const auto& schema : document->schemaList())
        for (SQLObject* object : schema->objectList()) as<SQLTable>(object)->setSchema("e");  // sweeps `schema`
    EXPECT_EQ(schemas(document), "(none):0 e:4 ");
    while (document->schemaList().size() > 1) document->removeSchema(document->schemaList()[1]);
    EXPECT_EQ(schemas(document), "(none):4 ");

    SQLObjectLabelManager& labels = *document->objectLabelManager();
    for (const char* name : {"x", "y", "z"}) labels.addLabel(SQLObjectLabel::labelWithName(name, Color::white()), false);
    for (const auto& label : labels.labelList()) labels.removeLabel(label);
    EXPECT_TRUE(labels.labelList().empty());
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
    EXPECT_EQ(json["objects"].asList()->size(), 3u);
    EXPECT_EQ(json["hasTables"], Value::boolean(true));
    EXPECT_FALSE(json.contains("hasViews"));
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
    const auto labels = document->objectLabelManager()->labelList();
    const auto copied = copy->objectLabelManager()->labelList();
    ASSERT_EQ(copied.size(), 1u);
    EXPECT_NE(copied[0], labels[0]);
}

TEST(ContainerDocument, ArchivesHoldObjectsButNoLinks) {
    const Document document = sample();
    document->getObjectByName("note")->setZOrder(0);
    document->objectLabelManager()->labelList()[0]->setIsHidden(true);
    KeyedArchiver archiver, withLabels;
    document->encodeWithCoder(archiver);
    EXPECT_FALSE(archiver.entries().contains("labelManager"));
    ScopedPreference labels(prefs::documentLevelLabels);
    document->encodeWithCoder(withLabels);
    const auto& archived = *withLabels.entries().at("labelManager").find("labels")->asList();
    EXPECT_EQ(archived.front(), Value(Value::Map{{"name", "red"}, {"colorString", Color::sRGB(1, 0, 0).string()},
                                                 {"hidden", "1"}, {"expanded", "0"}}));

    const auto decoded = SQLContainer::initWithCoder(KeyedUnarchiver::fromData(archiver.data()));
    EXPECT_EQ(names(decoded->objectList()), "note sales.orders customers");
    EXPECT_NE(decoded->getObjectWithUID("A"), nullptr);
    EXPECT_FALSE(decoded->uidInContainer("A"));
    EXPECT_EQ(decoded->firstElement()->container(), nullptr);
    EXPECT_NE(testing::field(*decoded, "sales.orders", "id"), nullptr);
}

TEST(ContainerDocument, OwnScript) {
    EXPECT_EQ(SQLContainer::newContainer()->exportToSQLInternal(), "");
    const Document document = testing::document("a(id INT);; b(a_id INT -> a.id)");
    document->add(create<SQLCanvasArea>());
    SQLTable &a = named(document, "a"), &b = named(document, "b");
    const std::string foreignKeys = "/* Foreign keys */\n" + a.exportSQLForeignKey() + b.exportSQLForeignKey() + "\n";
    EXPECT_EQ(document->exportToSQLInternal(),
              "/* Vellicor export */\n" + a.exportToSQL() + "\n\n" + b.exportToSQL() + "\n\n\n\n" + foreignKeys);
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
    const Document document = testing::document("a(b_id INT -> b.id);; b(id INT)");
    const auto probe = create<Probe>();
    EXPECT_EQ(document->exportToSQL(*probe), "cleared b a");
    probe->fails = true;
    EXPECT_THROW((void)document->exportToSQL(*probe), SQLException);

    document->documentInfo()->setExportDialect("MySQL");
    EXPECT_EQ(document->currentDialectExporter()->getName(), "MySQL (2)");
    EXPECT_EQ(document->exportToSQLWithDialect("mysql"),
              document->exportToSQLWithDocumentInfo(shared(document->documentInfo())));
    EXPECT_THAT(document->exportObjectToSQLWithDocumentInfo(named(document, "b"), nullptr), Not(HasSubstr("b_id")));
    LogCapture log;
    document->debug();
    EXPECT_EQ(log.lines().back(), "SQLContainer debug\n" + document->exportToSQL() + "\n");
}

}  // namespace
}  // namespace vellicor
