// vellicor/model/table_primary_key.cpp — the primary key of a table: the columns flagged so.
#include "vellicor/model/field.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

bool SQLTable::hasPrimaryKey() const { return !primaryKeyObjectList().empty(); }

SQLTable::Fields SQLTable::primaryKeyObjectList() const {
    auto components = _fields.lock();
    if (!_primaryKey) {
        _primaryKey.emplace();
        for (const auto& component : *components)
            if (auto* field = as<SQLField>(component.get()); field && field->getPrimaryKey())
                _primaryKey->push_back(field);
    }
    return *_primaryKey;
}

void SQLTable::primaryKeyDidChange() const {
    auto components = _fields.lock();
    _primaryKey.reset();
}

std::vector<std::string> SQLTable::primaryKeyList() const {
    std::vector<std::string> list;
    for (const SQLField* field : primaryKeyObjectList()) list.push_back(field->getName());
    return list;
}

std::variant<std::vector<std::string>, SQLTable::Fields> SQLTable::primaryKeyListWithMode(int mode) const {
    if (mode == 1) return primaryKeyObjectList();
    return primaryKeyList();
}

std::string SQLTable::primaryKeyConstraintName() const {
    return hasProperty(keys::primaryKeyName) ? getProperty(keys::primaryKeyName) : text("%@_pkey", getBaseName());
}

void SQLTable::setPrimaryKeyConstraintName(const OptionalText& name) {
    setProperty(keys::primaryKeyName, name.value_or(std::string()));
}

void SQLTable::setPrimaryKeyToFieldNames(const std::vector<std::string>& names) {
    for (SQLField* field : primaryKeyObjectList()) field->setPrimaryKey(false);
    for (const std::string& name : names) {
        if (SQLField* field = getFieldByName(name))
            field->setPrimaryKey(true);
        else
            log(text("want to alter primary key to column (%@) not found in this table (%@)", name, getName()));
    }
}

}  // namespace vellicor
