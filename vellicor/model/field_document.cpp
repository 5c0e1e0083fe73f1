// vellicor/model/field_document.cpp — a column in documents: reading, writing, JSON, copying; its plain SQL.
#include <algorithm>

#include "vellicor/model/field.h"
#include "vellicor/model/table.h"
#include "vellicor/model/whereabouts.h"
#include "vellicor/model/written_names.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_export.h"

namespace vellicor {

// --- SQL

std::string SQLField::exportToSQL() {
    try {
        return exportToSQL(nullptr, nullptr);
    } catch (const std::exception&) {
        return {};
    }
}

std::string SQLField::quoteForSQL(std::string_view text) {
    const bool isBare = text.find(' ') == std::string_view::npos;
    if (isBare || text.front() == '\'' || text.front() == '`') return std::string(text);
    return vellicor::text("'%@'", text);
}

std::string SQLField::exportSQLForeignKey(std::string_view tableName) {
    if (!isSet(referencesField())) return {};
    const OptionalText target = getReferencesTable();
    const OptionalText targetName = target ? OptionalText(trimmed(*target)) : std::nullopt;
    std::string sql = text("Alter table %@ ADD CONSTRAINT %@ FOREIGN KEY (%@)", tableName, getReferenceId(), getName());
    sql += text(" REFERENCES %@ (%@)", targetName, targetName);  // Kept: the table's name in both places
    if (deleteAction() == action::cascade) sql += " ON DELETE CASCADE";
    return sql + "\n";
}

// --- writing

/// The type with what stood behind its parentheses, where the reader is to find that again.
std::string SQLField::writtenType() const {
    if (!_typeRest) return getType();
    if (writesLosslessDocuments()) return text("%@(%@)%@", _type, _typeSize, *_typeRest);
    log(text("the text \"%@\" behind the type of the %@ is not kept in the document", trimmed(*_typeRest),
             whereabouts(*this)));
    return getType();
}

/// What was read of a reference whose target is not there.
void SQLField::writeUnresolvedReference(const XMLElement& node) const {
    const auto write = [&](std::string_view key, const OptionalText& text) {
        if (isSet(text)) node.addCDataElement(key, *text);
    };
    const auto writeNumber = [&](std::string_view key, std::uint64_t number) {
        if (number) node.addTextElement(key, text("%lu", number));
    };
    write("referencesField", referencesField());
    write("referencesTable", referencesTable());
    writeNumber("deleteAction", deleteAction());
    writeNumber("updateAction", updateAction());
    node.addTextElement("sourceCardinality", text("%lu", sourceCardinality()));
    node.addTextElement("destinationCardinality", text("%lu", destinationCardinality()));
    write("referencesFieldUID", referencesFieldUID());
    write("referencesTableUID", referencesTableUID());
    for (const std::string& member : reference().dependents) node.addCDataElement("referenceDependentField", member);
}

XMLElement SQLField::exportToXMLNode(const XMLElement* parent) const {
    XMLElement node = XMLExport::element("SQLField", parent);
    node.addCDataElement("name", writtenName(getName()));
    node.addTextElement("type", writtenType());
    if (_primaryKey) node.addTextElement("primaryKey", "1");
    const SQLField* target = getFkField();
    const std::string targetField = getReferencesField().value_or(std::string());
    const std::string targetTable = target && target->parentTable() ? writtenQualifiedName(*target->parentTable()) : "";
    if (!target && (isSet(referencesTable()) || hasProperty(keys::incompleteReferenceTarget)) &&
        writesLosslessDocuments()) {
        writeUnresolvedReference(node);
    } else if (isSet(referencesField())) {
        node.addTextElement("referencesField", targetField);
        node.addTextElement("referencesTable", targetTable);
        if (deleteAction()) node.addTextElement("deleteAction", text("%lu", deleteAction()));
        if (updateAction()) node.addTextElement("updateAction", text("%lu", updateAction()));
        if (!target)
            log(text("the %@ refers to %@, which is not there: that reference is not kept whole in the document",
                     whereabouts(*this), getReferencesString()));
    }
    if (target) {
        // Kept: a resolved reference is written twice; readers take either.
        const SQLTable* table = target->parentTable();
        node.addCDataElement("referencesField", targetField);
        node.addCDataElement("referencesTable", targetTable);
        node.addTextElement("sourceCardinality", text("%lu", sourceCardinality()));
        node.addTextElement("destinationCardinality", text("%lu", destinationCardinality()));
        node.addCDataElement("referencesFieldUID", target->uid());
        node.addCDataElement("referencesTableUID", table ? table->uid() : std::string());
        for (const SQLField* member : getDependentCompoundKeyFields())
            node.addCDataElement("referenceDependentField", member->uid());
    }
    exportPropertiesToXMLNode(node);
    return node;
}

Value::Map SQLField::jsonDictionary() const {
    Value::Map json = SQLTableComponent::jsonDictionary();
    json.insert_or_assign("type", getType());
    if (_primaryKey) json.insert_or_assign("primaryKey", "1");
    if (isSet(referencesField())) {
        json.insert_or_assign("referencesField", getReferencesField().value_or(std::string()));
        json.insert_or_assign("referencesTable", getReferencesTable().value_or(std::string()));
        if (deleteAction()) json.insert_or_assign("deleteAction", text("%lu", deleteAction()));
        if (updateAction()) json.insert_or_assign("updateAction", text("%lu", updateAction()));
    }
    if (const SQLField* target = getFkField()) {
        const SQLTable* table = target->parentTable();
        json.insert_or_assign("referencesField", target->getName());
        json.insert_or_assign("referencesTable", table ? table->getName() : std::string());
        json.insert_or_assign("sourceCardinality", text("%lu", sourceCardinality()));
        json.insert_or_assign("destinationCardinality", text("%lu", destinationCardinality()));
        json.insert_or_assign("referencesFieldUID", target->uid());
        json.insert_or_assign("referencesTableUID", table ? table->uid() : std::string());
    }
    return json;
}

std::shared_ptr<SQLObject> SQLField::copyWithZone(void* zone) const {
    auto copy = std::static_pointer_cast<SQLField>(SQLTableComponent::copyWithZone(zone));
    copy->setType(getType());
    copy->setTypeRest(typeRest());
    copy->setNotNull(getNotNull());
    copy->setDefaultValue(getDefaultValue());
    copy->setAutoIncrement(getAutoIncrement());
    copy->setPrimaryKey(_primaryKey);
    copy->setFkField(getFkField());
    copy->setDeleteAction(deleteAction());
    copy->setUpdateAction(updateAction());
    copy->setSourceCardinality(sourceCardinality());
    copy->setDestinationCardinality(destinationCardinality());
    copy->setReferencesField(referencesField());
    copy->setReferencesTable(referencesTable());
    copy->setReferencesTableUID(referencesTableUID());
    copy->setReferencesFieldUID(referencesFieldUID());
    return copy;
}

// --- reading

void SQLField::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    static constexpr std::string_view kOwn[] = {"type",
                                                "deleteAction",
                                                "updateAction",
                                                "sourceCardinality",
                                                "destinationCardinality",
                                                "referencesField",
                                                "referencesTable",
                                                "referencesTableUID",
                                                "referencesFieldUID",
                                                "referenceDependentField"};
    if (key == "autoIncrement" || key == "primaryKey") {
        // Kept: flags are read as texts of properties are, not by the rule for flags in documents.
        if (value.object) return;
        key == "primaryKey" ? setPrimaryKey(boolValue(value.text)) : setAutoIncrement(boolValue(value.text));
    } else if (std::ranges::find(kOwn, key) != std::end(kOwn)) {
        kClassInfo.setterFor(key)->apply(*this, value);
    } else {
        SQLTableComponent::setSafePropertyValue(value, key);
    }
}

namespace {

using SetFieldText = void (SQLField::*)(const OptionalText&);

constexpr Setter kFieldSetters[] = {
    setter<static_cast<SetFieldText>(&SQLField::setType)>("type"),
    setter<&SQLField::setOriginalType>("originalType"),
    setter<&SQLField::setDataType>("dataType"),
    setter<&SQLField::setTypeSize>("typeSize"),
    setter<&SQLField::setPrimaryKey>("primaryKey"),
    propertySetter<&SQLField::setNotNull>("notNull"),
    propertySetter<&SQLField::setUnique>("unique"),
    setter<&SQLField::setUniqueOrForcedUnique>("uniqueOrForcedUnique"),
    propertySetter<&SQLField::setForcedUnique>("forcedUnique"),
    setter<&SQLField::setRequiresForcedUnique>("requiresForcedUnique"),
    propertySetter<&SQLField::setAutoIncrement>("autoIncrement"),
    propertySetter<&SQLField::setDefaultValue>("defaultValue"),
    setter<&SQLField::setDefaultValueFromParsedString>("defaultValueFromParsedString"),
    setter<&SQLField::setDefaultValueRemovingQuotes>("defaultValueRemovingQuotes"),
    setter<&SQLField::setDeleteAction>("deleteAction"),
    setter<&SQLField::setUpdateAction>("updateAction"),
    setter<&SQLField::setSourceCardinality>("sourceCardinality"),
    setter<&SQLField::setDestinationCardinality>("destinationCardinality"),
    setter<&SQLField::setSourceCardinalityAsString>("sourceCardinalityAsString"),
    setter<&SQLField::setDestinationCardinalityAsString>("destinationCardinalityAsString"),
    setter<&SQLField::setReferencesTable>("referencesTable"),
    setter<&SQLField::setReferencesField>("referencesField"),
    setter<&SQLField::setReferencesTableUID>("referencesTableUID"),
    setter<&SQLField::setReferencesFieldUID>("referencesFieldUID"),
    setter<&SQLField::setReferenceDependentField>("referenceDependentField"),
    setter<&SQLField::setReferenceId>("referenceId"),
    propertySetter<&SQLField::setReferenceLinkName>("referenceLinkName"),
    propertySetter<&SQLField::setForeignKeyName>("foreignKeyName"),
    setter<&SQLField::setCompoundForeignKey>("compoundForeignKey"),
    ignored("location"),
    ignored("size"),
};

}  // namespace

constinit const ClassInfo SQLField::kClassInfo{"SQLField", &SQLTableComponent::kClassInfo, kFieldSetters,
                                               makeLoadable<SQLField>};

}  // namespace vellicor
