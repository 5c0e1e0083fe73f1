// vellicor/model/table_lookup.cpp — finding components of a table by name, uid and kind.
#include "vellicor/model/component_index.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/primary_key_references.h"
#include "vellicor/model/table.h"

namespace vellicor {

namespace {

bool isKindOfClass(const SQLTableComponent& component, const ClassInfo& kind) {
    for (const ClassInfo* info = &component.classInfo(); info; info = info->base)
        if (info == &kind) return true;
    return false;
}

bool isAnyComponent(SQLObject&) { return true; }

/// What of a component's name is compared.
std::string_view comparedName(const SQLTableComponent& component) {
    return component.name() ? unquotedPart(*component.name()) : std::string_view();
}

bool namesMatch(std::string_view unquotedA, std::string_view unquotedB, bool caseInsensitive) {
    return caseInsensitive ? equalIgnoringCase(unquotedA, unquotedB) : unquotedA == unquotedB;
}

}  // namespace

// --- by name

/// Null while the list is short enough to be walked. Expects the list's lock.
const ComponentNames* SQLTable::names(const Components& components) const {
    if (components.size() < ComponentNames::kIndexedFrom)
        _names.reset();
    else if (!_names || _names->size() != components.size())
        _names = std::make_unique<ComponentNames>(components);
    return _names.get();
}

template <class Accepts>
SQLTableComponent* SQLTable::firstNamed(std::string_view name, bool caseInsensitive, Accepts accepts) const {
    const std::string_view wanted = unquotedPart(trimmed(name));
    auto matches = [&](SQLTableComponent& component) {
        return namesMatch(comparedName(component), wanted, caseInsensitive) && accepts(component);
    };
    auto components = _fields.lock();
    if (const ComponentNames* known = names(*components)) {
        if (const ComponentNames::Places* places = known->withFoldedName(caseFolded(wanted)))
            for (const auto& place : *places)
                if (matches(*place.component)) return place.component;
        return nullptr;
    }
    for (const auto& component : *components)
        if (matches(*component)) return component.get();
    return nullptr;
}

SQLField* SQLTable::getFieldByName(std::string_view name) const {
    return as<SQLField>(getFieldByTypeAndName(isKindOf<SQLField>, name));
}

SQLTableComponent* SQLTable::getFieldByTypeAndName(const ClassFilter& kind, std::string_view name) const {
    return getFieldByTypeAndName(kind, name, true);
}

SQLTableComponent* SQLTable::getFieldByTypeAndName(const ClassFilter& kind, std::string_view name,
                                                   bool caseInsensitive) const {
    return firstNamed(name, caseInsensitive, kind);
}

/// A component of the same kind has the same name without regard to case.
bool SQLTable::holdsComponentLike(const SQLTableComponent& component) const {
    const ClassInfo& kind = component.classInfo();
    return firstNamed(component.getName(), true, [&](SQLTableComponent& other) { return isKindOfClass(other, kind); });
}

SQLTableComponent* SQLTable::getObjectByName(std::string_view name) const {
    return getFieldByTypeAndName(isAnyComponent, name);
}

bool SQLTable::isFieldNamePresent(std::string_view name) const { return isFieldNamePresent(name, isKindOf<SQLField>); }

bool SQLTable::isFieldNamePresent(std::string_view name, const ClassFilter& kind) const {
    return isFieldNamePresent(name, kind, nullptr);
}

bool SQLTable::isFieldNamePresent(std::string_view name, const ClassFilter& kind,
                                  const SQLTableComponent* except) const {
    return firstNamed(name, true, [&](SQLTableComponent& other) { return &other != except && kind(other); });
}

std::vector<std::string> SQLTable::fieldNamesList() const {
    std::vector<std::string> list;
    forEachComponent<SQLField>([&](SQLField& field) { list.push_back(unquotedName(field.getName())); });
    return list;
}

std::string SQLTable::getFieldNameListString() const { return joined(fieldNamesList(), ","); }

std::string SQLTable::unquotedName(const OptionalText& name) {
    return name ? std::string(unquotedPart(*name)) : std::string();
}

bool SQLTable::tableComponentNameMatchesString(const SQLTableComponent& component, std::string_view name,
                                               bool caseInsensitive) {
    return namesMatch(comparedName(component), unquotedPart(name), caseInsensitive);
}

// --- by uid

SQLTableComponent* SQLTable::getFieldByUID(std::string_view uid) const {
    auto components = _fields.lock();
    if (_uids || components->size() >= ComponentNames::kIndexedFrom) return uids().find(uid);
    for (auto component = components->rbegin(); component != components->rend(); ++component)
        if ((*component)->uid() == uid) return component->get();
    return nullptr;
}

// --- by kind

SQLTable::Fields SQLTable::foreignKeyFieldsInTable() const {
    Fields fields;
    forEachComponent<SQLField>([&](SQLField& field) {
        if (field.hasForeignKey()) fields.push_back(&field);
    });
    return fields;
}

std::vector<SQLForeignKey*> SQLTable::foreignKeyObjectsInTable() const {
    std::vector<SQLForeignKey*> foreignKeys;
    forEachComponent<SQLForeignKey>([&](SQLForeignKey& key) {
        if (key.targetTable()) foreignKeys.push_back(&key);
    });
    return foreignKeys;
}

std::vector<SQLIndex*> SQLTable::indexObjectsInTable() const {
    std::vector<SQLIndex*> indexes;
    forEachComponent<SQLIndex>([&](SQLIndex& index) { indexes.push_back(&index); });
    return indexes;
}

bool SQLTable::fieldIsIndexed(const SQLField& field) const {
    return field.isUnique() || field.getPropertyAsBoolean(keys::indexed) || fieldIsIndexedNotUnique(field);
}

bool SQLTable::fieldIsIndexedNotUnique(const SQLField& field) const {
    for (const SQLIndex* index : indexObjectsInTable())
        if (!equalIgnoringCase(index->indexType(), "UNIQUE") && index->indexContainsField(field)) return true;
    return false;
}

bool SQLTable::isIndexSoleIndexOnColumn(const SQLIndex& index, const SQLField& column) const {
    for (const SQLIndex* other : indexObjectsInTable())
        if (other != &index && other->indexContainsField(column)) return false;
    return index.indexContainsField(column);
}

std::vector<SQLConnectable*> SQLTable::foreignKeysReferencingPrimaryKey() const {
    const SQLContainer* document = topLevelContainer();
    if (!document || !hasPrimaryKey()) return {};
    return PrimaryKeyReferences(*document).referencing(*this);
}

}  // namespace vellicor
