// tests/model/table_test.cpp — a table's names, its components, and looking them up.
#include "vellicor/model/table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/model/component_index.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using testing::ScopedPreference;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
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

TEST(Table, TakesItsNameApart) {
    struct {
        OptionalText name, schema;
        const char* base;
        const char* whole;
        const char* indexPrefix;
    } rows[] = {
        {"sales.orders", "sales", "orders", "sales.orders", "orders_"},
        {"orders", "", "orders", "orders", "orders_"},
        {" \"sales\" . orders ", "sales", "orders", "sales.orders", "orders_"},
        {"`a.b`", "", "a.b", "a.b", "a.b_"},
        {std::nullopt, "", "", "", "_"},
    };
    auto table = SQLTable::table();
    EXPECT_EQ(table->getName(), "Table");
    EXPECT_EQ(table->indexPrefix(), std::nullopt);
    EXPECT_EQ(table->schemaName(), std::nullopt);
    for (const auto& row : rows) {
        table->setName(row.name);
        EXPECT_EQ(table->schemaName(), row.schema);
        EXPECT_EQ(table->getBaseName(), row.base);
        EXPECT_EQ(table->getName(), row.whole);
        EXPECT_EQ(table->indexPrefix(), row.indexPrefix);
    }
}

TEST(Table, KeepsOrReplacesItsSchema) {
    auto table = SQLTable::initWithName("orders", "InnoDB", "sales");
    EXPECT_EQ(table->tableType(), "") << "the type given is not used";
    table->setFullyQualifiedName("items", false);
    EXPECT_EQ(table->getName(), "sales.items");
    EXPECT_EQ(table->fullyQualifiedNameForIndexNames(), "sales_items");
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
    undo->beginUndoGrouping();
    table->setName("items");
    table->setTableType("view");
    undo->endUndoGrouping();
    EXPECT_EQ(undo->undoActionName(), "set table type");
    undo->undo();
    EXPECT_EQ(table->getName(), "sales.orders");
    EXPECT_EQ(table->tableType(), "");
    undo->redo();
    EXPECT_EQ(table->getName(), "items");
    undo->beginUndoGrouping();
    table->setName("x.y");
    undo->endUndoGrouping();
    EXPECT_EQ(undo->undoActionName(), "set object name");
}

TEST(Table, UndoesNamesWithQuotesInThem) {
    auto undo = std::make_shared<StandardUndoManager>();
    auto table = tableWithColumns("t", {"\"a 'b'\""});
    table->setBaseName("\"it's\"");
    table->setSchemaName("\"the firm's\"");
    table->setUndoManager(undo);
    undo->beginUndoGrouping();
    table->setName("items");
    table->getField(0)->setName("b");
    undo->endUndoGrouping();
    undo->undo();
    EXPECT_EQ(table->getName() + "|" + table->getField(0)->getName(), "the firm's.it's|a 'b'");
}

TEST(Table, ProposesFreeNamesInItsDocument) {
    auto document = SQLContainer::newContainer();
    auto orders = SQLTable::tableWithName("sales.orders"), other = SQLTable::tableWithName("items");
    document->add(orders);
    document->add(other);
    OptionalText name = "Sales.Orders";
    EXPECT_TRUE(other->validateFullyQualifiedName(name, nullptr));
    EXPECT_EQ(name, "Sales.Orders_1");
    EXPECT_TRUE(other->didChangeNameDuringValidation());
    name = "sales.orders";
    orders->validateFullyQualifiedName(name, nullptr);
    EXPECT_EQ(name, "sales.orders") << "its own name";
    EXPECT_EQ(document->getObjectByName("sales.items"), nullptr);
    other->setSchema("sales");
    EXPECT_EQ(document->getObjectByName("sales.items"), other.get()) << "the document heard of the schema";
}

TEST(Table, StandsAtTheNextDefaultPlace) {
    SQLTable::resetPosition();
    std::vector<Point> places;
    for (int i = 0; i < 7; ++i) places.push_back(SQLTable::table()->location());
    EXPECT_EQ(places, (std::vector<Point>{{210, 0}, {420, 0}, {630, 0}, {840, 0}, {1050, 0}, {0, 110}, {210, 110}}));
    EXPECT_EQ(SQLTable::table()->size(), (Size{200, 100}));
}

TEST(Table, RefusesWhatItCannotAdd) {
    auto table = tableWithColumns("t", {"id"});
    table->add(SQLIndex::indexWithName("ID"));
    EXPECT_THAT(componentNames(*table), ElementsAre("id", "ID")) << "another kind";
    EXPECT_EQ(raised([&] { table->add(SQLField::fieldWithName("`Id`", "int")); }),
              "DuplicateFieldException: Duplicate field exception on t(Id)");
    EXPECT_EQ(raised([&] { table->add(SQLIndex::indexWithName("id")); }),
              "Add Field Exception: AddComponent: Duplicate field exception on t(id)");
    EXPECT_EQ(raised([&] { table->addUniqueComponent(SQLIndex::indexWithName("id")); }),
              "DuplicateFieldException: Duplicate field exception on t(id)");
    EXPECT_EQ(raised([&] { table->addUniqueComponent(nullptr); }), "NilFieldException: Nil field exception on t((null))");
    EXPECT_EQ(raised([&] { table->add(nullptr); }), "Add Field Exception: AddComponent: Nil field exception on t((null))");
    EXPECT_EQ(raised([&] { table->addWithRenaming(nullptr); }), "ParsingException: field was null");
    auto constraint = SQLConstraint::constraint();
    constraint->setName("id");
    table->add(constraint);
    EXPECT_EQ(table->fieldCount(), 3u) << "a constraint may be called like an index, not the reverse";
    EXPECT_EQ(table->fieldArrayOfClass(isKindOf<SQLIndex>).size(), 2u);
    EXPECT_EQ(table->objectOfClass(isKindOf<SQLIndex>, 1), constraint.get());
}

TEST(Table, GivesNewComponentsWhatTheyLack) {
    auto document = SQLContainer::newContainer();
    auto table = SQLTable::tableWithName("t");
    document->add(table);
    auto bare = SQLField::field(), second = SQLField::field(), clashing = SQLField::fieldWithName("id", "text");
    table->add(bare);
    EXPECT_EQ(bare->getName() + " " + bare->getType(), "untitled INTEGER");
    table->add(second);
    EXPECT_EQ(second->getName(), "untitled_1");
    clashing->setUid(bare->uid());
    table->add(clashing);
    EXPECT_NE(clashing->uid(), bare->uid()) << "the document knows that uid already";
    EXPECT_EQ(table->getFieldByUID(clashing->uid()), clashing.get());
    bool didRename = false;
    auto twin = SQLField::fieldWithName("ID", "int");
    table->addWithRenaming(twin, didRename);
    EXPECT_TRUE(didRename);
    EXPECT_EQ(twin->getName(), "ID_1");
    EXPECT_EQ(twin->parentTable(), table.get());
    EXPECT_EQ(twin->topLevelContainer(), document.get());
    twin->delete_();
    EXPECT_EQ(twin->parentTable(), nullptr);
    EXPECT_FALSE(document->uidInContainer(twin->uid()));
    table.reset();
    document.reset();
    EXPECT_EQ(bare->container(), nullptr) << "nothing points at a table that is gone";
}

TEST(Table, PrefixesIndexNamesWhereAskedTo) {
    auto document = SQLContainer::newContainer();
    auto table = SQLTable::tableWithName("sales.orders");
    document->add(table);
    auto added = [&](std::string_view name) {
        auto index = SQLIndex::indexWithName(std::string(name));
        table->addWithRenaming(index);
        return index->getName() + "|" + index->getProperty(keys::indexNamePrefix);
    };
    ScopedPreference preference(prefs::addTablePrefixToIndexNamesAtCreation);
    EXPECT_EQ(added("idx"), "idx|") << "the document does not ask for it";
    document->setPropertyAsBoolean(keys::allowsIndexRenamingOnInsert, true);
    EXPECT_EQ(added("by_date"), "sales_orders_by_date|sales_orders");
    EXPECT_EQ(added("sales_orders2"), "sales_orders2|");
    EXPECT_EQ(added("by_date"), "sales_orders_by_0|sales_orders") << "numbered behind the last underscore";
    auto moved = SQLIndex::indexWithName("old_by_user");
    moved->setProperty(keys::indexNamePrefix, "old");
    EXPECT_EQ(moved->prefixedName("old_by_user", *table), "sales_orders_by_user");
    auto field = SQLField::fieldWithName("idx", "int");
    table->addWithRenaming(field);
    EXPECT_EQ(field->getName(), "idx_1") << "columns have no prefix";
    table->addParsedIndexWithName("pi", {"idx_1", "gone"}, "UNIQUE");
    auto* index = as<SQLIndex>(table->getObjectByName("sales_orders_pi"));
    ASSERT_NE(index, nullptr);
    EXPECT_THAT(index->getFieldNameList(), ElementsAre("idx_1"));
}

TEST(Table, ComparesUnquotedNames) {
    struct {
        OptionalText name;
        const char* unquoted;
    } rows[] = {{std::nullopt, ""}, {"", ""},          {"\"", ""},    {"a", "a"},     {"`a`", "a"},
                {"'a\"", "a"},      {"a'", "a"},       {"\"abc", "ab"}, {"'a", ""}, {"\"ab\xC3\xA9", "ab"}};
    for (const auto& row : rows) EXPECT_EQ(SQLTable::unquotedName(row.name), row.unquoted) << row.name.value_or("(null)");
    auto table = tableWithColumns("t", {"Größe"});
    EXPECT_NE(table->getFieldByName(" `GRÖSSE` "), nullptr);
    EXPECT_EQ(table->getFieldByTypeAndName(isKindOf<SQLField>, "größe", false), nullptr);
    EXPECT_EQ(table->getFieldByTypeAndName(isKindOf<SQLIndex>, "Größe"), nullptr);
    EXPECT_TRUE(table->isFieldNamePresent("größe"));
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
            switch (const std::size_t action = pick(10)) {
                case 0:
                    if (count > width / 2) table->remove(some.get());
                    break;
                case 1:
                    if (some) some->setName(name);
                    break;
                case 2:
                    if (some) table->reorder(*some, pick(count + 1));
                    break;
                case 3:
                    if (some) some->createNewUid();
                    break;
                default:
                    std::shared_ptr<SQLTableComponent> added = SQLField::fieldWithName(name, "int");
                    if (action == 4) added = SQLIndex::indexWithName(name);
                    if (count < width) table->addWithRenaming(added);
            }
            const std::string wanted = text("c%lu", pick(width));
            ASSERT_EQ(table->getFieldByName(wanted), walked(*table, wanted, isKindOf<SQLField>));
            ASSERT_EQ(table->getFieldByTypeAndName(isKindOf<SQLIndex>, wanted), walked(*table, wanted, isKindOf<SQLIndex>));
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
    EXPECT_EQ(table->uidFieldMap().at("same"), b);
    table->addUidMapEntryForObject(*a, "other");
    EXPECT_EQ(table->getFieldByUID("other"), a);
    a->setProperty(keys::uid, "third");
    EXPECT_EQ(table->getFieldByUID("other"), nullptr);
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
    struct {
        const char* column;
        std::size_t position;
        std::vector<std::string> expected;
    } rows[] = {{"a", 1, {"b", "a", "c"}},
                {"a", 3, {"b", "c", "a"}},
                {"b", 4, {"b", "c", "a"}},
                {"b", SQLTable::kNoPosition, {"b", "c", "a"}},
                {"a", 0, {"a", "b", "c"}}};
    for (const auto& row : rows) {
        table->reorder(*table->getFieldByName(row.column), row.position);
        EXPECT_EQ(componentNames(*table), row.expected);
    }
    EXPECT_EQ(undo->undoActionName(), "reorder fields");
    undo->undo();
    EXPECT_THAT(componentNames(*table), ElementsAre("b", "c", "a"));
    undo->undo();
    undo->undo();
    EXPECT_THAT(componentNames(*table), ElementsAre("a", "b", "c"));
    EXPECT_FALSE(undo->canUndo()) << "what changed nothing is not recorded";
    EXPECT_EQ(table->getNextField(*table->getField(2)), table->getField(0));
    EXPECT_EQ(table->getPreviousField(*table->getField(0)), table->getField(2));
    EXPECT_EQ(table->getFieldPosition(*SQLField::field()), SQLTable::kNotFound);
}

class Observer : public FieldListObserver {
public:
    explicit Observer(bool supports) : _supports(supports) {}
    bool supportsFieldListChanged() const override { return _supports; }
    void fieldListChanged(SQLTable& table) override { table.removeObserverForFieldList(*this), ++calls; }
    std::string description() const override { return "deaf"; }
    int calls = 0;

private:
    bool _supports;
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
    const char* warning = "warning field observer deaf registered, but not supporting method fieldListChanged:";
    EXPECT_THAT(log.lines(), ElementsAre(warning, "Note: Attempt to remove nil field", warning));
}

TEST(Table, KnowsItsPrimaryKeyAndWhoReferencesIt) {
    auto document = SQLContainer::newContainer();
    auto target = tableWithColumns("s.orders", {"id", "part", "note"}), source = tableWithColumns("items", {"order", "part"});
    document->add(source);
    document->add(target);
    EXPECT_FALSE(target->hasPrimaryKey());
    EXPECT_EQ(target->primaryKeyConstraintName(), "orders_pkey");
    LogCapture log;
    target->setPrimaryKeyToFieldNames({"note"});
    target->setPrimaryKeyToFieldNames({"ID", "gone"});
    EXPECT_THAT(log.lines(), ElementsAre("want to alter primary key to column (gone) not found in this table (s.orders)"));
    EXPECT_THAT(target->primaryKeyList(), ElementsAre("id"));

    auto* column = source->getFieldByName("order");
    column->setFkField(target->getFieldByName("id"));
    auto *id = target->getFieldByName("id"), *part = target->getFieldByName("part");
    auto key = create<SQLForeignKey>(), empty = SQLForeignKey::initWithName("empty");
    key->setTargetTable(target.get());
    key->addFieldPair(column, id);
    source->add(key);
    source->add(empty);
    EXPECT_THAT(target->foreignKeysReferencingPrimaryKey(), ElementsAre(column, key.get()));
    part->setPrimaryKey(true);
    EXPECT_THAT(target->foreignKeysReferencingPrimaryKey(), IsEmpty());
    key->addFieldPair(source->getFieldByName("part"), part);
    EXPECT_THAT(target->foreignKeysReferencingPrimaryKey(), ElementsAre(key.get()));
    EXPECT_THAT(source->foreignKeysReferencingPrimaryKey(), IsEmpty()) << "no primary key, no references to it";
    EXPECT_THAT(source->foreignKeyObjectsInTable(), ElementsAre(key.get()));
    EXPECT_THAT(source->foreignKeyFieldsInTable(), ElementsAre(column));
    target->setPrimaryKeyConstraintName(std::nullopt);
    EXPECT_EQ(target->primaryKeyConstraintName(), "");
}

TEST(Table, KnowsIndexedColumns) {
    auto table = tableWithColumns("t", {"a", "b", "c", "d"});
    auto* column = table->getFieldByName("a");
    auto plain = SQLIndex::indexWithName("i"), unique = SQLIndex::indexWithName("u");
    unique->setIndexType("UNIQUE");
    plain->addIndexField(*column);
    unique->addIndexField(*table->getFieldByName("b"));
    table->add(plain);
    table->add(unique);
    table->getFieldByName("c")->setUnique(true);
    std::vector<bool> indexed, notUnique;
    for (const char* name : {"a", "b", "c", "d"}) {
        indexed.push_back(table->fieldIsIndexed(*table->getFieldByName(name)));
        notUnique.push_back(table->fieldIsIndexedNotUnique(*table->getFieldByName(name)));
    }
    EXPECT_THAT(indexed, ElementsAre(true, false, true, false));
    EXPECT_THAT(notUnique, ElementsAre(true, false, false, false));
    EXPECT_TRUE(table->isIndexSoleIndexOnColumn(*plain, *column));
    unique->addIndexField(*column);
    EXPECT_FALSE(table->isIndexSoleIndexOnColumn(*plain, *column));
}

TEST(Table, StripsOnePairOfQuotesFromItsComment) {
    struct {
        const char *comment, *stored;
    } rows[] = {{"\"a\"", "a"}, {"''", "''"}, {"'a\\'", "'a\\'"}, {"`a'", "`a'"}, {"\"\"a\"\"", "\"a\""}, {"a", "a"}};
    for (const auto& row : rows) {
        auto table = SQLTable::table();
        table->setComment(row.comment);
        EXPECT_EQ(table->getComment(), row.stored);
    }
}

TEST(Table, WritesItselfAndIsReadByName) {
    auto table = tableWithColumns("s.orders", {"id"});
    table->setFrame({{1, 2}, {3, 4}});
    table->setUid("U");
    table->setComment("c");
    const std::string xml = table->exportToXML();
    EXPECT_THAT(xml, HasSubstr("<SQLTable>\n    <name><![CDATA[orders]]></name>\n    <schema><![CDATA[s]]></schema>\n"
                               "    <comment><![CDATA[c]]></comment>\n    <location>"));
    EXPECT_LT(xml.find("</size>"), xml.find("<SQLField>"));
    EXPECT_LT(xml.find("</SQLField>"), xml.find("<objectComment>"));
    EXPECT_EQ(xml.find("tableType"), std::string::npos);
    const Value::Map json = table->jsonDictionary();
    EXPECT_EQ(json.at("name"), Value("orders"));
    EXPECT_EQ(json.at("fullyQualifiedName"), Value("s.orders"));
    EXPECT_EQ(json.at("schema"), Value("s"));
    EXPECT_EQ(SQLTable::tableWithName("t")->jsonDictionary().at("schema"), Value("")) << "set, though empty";
    EXPECT_FALSE(SQLTable::table()->jsonDictionary().contains("schema"));
    EXPECT_EQ(json.at("fields").asList()->size(), 1u);
    EXPECT_EQ(json.at("indexes").asList()->size(), 0u);

    struct {
        const char* key;
        const char* text;
        std::function<std::string(SQLTable&)> stored;
    } rows[] = {
        {"name", "a.b", [](SQLTable& t) { return t.getName(); }},
        {"BaseName", "b.c", [](SQLTable& t) { return t.getBaseName(); }},
        {"displayName", "x.y", [](SQLTable& t) { return t.getName(); }},
        {"schema", "a", [](SQLTable& t) { return t.getSchemaName(); }},
        {"comment", "k", [](SQLTable& t) { return t.getProperty(keys::objectComment); }},
        {"type", "T", [](SQLTable& t) { return t.getTableType(); }},
        {"primaryKeyConstraintName", "pk", [](SQLTable& t) { return t.getProperty(keys::primaryKeyName); }},
        {"sortPosition", "7x", [](SQLTable& t) { return std::to_string(t.getSortPosition()) + "x"; }},
    };
    for (const auto& row : rows) {
        auto read = SQLTable::kClassInfo.make();
        const Setter* setter = read->classInfo().setterFor(row.key);
        ASSERT_NE(setter, nullptr) << row.key;
        setter->apply(*read, {row.text});
        EXPECT_EQ(row.stored(dynamic_cast<SQLTable&>(*read)), row.text);
    }
    EXPECT_EQ(SQLTable::kClassInfo.setterFor("fields"), nullptr);
    auto safe = SQLTable::table();
    for (auto [key, value] : {std::pair{"name", "s.t"}, {"tableType", "x"}, {"tablespace", "ts"}})
        safe->setSafePropertyValue({value}, key);
    EXPECT_EQ(safe->getName() + safe->getType() + safe->getProperty(keys::tablespace), "s.txts");
}

TEST(Table, CopiesItsComponents) {
    auto table = tableWithColumns("s.`a.b`", {"id", "note"});
    EXPECT_EQ(table->getBaseName(), "a.b");
    table->setTableType("InnoDB");
    table->setOtherOptions("more");
    auto copy = copyOf(*table);
    EXPECT_EQ(copy->getBaseName(), "a.b");
    EXPECT_EQ(copy->getName() + copy->tableType() + copy->getOtherOptions(), "s.a.bInnoDBmore");
    EXPECT_THAT(componentNames(*copy), ElementsAre("id", "note"));
    EXPECT_EQ(copy->getField(0)->parentTable(), copy.get());
    EXPECT_EQ(copy->getField(0)->uid(), table->getField(0)->uid());
    copy->createNewUid();
    EXPECT_NE(copy->getField(0)->uid(), table->getField(0)->uid());
    EXPECT_EQ(copy->flatObjectList().size(), 3u);
    copy->setFields({copy->fields()[1]});
    EXPECT_THAT(componentNames(*copy), ElementsAre("note"));
}

TEST(Table, MovesConnectorMiddlesSideways) {
    auto table = tableWithColumns("t", {"a", "b"});
    table->getField(0)->setProperty(keys::connectorMidPoint, "10.5");
    table->setLocation({1, 2});
    table->relocateToOrigin(-3, -4);
    EXPECT_EQ(table->location(), (Point{-2, -2}));
    EXPECT_EQ(table->getField(0)->getProperty(keys::connectorMidPoint), "7.500000");
    EXPECT_FALSE(table->getField(1)->hasProperty(keys::connectorMidPoint));
}

TEST(Table, TakesColoursFromPreferences) {
    auto table = tableWithColumns("t", {"a"});
    EXPECT_EQ(table->defaultLabelColor(), Color::white());
    const Color red = Color::sRGB(1, 0, 0), green = Color::sRGB(0, 1, 0), blue = Color::sRGB(0, 0, 1);
    ScopedPreference background(prefs::tableBackgroundColor, red.string());
    ScopedPreference notSelected(prefs::tableNotSelectedColor, green.string());
    ScopedPreference field(prefs::fieldBackgroundColor, blue.string());
    EXPECT_EQ(table->defaultLabelColor(), red);
    EXPECT_EQ(table->getField(0)->defaultLabelColor(), blue);
    ScopedPreference newColoring(prefs::useNewColoring);
    EXPECT_EQ(table->defaultLabelColor(), green);
}

TEST(TableComponent, KeepsItsNameCleanAndFree) {
    auto table = tableWithColumns("t", {"a", "b"});
    auto* b = table->getField(1);
    b->setName(" `x y`\n");
    EXPECT_EQ(b->getName(), "x y");
    b->setName(std::nullopt);
    EXPECT_EQ(b->getName(), "null");
    OptionalText name = "a";
    EXPECT_TRUE(b->validateName(name, nullptr));
    EXPECT_EQ(name, "a_1");
    EXPECT_TRUE(b->didChangeNameDuringValidation());
    name = "free";
    b->validateName(name, nullptr);
    EXPECT_EQ(name, "free");
    EXPECT_FALSE(b->didChangeNameDuringValidation());
    name = "any";
    SQLField::field()->validateName(name, nullptr);
    EXPECT_EQ(name, "any") << "no table, no rule";
    EXPECT_THAT(b->description(), HasSubstr("SQLField: t(null) 0x"));
    EXPECT_THAT(b->exportToXMLWithWrapper(), ::testing::StartsWith("<SQLContainer>\n    <SQLField>\n"));
}

}  // namespace
}  // namespace vellicor
