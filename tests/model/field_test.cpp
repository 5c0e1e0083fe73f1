// tests/model/field_test.cpp — a column's type, flags, default value, forced types and document form.
#include "vellicor/model/field.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "tests/support/document_builder.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/model/export_dialect.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using testing::ScopedPreference;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(Field, TakesItsTypeApart) {
    const struct {
        OptionalText type;
        const char* parts;  // "base|size|whole"
    } rows[] = {
        {" decimal ( 10,2 ) ", "decimal|10,2|decimal(10,2)"},
        {"int(11) unsigned", "int|11|int(11)"},
        {"text", "text||text"},
        {std::nullopt, "||"},
    };
    for (const auto& row : rows) {
        auto field = SQLField::fieldWithName("f", row.type);
        EXPECT_EQ(field->type() + "|" + field->typeSize() + "|" + field->getOriginalType(), row.parts);
    }
    auto field = SQLField::field();
    field->setType("varchar(a)", true);
    EXPECT_EQ(field->getLabel(), " VARCHAR(a)");
    EXPECT_EQ(SQLField::getDataTypeFromTypeString("enum('a','b')"), "enum");
    EXPECT_EQ(SQLField::getDataTypeSizeFromTypeString("enum('a','b')"), "'a','b'");
}

TEST(Field, TakesQuotesOffDefaultValuesAndPutsThemOn) {
    using Rows = std::vector<std::pair<const char*, const char*>>;
    auto field = SQLField::field();
    for (const auto& [given, stored] : Rows{{"'abc'", "'abc"}, {"'abc", "abc"}, {"abc'", "abc"}, {"`abc`", "`abc"},
                                            {"\"abc\"", "\"abc\""}, {"'", ""}, {"", ""}}) {
        field->setDefaultValueRemovingQuotes(given);
        EXPECT_EQ(field->getDefaultValue(), stored) << given;
    }
    for (const char* quoted : {"'x'", "\"x\"", "`x`", "'"}) EXPECT_TRUE(SQLField::isQuoted(quoted)) << quoted;
    for (const char* bare : {"'x\"", "x", "", "(x("}) EXPECT_FALSE(SQLField::isQuoted(bare)) << bare;
    field->setDefaultValueFromParsedString("'x'");
    EXPECT_FALSE(field->hasProperty(keys::noQuoteDefault));
    field->setDefaultValueFromParsedString("now()");
    EXPECT_TRUE(field->getPropertyAsBoolean(keys::noQuoteDefault));
    field->setDefaultValue(std::nullopt);
    EXPECT_TRUE(field->hasProperty(keys::defaultValue));
    for (const auto& [given, quoted] :
         Rows{{"a b", "'a b'"}, {"ab", "ab"}, {"`a b", "`a b"}, {"'a b", "'a b"}, {"\"a b\"", "'\"a b\"'"}})
        EXPECT_EQ(SQLField::quoteForSQL(given), quoted);
}

TEST(Field, IsUniqueWhenForcedUnlessItIsThePrimaryKey) {
    auto undo = std::make_shared<StandardUndoManager>();
    auto field = SQLField::field();
    field->setUndoManager(undo);
    auto facts = [&] {
        std::string facts;
        for (bool fact : {field->isUnique(), field->uniqueOrForcedUnique(), field->requiresUniqueOrPrimaryKey(),
                          field->canSetUnique()})
            facts += fact ? '1' : '0';
        return facts;
    };
    EXPECT_EQ(facts(), "0001");
    field->setForcedUnique(true);
    EXPECT_FALSE(undo->canUndo());
    EXPECT_EQ(facts() + field->getProperty("unique"), "11101");
    field->setPrimaryKey(true);
    EXPECT_EQ(facts(), "0001");
    field->setUnique(true);
    EXPECT_TRUE(field->isUnique());
    undo->undo();
    undo->undo();
    field->setForcedUnique(false);
    EXPECT_EQ(facts(), "0001") << "undoing brings back what was stored";
}

TEST(Field, UndoesEachOfItsSetters) {
    const struct {
        const char* name;
        void (*set)(SQLField&);
        const char* action = "";
    } rows[] = {
        {"name", [](SQLField& f) { f.setName("n"); }, "set object name"},
        {"dataType", [](SQLField& f) { f.setDataType("x"); }},
        {"typeSize", [](SQLField& f) { f.setTypeSize("9"); }},
        {"notNull", [](SQLField& f) { f.setNotNull(true); }},
        {"autoIncrement", [](SQLField& f) { f.setAutoIncrement(true); }},
        {"primaryKey", [](SQLField& f) { f.setPrimaryKey(true); }},
        {"defaultValue", [](SQLField& f) { f.setDefaultValue("d"); }},
        {"foreignKeyName", [](SQLField& f) { f.setForeignKeyName("k"); }},
        {"referenceLinkName", [](SQLField& f) { f.setReferenceLinkName(std::nullopt); }},
        {"deleteAction", [](SQLField& f) { f.setDeleteAction(77); }},
        {"updateAction", [](SQLField& f) { f.setUpdateAction(3); }},
        {"sourceCardinality", [](SQLField& f) { f.setSourceCardinality(3); }, "set Source cardinality"},
        {"destinationCardinality", [](SQLField& f) { f.setDestinationCardinalityAsString(" 4x"); },
         "set Destination cardinality"},
        {"unsigned", [](SQLField& f) { f.setPropertyAsBoolean(keys::unsigned_, true); }},
        {"connectorHidden", [](SQLField& f) { f.setPropertyAsBoolean(keys::connectorHidden, true); }},
    };
    auto state = [](const SQLField& field) {
        std::set<std::string> state{field.getName(), field.getOriginalType()};
        state.insert(text("%lu %lu %lu %lu %d%d", field.deleteAction(), field.updateAction(), field.sourceCardinality(),
                          field.destinationCardinality(), int{field.primaryKey()},
                          int{field.hasProperty(keys::referenceLinkName)}));
        for (const auto& [key, value] : field.propertiesAsDictionary())
            if (value.text() != "0") state.insert(key + "=" + value.text());  // undone flags stay, as 0
        return state;
    };
    for (const auto& row : rows) {
        auto undo = std::make_shared<StandardUndoManager>();
        auto field = SQLField::fieldWithName("before", "int");
        field->setUndoManager(undo);
        const auto before = state(*field);
        row.set(*field);
        const auto after = state(*field);
        EXPECT_NE(before, after) << row.name;
        EXPECT_EQ(undo->undoActionName(), row.action) << row.name;
        undo->undo();
        EXPECT_EQ(state(*field), before) << row.name;
        undo->redo();
        EXPECT_EQ(state(*field), after) << row.name;
    }
}

TEST(Field, StartsWithTheCardinalitiesOfThePreferences) {
    ScopedPreference source(prefs::defaultSourceCardinality, Value::integer(2));
    ScopedPreference destination(prefs::defaultDestinationCardinality, Value::integer(3));
    ScopedPreference importSource(prefs::defaultImportSourceCardinality, Value::integer(4));
    auto field = SQLField::field();
    EXPECT_EQ(field->sourceCardinality() * 10 + field->destinationCardinality(), 23u);
    field->setDefaultCardinalityForImport();
    EXPECT_EQ(field->sourceCardinality() * 10 + field->destinationCardinality(), 40u);
}

TEST(Field, NamesItsForeignKeyUniquelyWhereAskedTo) {
    const auto document = testing::document("t(a INT -> t.b; b INT)");
    SQLField &first = *testing::field(*document, "t", "a"), &second = *testing::field(*document, "t", "b");
    first.setForeignKeyName("key");
    ScopedPreference preference(prefs::forceForeignKeyUnique);
    second.setForeignKeyName("key");
    EXPECT_EQ(second.foreignKeyName(), "key_fk_1");
    first.setForeignKeyName("key");
    EXPECT_EQ(first.foreignKeyName(), "key") << "its own name";
    second.setReferenceId("key");
    EXPECT_EQ(second.getReferenceId(), "key");
    second.setForeignKeyName(std::nullopt);
    EXPECT_FALSE(second.hasProperty(keys::foreignKeyName));
}

TEST(Field, TakesTheTypeAtTheEndOfItsReferencesWhileForced) {
    struct Dialect : SQLExportDialect {
        bool typeHasSize(std::string_view type) override { return type != "date"; }
    };
    const auto document = testing::document("t(a int; b date(3) -> t.c; c varchar(9); s INTEGER)");
    auto field = [&](const char* name) { return testing::field(*document, "t", name); };
    field("a")->setFkField(field("b"));
    EXPECT_EQ(field("a")->getType(), "int");
    EXPECT_TRUE(field("a")->getFkTypeMismatch());
    EXPECT_FALSE(field("c")->getFkTypeMismatch());
    ScopedPreference preference(prefs::forceForeignKeyTypeMatching);
    EXPECT_EQ(field("a")->getType() + field("b")->getType(), "varchar(9)varchar(9)");
    EXPECT_EQ(field("a")->getOriginalType(), "int");
    field("c")->setPropertyAsBoolean(keys::unsigned_, true);
    EXPECT_TRUE(field("b")->isForcedUnsigned() && field("b")->getForcedUnsigned());
    EXPECT_FALSE(field("a")->isForcedUnsigned());
    field("a")->setHasCocoa(false);
    EXPECT_EQ(field("a")->getType(), "int");

    const std::pair<OptionalText, bool> matches[] = {
        {"integer", true}, {"Serial", true}, {"text", false}, {std::nullopt, false}};
    for (const auto& [type, matching] : matches)
        EXPECT_EQ(field("s")->fieldMatchesType(type, *field("a")), matching) << type.value_or("null");
    EXPECT_FALSE(field("s")->fieldMatchesType("integer", *field("c"))) << "only one is unsigned";

    document->setDialectExporter(create<Dialect>());
    EXPECT_EQ(field("b")->getFullTypeStringForDisplay(true), "date");
    EXPECT_EQ(field("b")->getFullTypeString(), "date(3)");
}

TEST(Field, IsWrittenWithItsReference) {
    const auto document = testing::document("s.orders(id int);; items(order_id varchar(3) pk)");
    SQLTable &target = *testing::table(*document, "s.orders"), &table = *testing::table(*document, "items");
    SQLField &id = *target.getFieldByName("id"), &field = *table.getFieldByName("order_id");
    field.setReferences("gone", "id");
    field.setUpdateAction(static_cast<std::uint64_t>(-1));
    EXPECT_THAT(field.exportToXML(), HasSubstr("</primaryKey>\n    <referencesField />\n"
                                               "    <referencesTable />\n"
                                               "    <updateAction>18446744073709551615</updateAction>\n    <uid>"))
        << "an unresolved reference has no names";
    EXPECT_EQ(field.exportSQLForeignKey("items"),
              "Alter table items ADD CONSTRAINT  FOREIGN KEY (order_id) REFERENCES (null) ((null))\n");
    field.setFkField(&id);
    field.setDeleteAction(action::cascade);
    field.setUpdateAction(action::none);
    field.setReferenceId("fk_o");
    const std::string statement =
        "Alter table items ADD CONSTRAINT fk_o FOREIGN KEY (order_id) REFERENCES s.orders (s.orders) "
        "ON DELETE CASCADE\n";
    EXPECT_EQ(field.exportSQLForeignKey("items"), statement);
    EXPECT_EQ(table.exportSQLForeignKey(), statement + "/* items Foreign Keys */" + statement + "\n\n");
    EXPECT_EQ(target.exportSQLForeignKey(), "");
    const Value::Map json = field.jsonDictionary();
    for (auto [key, value] : {std::pair{"type", "varchar(3)"}, {"primaryKey", "1"}, {"deleteAction", "1"},
                              {"referencesTable", "s.orders"}, {"sourceCardinality", "0"}})
        EXPECT_EQ(json.at(key), Value(value)) << key;
    EXPECT_EQ(json.at("referencesFieldUID"), Value(id.uid()));
}

TEST(Field, CopiesWhatItHoldsWithoutItsTable) {
    const auto document = testing::document("t(id INT; f varchar(2) pk default=x delete=2 -> t.id)");
    SQLField &target = *testing::field(*document, "t", "id"), &field = *testing::field(*document, "t", "f");
    field.setForcedUnique(true);
    field.setDestinationCardinality(5);
    auto copy = copyOf(field);
    EXPECT_EQ(copy->getType() + copy->getDefaultValue() + copy->uid(), "varchar(2)x" + field.uid());
    EXPECT_EQ(copy->getFkField(), &target);
    EXPECT_EQ(copy->referencesFieldUID(), target.uid());
    EXPECT_TRUE(copy->primaryKey() && copy->forcedUnique());
    EXPECT_FALSE(copy->hasProperty(keys::unique)) << "forced uniqueness is not made real";
    EXPECT_EQ(copy->deleteAction() + copy->destinationCardinality(), 7u);
    EXPECT_EQ(copy->parentTable(), nullptr);
    EXPECT_THAT(target.connectedObjects(), ElementsAre(&field, copy.get()));
    copy.reset();
    EXPECT_THAT(target.connectedObjects(), ElementsAre(&field));
}

}  // namespace
}  // namespace vellicor
