// vellicor/model/foreign_key_document.cpp — a foreign key in documents: finding its columns, writing, JSON, copying.
#include <algorithm>
#include <initializer_list>
#include <unordered_set>

#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/table.h"
#include "vellicor/model/whereabouts.h"
#include "vellicor/model/written_names.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_export.h"

namespace vellicor {

namespace {

SQLField* columnWithUid(const SQLTable* table, std::string_view uid) {
    return table ? as<SQLField>(table->getFieldByUID(uid)) : nullptr;
}

SQLField* columnWithName(const SQLTable* table, std::string_view name) {
    return table ? as<SQLField>(table->getFieldByTypeAndName(isKindOf<SQLField>, name)) : nullptr;
}

std::unordered_set<const SQLTableComponent*> componentsOf(const SQLTable* table) {
    std::unordered_set<const SQLTableComponent*> components;
    if (table)
        for (const auto& component : table->getFields()) components.insert(component.get());
    return components;
}

/// Calls `visit(key, text)` for what a document says of a pair's columns.
template <class Visit>
void visitColumns(const SQLForeignKeyEntry& entry, Visit visit) {
    if (const SQLField* target = entry.target()) {
        visit(keys::targetFieldName, target->getName());
        visit(keys::targetFieldUid, target->uid());
    }
    if (const SQLField* source = entry.source()) {
        visit(keys::sourceFieldName, source->getName());
        visit(keys::sourceFieldUid, source->uid());
    }
}

/// In a lossless document also what was read of a side whose column is not there.
template <class Visit>
void visitWrittenColumns(const SQLForeignKeyEntry& entry, Visit visit) {
    visitColumns(entry, visit);
    if (entry.target() && entry.source()) return;
    const bool lossless = writesLosslessDocuments();
    const auto visitRead = [&](const SQLField* side, std::initializer_list<const char*> sideKeys) {
        if (side) return;
        for (const char* key : sideKeys) {
            const std::string read = entry.getProperty(key);
            if (read.empty()) continue;
            if (lossless)
                visit(key, read);
            else
                log(text("the column %@ of the %@ is not there: it is not kept in the document", read,
                         whereabouts(*entry.container())));
        }
    };
    visitRead(entry.target(), {keys::targetFieldName, keys::targetFieldUid});
    visitRead(entry.source(), {keys::sourceFieldName, keys::sourceFieldUid});
}

/// The same for the four numbers and the target table of a key.
template <class Visit>
void visitFacts(const SQLForeignKey& key, Visit visit) {
    visit("deleteAction", text("%lu", key.deleteAction()));
    visit("updateAction", text("%lu", key.updateAction()));
    visit("sourceCardinality", text("%lu", key.sourceCardinality()));
    visit("destinationCardinality", text("%lu", key.destinationCardinality()));
    if (const SQLTable* target = key.targetTable()) {
        visit(keys::targetTableName, target->getName());
        visit(keys::targetTableUid, target->uid());
    }
}

}  // namespace

// --- finding the target table and the columns

void SQLForeignKey::postLoadProcess() {
    resolveTargetTable();
    if (targetTable()) targetTableWasFound();
}

void SQLForeignKey::targetTableWasFound() {
    // The table's own name is written from now on; what was read would stand beside it and grow stale.
    if (hasProperty(keys::targetTableName)) removeProperty(keys::targetTableName);
    connectEntries();
}

void SQLForeignKey::resolveTargetTable() {
    if (hasProperty(keys::targetTableUid)) {
        const SQLContainer* document = topLevelContainer();
        const std::string uid = getProperty(keys::targetTableUid);
        setTargetTable(document ? as<SQLTable>(document->getObjectWithUID(uid)) : nullptr);
        removeProperty(keys::targetTableUid);
        _missingTableUid = targetTable() ? std::string() : uid;
    }
    if (!targetTable()) findTargetTableByName(getProperty(keys::targetTableName));
}

SQLTable* SQLForeignKey::findTargetTableByName(const OptionalText& name) {
    if (!name || name->empty()) return nullptr;
    SQLTable* table = nullptr;
    if (const SQLContainer* document = topLevelContainer()) {
        const NameParts parts = splitNameBySchema(*name);
        table = as<SQLTable>(document->getObjectWithSchema(parts.baseName, parts.schemaPart));
    }
    setTargetTable(table);
    if (!table) setIncompleteReferenceTargetTable(*name, "");
    return table;
}

void SQLForeignKey::updateImplicitPrimaryKeyTargetEntries() {
    const SQLTable* table = targetTable();
    const std::vector<std::string> primaryKey = table ? table->primaryKeyList() : std::vector<std::string>();
    const Entries entries = fieldPairs();
    const bool allWithoutTarget =
        std::ranges::none_of(entries, [](const auto& entry) { return entry->hasProperty(keys::targetFieldName); });
    if (!allWithoutTarget || entries.size() != primaryKey.size()) {
        log(text("[WARN] foreign key %@ does not have a matching number of entries", getName()));
        return;
    }
    for (std::size_t i = 0; i < entries.size(); ++i) entries[i]->setTargetByName(primaryKey[i]);
    removeProperty(keys::targetsPrimaryKey);
}

void SQLForeignKey::connectEntries() {
    if (getPropertyAsBoolean(keys::targetsPrimaryKey)) updateImplicitPrimaryKeyTargetEntries();
    for (const auto& entry : fieldPairs()) {
        if (targetTable()) connectTarget(*entry);
        connectSource(*entry);
    }
}

void SQLForeignKey::connectTarget(SQLForeignKeyEntry& entry) {
    const SQLTable* table = targetTable();
    const bool hasUid = entry.hasProperty(keys::targetFieldUid);
    if (hasUid) {
        entry.setTarget(columnWithUid(table, entry.getProperty(keys::targetFieldUid)));
        if (entry.target()) return;
    }
    if (entry.hasProperty(keys::targetFieldName))
        entry.setTarget(columnWithName(table, entry.getProperty(keys::targetFieldName)));
    else if (!hasUid)
        log("no targetFieldName property");
}

void SQLForeignKey::connectSource(SQLForeignKeyEntry& entry) {
    const SQLTable* table = parentTable();
    if (entry.hasProperty(keys::sourceFieldUid))
        entry.setSource(columnWithUid(table, entry.getProperty(keys::sourceFieldUid)));
    if (entry.source()) return;
    if (entry.hasProperty(keys::sourceFieldName))
        entry.setSource(columnWithName(table, entry.getProperty(keys::sourceFieldName)));
    else
        log("no sourceFieldName property");
}

void SQLForeignKey::reconnectIncompleteReference() {
    const std::string name = getProperty(keys::refTableName);
    if (findTargetTableByName(name))
        targetTableWasFound();
    else
        log(text("missing target table %@", name));
    clearIncompleteReferenceTargetTable();
}

void SQLForeignKey::updateWithChangedModel() {
    // The tables' lists are read first: their locks come before a key's.
    const auto sources = componentsOf(parentTable());
    const auto targets = componentsOf(targetTable());
    auto pairs = _fieldPairList.lock();
    for (const auto& entry : *pairs) {
        if (entry->source() && !sources.contains(entry->source())) entry->setSource(nullptr);
        if (entry->target() && !targets.contains(entry->target())) entry->setTarget(nullptr);
    }
}

void SQLForeignKey::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    static constexpr std::string_view kOwn[] = {"deleteAction", "updateAction", "sourceCardinality",
                                                "destinationCardinality"};
    if (std::ranges::find(kOwn, key) != std::end(kOwn))
        kClassInfo.setterFor(key)->apply(*this, value);
    else
        SQLTableComponent::setSafePropertyValue(value, key);
}

// --- writing

XMLElement SQLForeignKey::exportToXMLNode(const XMLElement* parent) const {
    XMLElement node = XMLExport::element("SQLForeignKey", parent);
    node.addCDataElement("name", writtenName(getName()));
    visitFacts(*this, [&](std::string_view key, const std::string& text) {
        node.addCDataElement(key, key == keys::targetTableName ? writtenQualifiedName(*targetTable()) : text);
    });
    if (!targetTable() && !_missingTableUid.empty() && writesLosslessDocuments())
        node.addCDataElement(keys::targetTableUid, _missingTableUid);
    {
        auto pairs = _fieldPairList.lock();
        std::size_t position = 0;
        for (const auto& entry : *pairs) {
            const XMLElement element = node.addElement("SQLForeignKeyEntry");
            element.addTextElement(keys::entryIndex, text("%d", position++));
            visitWrittenColumns(
                *entry, [&](std::string_view key, const std::string& text) { element.addCDataElement(key, text); });
        }
    }
    exportPropertiesToXMLNode(node);
    return node;
}

Value::Map SQLForeignKey::jsonDictionary() const {
    Value::Map json = SQLTableComponent::jsonDictionary();
    visitFacts(*this, [&](const char* key, const std::string& text) { json.insert_or_assign(key, text); });
    Value::List pairs;
    for (const auto& entry : fieldPairs()) {
        Value::Map pair{{"ClassType", entry->getClassType()}, {keys::entryIndex, text("%d", pairs.size())}};
        visitColumns(*entry, [&](const char* key, const std::string& text) { pair.emplace(key, text); });
        pairs.emplace_back(std::move(pair));
    }
    json.insert_or_assign("fieldPairs", std::move(pairs));
    return json;
}

std::shared_ptr<SQLObject> SQLForeignKey::copyWithZone(void* zone) const {
    auto copy = as<SQLForeignKey>(SQLTableComponent::copyWithZone(zone));
    std::size_t position = 0;
    for (const auto& entry : fieldPairs()) {
        auto pair = copy->createEntryObject();
        if (const SQLField* target = entry->target()) {
            pair->setProperty(keys::targetFieldName, target->getName());
            pair->setProperty(keys::targetFieldUid, target->uid());
        }
        if (const SQLField* source = entry->source()) {
            pair->setProperty(keys::sourceFieldName, source->getName());
            pair->setProperty(keys::targetFieldUid, source->uid());  // Kept: overwrites the target's
        }
        pair->setProperty(keys::entryIndex, text("%d", position++));
        copy->addForeignKeyEntry(pair);
    }
    if (const SQLTable* table = targetTable()) {
        copy->setProperty(keys::targetTableUid, table->uid());
        copy->setProperty(keys::targetTableName, table->getName());
    }
    copy->setSourceCardinality(sourceCardinality());
    copy->setDestinationCardinality(destinationCardinality());
    return copy;  // Kept: without the actions
}

namespace {

constexpr Setter kForeignKeySetters[] = {
    setter<&SQLForeignKey::setDeleteAction>("deleteAction"),
    setter<&SQLForeignKey::setUpdateAction>("updateAction"),
    setter<&SQLForeignKey::setSourceCardinality>("sourceCardinality"),
    setter<&SQLForeignKey::setDestinationCardinality>("destinationCardinality"),
    propertySetter<&SQLForeignKey::setReferenceLinkName>("referenceLinkName"),
    setter<&SQLForeignKey::setTargetTableByName>("targetTableByName"),
};

}  // namespace

const ClassInfo SQLForeignKey::kClassInfo{"SQLForeignKey", &SQLTableComponent::kClassInfo, kForeignKeySetters,
                                          makeLoadable<SQLForeignKey>};

}  // namespace vellicor
