// vellicor/model/field.cpp — a column: its making and end, flags, default value, names and cardinalities.
#include "vellicor/model/field.h"

#include "vellicor/model/container.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/foreign_key_graph.h"
#include "vellicor/model/table.h"

namespace vellicor {

SQLField::~SQLField() {
    if (!_reference) return;
    if (SQLTable* table = observingFkTable()) table->stopObservingTableForForeignKey(*this);
    if (auto graph = _reference->graph.lock()) graph->forgetField(this);
}

void SQLField::init() {
    SQLTableComponent::init();
    setProperty(keys::referenceLinkName, "");
    setProperty(keys::defaultValue, "");
    setHasCocoa(true);
    setDefaultCardinalityForCreatedKey();
}

std::shared_ptr<SQLField> SQLField::initWithName(const OptionalText& name, const OptionalText& type) {
    auto field = createNamed<SQLField>(name);
    field->setType(type);
    return field;
}

const SQLField::UndoProperties& SQLField::undoProperties() {
    static const UndoProperties keys{
        keys::unsigned_,         keys::zeroFill,       keys::noQuoteDefault,     keys::timezone,      keys::indexed,
        keys::fieldCharacterSet, keys::fieldCollation, keys::onUpdateFieldValue, keys::objectComment, keys::hidden,
        keys::connectorHidden};
    return keys;
}

const SQLField::UndoProperties& SQLField::propertiesWithUndo() {
    static const UndoProperties keys{keys::unsigned_};
    return keys;
}

std::string SQLField::getProperty(std::string_view key) const {
    if (key == keys::unique && !_primaryKey && forcedUnique()) return "1";
    return SQLTableComponent::getProperty(key);
}

// --- flags

void SQLField::setNotNull(bool flag) {
    registerUndo(this, [old = getNotNull()](SQLField& field) { field.setNotNull(old); });
    setPropertyAsBoolean(keys::notNull, flag);
}

void SQLField::setUnique(bool flag) {
    // What was stored, not what forced uniqueness makes of it.
    const bool old = boolValue(SQLTableComponent::getProperty(keys::unique));
    registerUndo(this, [old](SQLField& field) { field.setUnique(old); });
    setPropertyAsBoolean(keys::unique, flag);
}

void SQLField::setPrimaryKey(bool flag) {
    registerUndo(this, [old = _primaryKey](SQLField& field) { field.setPrimaryKey(old); });
    _primaryKey = flag;
    if (const SQLTable* table = parentTable()) table->primaryKeyDidChange();
}

void SQLField::setAutoIncrement(bool flag) {
    registerUndo(this, [old = getAutoIncrement()](SQLField& field) { field.setAutoIncrement(old); });
    setPropertyAsBoolean(keys::autoIncrement, flag);
}

bool SQLField::uniqueOrForcedUnique() const { return isUnique() || requiresUniqueOrPrimaryKey(); }

bool SQLField::requiresUniqueOrPrimaryKey() const { return !_primaryKey && forcedUnique(); }

bool SQLField::canSetUnique() const { return _primaryKey || !forcedUnique(); }

// --- default value

void SQLField::setDefaultValue(const OptionalText& value) {
    registerUndo(this, [old = defaultValue()](SQLField& field) { field.setDefaultValue(old); });
    setProperty(keys::defaultValue, value.value_or(std::string()));
}

void SQLField::setDefaultValueFromParsedString(const OptionalText& value) {
    if (!isQuoted(value.value_or(std::string()))) setPropertyAsBoolean(keys::noQuoteDefault, true);
    setDefaultValue(value);
}

bool SQLField::isQuoted(std::string_view text) {
    if (text.empty() || text.front() != text.back()) return false;
    return text.front() == '\'' || text.front() == '"' || text.front() == '`';
}

void SQLField::setDefaultValueRemovingQuotes(const OptionalText& value) {
    auto isQuote = [](char character) { return character == '\'' || character == '`'; };
    std::string text = value.value_or(std::string());
    if (!text.empty() && isQuote(text.back()))
        text.pop_back();  // Kept: cut from the whole text, so a leading quote stays
    else if (!text.empty() && isQuote(text.front()))
        text.erase(0, 1);
    setDefaultValue(text);
}

// --- name of the column's foreign key

OptionalText SQLField::validForeignKeyName(const OptionalText& name) const {
    SQLContainer* document = topLevelContainer();
    // The document would take the column's own key for another one of that name.
    if (!document || !name || name->empty() || *name == foreignKeyName()) return name;
    return document->validNameForForeignKey(*this, *name, false);
}

void SQLField::setForeignKeyName(const OptionalText& name) {
    registerUndo(this, [old = foreignKeyName()](SQLField& field) { field.setForeignKeyName(old); });
    setReferenceId(validForeignKeyName(name));
}

bool SQLField::validateForeignKeyName(OptionalText& name, ValidationError*) {
    name = validForeignKeyName(name);
    return true;
}

void SQLField::setReferenceId(const OptionalText& name) {
    if (name && !name->empty())
        setProperty(keys::foreignKeyName, *name);
    else
        removeProperty(keys::foreignKeyName);
}

void SQLField::propertyDidChange(std::string_view key) {
    SQLTableComponent::propertyDidChange(key);
    if (key == keys::foreignKeyName) foreignKeyDidChange();
}

void SQLField::propertiesWereMerged() { foreignKeyDidChange(); }

// --- actions and cardinalities

void SQLField::setSourceCardinalityAsString(const OptionalText& text) {
    setSourceCardinality(static_cast<std::uint64_t>(integerValue(text.value_or(std::string()))));
}

void SQLField::setDestinationCardinalityAsString(const OptionalText& text) {
    setDestinationCardinality(static_cast<std::uint64_t>(integerValue(text.value_or(std::string()))));
}

// --- other

void SQLField::addIndexName(std::string_view name) {
    std::scoped_lock lock(sharedLock(this));
    _indexList.emplace_back(name);
}

std::vector<std::string> SQLField::indexList() const {
    std::scoped_lock lock(sharedLock(this));
    return _indexList;
}

void SQLField::addCheckConstraint(const std::shared_ptr<SQLConstraint>& constraint) {
    if (SQLTable* table = parentTable()) table->addCheckConstraint(constraint);
}

}  // namespace vellicor
