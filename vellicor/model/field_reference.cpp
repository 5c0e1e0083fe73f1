// vellicor/model/field_reference.cpp — a column's reference to another column: by name, by uid, resolved.
#include <unordered_set>

#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key_graph.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::string referenceText(const OptionalText& table, const OptionalText& field) {
    auto part = [](const OptionalText& name) { return name ? OptionalText(trimmed(*name)) : std::nullopt; };
    return text("%@(%@)", part(table), part(field));
}

}  // namespace

const SQLField::Reference& SQLField::reference() const {
    static const Reference none;
    return _reference ? *_reference : none;
}

SQLField::Reference& SQLField::ownReference() {
    if (!_reference) _reference = std::make_unique<Reference>();
    return *_reference;
}

void SQLField::setReference(OptionalText Reference::*part, const OptionalText& text) {
    if (text || _reference) ownReference().*part = text;
}

// --- names

void SQLField::setReferences(const OptionalText& table, const OptionalText& field) {
    setReferencesTable(table);
    setReferencesField(field);
}

OptionalText SQLField::getReferencesField() const {
    const SQLField* target = getFkField();
    return target ? OptionalText(target->getName()) : std::nullopt;
}

OptionalText SQLField::getReferencesTable() const {
    const SQLTable* table = targetTable();
    return table ? OptionalText(table->getName()) : std::nullopt;
}

OptionalText SQLField::getReferencesString() const {
    if (!isSet(referencesTable()) || !isSet(referencesField())) return std::nullopt;
    return referenceText(referencesTable(), referencesField());
}

OptionalText SQLField::getReferences() const {
    if (!hasForeignKey()) return std::nullopt;
    return referenceText(getReferencesTable(), getReferencesField());
}

std::string SQLField::getReferenceName() const {
    return text("%@(%@)", container() ? container()->getName() : std::string(), getName());
}

void SQLField::setReferenceLinkName(const OptionalText& name) {
    const OptionalText old = hasProperty(keys::referenceLinkName) ? OptionalText(getReferenceLinkName()) : std::nullopt;
    registerUndo(this, [old](SQLField& field) { field.setReferenceLinkName(old); });
    if (name)
        setProperty(keys::referenceLinkName, *name);
    else
        removeProperty(keys::referenceLinkName);
}

OptionalText SQLField::referenceInformationString() {
    // A member of a compound key shows what the key's owner shows; a ring of members has no owner.
    std::unordered_set<const SQLField*> visited;
    SQLField* field = this;
    while (field->foreignKeyMode() == ForeignKeyMode::CompoundMember) {
        visited.insert(field);
        field = field->getSourceForeignKey();
        if (!field || visited.contains(field)) return "unknown";
    }
    switch (field->foreignKeyMode()) {
        case ForeignKeyMode::Single: return field->getReferences();
        case ForeignKeyMode::Compound: {
            const OptionalText table = field->getReferencesTable();
            return text("[Compound Key] %@(%@)", table ? OptionalText(trimmed(*table)) : std::nullopt,
                        joined(field->getCompoundKeyVector(), ", "));
        }
        default: return std::nullopt;
    }
}

std::vector<std::string> SQLField::sourceFieldNameList() const { return {getName()}; }

std::vector<std::string> SQLField::targetFieldNameList() const {
    const SQLField* target = getFkField();
    return target ? std::vector<std::string>{target->getName()} : std::vector<std::string>{};
}

// --- finding the target

SQLTable* SQLField::getTableForReferences() const {
    const SQLContainer* document = topLevelContainer();
    if (!document) return nullptr;
    if (isSet(referencesTableUID()))
        if (auto* table = as<SQLTable>(document->getObjectWithUID(*referencesTableUID()))) return table;
    if (!isSet(referencesTable())) return nullptr;
    const NameParts parts = splitNameBySchema(*referencesTable());
    return as<SQLTable>(document->getObjectWithSchema(parts.baseName, parts.schemaPart));
}

SQLField* SQLField::getFieldForReferences(const SQLTable& table) const {
    if (isSet(referencesFieldUID()))
        if (auto* field = as<SQLField>(table.getFieldByUID(*referencesFieldUID()))) return field;
    if (isSet(referencesField()))
        if (SQLField* field = table.getFieldByName(*referencesField())) return field;
    log(text("failed to field field by uid (%@) or name (%@)", referencesFieldUID(), referencesField()));
    return nullptr;
}

SQLTable* SQLField::targetTable() const {
    const SQLField* target = getFkField();
    return target ? target->parentTable() : nullptr;
}

// --- the resolved target

void SQLField::setFkField(SQLField* target) {
    if (target) {
        if (!_settingFkField) pointTo(*target);
        return;
    }
    // The owner of an old compound key loses its target with any member; owners may have owners, even in a ring.
    std::vector<SQLField*> cleared;
    for (SQLField* field = this; field && !field->_settingFkField;) {
        field->_settingFkField = true;
        cleared.push_back(field);
        field->clearReference();
        SQLField* owner = field->getSourceForeignKey();
        if (!owner) field->clearCompoundKey();
        field = owner;
    }
    for (SQLField* field : cleared) field->_settingFkField = false;
}

void SQLField::pointTo(SQLField& target) {
    Reference& reference = ownReference();
    const bool isNew = reference.target.get() != &target;
    reference.target = &target;
    updateGraph();
    SQLTable* table = target.parentTable();
    reference.field = target.getName();
    reference.table = table ? OptionalText(table->getName()) : std::nullopt;
    updateLinksWithNewUid();
    if (table) table->observeTableForForeignKey(*this);
    reference.observed = table;
    if (isNew) target.addConnectedObject(*this);
    foreignKeyDidChange();
}

void SQLField::clearReference() {
    if (!_reference) return;
    // Kept: neither the table observed so far nor the former target hears of it.
    _reference->target = nullptr;
    updateGraph();
    setReferences(std::nullopt, std::nullopt);
    _reference->observed = nullptr;
    setReferencesTableUID(std::nullopt);
    setReferencesFieldUID(std::nullopt);
    foreignKeyDidChange();
}

void SQLField::updateGraph() {
    SQLContainer* document = topLevelContainer();
    if (!document || !document->fkObjectGraph()) return;
    const auto& graph = document->sharedFkObjectGraph();
    if (auto former = reference().graph.lock(); former && former != graph) former->forgetField(this);
    ownReference().graph = graph;
    graph->updateForeignKey(this);
}

void SQLField::addConnectedObject(SQLField& field) {
    if (_connectedObjects.size() == _connectedObjects.capacity()) {
        // Columns that are gone keep their memory while they are listed; copies of a document come and go.
        const std::vector<SQLField*> living = connectedObjects();
        _connectedObjects = std::vector<WeakRef<SQLField>>(living.begin(), living.end());
        _connectedObjects.reserve(2 * living.size() + 1);
    }
    _connectedObjects.emplace_back(&field);
}

std::vector<SQLField*> SQLField::connectedObjects() const {
    std::vector<SQLField*> fields;
    std::unordered_set<const SQLField*> listed;
    for (const auto& field : _connectedObjects)
        if (field && listed.insert(field.get()).second) fields.push_back(field.get());
    return fields;
}

void SQLField::updateLinksWithNewUid() {
    const SQLField* target = getFkField();
    if (!target) return;
    const SQLTable* table = target->parentTable();
    setReferencesFieldUID(target->uid());
    setReferencesTableUID(table ? OptionalText(table->uid()) : std::nullopt);
}

void SQLField::resetUid() {
    SQLTableComponent::resetUid();
    setReferencesTableUID(std::nullopt);
    setReferencesFieldUID(std::nullopt);
}

// --- after reading

/// Turns stored names and uids into the target.
void SQLField::resolveReference() {
    if (isSet(referencesTable()) && !isSet(referencesField())) {
        const SQLTable* table = getTableForReferences();
        const auto primaryKey = table ? table->primaryKeyObjectList() : SQLTable::Fields();
        if (!primaryKey.empty())
            setReferencesField(primaryKey.front()->getName());
        else if (table)
            log(text(
                "[Warn] foreign key doesn't specify target columns and is referencing a table without primary key  %@",
                getReferencesTable()));
    }
    if (!isSet(referencesTable()) || !isSet(referencesField())) return;
    const SQLTable* table = getTableForReferences();
    if (!table) {
        setIncompleteReferenceTargetTable(*referencesTable(), *referencesField());
        return;
    }
    SQLField* target = getFieldForReferences(*table);
    setFkField(target);
    if (target && getPropertyAsBoolean(keys::unknownReferenceType)) setType(target->getType());
}

void SQLField::postLoadProcess() {
    SQLTableComponent::postLoadProcess();
    if (!reference().dependents.empty()) {
        std::scoped_lock lock(_reference->loadMutex);
        try {
            convertCompoundForeignKey();
            setCompoundForeignKey(false);
        } catch (const std::exception&) {
            log("Exception when configuring dependent foreign keys in SQLField:PostLoadProcess");
        }
        // A key whose table is missing keeps its members for the time when that comes in.
        if (getTableForReferences() || !isSet(referencesTable())) _reference->dependents.clear();
    }
    try {
        resolveReference();
        if (hasProperty(keys::checkConstraint)) convertInlineCheckConstraint();
    } catch (const std::exception& error) {
        log(text("Parsing Exception in SQLField postLoadProcess %@", error.what()));
    }
}

void SQLField::reconnectIncompleteReference() {
    try {
        setReferences(getProperty(keys::refTableName), getProperty(keys::refFieldName));
        if (const SQLTable* table = getTableForReferences()) {
            setFkField(getFieldForReferences(*table));
        } else {
            log(text("[NOTE] missing target table %@(%@)", referencesTable(), referencesField()));
            setFkField(nullptr);
        }
    } catch (const std::exception&) {
        log("[NOTE] failed to identify incomplete reference target");
    }
    clearIncompleteReferenceTargetTable();
}

}  // namespace vellicor
