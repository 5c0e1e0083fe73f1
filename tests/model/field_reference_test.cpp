// tests/model/field_reference_test.cpp — columns finding what they reference, and old compound keys.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/export/foreign_key_graph.h"
#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using testing::ScopedPreference;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FieldReference : public ::testing::Test {
protected:
    /// Columns whose names end in "*" are the primary key.
    SQLTable* addTable(const char* name, const std::vector<std::string>& columns) {
        auto table = SQLTable::tableWithName(name);
        for (std::string column : columns) {
            const bool isKey = column.ends_with('*');
            if (isKey) column.pop_back();
            auto field = SQLField::fieldWithName(column, "int");
            field->setPrimaryKey(isKey);
            table->add(field);
        }
        document->add(table);
        return table.get();
    }
    SQLField* column(const char* table, const char* name) {
        return as<SQLTable>(document->getObjectByName(table))->getFieldByName(name);
    }
    std::shared_ptr<SQLContainer> document = SQLContainer::newContainer();
};

TEST_F(FieldReference, IsFoundByUidThenByName) {
    auto* orders = addTable("s.orders", {"id*", "part*"});
    addTable("items", {"ref"});
    const std::string tableUid = orders->uid(), idUid = orders->getField(0)->uid();
    struct {
        OptionalText table, field, tableUid, fieldUid;
        const char* target;
    } rows[] = {
        {"s.orders", "part", std::nullopt, std::nullopt, "s.orders(part)"},
        {"S.\"Orders\"", "PART", std::nullopt, std::nullopt, "s.orders(part)"},
        {"s.orders", std::nullopt, std::nullopt, std::nullopt, "s.orders(id)"},
        {"s.orders", "", std::nullopt, std::nullopt, "s.orders(id)"},
        {"old", "old", tableUid, idUid, "s.orders(id)"},
        {"old", "part", tableUid, "stale", "s.orders(part)"},
        {std::nullopt, std::nullopt, tableUid, idUid, "(null)"},
        {"orders", "id", std::nullopt, std::nullopt, "(null)"},
        {"s.orders", "gone", std::nullopt, std::nullopt, "(null)"},
    };
    for (const auto& row : rows) {
        auto field = SQLField::fieldWithName("f", "text");
        as<SQLTable>(document->getObjectByName("items"))->add(field);
        field->setReferences(row.table, row.field);
        field->setReferencesTableUID(row.tableUid);
        field->setReferencesFieldUID(row.fieldUid);
        LogCapture log;
        field->postLoadProcess();
        EXPECT_EQ(text("%@", field->getReferences()), row.target);
        EXPECT_EQ(field->hasForeignKey(), field->targetTable() == orders);
        const bool isMissing = row.table == "orders";
        EXPECT_EQ(field->getPropertyAsBoolean(keys::incompleteReferenceTarget), isMissing);
        if (row.field == "gone") {
            EXPECT_THAT(log.lines(), ElementsAre("failed to field field by uid ((null)) or name (gone)"));
        }
        field->delete_();
    }
}

TEST_F(FieldReference, WarnsOfTargetsWithoutColumnAndPrimaryKey) {
    addTable("t", {"a"});
    addTable("u", {"ref"});
    column("u", "ref")->setReferencesTable("t");
    LogCapture log;
    column("u", "ref")->postLoadProcess();
    EXPECT_THAT(log.lines(), ElementsAre("[Warn] foreign key doesn't specify target columns and is referencing a table "
                                         "without primary key  (null)"));
    EXPECT_EQ(column("u", "ref")->referencesTable(), "t");
    EXPECT_EQ(column("u", "ref")->getReferences(), std::nullopt);
}

TEST_F(FieldReference, WaitsForItsTable) {
    auto* items = addTable("items", {"ref"});
    auto* ref = column("items", "ref");
    ref->setReferences("orders", "id");
    ref->setPropertyAsBoolean(keys::unknownReferenceType, true);
    ref->postLoadProcess();
    EXPECT_EQ(ref->getProperty(keys::refTableName) + "." + ref->getProperty(keys::refFieldName), "orders.id");
    EXPECT_TRUE(items->getPropertyAsBoolean(keys::incompleteReferenceTarget));
    EXPECT_EQ(ref->getReferencesString(), "orders(id)");

    auto missing = copyOf(*ref);
    missing->setName("other");
    items->add(missing);
    LogCapture log;
    missing->reconnectIncompleteReference();
    EXPECT_THAT(log.lines(), ElementsAre("[NOTE] missing target table orders(id)"));
    EXPECT_FALSE(missing->hasProperty(keys::refTableName) || missing->hasProperty(keys::incompleteReferenceTarget));
    EXPECT_EQ(missing->getReferencesString(), std::nullopt);

    addTable("orders", {"id"})->getFieldByName("id")->setType("uuid");
    ref->reconnectIncompleteReference();
    EXPECT_EQ(ref->fkField(), column("orders", "id"));
    EXPECT_FALSE(ref->hasProperty(keys::refTableName));
    ref->postLoadProcess();
    EXPECT_EQ(ref->getType(), "uuid") << "its own was not known";
}

TEST_F(FieldReference, FollowsItsTargetUntilCleared) {
    auto* orders = addTable("orders", {"id"});
    addTable("items", {"ref"});
    auto *id = column("orders", "id"), *ref = column("items", "ref");
    ref->setFkField(id);
    unsigned errors = 99;
    EXPECT_TRUE(ref->isFKFieldValid(errors));
    EXPECT_EQ(ref->referenceInformationString(), "orders(id)");
    EXPECT_EQ(ref->getReferenceName(), "items(ref)");
    EXPECT_EQ(ref->observingFkTable(), orders);
    orders->createNewUid();
    EXPECT_NE(ref->referencesFieldUID(), id->uid());
    ref->updateLinksWithNewUid();
    EXPECT_EQ(ref->referencesFieldUID(), id->uid());
    EXPECT_EQ(ref->referencesTableUID(), orders->uid());
    ref->setFkField(nullptr);
    EXPECT_EQ(ref->referencesField(), std::nullopt);
    EXPECT_EQ(ref->referencesTableUID(), std::nullopt);
    EXPECT_EQ(ref->observingFkTable(), nullptr);
    EXPECT_THAT(id->connectedObjects(), ElementsAre(ref)) << "the former target does not hear of it";
    EXPECT_FALSE(ref->isFKFieldValid(errors));
    EXPECT_EQ(errors, foreignKeyError::noTargetTable | foreignKeyError::mismatchedColumns);
    EXPECT_EQ(ref->referenceInformationString(), std::nullopt);

    ref->setFkField(id);
    orders->remove(id);
    EXPECT_EQ(ref->getFkField(), nullptr) << "a column that is gone is no target";
    EXPECT_EQ(ref->targetTable(), nullptr);
    EXPECT_EQ(ref->referencesField(), "id");
}

TEST_F(FieldReference, LeavesTheGraphWhenItGoes) {
    addTable("t", {"a", "b"});
    auto* graph = document->fkObjectGraph();
    auto *a = column("t", "a"), *b = column("t", "b");
    a->setFkField(b);
    ASSERT_NE(graph->nodeForField(a), nullptr);
    a->delete_();
    EXPECT_EQ(graph->nodeForField(a), nullptr);
    EXPECT_EQ(graph->nodeForField(b), nullptr) << "nobody references it any more";
    EXPECT_THAT(graph->subgraphList(), IsEmpty());
}

TEST_F(FieldReference, CountsAsCircularInRingsAndEndlessChains) {
    addTable("t", {"a", "b", "c"});
    addTable("u", {"d"});
    auto *a = column("t", "a"), *b = column("t", "b"), *c = column("t", "c"), *d = column("u", "d");
    EXPECT_FALSE(a->isCircularFK());
    a->setFkField(b);
    b->setFkField(c);
    EXPECT_FALSE(a->isCircularFK()) << "two steps, two tables";
    c->setFkField(d);
    EXPECT_TRUE(a->isCircularFK()) << "more steps than objects";
    EXPECT_FALSE(b->isCircularFK());
    c->setFkField(b);
    EXPECT_TRUE(b->isCircularFK());
    EXPECT_TRUE(a->isCircularFK());
    EXPECT_FALSE(b->getFkTypeMismatch()) << "the two reference each other";
}

TEST_F(FieldReference, TurnsOldCompoundKeysIntoForeignKeys) {
    struct {
        const char* what;
        std::vector<std::string> target;
        const char* referenced;
        bool converts;
    } rows[] = {
        {"two columns of a key", {"note", "a*", "b*", "c*"}, "b", true},
        {"not a column of the key", {"a*", "b*", "c"}, "c", false},
        {"a key of one column", {"a*", "b", "c"}, "a", false},
        {"no such column", {"a*", "b*"}, "gone", false},
    };
    for (const auto& row : rows) {
        document = SQLContainer::newContainer();
        addTable("target", row.target);
        auto* source = addTable("source", {"x", "a", "b"});
        auto* x = column("source", "x");
        x->setReferences("target", row.referenced);
        x->setReferenceDependentField(column("source", "a")->uid());
        x->setCompoundForeignKey(true);
        x->postLoadProcess();
        EXPECT_FALSE(x->getCompoundForeignKey()) << row.what;
        auto* key = as<SQLForeignKey>(source->getObjectByName("fk"));
        ASSERT_EQ(key != nullptr, row.converts) << row.what;
        if (!key) continue;
        EXPECT_EQ(x->getFkField(), nullptr);
        EXPECT_EQ(key->targetTable(), document->getObjectByName("target"));
        EXPECT_THAT(key->getSourceList(), ElementsAre("x", "a")) << "no column is called c";
        EXPECT_THAT(key->getTargetList(), ElementsAre("b", "a", "c"));
        x->postLoadProcess();
        EXPECT_EQ(source->fieldArrayOfClass(isKindOf<SQLForeignKey>).size(), 1u);
    }
}

TEST_F(FieldReference, SurvivesASecondCompoundKeyOfItsTable) {
    addTable("target", {"a*", "b*"});
    auto* source = addTable("source", {"x", "y"});
    LogCapture log;
    for (const char* name : {"x", "y"}) {
        column("source", name)->setReferences("target", "a");
        column("source", name)->setReferenceDependentField("any");
        column("source", name)->postLoadProcess();
    }
    EXPECT_THAT(log.lines(), ElementsAre("Exception when configuring dependent foreign keys in SQLField:PostLoadProcess"));
    EXPECT_EQ(source->foreignKeyObjectsInTable().size(), 1u) << "both keys are called fk";
    EXPECT_EQ(column("source", "y")->referencesTable(), std::nullopt);
}

TEST_F(FieldReference, KeepsMembersOfAnOldCompoundKey) {
    auto* target = addTable("target", {"a*", "b*", "c*"});
    auto* source = addTable("source", {"x", "b"});
    auto *x = column("source", "x"), *b = column("source", "b");
    x->setFkField(column("target", "a"));
    x->updateDependentKeys(target->primaryKeyObjectList());
    ASSERT_EQ(source->fieldCount(), 3u) << "b is reused, c is made";
    auto* c = column("source", "c");
    EXPECT_THAT(x->getDependentCompoundKeyFields(), ElementsAre(b, c));
    EXPECT_EQ(c->foreignKeyMode(), ForeignKeyMode::CompoundMember);
    EXPECT_EQ(c->referenceInformationString(), "target(a)");
    EXPECT_THAT(x->getCompoundKeyVector(), ElementsAre("a", "b", "c"));
    EXPECT_THAT(x->exportToXML(), ::testing::HasSubstr(text("<referenceDependentField><![CDATA[%@]]>", c->uid())));
    x->updateDependentKeys({column("target", "b")});
    EXPECT_NE(column("source", "b_1"), nullptr) << "a member is not taken twice";
    EXPECT_TRUE(SQLField::compoundKeyIsValid({x}, {b, c}));
    EXPECT_FALSE(SQLField::compoundKeyIsValid({x}, {b}));
    c->setType("text");
    EXPECT_FALSE(SQLField::compoundKeyIsValid({x}, {c, b}));

    c->setFkField(nullptr);
    EXPECT_FALSE(x->hasForeignKey()) << "clearing a member clears the owner";
    EXPECT_FALSE(b->getCompoundForeignKey());
    EXPECT_THAT(x->getDependentCompoundKeyFields(), IsEmpty());
    EXPECT_EQ(c->foreignKeyMode(), ForeignKeyMode::None);
}

TEST_F(FieldReference, EndsWhereMembersOwnEachOther) {
    addTable("t", {"a", "b"});
    auto *a = column("t", "a"), *b = column("t", "b");
    for (auto [member, owner] : {std::pair{a, b}, {b, a}}) {
        member->setSourceForeignKey(owner);
        member->setCompoundForeignKey(true);
    }
    EXPECT_EQ(a->referenceInformationString(), "unknown");
    a->setFkField(nullptr);
    a->setFkField(b);
    EXPECT_EQ(a->getFkField(), b) << "the guard is open again";
    EXPECT_EQ(b->referenceInformationString(), "t(b)");
}

TEST_F(FieldReference, MakesInlineChecksConstraints) {
    auto* table = addTable("t", {"a", "b"});
    column("t", "a")->setProperty(keys::checkConstraint, "a > 0");
    column("t", "b")->setProperty(keys::checkConstraint, "b > 0");
    column("t", "b")->setProperty(keys::checkConstraintName, "a_check_cons");
    table->postLoadProcess();
    std::vector<std::string> checks;
    table->forEachComponent<SQLConstraint>(
        [&](SQLConstraint& check) { checks.push_back(check.getName() + ": " + check.checkConstraintExpression()); });
    EXPECT_THAT(checks, ElementsAre("a_check_cons: a > 0", "a_check_0: b > 0"));
    EXPECT_FALSE(column("t", "b")->hasProperty(keys::checkConstraint) || column("t", "b")->hasProperty(keys::checkConstraintName));
}

TEST_F(FieldReference, IsLeftAloneByTheTableLevelConversion) {
    addTable("target", {"a*", "b*"});
    auto* source = addTable("source", {"a", "b"});
    column("source", "a")->setFkField(column("target", "a"));
    ScopedPreference preference(prefs::convertExistingCompoundForeignKeys);
    source->postLoadProcess();
    EXPECT_EQ(source->fieldCount(), 2u);
    EXPECT_EQ(column("source", "a")->getFkField(), column("target", "a"));
}

}  // namespace
}  // namespace vellicor
