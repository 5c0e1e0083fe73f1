// tests/model/field_reference_test.cpp — columns finding what they reference, and old compound keys.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using testing::ScopedPreference;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct FieldReference : ::testing::Test {
    std::shared_ptr<SQLContainer> document;
    SQLTable* table(const char* name) { return testing::table(*document, name); }
    SQLField* column(const char* table, const char* name) { return testing::field(*document, table, name); }
};

TEST_F(FieldReference, IsFoundByUidThenByName) {
    document = testing::document("s.orders(id int pk; part int pk);; items(ref int)");
    auto *orders = table("s.orders"), *items = table("items");
    const OptionalText none, tableUid = orders->uid(), idUid = orders->getField(0)->uid();
    const struct {
        OptionalText table, field, tableUid, fieldUid;
        const char* target;
    } rows[] = {
        {"s.orders", "part", none, none, "s.orders(part)"},
        {"S.\"Orders\"", "PART", none, none, "s.orders(part)"},
        {"s.orders", none, none, none, "s.orders(id)"},
        {"s.orders", "", none, none, "s.orders(id)"},
        {"old", "old", tableUid, idUid, "s.orders(id)"},
        {"old", "part", tableUid, "stale", "s.orders(part)"},
        {none, none, tableUid, idUid, "(null)"},
        {"orders", "id", none, none, "(null)"},
        {"s.orders", "gone", none, none, "(null)"},
    };
    for (const auto& row : rows) {
        auto field = SQLField::fieldWithName("f", "text");
        items->add(field);
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
    document = testing::document("t(a int);; u(ref int)");
    auto* ref = column("u", "ref");
    ref->setReferencesTable("t");
    LogCapture log;
    ref->postLoadProcess();
    EXPECT_THAT(log.lines(), ElementsAre("[Warn] foreign key doesn't specify target columns and is referencing a table "
                                         "without primary key  (null)"));
    EXPECT_EQ(ref->referencesTable(), "t");
    EXPECT_EQ(ref->getReferences(), std::nullopt);
}

TEST_F(FieldReference, WaitsForItsTable) {
    document = testing::document("items(ref int)");
    auto* ref = column("items", "ref");
    ref->setReferences("orders", "id");
    ref->setPropertyAsBoolean(keys::unknownReferenceType, true);
    ref->postLoadProcess();
    EXPECT_EQ(ref->getProperty(keys::refTableName) + "." + ref->getProperty(keys::refFieldName), "orders.id");
    EXPECT_TRUE(table("items")->getPropertyAsBoolean(keys::incompleteReferenceTarget));
    EXPECT_EQ(ref->getReferencesString(), "orders(id)");

    auto missing = copyOf(*ref);
    missing->setName("other");
    table("items")->add(missing);
    LogCapture log;
    missing->reconnectIncompleteReference();
    EXPECT_THAT(log.lines(), ElementsAre("[NOTE] missing target table orders(id)"));
    EXPECT_FALSE(missing->hasProperty(keys::refTableName) || missing->hasProperty(keys::incompleteReferenceTarget));
    EXPECT_EQ(missing->getReferencesString(), std::nullopt);

    document->merge(*testing::document("x(a int);; orders(id uuid)"));
    ref->reconnectIncompleteReference();
    EXPECT_EQ(ref->fkField(), column("orders", "id"));
    EXPECT_FALSE(ref->hasProperty(keys::refTableName));
    ref->postLoadProcess();
    EXPECT_EQ(ref->getType(), "uuid") << "its own was not known";
}

TEST_F(FieldReference, FollowsItsTargetUntilCleared) {
    document = testing::document("orders(id int);; items(ref int -> orders.id)");
    auto* orders = table("orders");
    auto *id = column("orders", "id"), *ref = column("items", "ref");
    unsigned errors = 99;
    EXPECT_TRUE(ref->isFKFieldValid(errors));
    EXPECT_EQ(ref->referenceInformationString(), "orders(id)");
    orders->createNewUid();
    EXPECT_NE(ref->referencesFieldUID(), id->uid());
    ref->updateLinksWithNewUid();
    EXPECT_EQ(ref->referencesFieldUID(), id->uid());
    ref->setFkField(nullptr);
    EXPECT_EQ(ref->referencesField(), std::nullopt);
    EXPECT_EQ(ref->referencesTableUID(), std::nullopt);
    EXPECT_EQ(ref->observingFkTable(), nullptr);
    EXPECT_THAT(id->connectedObjects(), ElementsAre(ref)) << "the former target does not hear of it";
    EXPECT_FALSE(ref->isFKFieldValid(errors));
    EXPECT_EQ(errors, foreignKeyError::noTargetTable | foreignKeyError::mismatchedColumns);

    ref->setFkField(id);
    orders->remove(id);
    EXPECT_EQ(ref->getFkField(), nullptr) << "a column that is gone is no target";
    EXPECT_EQ(ref->targetTable(), nullptr);
    EXPECT_EQ(ref->referencesField(), "id");
}

TEST_F(FieldReference, CountsAsCircularInRingsAndEndlessChains) {
    document = testing::document("t(a int -> t.b; b int; c int);; u(d int)");
    auto *a = column("t", "a"), *b = column("t", "b"), *c = column("t", "c");
    b->setFkField(c);
    EXPECT_FALSE(a->isCircularFK()) << "two steps, two tables";
    c->setFkField(column("u", "d"));
    EXPECT_TRUE(a->isCircularFK()) << "more steps than objects";
    EXPECT_FALSE(b->isCircularFK());
    c->setFkField(b);
    EXPECT_TRUE(b->isCircularFK());
    EXPECT_TRUE(a->isCircularFK());
    EXPECT_FALSE(b->getFkTypeMismatch()) << "the two reference each other";
}

TEST_F(FieldReference, TurnsOldCompoundKeysIntoForeignKeys) {
    const std::pair<const char*, const char*> rows[] = {  // the second: what the key then is
        {"target(note INT; b INT pk; a INT pk; c INT pk)", "(x,a) references (b,a,c)"},  // no column is called c
        {"target(a INT pk; b INT; c INT pk)", ""},  // not a column of the key
        {"target(a INT; b INT pk)", ""},            // a key of one column
        {"target(a INT pk; c INT pk)", ""},         // no such column
    };
    for (const auto& [target, converted] : rows) {
        // An index and a constraint of a column's name, or of a missing column's, are no sources.
        document = testing::document(std::string(target) +
                                     ";; source(x INT; a INT; index a (x); constraint c UNIQUE (x))");
        auto* x = column("source", "x");
        x->setReferences("target", "b");
        x->setReferenceDependentField(column("source", "a")->uid());
        x->setCompoundForeignKey(true);
        for (int times = 0; times < 2; ++times) x->postLoadProcess();
        EXPECT_FALSE(x->getCompoundForeignKey()) << target;
        std::string keys;
        for (const SQLForeignKey* key : table("source")->foreignKeyObjectsInTable()) {
            keys += key->getTestCompareString();
            EXPECT_EQ(key->targetTable(), table("target"));
            EXPECT_EQ(x->getFkField(), nullptr);
        }
        EXPECT_EQ(keys, converted) << target;
    }
}

TEST_F(FieldReference, SurvivesASecondCompoundKeyOfItsTable) {
    document = testing::document("target(a int pk; b int pk);; source(x int; y int)");
    LogCapture log;
    for (const char* name : {"x", "y"}) {
        column("source", name)->setReferences("target", "a");
        column("source", name)->setReferenceDependentField("any");
        column("source", name)->postLoadProcess();
    }
    EXPECT_THAT(log.lines(),
                ElementsAre("Exception when configuring dependent foreign keys in SQLField:PostLoadProcess"));
    EXPECT_EQ(table("source")->foreignKeyObjectsInTable().size(), 1u) << "both keys are called fk";
    EXPECT_EQ(column("source", "y")->referencesTable(), std::nullopt);
}

TEST_F(FieldReference, KeepsMembersOfAnOldCompoundKey) {
    document = testing::document("target(a int pk; b int pk; c int pk);; source(x int -> target.a; b int)");
    auto *x = column("source", "x"), *b = column("source", "b");
    x->updateDependentKeys(table("target")->primaryKeyObjectList());
    ASSERT_EQ(table("source")->fieldCount(), 3u) << "b is reused, c is made";
    auto* c = column("source", "c");
    EXPECT_THAT(x->getDependentCompoundKeyFields(), ElementsAre(b, c));
    EXPECT_EQ(c->referenceInformationString(), "target(a)");
    EXPECT_THAT(x->exportToXML(), HasSubstr(text("<referenceDependentField><![CDATA[%@]]>", c->uid())));
    EXPECT_TRUE(SQLField::compoundKeyIsValid({x}, {b, c}));
    EXPECT_FALSE(SQLField::compoundKeyIsValid({x}, {b}));
    c->setType("text");
    EXPECT_FALSE(SQLField::compoundKeyIsValid({x}, {c, b}));
    x->updateDependentKeys({column("target", "b")});
    EXPECT_NE(column("source", "b_1"), nullptr) << "a member is not taken twice";

    c->setFkField(nullptr);
    EXPECT_FALSE(x->hasForeignKey()) << "clearing a member clears the owner";
    EXPECT_FALSE(b->getCompoundForeignKey());
    EXPECT_THAT(x->getDependentCompoundKeyFields(), IsEmpty());
}

TEST_F(FieldReference, EndsWhereMembersOwnEachOther) {
    document = testing::document("t(a int; b int)");
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
    document = testing::document("t(a int check=a~>~0; b int check=b~>~0)");
    auto* b = column("t", "b");
    b->setProperty(keys::checkConstraintName, "a_check_cons");
    table("t")->postLoadProcess();
    std::vector<std::string> checks;
    table("t")->forEachComponent<SQLConstraint>(
        [&](SQLConstraint& check) { checks.push_back(check.getName() + ": " + check.checkConstraintExpression()); });
    EXPECT_THAT(checks, ElementsAre("a_check_cons: a > 0", "a_check_0: b > 0"));
    EXPECT_FALSE(b->hasProperty(keys::checkConstraint) || b->hasProperty(keys::checkConstraintName));
}

TEST_F(FieldReference, IsLeftAloneByTheTableLevelConversion) {
    document = testing::document("target(a int pk; b int pk);; source(a int -> target.a; b int)");
    ScopedPreference preference(prefs::convertExistingCompoundForeignKeys);
    table("source")->postLoadProcess();
    EXPECT_EQ(table("source")->fieldCount(), 2u);
    EXPECT_EQ(column("source", "a")->getFkField(), column("target", "a"));
}

}  // namespace
}  // namespace vellicor
