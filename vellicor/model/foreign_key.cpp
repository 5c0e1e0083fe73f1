// vellicor/model/foreign_key.cpp — a foreign key: its pairs, target, actions, names and texts.
#include "vellicor/model/foreign_key.h"

#include <algorithm>

#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key_graph.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::string_view kFieldPairList = "fieldPairList";

std::string nameOrBlank(const SQLField* column) { return column ? column->getName() : " "; }

}  // namespace

SQLForeignKey::~SQLForeignKey() {
    auto pairs = _fieldPairList.lock();
    for (const auto& entry : *pairs)
        if (entry->container() == this) entry->setContainer(nullptr);
}

void SQLForeignKey::init() {
    SQLTableComponent::init();
    setName("fk");
    setDefaultCardinalityForCreatedKey();
}

const SQLForeignKey::UndoProperties& SQLForeignKey::undoProperties() {
    static const UndoProperties keys{keys::hidden, keys::connectorHidden};
    return keys;
}

// --- pairs

/// Expects the list's lock. A listed entry has this key for its container.
bool SQLForeignKey::holdsPair(const SQLForeignKeyEntry& entry) const {
    if (entry.container() != this) return false;
    auto pairs = _fieldPairList.lock();
    return std::ranges::find(*pairs, &entry, &std::shared_ptr<SQLForeignKeyEntry>::get) != pairs->end();
}

void SQLForeignKey::addFieldPair(SQLField* source, SQLField* target) {
    auto pairs = _fieldPairList.lock();
    auto entry = SQLForeignKeyEntry::initWithSource(source, target);
    registerUndo(this, [entry](SQLForeignKey& key) { key.removeFieldPair(entry); });
    addForeignKeyEntry(entry);
}

void SQLForeignKey::addForeignKeyEntry(const std::shared_ptr<SQLForeignKeyEntry>& entry) {
    auto pairs = _fieldPairList.lock();
    insertFieldPair(entry, pairs->size());
}

std::shared_ptr<SQLForeignKeyEntry> SQLForeignKey::createEntryObject() const { return create<SQLForeignKeyEntry>(); }

void SQLForeignKey::insertFieldPair(const std::shared_ptr<SQLForeignKeyEntry>& entry, std::size_t index) {
    auto pairs = _fieldPairList.lock();
    if (!entry || holdsPair(*entry)) return;
    entry->setContainer(this);
    willChangeValueForKey(kFieldPairList);
    pairs->insert(pairs->begin() + static_cast<std::ptrdiff_t>(std::min(index, pairs->size())), entry);
    didChangeValueForKey(kFieldPairList);
}

void SQLForeignKey::removeFieldPairAtIndex(std::size_t index) {
    auto pairs = _fieldPairList.lock();
    if (index >= pairs->size()) {
        log("attempted to remove index field pair beyond range");
        return;
    }
    const auto place = pairs->begin() + static_cast<std::ptrdiff_t>(index);
    const auto entry = *place;
    registerUndo(this, [entry, index](SQLForeignKey& key) { key.insertFieldPair(entry, index); });
    willChangeValueForKey(kFieldPairList);
    pairs->erase(place);
    entry->setContainer(nullptr);
    didChangeValueForKey(kFieldPairList);
}

void SQLForeignKey::removeFieldPair(const std::shared_ptr<SQLForeignKeyEntry>& entry) {
    auto pairs = _fieldPairList.lock();
    const auto found = entry ? std::ranges::find(*pairs, entry) : pairs->end();
    if (found != pairs->end()) removeFieldPairAtIndex(static_cast<std::size_t>(found - pairs->begin()));
}

void SQLForeignKey::removeFieldPair(const SQLField* source, const SQLField* target) {
    if (!source || !target) return;  // a missing column equals nothing
    auto pairs = _fieldPairList.lock();
    const auto found = std::find_if(pairs->rbegin(), pairs->rend(), [&](const auto& entry) {
        return entry->source() == source && entry->target() == target;
    });
    if (found != pairs->rend()) removeFieldPair(*found);
}

std::size_t SQLForeignKey::getKeyPairCount() const { return _fieldPairList.lock()->size(); }

std::shared_ptr<SQLForeignKeyEntry> SQLForeignKey::getKeyPairAtIndex(std::int64_t index) const {
    auto pairs = _fieldPairList.lock();
    if (index < 0 || static_cast<std::size_t>(index) >= pairs->size()) return nullptr;
    return (*pairs)[static_cast<std::size_t>(index)];
}

SQLForeignKey::Entries SQLForeignKey::fieldPairs() const { return *_fieldPairList.lock(); }

std::vector<std::string> SQLForeignKey::getSourceList() const {
    std::vector<std::string> names;
    for (const auto& entry : fieldPairs())
        if (entry->source()) names.push_back(entry->source()->getName());
    return names;
}

std::vector<std::string> SQLForeignKey::getTargetList() const {
    std::vector<std::string> names;
    for (const SQLField* target : targetFieldObjectList()) names.push_back(target->getName());
    return names;
}

std::vector<SQLField*> SQLForeignKey::targetFieldObjectList() const {
    std::vector<SQLField*> columns;
    for (const auto& entry : fieldPairs())
        if (entry->target()) columns.push_back(entry->target());
    return columns;
}

// --- target

void SQLForeignKey::setTargetTable(SQLTable* table) {
    registerUndo(this, [old = shared(targetTable())](SQLForeignKey& key) { key.setTargetTable(old.get()); });
    _targetTable = table;
    foreignKeyDidChange();
}

void SQLForeignKey::setTargetTableByName(const OptionalText& name) { setProperty(keys::targetTableName, name); }

std::string SQLForeignKey::getTargetTableName() const {
    const SQLTable* table = targetTable();
    return table ? table->getName() : getProperty(keys::targetTableName);
}

void SQLForeignKey::setFkField(SQLField* column) {
    _fkField = column;
    setTargetTable(column ? column->parentTable() : nullptr);
}

void SQLForeignKey::setReferenceLinkName(const OptionalText& name) {
    if (name)
        setUndoableProperty(keys::referenceLinkName, *name);
    else
        removeUndoableProperty(keys::referenceLinkName);
}

// --- names, checks, texts

bool SQLForeignKey::validateName(OptionalText& name, ValidationError*) {
    bool didChange = false;
    SQLContainer* document = topLevelContainer();
    if (document && name && *name != getName()) {
        std::string valid = document->validNameForForeignKey(*this, *name, true);
        didChange = valid != *name;
        name = std::move(valid);
    }
    setDidChangeNameDuringValidation(didChange);
    return true;
}

bool SQLForeignKey::getFkTypeMismatch() const {
    const SQLContainer* document = topLevelContainer();
    const SQLForeignKeyObjectGraph* graph = document ? document->fkObjectGraph() : nullptr;
    return std::ranges::any_of(fieldPairs(), [&](const auto& entry) {
        if (!entry->source() || !entry->target()) return false;
        const OptionalText type = graph ? graph->dataTypeForField(*entry->target()) : std::nullopt;
        return !entry->source()->fieldMatchesType(type, *entry->target());
    });
}

std::string SQLForeignKey::getLabel() { return text("FK (%@)", joined(getSourceList(), ",")); }

std::string SQLForeignKey::getTestCompareString() const {
    return text("(%@) references (%@)", joined(getSourceList(), ","), joined(getTargetList(), ","));
}

std::string SQLForeignKey::getComparisonString() const {
    // Kept: INITALLYDEFERRED is spelt so.
    return text("FK: %@ %@ (%@) references (%@) deferrable:%@ initiallyDeferred:%@", getName(), getTargetTableName(),
                joined(getSourceList(), ","), joined(getTargetList(), ","), isDeferrable() ? "DEFERRABLE" : "",
                isInitiallyDeferred() ? "INITALLYDEFERRED" : "");
}

std::string SQLForeignKey::exportToSQL() {
    auto pairs = _fieldPairList.lock();
    std::vector<std::string> sources, targets;
    for (const auto& entry : *pairs) {
        sources.push_back(nameOrBlank(entry->source()));
        targets.push_back(nameOrBlank(entry->target()));
    }
    return text("Foreign Key %@ (%@) references %@ (%@)", getName(), joined(sources, ","), getTargetTableName(),
                joined(targets, ","));
}

}  // namespace vellicor
