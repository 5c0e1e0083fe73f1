// tests/model/table_test.cpp — a table's names, its components, and looking them up.
#include "vellicor/model/table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/model/component_index.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using testing::ScopedPreference;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::shared_ptr<SQLTable> tableWithColumns(const OptionalText& name, const std::vector<std::string>& columns) {
    auto table = SQLTable::tableWithName(name);
    for (const std::string& column : columns) table->add(SQLField::fieldWithName(column, "int"));
    return table;
}

std::vector<std::string> componentNames(const SQLTable& table) {
    std::vector<std::string> names;
    for (const auto& component : table.fields()) names.push_back(component->getName());
    return names;
}

/// "name: reason" of what `act` raises.
template <class Act>
std::string raised(Act act) {
    try {
        act();
    } catch (const SQLException& error) {
        return error.name() + ": " + error.reason();
    }
    return "nothing";
}

TEST(Table, KeepsOrReplacesItsSchema) {
    auto table = SQLTable::initWithName("orders", "InnoDB", "sales");
    EXPECT_EQ(table->tableType(), "") << "the type given is not used";
    table->setFullyQualifiedName("items", false);
    EXPECT_EQ(table->getName() + " " + table->fullyQualifiedNameForIndexNames(), "sales.items sales_items");
    table->setName(" \"shop\" . \"a.b\" ");
    EXPECT_EQ(table->schemaName().value() + " " + table->indexPrefix().value(), "shop a.b_");
    table->setFullyQualifiedName("items");
    EXPECT_EQ(table->getName(), "items");
    table->setSchemaDisplayName("old");
    EXPECT_EQ(table->displayName(), "old.items");
    table->setSchemaName(std::nullopt);
    EXPECT_EQ(table->schemaName(), std::nullopt);
}

TEST(Table, UndoesNameAndSchemaTogether) {
    auto undo = std::make_shared<StandardUndoManager>();
    auto table = SQLTable::tableWithName("sales.orders");
    table->setUndoManager(undo);
    auto inOneStep = [&](const std::function<void()>& change, const char* action) {
        undo->beginUndoGrouping();
        change();
        undo->endUndoGrouping();
        EXPECT_EQ(undo->undoActionName(), action);
        undo->undo();
    };
    const auto change = [&] {
        table->setName("items");
        table->setTableType("view");
    };
    inOneStep(change, "set table type");
    EXPECT_EQ(table->getName(), "sales.orders");
    EXPECT_EQ(table->tableType(), "");
    undo->redo();
    EXPECT_EQ(table->getName(), "items");

    table->setBaseName("\"it's\"");
    table->setSchemaName("\"the firm's\"");
    inOneStep([&] { table->setName("x.y"); }, "set object name");
    EXPECT_EQ(table->getName(), "the firm's.it's");
    auto field = SQLField::fieldWithName("\"a 'b'\"", "int");
    table->add(field);
    inOneStep([&] { field->setName("b"); }, "set object name");
    EXPECT_EQ(field->getName(), "a 'b'");
}

TEST(Table, ProposesFreeNamesInItsDocument) {
    const auto document = testing::document("sales.orders(id INT);; items(id INT)");
    SQLTable &orders = *testing::table(*document, "sales.orders"), &other = *testing::table(*document, "items");
    OptionalText name = "Sales.Orders";
    EXPECT_TRUE(other.validateFullyQualifiedName(name, nullptr));
    EXPECT_EQ(name, "Sales.Orders_1");
    EXPECT_TRUE(other.didChangeNameDuringValidation());
    name = "sales.orders";
    orders.validateFullyQualifiedName(name, nullptr);
    EXPECT_EQ(name, "sales.orders") << "its own name";
    other.setSchema("sales");
    EXPECT_EQ(document->getObjectByName("sales.items"), &other) << "the document heard of the schema";
}

TEST(Table, StandsAtTheNextDefaultPlace) {
    SQLTable::resetPosition();
    std::vector<Point> places;
    for (int i = 0; i < 7; ++i) places.push_back(SQLTable::table()->location());
    EXPECT_EQ(places, (std::vector<Point>{{210, 0}, {420, 0}, {630, 0}, {840, 0}, {1050, 0}, {0, 110}, {210, 110}}));
}

TEST(Table, RefusesWhatItCannotAdd) {
    auto table = tableWithColumns("t", {"id"});
    const auto column = SQLField::fieldWithName("`Id`", "int");
    const auto index = SQLIndex::indexWithName("id");
    table->add(SQLIndex::indexWithName("ID"));
    EXPECT_THAT(componentNames(*table), ElementsAre("id", "ID")) << "another kind";
    EXPECT_EQ(raised([&] { table->add(column); }), "DuplicateFieldException: Duplicate field exception on t(Id)");
    EXPECT_EQ(raised([&] { table->add(index); }),
              "Add Field Exception: AddComponent: Duplicate field exception on t(id)");
    EXPECT_EQ(raised([&] { table->addUniqueComponent(index); }),
              "DuplicateFieldException: Duplicate field exception on t(id)");
    EXPECT_EQ(raised([&] { table->addUniqueComponent(nullptr); }),
              "NilFieldException: Nil field exception on t((null))");
    EXPECT_EQ(raised([&] { table->add(nullptr); }),
              "Add Field Exception: AddComponent: Nil field exception on t((null))");
    EXPECT_EQ(raised([&] { table->addWithRenaming(nullptr); }), "ParsingException: field was null");
    auto constraint = SQLConstraint::constraint();
    constraint->setName("id");
    table->add(constraint);
    EXPECT_EQ(table->fieldCount(), 3u) << "a constraint may be called like an index, not the reverse";
    EXPECT_EQ(table->objectOfClass(isKindOf<SQLIndex>, 1), constraint.get());
}

TEST(Table, GivesNewComponentsWhatTheyLack) {
    auto document = testing::document("t(id TEXT)");
    SQLTable& table = *testing::table(*document, "t");
    auto bare = SQLField::field(), second = SQLField::field(), twin = SQLField::fieldWithName("ID", "int");
    table.add(bare);
    EXPECT_EQ(bare->getName() + " " + bare->getType(), "untitled INTEGER");
    auto sized = SQLField::fieldWithName("sized", " (5) ");
    table.add(sized);
    EXPECT_EQ(sized->getType(), "INTEGER") << "a size is no type";
    second->setUid(bare->uid());
    table.add(second);
    EXPECT_EQ(second->getName(), "untitled_1");
    EXPECT_NE(second->uid(), bare->uid()) << "the document knows that uid already";
    bool didRename = false;
    table.addWithRenaming(twin, didRename);
    EXPECT_TRUE(didRename);
    EXPECT_EQ(twin->getName(), "ID_1");
    EXPECT_EQ(twin->topLevelContainer(), document.get());
    twin->delete_();
    EXPECT_EQ(twin->parentTable(), nullptr);
    EXPECT_FALSE(document->uidInContainer(twin->uid()));
    document.reset();
    EXPECT_EQ(bare->container(), nullptr) << "nothing points at a table that is gone";
}

TEST(Table, PrefixesIndexNamesWhereAskedTo) {
    auto document = SQLContainer::newContainer();
    auto table = SQLTable::tableWithName("sales.orders");
    document->add(table);
    auto added = [&](const std::shared_ptr<SQLTableComponent>& component) {
        table->addWithRenaming(component);
        return component->getName() + "|" + component->getProperty(keys::indexNamePrefix);
    };
    ScopedPreference preference(prefs::addTablePrefixToIndexNamesAtCreation);
    EXPECT_EQ(added(SQLIndex::indexWithName("idx")), "idx|") << "the document does not ask for it";
    document->setPropertyAsBoolean(keys::allowsIndexRenamingOnInsert, true);
    EXPECT_EQ(added(SQLIndex::indexWithName("by_date")), "sales_orders_by_date|sales_orders");
    EXPECT_EQ(added(SQLIndex::indexWithName("sales_orders2")), "sales_orders2|");
    EXPECT_EQ(added(SQLIndex::indexWithName("by_date")), "sales_orders_by_0|sales_orders")
        << "numbered behind the last underscore";
    EXPECT_EQ(added(SQLField::fieldWithName("idx", "int")), "idx_1|") << "columns have no prefix";
    auto moved = SQLIndex::indexWithName("old_by_user");
    moved->setProperty(keys::indexNamePrefix, "old");
    EXPECT_EQ(moved->prefixedName("old_by_user", *table), "sales_orders_by_user");
    table->addParsedIndexWithName("pi", {"idx_1", "gone"}, "UNIQUE");
    auto* index = as<SQLIndex>(table->getObjectByName("sales_orders_pi"));
    ASSERT_NE(index, nullptr);
    EXPECT_THAT(index->getFieldNameList(), ElementsAre("idx_1"));
}

TEST(Table, ComparesUnquotedNames) {
    const std::pair<OptionalText, const char*> rows[] = {
        {std::nullopt, ""}, {"\"", ""}, {"`a`", "a"}, {"'a\"", "a"}, {"a'", "a"}, {"\"abc", "ab"}, {"'a", ""},
        {"\"ab\xC3\xA9", "ab"}};
    for (const auto& [name, unquoted] : rows) EXPECT_EQ(SQLTable::unquotedName(name), unquoted) << unquoted;
    auto table = tableWithColumns("t", {"Größe"});
    EXPECT_NE(table->getFieldByName(" `GRÖSSE` "), nullptr);
    EXPECT_EQ(table->getFieldByTypeAndName(isKindOf<SQLField>, "größe", false), nullptr);
    EXPECT_EQ(table->getFieldByTypeAndName(isKindOf<SQLIndex>, "Größe"), nullptr);
    EXPECT_FALSE(table->isFieldNamePresent("größe", isKindOf<SQLField>, table->getField(0)));
}

/// What lookups must answer: a walk over the list.
SQLTableComponent* walked(const SQLTable& table, std::string_view name, ClassFilter kind) {
    for (const auto& component : table.fields())
        if (kind(*component) && equalIgnoringCase(unquotedPart(component->getName()), name)) return component.get();
    return nullptr;
}

TEST(Table, FindsTheSameInWideTablesAsAWalkWould) {
    for (std::size_t width : {ComponentNames::kIndexedFrom - 4, ComponentNames::kIndexedFrom, std::size_t{150}}) {
        auto table = SQLTable::tableWithName("wide");
        std::uint64_t state = 7;
        auto pick = [&](std::size_t below) {
            state = state * 6364136223846793005u + 1442695040888963407u;
            return static_cast<std::size_t>((state >> 33) % below);
        };
        for (int step = 0; step < 1200; ++step) {
            const std::size_t count = table->fieldCount();
            const std::string name = text("%@%lu", step % 2 ? "c" : "C", pick(width));
            const auto some = count ? shared(table->getField(pick(count))) : nullptr;
            const std::size_t action = pick(10);
            if (action == 0 && count > width / 2) table->remove(some.get());
            if (action == 1 && some) some->setName(name);
            if (action == 2 && some) table->reorder(*some, pick(count + 1));
            if (action == 3 && some) some->createNewUid();
            if (action == 4 && count < width) table->addWithRenaming(SQLIndex::indexWithName(name));
            if (action > 4 && count < width) table->addWithRenaming(SQLField::fieldWithName(name, "int"));
            const std::string wanted = text("c%lu", pick(width));
            ASSERT_EQ(table->getFieldByName(wanted), walked(*table, wanted, isKindOf<SQLField>));
            ASSERT_EQ(table->getFieldByTypeAndName(isKindOf<SQLIndex>, wanted),
                      walked(*table, wanted, isKindOf<SQLIndex>));
            ASSERT_EQ(table->isObjectNamePresent(wanted), walked(*table, wanted, isKindOf<SQLObject>) != nullptr);
            if (some && table->contains(*some)) { ASSERT_EQ(table->getFieldByUID(some->uid()), some.get()); }
        }
        EXPECT_EQ(table->uidFieldMap().size(), table->fieldCount());
    }
}

TEST(Table, LooksUidsUpAsTheyWereEntered) {
    auto table = tableWithColumns("t", {"a", "b"});
    auto *a = table->getField(0), *b = table->getField(1);
    a->setProperty(keys::uid, "same");
    b->setUid("same");
    EXPECT_EQ(table->getFieldByUID("same"), b);
    table->addUidMapEntryForObject(*a, "other");
    table->updateUidMapEntryForObject(*a);
    EXPECT_EQ(table->getFieldByUID("other"), nullptr);
    a->setProperty(keys::uid, "third");
    EXPECT_EQ(table->getFieldByUID("third"), a);
    table->removeUidMapEntryForObject(*a);
    EXPECT_EQ(table->getFieldByUID("third"), nullptr);
    table->updateUidMapEntryForObject(*a);
    EXPECT_EQ(table->getFieldByUID("third"), a);
}

TEST(Table, ReordersAndUndoes) {
    auto undo = std::make_shared<StandardUndoManager>();
    auto table = tableWithColumns("t", {"a", "b", "c"});
    table->setUndoManager(undo);
    auto reordered = [&](const char* column, std::size_t position) {
        table->reorder(*table->getFieldByName(column), position);
        return componentNames(*table);
    };
    EXPECT_THAT(reordered("a", 1), ElementsAre("b", "a", "c"));
    EXPECT_THAT(reordered("a", 3), ElementsAre("b", "c", "a"));
    EXPECT_THAT(reordered("b", 4), ElementsAre("b", "c", "a"));
    EXPECT_THAT(reordered("b", SQLTable::kNoPosition), ElementsAre("b", "c", "a"));
    EXPECT_THAT(reordered("a", 0), ElementsAre("a", "b", "c"));
    EXPECT_EQ(undo->undoActionName(), "reorder fields");
    undo->undo();
    EXPECT_THAT(componentNames(*table), ElementsAre("b", "c", "a"));
    undo->undo();
    undo->undo();
    EXPECT_THAT(componentNames(*table), ElementsAre("a", "b", "c"));
    EXPECT_FALSE(undo->canUndo()) << "what changed nothing is not recorded";
    EXPECT_EQ(table->getPreviousField(*table->getField(0)), table->getField(2));
}

struct Observer : FieldListObserver {
    explicit Observer(bool supports) : supports(supports) {}
    bool supportsFieldListChanged() const override { return supports; }
    void fieldListChanged(SQLTable& table) override {
        if (leaves) table.removeObserverForFieldList(*this);
        ++calls;
        seen = table.fieldCount();
    }
    std::string description() const override { return "deaf"; }
    const bool supports;
    bool leaves = true;
    int calls = 0;
    std::size_t seen = 0;
};

TEST(Table, TellsObserversOfItsList) {
    auto table = SQLTable::tableWithName("t");
    Observer hears(true), deaf(false);
    table->addObserverForFieldList(hears);
    table->addObserverForFieldList(deaf);
    LogCapture log;
    table->add(SQLField::fieldWithName("a", "int"));
    table->remove(nullptr);
    table->remove(table->getField(0));
    EXPECT_EQ(hears.calls, 1) << "it left while it was told";
    struct Ending : FieldListObserver {
        void fieldListChanged(SQLTable&) override { next.reset(); }
        std::unique_ptr<std::pair<Observer, Observation>> next;
    } ending;
    const Observation heard = table->observeFieldList(ending);
    ending.next = std::make_unique<std::pair<Observer, Observation>>(std::piecewise_construct, std::tuple(true), std::tuple());
    ending.next->second = table->observeFieldList(ending.next->first);
    table->notifyFieldObservers();  // the one that is next ends before its turn
    const char* warning = "warning field observer deaf registered, but not supporting method fieldListChanged:";
    EXPECT_THAT(log.lines(), ElementsAre(warning, "Note: Attempt to remove nil field", warning, warning));

    Observer stays(true);
    stays.leaves = false;
    auto view = SQLView::viewWithName("v");
    const Observation observation = view->observeFieldList(stays);
    const std::pair<void (*)(SQLTable&), std::size_t> changes[] = {
        {[](SQLTable& list) { list.setFields({SQLViewEntry::viewEntryWithName("a", "column")}); }, 1},
        {[](SQLTable& list) { list.add(SQLViewEntry::viewEntryWithName("b", "column")); }, 2},
        {[](SQLTable& list) { as<SQLView>(&list)->updateFieldList(); }, 2},  // two headings
        {[](SQLTable& list) { list.setFields({}); }, 0},
    };
    for (int calls = 0; const auto& [change, rows] : changes) {
        change(*view);
        EXPECT_EQ(stays.calls, ++calls) << rows;
        EXPECT_EQ(stays.seen, rows);
    }
}

TEST(Table, KnowsItsPrimaryKeyAndWhoReferencesIt) {
    const auto document = testing::document("s.orders(id INT; part INT; note INT);; items(order INT; part INT)");
    SQLTable &target = *testing::table(*document, "s.orders"), &source = *testing::table(*document, "items");
    EXPECT_EQ(target.primaryKeyConstraintName(), "orders_pkey");
    LogCapture log;
    target.setPrimaryKeyToFieldNames({"note"});
    target.setPrimaryKeyToFieldNames({"ID", "gone"});
    EXPECT_THAT(log.lines(),
                ElementsAre("want to alter primary key to column (gone) not found in this table (s.orders)"));
    EXPECT_THAT(target.primaryKeyList(), ElementsAre("id"));

    auto *column = source.getFieldByName("order"), *part = target.getFieldByName("part");
    column->setFkField(target.getFieldByName("id"));
    auto key = create<SQLForeignKey>();
    key->setTargetTable(&target);
    key->addFieldPair(column, target.getFieldByName("id"));
    source.add(key);
    source.add(SQLForeignKey::initWithName("empty"));
    EXPECT_THAT(target.foreignKeysReferencingPrimaryKey(), ElementsAre(column, key.get()));
    part->setPrimaryKey(true);
    EXPECT_THAT(target.foreignKeysReferencingPrimaryKey(), IsEmpty());
    key->addFieldPair(source.getFieldByName("part"), part);
    EXPECT_THAT(target.foreignKeysReferencingPrimaryKey(), ElementsAre(key.get()));
    EXPECT_THAT(source.foreignKeysReferencingPrimaryKey(), IsEmpty()) << "no primary key, no references to it";
}

TEST(Table, KnowsIndexedColumns) {
    const auto document = testing::document("t(a INT; b INT; c INT unique; d INT; index i (a); index u UNIQUE (b))");
    SQLTable& table = *testing::table(*document, "t");
    std::string indexed, notUnique;
    for (const char* name : {"a", "b", "c", "d"}) {
        if (table.fieldIsIndexed(*table.getFieldByName(name))) indexed += name;
        if (table.fieldIsIndexedNotUnique(*table.getFieldByName(name))) notUnique += name;
    }
    EXPECT_EQ(indexed + " " + notUnique, "ac a");
    const auto indexes = table.indexObjectsInTable();
    EXPECT_TRUE(table.isIndexSoleIndexOnColumn(*indexes[0], *table.getFieldByName("a")));
    indexes[1]->addIndexField(*table.getFieldByName("a"));
    EXPECT_FALSE(table.isIndexSoleIndexOnColumn(*indexes[0], *table.getFieldByName("a")));
}

TEST(Table, StripsOnePairOfQuotesFromItsComment) {
    const std::pair<const char*, const char*> rows[] = {
        {"\"a\"", "a"}, {"''", "''"}, {"'a\\'", "'a\\'"}, {"`a'", "`a'"}, {"\"\"a\"\"", "\"a\""}};
    for (const auto& [comment, stored] : rows) {
        auto table = SQLTable::table();
        table->setComment(comment);
        EXPECT_EQ(table->getComment(), stored);
    }
}

TEST(Table, IsWrittenAsJson) {
    const Value::Map json = tableWithColumns("s.orders", {"id"})->jsonDictionary();
    for (auto [key, value] : {std::pair{"name", "orders"}, {"fullyQualifiedName", "s.orders"}, {"schema", "s"}})
        EXPECT_EQ(json.at(key), Value(value));
    EXPECT_EQ(SQLTable::tableWithName("t")->jsonDictionary().at("schema"), Value("")) << "set, though empty";
    EXPECT_FALSE(SQLTable::table()->jsonDictionary().contains("schema"));
    EXPECT_EQ(json.at("fields").asList()->size(), 1u);
    EXPECT_EQ(json.at("indexes").asList()->size(), 0u);
}

TEST(Table, CopiesItsComponents) {
    auto table = tableWithColumns("s.`a.b`", {"id", "note"});
    table->setTableType("InnoDB");
    table->setOtherOptions("more");
    auto copy = copyOf(*table);
    EXPECT_EQ(copy->getBaseName() + " " + copy->tableType() + copy->getOtherOptions(), "a.b InnoDBmore");
    EXPECT_THAT(componentNames(*copy), ElementsAre("id", "note"));
    EXPECT_EQ(copy->getField(0)->parentTable(), copy.get());
    EXPECT_EQ(copy->getField(0)->uid(), table->getField(0)->uid());
    copy->createNewUid();
    EXPECT_NE(copy->getField(0)->uid(), table->getField(0)->uid());
}

TEST(Table, MovesConnectorMiddlesSideways) {
    auto table = tableWithColumns("t", {"a"});
    table->getField(0)->setProperty(keys::connectorMidPoint, "10.5");
    table->setLocation({1, 2});
    table->relocateToOrigin(-3, -4);
    EXPECT_EQ(table->location(), (Point{-2, -2}));
    EXPECT_EQ(table->getField(0)->getProperty(keys::connectorMidPoint), "7.500000");
}

TEST(TableComponent, KeepsItsNameCleanAndFree) {
    auto table = tableWithColumns("t", {"a", "b"});
    auto* b = table->getField(1);
    b->setName(" `x y`\n");
    EXPECT_EQ(b->getName(), "x y");
    b->setName(std::nullopt);
    EXPECT_EQ(b->getName(), "null");
    auto proposed = [](SQLTableComponent& component, OptionalText name) {
        EXPECT_TRUE(component.validateName(name, nullptr));
        return text("%@ %d", name, int{component.didChangeNameDuringValidation()});
    };
    EXPECT_EQ(proposed(*b, "a"), "a_1 1");
    EXPECT_EQ(proposed(*b, "free"), "free 0");
    EXPECT_EQ(proposed(*SQLField::field(), "any"), "any 0") << "no table, no rule";
}

}  // namespace
}  // namespace vellicor
