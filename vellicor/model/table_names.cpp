// vellicor/model/table_names.cpp — a table's own name and schema, and free names for its components.
#include "vellicor/model/component_index.h"
#include "vellicor/model/name_match.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

// --- own name

std::string SQLTable::getName() const { return fullyQualifiedName(); }

std::string SQLTable::fullyQualifiedNameWithSeparator(std::string_view separator) const {
    if (!_schemaName || _schemaName->empty()) return getBaseName();
    return text("%@%@%@", *_schemaName, separator, getBaseName());
}

void SQLTable::setName(const OptionalText& name) {
    const NameParts parts = splitNameBySchema(name ? std::string_view(*name) : std::string_view());
    setSchemaName(parts.schemaPart);
    setBaseName(trimmed(parts.baseName, TrimSet::Whitespace));
}

void SQLTable::setBaseName(std::string_view name) {
    const std::string unquoted = trimName(name);
    takeBaseName(std::string(trimmed(unquoted, TrimSet::Whitespace)));
}

/// Undoing takes the old name as it was: setting it would take quotes off once more.
void SQLTable::takeBaseName(const std::string& base) {
    registerUndo(this, [old = getBaseName()](SQLTable& table) { table.takeBaseName(old); });
    setUndoActionName("set object name");
    _indexPrefix = text("%@_", base);
    storeName(base);
}

void SQLTable::setSchemaName(const OptionalText& name) {
    takeSchemaName(name ? OptionalText(trimmed(trimName(*name))) : std::nullopt);
}

void SQLTable::takeSchemaName(const OptionalText& name) {
    registerUndo(this, [old = _schemaName](SQLTable& table) { table.takeSchemaName(old); });
    setUndoActionName("set schema name");
    const std::string before = getSchemaName();
    willChangeValueForKey("displayName");
    _schemaName = name;
    didChangeValueForKey("displayName");
    if (container() && getSchemaName() != before) container()->memberNameDidChange(*this);
    if (SQLContainer* document = topLevelContainer()) document->updateSchemaForObject(*this);
}

void SQLTable::setFullyQualifiedName(const OptionalText& name, bool forceSchemaName) {
    const std::string wanted = name.value_or(std::string());
    if (wanted == fullyQualifiedName()) return;
    const NameParts parts = splitNameBySchema(wanted);
    if (forceSchemaName || !parts.schemaPart.empty()) setSchemaName(parts.schemaPart);
    setBaseName(trimmed(parts.baseName));
}

bool SQLTable::validateFullyQualifiedName(OptionalText& name, ValidationError*) {
    if (!mustValidateName() && name && *name == fullyQualifiedName()) return true;
    const SQLContainer* document = topLevelContainer();
    if (!document) return true;
    std::string valid = document->getValidNameForObject(*this, name);
    if (name && valid == *name) return true;
    if (valid != fullyQualifiedName()) setDidChangeNameDuringValidation(true);
    name = std::move(valid);
    return true;
}

void SQLTable::setSchemaDisplayName(const OptionalText& name) {
    OptionalText qualified = name && !name->empty() ? text("%@.%@", *name, getBaseName()) : getBaseName();
    validateDisplayName(qualified, nullptr);
    setDisplayName(qualified);
}

// --- names of components

std::string SQLTable::getValidNameForObject(const SQLObject& object, const OptionalText& originalName) const {
    auto components = _fields.lock();
    return SQLNameMatch::getValidNameForObject(object, originalName, *this, false);
}

std::string SQLTable::getValidName(const OptionalText& name) const {
    auto components = _fields.lock();
    return SQLNameMatch::getValidName(name, *this);
}

bool SQLTable::isObjectNamePresent(std::string_view name) const {
    return SQLNameMatch::isObjectNamePresent(name, *this);
}

bool SQLTable::holdsName(std::string_view lowercasedName, const SQLObject* except) const {
    auto components = _fields.lock();
    if (const ComponentNames* known = names(*components)) return known->holds(lowercasedName, except);
    for (const auto& component : *components)
        if (component.get() != except && lowercased(component->getName()) == lowercasedName) return true;
    return false;
}

std::size_t SQLTable::siblingCount(const SQLObject* except) const {
    auto components = _fields.lock();
    const auto* component = as<const SQLTableComponent>(except);
    return components->size() - (component && contains(*component) ? 1 : 0);
}

LockedHandle<NumberHints> SQLTable::numberHints() const { return _fields.lock().of(_numberHints); }

void SQLTable::memberNameDidChange(SQLObject& member) {
    auto components = _fields.lock();
    auto* component = as<SQLTableComponent>(&member);
    if (_names && component)
        _numberHints.nameBecameFree(_names->nameDidChange(*component));
    else
        _numberHints.clear();
    if (component) component->foreignKeyDidChange();
}

}  // namespace vellicor
