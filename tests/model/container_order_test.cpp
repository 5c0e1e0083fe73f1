// tests/model/container_order_test.cpp — the orders of a document's objects, and its schemas.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "vellicor/model/comment.h"
#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/schema.h"
#include "vellicor/model/view.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Document = std::shared_ptr<SQLContainer>;

std::shared_ptr<SQLTable> addTable(const Document& document, std::string_view name) {
    auto added = SQLTable::tableWithName(std::string(name));
    document->add(added);
    return added;
}

/// Tables of these names, each with a column "id".
Document tables(const std::vector<std::string>& names) {
    const Document document = SQLContainer::newContainer();
    for (const std::string& name : names) addTable(document, name)->add(SQLField::fieldWithName("id", "int"));
    return document;
}

SQLTable& named(const Document& document, std::string_view name) {
    return *as<SQLTable>(document->getObjectByName(std::string(name)));
}

/// A column of `from` that references `to`.
void refer(const Document& document, std::string_view from, std::string_view to) {
    SQLTable& table = named(document, from);
    const auto column = SQLField::fieldWithName(std::string(to) + "_id", "int");
    table.add(column);
    column->setFkField(named(document, to).getFieldByName("id"));
}

std::string names(const SQLContainer::Objects& objects) {
    std::string names;
    for (const auto& object : objects) names += (names.empty() ? "" : " ") + object->getName();
    return names;
}

std::string orderedByForeignKeys(const Document& document) {
    document->reorderByForeignKeys();
    return names(document->objectList());
}

TEST(ContainerOrder, ByNameUidAndStacking) {
    const Document document = tables({"b10", "B9", "a_b", "a1", "sales.a"});
    std::int64_t uid = 0;
    for (const char* text : {"b", "A", "a_", "a1", "C"})
        document->objectList()[static_cast<std::size_t>(uid++)]->setUid(text);
    EXPECT_EQ(names(document->objectListSortedByName()), "a_b a1 B9 b10 sales.a");
    EXPECT_EQ(names(document->objectListSortedByUid()), "B9 a1 a_b b10 sales.a");
    named(document, "a1").setZOrder(0);
    EXPECT_EQ(names(document->objectListSortedByZOrder()), "a1 b10 B9 a_b sales.a");
    EXPECT_EQ(names(document->objectList()), "b10 B9 a_b a1 sales.a");
    document->reorderByZOrder();
    EXPECT_EQ(names(document->objectList()), "a1 b10 B9 a_b sales.a");
    document->reorderByUID();
    EXPECT_EQ(names(document->objectList()), "B9 a1 a_b b10 sales.a");
    EXPECT_EQ(document->getNextObject(named(document, "B9")), &named(document, "a1"));

    named(document, "sales.a").getFieldByName("id")->setUid("x");
    const auto flat = document->flatObjectList();
    ASSERT_EQ(flat.size(), 10u);
    EXPECT_EQ(flat[8]->getName(), "sales.a");
    EXPECT_EQ(flat[9]->uid(), "x");
}

TEST(ContainerOrder, ReferencedTablesComeFirst) {
    struct {
        std::vector<std::string> tables;
        std::vector<std::pair<const char*, const char*>> references;
        const char* expected;
    } const cases[] = {
        {{"c", "b", "a"}, {}, "a b c"},
        {{"a", "b", "c"}, {{"a", "b"}, {"b", "c"}}, "c b a"},
        // Positions tie at three: the one that references yields.
        {{"customers", "order_items", "orders", "products"},
         {{"order_items", "orders"}, {"order_items", "products"}, {"orders", "customers"}},
         "customers orders products order_items"},
        {{"a", "b", "c", "d", "e", "f"}, {{"a", "b"}, {"b", "c"}, {"c", "d"}, {"d", "e"}, {"e", "f"}}, "f e d c b a"},
        {{"a", "b"}, {{"a", "a"}}, "a b"},                     // itself
        {{"b", "a", "c"}, {{"a", "b"}, {"b", "a"}}, "c a b"},  // a ring ends after five passes
    };
    for (const auto& [list, references, expected] : cases) {
        const Document document = tables(list);
        for (const auto& [from, to] : references) refer(document, from, to);
        EXPECT_EQ(orderedByForeignKeys(document), expected);
        EXPECT_EQ(orderedByForeignKeys(document), expected) << "again";
        EXPECT_EQ(names(document->objectListSortedByForeignKeyOrder()), expected);
    }
}

TEST(ContainerOrder, FivePassesDoNotSortALongChain) {
    std::vector<std::string> chain;
    for (char name = 'a'; name <= 'j'; ++name) chain.emplace_back(1, name);
    const Document document = tables(chain);
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) refer(document, chain[i], chain[i + 1]);
    EXPECT_NE(orderedByForeignKeys(document), "j i h g f e d c b a");
}

TEST(ContainerOrder, OtherObjectsKeepTheirPlacesAndViewsStandBehind) {
    const Document document = SQLContainer::newContainer();
    document->add(SQLView::viewWithName("a_view"));
    addTable(document, "z");
    const auto note = create<SQLComment>();
    document->add(note);
    const auto a = addTable(document, "a");
    const auto key = SQLForeignKey::initWithName("a_fk");
    a->add(key);
    key->setTargetTable(&named(document, "z"));
    EXPECT_EQ(orderedByForeignKeys(document), "z a comment a_view");
    EXPECT_EQ(named(document, "a_view").getSortPosition(), 1 + 4);
    EXPECT_EQ(named(document, "a").getSortPosition(), 4);
    note->setZOrder(0);
    EXPECT_EQ(orderedByForeignKeys(document), "comment z a a_view");
}

TEST(ContainerOrder, TargetListsHoldTheTablesThatReferByColumns) {
    const Document document = tables({"a", "b", "c"});
    refer(document, "a", "c");
    refer(document, "b", "c");
    refer(document, "c", "c");
    const auto key = SQLForeignKey::initWithName("key");
    named(document, "a").add(key);
    key->setTargetTable(&named(document, "b"));
    for (int run = 0; run < 2; ++run) {
        document->updateTargetTableLists();
        EXPECT_THAT(named(document, "c").getTargetTableForFKList(),
                    ElementsAre(&named(document, "a"), &named(document, "b"), &named(document, "c")));
        EXPECT_THAT(named(document, "b").getTargetTableForFKList(), IsEmpty());
    }
    named(document, "b").getFieldByName("c_id")->setFkField(nullptr);
    document->updateTargetTableLists();
    EXPECT_EQ(named(document, "c").getTargetTableForFKList().size(), 2u);
}

// --- schemas

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
    document->remove(*document->getObjectByName("plain"));
    document->remove(*orders);
    EXPECT_EQ(schemas(document), "(none):0 reports:1 ") << "the default one stays";
}

TEST(ContainerSchemas, RenamingMovesTheObjectsAlong) {
    const Document document = SQLContainer::newContainer();
    const auto orders = addTable(document, "sales.orders");
    const auto schema = document->schemaForName("sales");
    EXPECT_EQ(schema, document->schemaList()[1]);
    schema->setName("shop");
    EXPECT_EQ(orders->getName(), "shop.orders");
    EXPECT_EQ(document->getObjectByName("shop.orders"), orders.get());
    EXPECT_EQ(document->schemaForName("shop"), schema);
    EXPECT_THAT(document->objectsWithSchema(*schema), ElementsAre(orders));
    EXPECT_EQ(schemas(document), "(none):0 shop:1 ");
    EXPECT_NE(document->schemaForName("Shop"), schema) << "exactly that name";
}

TEST(ContainerSchemas, RemovingIsOneUndoStepThatBringsTheSchemaBack) {
    const Document document = SQLContainer::newContainer();
    const auto undo = std::make_shared<StandardUndoManager>();
    const auto orders = addTable(document, "sales.orders"), items = addTable(document, "sales.items");
    document->setUndoManager(undo);
    const auto sales = document->schemaForName("sales");
    undo->beginUndoGrouping();
    document->removeSchema(sales);
    undo->endUndoGrouping();
    EXPECT_EQ(orders->getName(), "orders");
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
    EXPECT_EQ(undo->undoActionName(), "add schema");
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
    document->removeEmptySchema();
    EXPECT_EQ(schemas(document), "(none):0 c:0 ") << "a default schema stays";
    document->schemaList()[1]->setIsDefault(false);
    addTable(document, "d.t");
    EXPECT_EQ(schemas(document), "(none):0 d:1 ") << "every addition sweeps";
}

}  // namespace
}  // namespace vellicor
