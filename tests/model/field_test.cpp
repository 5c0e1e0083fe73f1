// tests/model/field_test.cpp — a column's type, flags, default value, forced types and document form.
#include "vellicor/model/field.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/scoped_preference.h"
#include "vellicor/export/export_dialect.h"
#include "vellicor/model/container.h"
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
    struct {
        OptionalText type;
        const char *base, *size, *whole;
    } rows[] = {
        {"VARCHAR(20)", "VARCHAR", "20", "VARCHAR(20)"},
        {" decimal ( 10,2 ) ", "decimal", "10,2", "decimal(10,2)"},
        {"int(11) unsigned", "int", "11", "int(11)"},
        {"text", "text", "", "text"},
        {std::nullopt, "", "", ""},
    };
    for (const auto& row : rows) {
        auto field = SQLField::fieldWithName("f", row.type);
        EXPECT_EQ(field->type() + "|" + field->typeSize() + "|" + field->getOriginalType(),
                  text("%@|%@|%@", row.base, row.size, row.whole));
        EXPECT_EQ(field->hasTypeSize(), *row.size != '\0');
    }
    auto field = SQLField::field();
    field->setType("varchar(a)", true);
    EXPECT_EQ(field->getLabel(), " VARCHAR(a)");
    EXPECT_EQ(SQLField::getDataTypeFromTypeString("enum('a','b')") + SQLField::getDataTypeSizeFromTypeString("enum('a','b')"),
              "enum'a','b'");
}

TEST(Field, TakesQuotesOffDefaultValues) {
    struct {
        const char *given, *stored;
    } rows[] = {{"'abc'", "'abc"}, {"'abc", "abc"}, {"abc'", "abc"}, {"`abc`", "`abc"}, {"\"abc\"", "\"abc\""}, {"'", ""}, {"", ""}};
    auto field = SQLField::field();
    for (const auto& row : rows) {
        field->setDefaultValueRemovingQuotes(row.given);
        EXPECT_EQ(field->getDefaultValue(), row.stored) << row.given;
    }
    for (const char* quoted : {"'x'", "\"x\"", "`x`", "'"}) EXPECT_TRUE(SQLField::isQuoted(quoted)) << quoted;
    for (const char* bare : {"'x\"", "x", "", "(x("}) EXPECT_FALSE(SQLField::isQuoted(bare)) << bare;
    field->setDefaultValueFromParsedString("'x'");
    EXPECT_FALSE(field->hasProperty(keys::noQuoteDefault));
    field->setDefaultValueFromParsedString("now()");
    EXPECT_TRUE(field->getPropertyAsBoolean(keys::noQuoteDefault));
    field->setDefaultValue(std::nullopt);
    EXPECT_TRUE(field->hasProperty(keys::defaultValue));
}

TEST(Field, QuotesForSQLOnlyWhatHasBlanks) {
    struct {
        const char *given, *quoted;
    } rows[] = {{"a b", "'a b'"}, {"ab", "ab"}, {"`a b", "`a b"}, {"'a b", "'a b"}, {"", ""}, {"\"a b\"", "'\"a b\"'"}};
    for (const auto& row : rows) EXPECT_EQ(SQLField::quoteForSQL(row.given), row.quoted);
}

TEST(Field, IsUniqueWhenForcedUnlessItIsThePrimaryKey) {
    auto undo = std::make_shared<StandardUndoManager>();
    auto field = SQLField::field();
    field->setUndoManager(undo);
    auto facts = [&] {
        return std::vector<bool>{field->isUnique(), field->uniqueOrForcedUnique(), field->requiresUniqueOrPrimaryKey(),
                                 field->canSetUnique()};
    };
    EXPECT_THAT(facts(), ElementsAre(false, false, false, true));
    field->setForcedUnique(true);
    EXPECT_FALSE(undo->canUndo());
    EXPECT_THAT(facts(), ElementsAre(true, true, true, false));
    EXPECT_EQ(field->getProperty("unique"), "1");
    field->setPrimaryKey(true);
    EXPECT_THAT(facts(), ElementsAre(false, false, false, true));
    field->setUnique(true);
    EXPECT_TRUE(field->isUnique());
    undo->undo();
    undo->undo();
    field->setForcedUnique(false);
    EXPECT_THAT(facts(), ElementsAre(false, false, false, true)) << "undoing brings back what was stored";
}

TEST(Field, UndoesEachOfItsSetters) {
    struct Row {
        const char* name;
        std::function<void(SQLField&)> set;
        std::function<std::string(SQLField&)> get;
        const char* action = "";
    };
    auto property = [](const char* key) { return [key](SQLField& field) { return field.getProperty(key); }; };
    auto number = [](std::uint64_t (SQLField::*get)() const) { return [get](SQLField& f) { return std::to_string((f.*get)()); }; };
    const Row rows[] = {
        {"name", [](SQLField& f) { f.setName("n"); }, [](SQLField& f) { return f.getName(); }, "set object name"},
        {"dataType", [](SQLField& f) { f.setDataType("x"); }, [](SQLField& f) { return f.type(); }},
        {"typeSize", [](SQLField& f) { f.setTypeSize("9"); }, [](SQLField& f) { return f.typeSize(); }},
        {"notNull", [](SQLField& f) { f.setNotNull(true); }, [](SQLField& f) { return std::to_string(f.getNotNull()); }},
        {"autoIncrement", [](SQLField& f) { f.setAutoIncrement(true); }, [](SQLField& f) { return std::to_string(f.autoIncrement()); }},
        {"primaryKey", [](SQLField& f) { f.setPrimaryKey(true); }, [](SQLField& f) { return std::to_string(f.primaryKey()); }},
        {"defaultValue", [](SQLField& f) { f.setDefaultValue("d"); }, property(keys::defaultValue)},
        {"foreignKeyName", [](SQLField& f) { f.setForeignKeyName("k"); }, property(keys::foreignKeyName)},
        {"referenceLinkName", [](SQLField& f) { f.setReferenceLinkName(std::nullopt); },
         [](SQLField& f) { return std::to_string(f.hasProperty(keys::referenceLinkName)); }},
        {"deleteAction", [](SQLField& f) { f.setDeleteAction(77); }, number(&SQLField::deleteAction)},
        {"updateAction", [](SQLField& f) { f.setUpdateAction(3); }, number(&SQLField::updateAction)},
        {"sourceCardinality", [](SQLField& f) { f.setSourceCardinality(3); }, number(&SQLField::sourceCardinality), "set Source cardinality"},
        {"destinationCardinality", [](SQLField& f) { f.setDestinationCardinalityAsString(" 4x"); },
         number(&SQLField::destinationCardinality), "set Destination cardinality"},
        {"unsigned", [](SQLField& f) { f.setPropertyAsBoolean(keys::unsigned_, true); }, property(keys::unsigned_)},
        {"connectorHidden", [](SQLField& f) { f.setPropertyAsBoolean(keys::connectorHidden, true); }, property(keys::connectorHidden)},
    };
    for (const Row& row : rows) {
        auto undo = std::make_shared<StandardUndoManager>();
        auto field = SQLField::fieldWithName("before", "int");
        field->setUndoManager(undo);
        const std::string before = row.get(*field);
        row.set(*field);
        const std::string after = row.get(*field);
        EXPECT_NE(before, after) << row.name;
        EXPECT_EQ(undo->undoActionName(), row.action) << row.name;
        undo->undo();
        EXPECT_EQ(row.get(*field), before) << row.name;
        undo->redo();
        EXPECT_EQ(row.get(*field), after) << row.name;
    }
}

TEST(Field, StartsWithTheCardinalitiesOfThePreferences) {
    ScopedPreference source(prefs::defaultSourceCardinality, Value::integer(2));
    ScopedPreference destination(prefs::defaultDestinationCardinality, Value::integer(3));
    ScopedPreference importSource(prefs::defaultImportSourceCardinality, Value::integer(4));
    auto field = SQLField::field();
    auto cardinalities = [&] { return std::pair(field->sourceCardinality(), field->destinationCardinality()); };
    EXPECT_EQ(cardinalities(), std::pair(2ul, 3ul));
    field->setDefaultCardinalityForImport();
    EXPECT_EQ(cardinalities(), std::pair(4ul, 0ul));
    field->setDefaultCardinalityForCreatedKey();
    EXPECT_EQ(cardinalities(), std::pair(2ul, 3ul));
}

TEST(Field, NamesItsForeignKeyUniquelyWhereAskedTo) {
    auto document = SQLContainer::newContainer();
    auto table = SQLTable::tableWithName("t");
    auto first = SQLField::fieldWithName("a", "int"), second = SQLField::fieldWithName("b", "int");
    table->add(first);
    table->add(second);
    document->add(table);
    first->setFkField(second.get());
    first->setForeignKeyName("key");
    ScopedPreference preference(prefs::forceForeignKeyUnique);
    OptionalText name = "key";
    EXPECT_TRUE(second->validateForeignKeyName(name, nullptr));
    EXPECT_EQ(name, "key_fk_1");
    second->setForeignKeyName("key");
    EXPECT_EQ(second->foreignKeyName(), "key_fk_1");
    first->setForeignKeyName("key");
    EXPECT_EQ(first->foreignKeyName(), "key") << "its own name";
    second->setReferenceId("key");
    EXPECT_EQ(second->getReferenceId(), "key");
    second->setForeignKeyName(std::nullopt);
    EXPECT_FALSE(second->hasProperty(keys::foreignKeyName));
}

/// Knows that "bool" is "tinyint(1)", and that dates have no size.
class Dialect : public SQLExportDialect {
public:
    bool typeHasSize(std::string_view type) override { return type != "date"; }
};

TEST(Field, TakesTheTypeAtTheEndOfItsReferencesWhileForced) {
    auto document = SQLContainer::newContainer();
    auto table = SQLTable::tableWithName("t");
    document->add(table);
    for (auto [name, type] : {std::pair{"a", "int"}, {"b", "date(3)"}, {"c", "varchar(9)"}})
        table->add(SQLField::fieldWithName(name, type));
    auto field = [&](const char* name) { return table->getFieldByName(name); };
    field("a")->setFkField(field("b"));
    field("b")->setFkField(field("c"));
    field("a")->setFkField(nullptr);
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

    auto serial = SQLField::fieldWithName("s", "INTEGER");
    table->add(serial);
    EXPECT_TRUE(serial->fieldMatchesType("integer", *field("a")));
    EXPECT_TRUE(serial->fieldMatchesType("Serial", *field("a")));
    EXPECT_FALSE(serial->fieldMatchesType("text", *field("a")));
    EXPECT_FALSE(serial->fieldMatchesType(std::nullopt, *field("a")));
    EXPECT_FALSE(serial->fieldMatchesType("integer", *field("c"))) << "only one is unsigned";

    document->setDialectExporter(create<Dialect>());
    EXPECT_EQ(field("b")->getFullTypeStringForDisplay(true), "date");
    EXPECT_EQ(field("b")->getFullTypeString(), "date(3)");
}

TEST(Field, WritesItselfInOrder) {
    auto target = SQLTable::tableWithName("s.orders"), table = SQLTable::tableWithName("items");
    auto id = SQLField::fieldWithName("id", "int"), field = SQLField::fieldWithName("order_id", "varchar(3)");
    target->add(id);
    table->add(field);
    target->setUid("T");
    id->setUid("I");
    field->setUid("F");
    field->setPrimaryKey(true);
    EXPECT_EQ(field->exportToXML(),
              "<SQLField>\n    <name><![CDATA[order_id]]></name>\n    <type>varchar(3)</type>\n    <primaryKey>1</primaryKey>\n"
              "    <uid><![CDATA[F]]></uid>\n</SQLField>\n");
    field->setReferences("gone", "id");
    field->setUpdateAction(static_cast<std::uint64_t>(-1));
    EXPECT_THAT(field->exportToXML(), HasSubstr("</primaryKey>\n    <referencesField />\n"
                                                "    <referencesTable />\n"
                                                "    <updateAction>18446744073709551615</updateAction>\n    <uid>"))
        << "an unresolved reference has no names";
    EXPECT_EQ(field->exportSQLForeignKey("items"),
              "Alter table items ADD CONSTRAINT  FOREIGN KEY (order_id) REFERENCES (null) ((null))\n");
    field->setFkField(id.get());
    field->setDeleteAction(action::cascade);
    field->setUpdateAction(action::none);
    field->setReferenceId("fk_o");
    EXPECT_THAT(field->exportToXML(),
                HasSubstr("</primaryKey>\n    <referencesField>id</referencesField>\n"
                          "    <referencesTable>s.orders</referencesTable>\n    <deleteAction>1</deleteAction>\n"
                          "    <referencesField><![CDATA[id]]></referencesField>\n"
                          "    <referencesTable><![CDATA[s.orders]]></referencesTable>\n"
                          "    <sourceCardinality>0</sourceCardinality>\n"
                          "    <destinationCardinality>0</destinationCardinality>\n"
                          "    <referencesFieldUID><![CDATA[I]]></referencesFieldUID>\n"
                          "    <referencesTableUID><![CDATA[T]]></referencesTableUID>\n    <foreignKeyName>"));
    const std::string statement =
        "Alter table items ADD CONSTRAINT fk_o FOREIGN KEY (order_id) REFERENCES s.orders (s.orders) ON DELETE CASCADE\n";
    EXPECT_EQ(field->exportSQLForeignKey("items"), statement);
    EXPECT_EQ(table->exportSQLForeignKey(), statement + "/* items Foreign Keys */" + statement + "\n\n");
    EXPECT_EQ(target->exportSQLForeignKey(), "");
    const Value::Map json = field->jsonDictionary();
    for (auto [key, value] : {std::pair{"ClassType", "SQLField"}, {"type", "varchar(3)"}, {"primaryKey", "1"}, {"deleteAction", "1"},
                              {"referencesTable", "s.orders"}, {"referencesFieldUID", "I"}, {"sourceCardinality", "0"}})
        EXPECT_EQ(json.at(key), Value(value)) << key;
}

TEST(Field, IsReadByNameOnBothRoutes) {
    struct {
        const char *key, *text, *stored, *safelyStored;
        std::function<std::string(SQLField&)> get;
    } rows[] = {
        {"type", "int(3)", "int|3", "int|3", [](SQLField& f) { return f.type() + "|" + f.typeSize(); }},
        {"primaryKey", "yes", "1", "1", [](SQLField& f) { return std::to_string(f.primaryKey()); }},
        {"primaryKey", "true", "0", "1", [](SQLField& f) { return std::to_string(f.primaryKey()); }},
        {"notNull", "Yes", "1", "Yes", [](SQLField& f) { return f.getProperty(keys::notNull); }},
        {"deleteAction", "99999999999999999999", "9223372036854775807", "9223372036854775807",
         [](SQLField& f) { return std::to_string(f.deleteAction()); }},
        {"sourceCardinality", " 2", "2", "2", [](SQLField& f) { return std::to_string(f.sourceCardinality()); }},
        {"referencesTableUID", "T", "T", "T", [](SQLField& f) { return f.referencesTableUID().value_or(""); }},
        {"referenceDependentField", "U", "", "", [](SQLField& f) { return f.getProperty("referenceDependentField"); }},
        {"name", "`n`", "n", "n", [](SQLField& f) { return f.getName(); }},
        {"namePending", "p", "p", "", [](SQLField& f) { return f.namePending().value_or(""); }},
        {"deferrable", "1", "1", "1", [](SQLField& f) { return f.getProperty(keys::deferrable); }},
    };
    for (const auto& row : rows) {
        auto read = SQLField::kClassInfo.make();
        const Setter* setter = read->classInfo().setterFor(row.key);
        ASSERT_NE(setter, nullptr) << row.key;
        setter->apply(*read, {row.text});
        EXPECT_EQ(row.get(dynamic_cast<SQLField&>(*read)), row.stored) << row.key;
        auto safe = SQLField::field();
        safe->setSafePropertyValue({row.text}, row.key);
        EXPECT_EQ(row.get(*safe), row.safelyStored) << row.key;
    }
    for (const char* key : {"unsigned", "fkField", "checkConstraint"}) EXPECT_EQ(SQLField::kClassInfo.setterFor(key), nullptr);
}

TEST(Field, CopiesWhatItHoldsWithoutItsTable) {
    auto table = SQLTable::tableWithName("t");
    auto target = SQLField::fieldWithName("id", "int"), field = SQLField::fieldWithName("'it\\'s'", "varchar(2)");
    table->add(target);
    table->add(field);
    field->setFkField(target.get());
    field->setPrimaryKey(true);
    field->setForcedUnique(true);
    field->setDeleteAction(2);
    field->setDestinationCardinality(5);
    field->setDefaultValue("x");
    auto copy = copyOf(*field);
    EXPECT_EQ(copy->getName(), "it's");
    EXPECT_EQ(copy->getType() + copy->getDefaultValue() + copy->uid(), "varchar(2)x" + field->uid());
    EXPECT_EQ(copy->getFkField(), target.get());
    EXPECT_EQ(copy->referencesFieldUID(), target->uid());
    EXPECT_TRUE(copy->primaryKey() && copy->forcedUnique());
    EXPECT_FALSE(copy->hasProperty(keys::unique)) << "forced uniqueness is not made real";
    EXPECT_EQ(copy->deleteAction() + copy->destinationCardinality(), 7u);
    EXPECT_EQ(copy->parentTable(), nullptr);
    EXPECT_THAT(target->connectedObjects(), ElementsAre(field.get(), copy.get()));
    copy.reset();
    EXPECT_THAT(target->connectedObjects(), ElementsAre(field.get()));
}

}  // namespace
}  // namespace vellicor
