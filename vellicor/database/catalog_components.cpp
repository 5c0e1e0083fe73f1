// vellicor/database/catalog_components.cpp — columns, keys and indexes as the model holds them.
#include "vellicor/database/catalog_components.h"

#include <algorithm>

#include "vellicor/database/catalog_document.h"
#include "vellicor/database/sql_scanner.h"
#include "vellicor/database/stable_uid.h"
#include "vellicor/model/database_keys.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

void setUnlessEmpty(SQLObject& object, const char* key, const std::string& value) {
    if (!value.empty()) object.setProperty(key, value);
}
void setFlag(SQLObject& object, const char* key, bool flag) {
    if (flag) object.setPropertyAsBoolean(key, true);
}
void setCommentUnlessEmpty(SQLObject& object, const std::string& comment) {
    setUnlessEmpty(object, keys::objectComment, comment);
}

/// Type, size and what stands behind it; flags that the model has.
void setType(SQLField& field, const CatalogColumn& facts, DatabaseEngine engine) {
    std::string type = facts.type;
    if (engine == DatabaseEngine::PostgreSQL) {
        for (const char* ending : {" with time zone", " without time zone"}) {
            if (!type.ends_with(ending)) continue;
            type.resize(type.size() - std::string_view(ending).size());
            setFlag(field, keys::timezone, std::string_view(ending) == " with time zone");
        }
    }
    if (engine == DatabaseEngine::MySQL) {
        if (type.ends_with(" zerofill")) {
            type.resize(type.size() - std::string_view(" zerofill").size());
            setFlag(field, keys::zeroFill, true);
        }
        if (type.ends_with(" unsigned")) {
            type.resize(type.size() - std::string_view(" unsigned").size());
            setFlag(field, keys::unsigned_, true);
        }
    }
    field.setType(type);
    const std::string kept = field.getFullTypeString();
    if (kept.size() < type.size() && type.starts_with(kept))
        field.setProperty(keys::typeSuffix, type.substr(kept.size()));
}

std::string partLine(const CatalogIndexPart& part) {
    std::string line = part.column.empty() ? "(" + singleLineSql(part.expression) + ")" : "column";
    return part.options.empty() ? line : line + " " + part.options;
}

void setIndexFacts(SQLIndex& index, const CatalogIndex& facts) {
    index.setIndexType(facts.type);
    setUnlessEmpty(index, keys::indexMethod, facts.method);
    setUnlessEmpty(index, keys::indexCondition, facts.condition);
    setUnlessEmpty(index, keys::indexIncludedColumns, joined(facts.included, "\n"));
    setFlag(index, keys::nullsNotDistinct, facts.nullsNotDistinct);
    setCommentUnlessEmpty(index, facts.comment);
    const bool isPlain = std::ranges::all_of(
        facts.parts, [](const CatalogIndexPart& part) { return !part.column.empty() && part.options.empty(); });
    if (isPlain) return;
    std::vector<std::string> lines;
    for (const CatalogIndexPart& part : facts.parts) lines.push_back(partLine(part));
    index.setProperty(keys::indexParts, joined(lines, "\n"));
}

SQLField* columnNamed(const SQLTable& table, const std::string& name) {
    SQLField* folded = nullptr;
    SQLField* exact = nullptr;
    table.forEachComponent<SQLField>([&](SQLField& field) {
        if (!exact && field.getName() == name) exact = &field;
        if (!folded && equalIgnoringCase(field.getName(), name)) folded = &field;
    });
    return exact ? exact : folded;
}

}  // namespace

KeyNames::KeyNames(const CatalogTable& table) : _table(table) {
    for (const CatalogKey& key : table.uniques) _taken.insert(lowercased(key.name));
    for (const CatalogCheck& check : table.checks) _taken.insert(lowercased(check.name));
    for (const CatalogForeignKey& key : table.foreignKeys) _taken.insert(lowercased(key.name));
}

std::string KeyNames::nameFor(const std::string& given, const std::vector<std::string>& columns,
                              std::string_view ending) {
    if (!given.empty()) return given;
    std::string stem = _table.name;
    for (const std::string& column : columns) stem += "_" + column;
    stem += ending;
    std::string name = stem;
    for (int number = 1; !_taken.insert(lowercased(name)).second; ++number) name = text("%@_%d", stem, number);
    return name;
}

// === tables and views

void setTableFacts(SQLTable& table, const CatalogTable& facts) {
    setCommentUnlessEmpty(table, facts.comment);
    if (!facts.engine.empty()) table.setTableType(facts.engine);
    setUnlessEmpty(table, keys::tableCharacterSet, facts.characterSet);
    setUnlessEmpty(table, keys::tableCollation, facts.collation);
    setUnlessEmpty(table, keys::tablespace, facts.tablespace);
    setUnlessEmpty(table, keys::tableOptions, facts.options);
    if (!facts.primaryKey) return;
    setUnlessEmpty(table, keys::primaryKeyName, facts.primaryKey->name);
    if (facts.primaryKey->deferrable)
        table.setProperty(keys::primaryKeyDeferral,
                          facts.primaryKey->initiallyDeferred ? "DEFERRABLE INITIALLY DEFERRED" : "DEFERRABLE");
}

void setViewFacts(SQLView& view, const CatalogView& facts) {
    view.setQueryString(facts.query);
    setCommentUnlessEmpty(view, facts.comment);
    setFlag(view, keys::isMaterialized, facts.isMaterialized);
    if (facts.listsColumns) view.setProperty(keys::viewColumns, joined(facts.columns, "\n"));
    if (facts.columns.empty()) return;
    const auto addEntry = [&](const std::string& name, std::string_view type) {
        auto entry = SQLViewEntry::viewEntryWithName(modelName(name), type);
        entry->setUid(stableUid({"view entry", facts.schema, facts.name, type, name}));
        view.addViewEntry(entry);
    };
    addEntry("columns", "label");
    for (const std::string& column : facts.columns) addEntry(column, "column");
}

// === components

bool CatalogComponents::isFlag(const CatalogKey& key) const {
    if (key.columns.size() != 1 || key.deferrable || key.nullsNotDistinct || !key.included.empty()) return false;
    if (!key.comment.empty()) return false;
    // The name that the engine gives by itself.
    const std::string& column = key.columns.front();
    switch (_engine) {
        case DatabaseEngine::SQLite: return key.name.empty();
        case DatabaseEngine::PostgreSQL: return key.name == _facts.name + "_" + column + "_key";
        case DatabaseEngine::MySQL: return key.name == column;
    }
    return false;
}

const CatalogKey* CatalogComponents::flagFor(const CatalogColumn& column) const {
    for (const CatalogKey& key : _facts.uniques)
        if (isFlag(key) && key.columns.front() == column.name) return &key;
    return nullptr;
}

std::shared_ptr<SQLField> CatalogComponents::columnFor(const CatalogColumn& facts) const {
    auto field = SQLField::field();
    field->setName(modelName(facts.name));
    field->setUid(stableUid({"column", _facts.schema, _facts.name, facts.name}));
    setType(*field, facts, _engine);
    setFlag(*field, keys::notNull, facts.notNull);
    setFlag(*field, keys::autoIncrement, facts.autoIncrement);
    if (facts.defaultValue) {
        field->setDefaultValue(facts.defaultValue->text);
        setFlag(*field, keys::noQuoteDefault, facts.defaultValue->isExpression);
    }
    setUnlessEmpty(*field, keys::identity, facts.identity);
    setUnlessEmpty(*field, keys::generatedExpression, facts.generated);
    setUnlessEmpty(*field, keys::generatedKind, facts.generatedKind);
    setUnlessEmpty(*field, keys::fieldCharacterSet, facts.characterSet);
    setUnlessEmpty(*field, _engine == DatabaseEngine::MySQL ? keys::fieldCollation : keys::columnCollation,
                   facts.collation);
    setUnlessEmpty(*field, keys::onUpdateFieldValue, facts.onUpdate);
    setCommentUnlessEmpty(*field, facts.comment);
    if (const CatalogKey* unique = flagFor(facts)) {
        setFlag(*field, keys::unique, true);
        setUnlessEmpty(*field, keys::uniqueIndexName, unique->name);
    }
    return field;
}

SQLTable::Components CatalogComponents::componentsFor(const SQLTable&) const {
    SQLTable::Components components;
    std::vector<std::string> key;
    if (_facts.primaryKey) key = _facts.primaryKey->columns;
    std::vector<std::string> keyInOrder;
    for (const CatalogColumn& column : _facts.columns)
        if (std::ranges::find(key, column.name) != key.end()) keyInOrder.push_back(column.name);
    for (const CatalogColumn& column : _facts.columns) {
        auto field = columnFor(column);
        if (const auto place = std::ranges::find(key, column.name); place != key.end()) {
            field->setPrimaryKey(true);
            if (keyInOrder != key)
                field->setProperty(keys::primaryKeyPosition, std::to_string(place - key.begin() + 1));
        }
        components.push_back(std::move(field));
    }
    KeyNames names(_facts);
    const auto finish = [&](std::string_view kind, const std::shared_ptr<SQLIndex>& object, const std::string& given) {
        setFlag(*object, keys::hideConstraintName, given.empty());
        object->setUid(stableUid({kind, _facts.schema, _facts.name, object->getName()}));
        components.push_back(object);
    };
    for (const CatalogKey& unique : _facts.uniques) {
        if (isFlag(unique)) continue;
        auto constraint = SQLConstraint::initWithName(modelName(names.nameFor(unique.name, unique.columns, "_key")));
        constraint->setConstraintType("UNIQUE");
        setFlag(*constraint, keys::deferrable, unique.deferrable);
        setFlag(*constraint, keys::initiallyDeferred, unique.initiallyDeferred);
        setFlag(*constraint, keys::nullsNotDistinct, unique.nullsNotDistinct);
        setUnlessEmpty(*constraint, keys::indexIncludedColumns, joined(unique.included, "\n"));
        setCommentUnlessEmpty(*constraint, unique.comment);
        if (_engine == DatabaseEngine::SQLite) constraint->setProperty(keys::uniqueForm, "constraint");
        finish("constraint", constraint, unique.name);
    }
    std::unordered_set<std::string> checkNames;
    for (const CatalogCheck& check : _facts.checks) {
        // Two checks of a table may have one name; in the document the second goes by another.
        const bool isRepeated = !check.name.empty() && !checkNames.insert(caseFolded(check.name)).second;
        const std::string given = isRepeated ? std::string() : check.name;
        auto constraint = SQLConstraint::initWithName(modelName(names.nameFor(given, {}, "_check")));
        constraint->setCheckConstraintExpression(check.expression);
        if (isRepeated) constraint->setProperty(keys::checkConstraintName, check.name);
        setCommentUnlessEmpty(*constraint, check.comment);
        finish("constraint", constraint, given);
    }
    for (const CatalogIndex& facts : _facts.indexes) {
        auto index = SQLIndex::initWithName(modelName(facts.name));
        setIndexFacts(*index, facts);
        if (facts.type == "UNIQUE" && _engine == DatabaseEngine::PostgreSQL)
            index->setProperty(keys::uniqueForm, "index");
        finish("index", index, facts.name);
    }
    return components;
}

void CatalogComponents::addColumnLists(SQLTable& table) const {
    const auto find = [&](std::string_view kind, std::string_view name) {
        SQLTableComponent* component = table.getFieldByUID(stableUid({kind, _facts.schema, _facts.name, name}));
        return as<SQLIndex>(component);
    };
    KeyNames names(_facts);
    for (const CatalogKey& unique : _facts.uniques) {
        if (isFlag(unique)) continue;
        SQLIndex* constraint = find("constraint", names.nameFor(unique.name, unique.columns, "_key"));
        if (!constraint) continue;
        for (const std::string& name : unique.columns)
            if (SQLField* column = columnNamed(table, name)) constraint->addIndexField(*column);
    }
    for (const CatalogIndex& facts : _facts.indexes) {
        SQLIndex* index = find("index", facts.name);
        if (!index) continue;
        for (const CatalogIndexPart& part : facts.parts) {
            SQLField* column = part.column.empty() ? nullptr : columnNamed(table, part.column);
            if (!column) continue;
            index->addIndexField(*column);
            if (!part.size.empty()) index->setSizeForIndexEntry(*column, part.size);
        }
    }
}

SQLForeignKey* addForeignKey(const CatalogForeignKey& facts, KeyNames& names, SQLTable& table, SQLTable& target) {
    std::vector<SQLField*> sources;
    std::vector<SQLField*> targets;
    for (const std::string& name : facts.columns) sources.push_back(columnNamed(table, name));
    for (const std::string& name : facts.targetColumns) targets.push_back(columnNamed(target, name));
    if (facts.targetColumns.empty()) targets = target.primaryKeyObjectList();
    const auto isMissing = [](const SQLField* column) { return column == nullptr; };
    if (targets.size() != sources.size() || std::ranges::any_of(sources, isMissing) ||
        std::ranges::any_of(targets, isMissing))
        return nullptr;

    auto key = SQLForeignKey::initWithName(modelName(names.nameFor(facts.name, facts.columns, "_fk")));
    key->setUid(stableUid({"key", table.uid(), key->getName()}));
    table.add(key);
    key->setTargetTable(&target);
    for (std::size_t i = 0; i < sources.size(); ++i) key->addFieldPair(sources[i], targets[i]);
    key->setDefaultCardinalityForImport();
    setForeignKeyFacts(*key, facts);
    return key.get();
}

void setForeignKeyFacts(SQLForeignKey& key, const CatalogForeignKey& facts) {
    key.setDeleteAction(facts.deleteAction);
    key.setUpdateAction(facts.updateAction);
    setFlag(key, keys::hideConstraintName, facts.name.empty());
    setFlag(key, keys::deferrable, facts.deferrable);
    setFlag(key, keys::initiallyDeferred, facts.initiallyDeferred);
    setUnlessEmpty(key, keys::matchType, facts.match);
    setCommentUnlessEmpty(key, facts.comment);
}

}  // namespace vellicor
