// tests/model/foreign_key_test.cpp — foreign keys: pairs, finding the target, texts, copies.
#include "vellicor/model/foreign_key.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using testing::ScopedPreference;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class ForeignKey : public ::testing::Test {
protected:
    std::shared_ptr<SQLContainer> document = testing::document(
        "s.orders(id INT pk; part INT pk; note TEXT);; items(order INT; part INT; other INT;"
        " key link (order,part) -> s.orders(id,part) delete=1 deferrable deferred)");
    SQLTable& orders = *testing::table(*document, "s.orders");
    SQLTable& items = *testing::table(*document, "items");
    SQLForeignKey& key = *items.foreignKeyObjectsInTable().front();
    std::shared_ptr<StandardUndoManager> undo = std::make_shared<StandardUndoManager>();

    SQLField* source(const char* name) { return items.getFieldByName(name); }
    SQLField* target(const char* name) { return orders.getFieldByName(name); }

    using Properties = std::vector<std::pair<const char*, std::string>>;
    /// A key in `items` as a document describes it, each pair by its properties.
    std::shared_ptr<SQLForeignKey> read(const Properties& properties, const std::vector<Properties>& pairs) {
        auto made = SQLForeignKey::initWithName("read");
        for (const auto& [name, value] : properties) made->setProperty(name, value);
        for (const auto& pair : pairs) {
            auto entry = made->createEntryObject();
            for (const auto& [name, value] : pair) entry->setProperty(name, value);
            made->addForeignKeyEntry(entry);
        }
        items.add(made);
        return made;
    }
};

TEST_F(ForeignKey, KeepsItsPairsInOrderAndUndoesEachChange) {
    document->setUndoManager(undo);
    key.addFieldPair(source("other"), target("note"));
    EXPECT_THAT(key.getSourceList(), ElementsAre("order", "part", "other"));
    undo->undo();
    EXPECT_EQ(key.getKeyPairCount(), 2u);
    undo->redo();

    const auto first = key.getKeyPairAtIndex(0), last = key.getKeyPairAtIndex(2);
    key.addForeignKeyEntry(last);
    key.insertFieldPair(last, 0);
    EXPECT_THAT(key.fieldPairs(), ElementsAre(first, key.getKeyPairAtIndex(1), last)) << "an entry stands once";

    key.removeFieldPair(first);
    undo->undo();
    EXPECT_EQ(key.getKeyPairAtIndex(0), first) << "at its old position";
    EXPECT_EQ(first->topLevelContainer(), document.get());
    key.addFieldPair(source("order"), target("id"));
    key.removeFieldPair(source("order"), target("id"));
    EXPECT_EQ(key.getKeyPairAtIndex(0), first) << "the last pair of the two goes";
    undo->removeAllActions();
    key.removeFieldPair(source("order"), target("note"));
    key.removeFieldPair(nullptr, target("id"));
    key.removeFieldPair(nullptr);
    EXPECT_FALSE(undo->canUndo());
    LogCapture log;
    key.removeFieldPairAtIndex(3);
    EXPECT_THAT(log.lines(), ElementsAre("attempted to remove index field pair beyond range"));

    first->setTarget(target("note"));
    undo->undo();
    EXPECT_EQ(first->target(), target("id"));
    first->setTargetFromUid(orders, "no such uid");
    first->setSourceFromUid(items, key.uid());
    EXPECT_EQ(first->target(), target("id"));
    EXPECT_EQ(first->source(), source("order"));
    first->setTargetFromUid(orders, "-");
    EXPECT_EQ(first->target(), nullptr);

    key.setTargetTable(nullptr);
    undo->undo();
    EXPECT_EQ(key.targetTable(), &orders);
    key.setSourceCardinality(4);
    EXPECT_EQ(undo->undoActionName(), "set Source cardinality");
    undo->undo();
    EXPECT_EQ(key.sourceCardinality(), 0u);
}

TEST_F(ForeignKey, FindsTargetAndColumnsByUidThenByName) {
    const auto *table = keys::targetTableName, *tableUid = keys::targetTableUid;
    const auto *to = keys::targetFieldName, *toUid = keys::targetFieldUid;
    const auto *from = keys::sourceFieldName, *fromUid = keys::sourceFieldUid;
    const std::string partUid = source("part")->uid(), targetPartUid = target("part")->uid();
    const struct {
        Properties properties, pair;
        const char* found;
        std::vector<std::string> log;
    } rows[] = {
        {{{tableUid, orders.uid()}, {table, "old"}},
         {{toUid, targetPartUid}, {to, "id"}, {fromUid, partUid}}, "(part) references (part)", {}},
        {{{tableUid, "stale"}, {table, "S.Orders"}},
         {{toUid, "stale"}, {to, "ID"}, {fromUid, "stale"}, {from, "\"order\""}}, "(order) references (id)", {}},
        {{{table, "s.orders"}}, {{to, "ghost"}, {from, "ghost"}}, "() references ()", {}},
        {{{table, "s.orders"}}, {}, "() references ()", {"no targetFieldName property", "no sourceFieldName property"}},
        {{}, {{from, "order"}}, "() references ()", {}},
    };
    for (const auto& row : rows) {
        auto made = read(row.properties, {row.pair});
        LogCapture log;
        made->postLoadProcess();
        EXPECT_EQ(made->getTestCompareString(), row.found);
        EXPECT_EQ(log.lines(), row.log);
        EXPECT_EQ(made->targetTable(), row.properties.empty() ? nullptr : &orders);
        EXPECT_FALSE(made->hasProperty(keys::targetTableUid));
        EXPECT_FALSE(made->hasProperty(keys::incompleteReferenceTarget));
        made->delete_();
    }
}

TEST_F(ForeignKey, WaitsForAMissingTable) {
    const Properties pair = {{keys::targetFieldName, "x"}, {keys::sourceFieldName, "other"}};
    auto made = read({{keys::targetTableName, "s.later"}}, {pair});
    made->postLoadProcess();
    EXPECT_TRUE(made->getPropertyAsBoolean(keys::incompleteReferenceTarget));
    EXPECT_EQ(made->getTargetTableName(), "s.later");
    unsigned bits = 0;
    EXPECT_FALSE(made->isFKFieldValid(bits));
    EXPECT_EQ(bits, foreignKeyError::noTargetTable | foreignKeyError::noColumns);

    document->merge(*testing::document("s.later(x INT)"));
    EXPECT_EQ(made->getTestCompareString(), "(other) references (x)");
    EXPECT_TRUE(made->isFKFieldValid(bits));
    EXPECT_FALSE(made->hasProperty(keys::refTableName));

    made->setIncompleteReferenceTargetTable("never", "");
    LogCapture log;
    made->reconnectIncompleteReference();
    EXPECT_THAT(log.lines(), ElementsAre("missing target table never"));
    EXPECT_FALSE(made->hasProperty(keys::refTableName));
}

TEST_F(ForeignKey, TakesTheTargetsPrimaryKeyWhenTold) {
    const Properties properties = {{keys::targetTableName, "s.orders"}, {keys::targetsPrimaryKey, "1"}};
    const Properties order = {{keys::sourceFieldName, "order"}}, part = {{keys::sourceFieldName, "part"}};
    auto matching = read(properties, {order, part});
    matching->postLoadProcess();
    EXPECT_EQ(matching->getTestCompareString(), "(order,part) references (id,part)");
    matching->delete_();

    Properties named = part;
    named.emplace_back(keys::targetFieldName, "part");
    for (const auto& pairs : {std::vector{order, part, order}, std::vector{order, named}}) {
        auto made = read(properties, pairs);
        LogCapture log;
        made->postLoadProcess();
        EXPECT_EQ(log.lines().front(), "[WARN] foreign key read does not have a matching number of entries");
        EXPECT_TRUE(made->hasProperty(keys::targetsPrimaryKey));
        made->delete_();
    }
}

TEST_F(ForeignKey, LosesColumnsThatLeftTheirTables) {
    EXPECT_FALSE(key.getFkTypeMismatch());
    target("part")->setType("TEXT");
    EXPECT_TRUE(key.getFkTypeMismatch());
    const auto part = orders.getFieldByName("part")->shared_from_this();
    orders.remove(target("part"));
    key.updateWithChangedModel();
    EXPECT_EQ(key.exportToSQL(), "Foreign Key link (order,part) references s.orders (id, )");
    EXPECT_FALSE(key.getFkTypeMismatch()) << "half a pair does not count";
    unsigned bits = 0;
    EXPECT_FALSE(key.isFKFieldValid(bits));
    EXPECT_EQ(bits, foreignKeyError::mismatchedColumns);
    items.remove(source("order"));
    key.updateWithChangedModel();
    EXPECT_THAT(key.getSourceList(), ElementsAre("part"));
    EXPECT_EQ(key.getKeyPairCount(), 2u);
}

TEST_F(ForeignKey, DescribesItself) {
    EXPECT_EQ(key.getComparisonString(), "FK: link s.orders (order,part) references (id,part) "
                                         "deferrable:DEFERRABLE initiallyDeferred:INITALLYDEFERRED");
    key.setDeferrable(false);
    key.setInitiallyDeferred(false);
    EXPECT_THAT(key.getComparisonString(), EndsWith(") deferrable: initiallyDeferred:"));
    EXPECT_EQ(key.getLabel() + key.referenceInformationString().value_or("none"), "FK (order,part)[MultiFK]");
    auto entry = key.getKeyPairAtIndex(0);
    EXPECT_THAT(entry->description(), EndsWith("order -> id [by ref] "));
    entry->setSource(nullptr);
    entry->setTarget(nullptr);
    entry->setTargetByName("id");
    EXPECT_THAT(entry->description(), EndsWith(" ->  id [by name]"));
}

TEST_F(ForeignKey, NameIsMadeUniqueWhenForced) {
    read({}, {})->setName("other");
    const ScopedPreference forced(prefs::forceForeignKeyUnique);
    const std::pair<const char*, const char*> rows[] = {{"other", "other_fk_1"}, {"link", "link"}, {"new", "new"}};
    for (const auto& [proposal, accepted] : rows) {
        OptionalText name = proposal;
        EXPECT_TRUE(key.validateName(name, nullptr));
        EXPECT_EQ(name, accepted);
        EXPECT_EQ(key.didChangeNameDuringValidation(), name != proposal);
    }
}

TEST_F(ForeignKey, IsWrittenWithNumbersNamesAndUids) {
    target("id")->setProperty(keys::uid, "T");
    source("order")->setProperty(keys::uid, "S");
    key.setUpdateAction(static_cast<std::uint64_t>(-1));
    EXPECT_THAT(key.exportToXML(), HasSubstr("<updateAction><![CDATA[18446744073709551615]]></updateAction>"));
    const Value json(key.jsonDictionary());
    EXPECT_EQ(*json.find("deleteAction"), Value("1"));
    EXPECT_EQ(json.find("fieldPairs")->asList()->front(),
              Value(Value::Map{{"ClassType", "SQLForeignKeyEntry"}, {"entryIndex", "0"}, {"targetFieldName", "id"},
                               {"targetFieldUid", "T"}, {"sourceFieldName", "order"}, {"sourceFieldUid", "S"}}));
}

TEST_F(ForeignKey, CopyHasNoActionsAndFindsItsTargetsByName) {
    key.setDestinationCardinality(2);
    auto copy = copyOf(key);
    EXPECT_EQ(copy->deleteAction(), action::none);
    EXPECT_EQ(copy->destinationCardinality(), 2u);
    EXPECT_TRUE(copy->isDeferrable());
    EXPECT_EQ(copy->getKeyPairAtIndex(1)->getProperty(keys::targetFieldUid), source("part")->uid())
        << "the source's, not the target's";
    EXPECT_THAT(copy->getSourceList(), IsEmpty());
    items.remove(&key);
    items.add(copy);
    copy->postLoadProcess();
    EXPECT_EQ(copy->getTestCompareString(), "(order,part) references (id,part)");
    EXPECT_EQ(copy->targetTable(), &orders);
}

}  // namespace
}  // namespace vellicor
