// vellicor/database/catalog_components.h — the facts of one table as components of the model.
#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "vellicor/database/catalog.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/table.h"

namespace vellicor {

/// Names for what the database left without one: made from its columns, each once in the table.
class KeyNames {
public:
    explicit KeyNames(const CatalogTable& table);
    /// The given name unless it is empty.
    [[nodiscard]] std::string nameFor(const std::string& given, const std::vector<std::string>& columns,
                                      std::string_view ending);

private:
    const CatalogTable& _table;
    std::unordered_set<std::string> _taken;
};

class CatalogComponents {
public:
    CatalogComponents(DatabaseEngine engine, const CatalogTable& facts) : _engine(engine), _facts(facts) {}
    /// Columns, then constraints, then indexes; with uids, not yet in the table.
    [[nodiscard]] SQLTable::Components componentsFor(const SQLTable& table) const;
    /// Gives constraints and indexes their columns, once all stand in the table.
    void addColumnLists(SQLTable& table) const;

private:
    [[nodiscard]] std::shared_ptr<SQLField> columnFor(const CatalogColumn& facts) const;
    /// The column whose flag says it all; null for a constraint that needs an object.
    [[nodiscard]] const CatalogKey* flagFor(const CatalogColumn& column) const;
    [[nodiscard]] bool isFlag(const CatalogKey& key) const;

    DatabaseEngine _engine;
    const CatalogTable& _facts;
};

/// Comment, options and the primary key's name and deferral; columns are not looked at.
void setTableFacts(SQLTable& table, const CatalogTable& facts);
void setViewFacts(SQLView& view, const CatalogView& facts);
/// Null, and nothing added, when a column is missing.
SQLForeignKey* addForeignKey(const CatalogForeignKey& facts, KeyNames& names, SQLTable& table, SQLTable& target);
/// Actions, deferral, comment; columns are not looked at.
void setForeignKeyFacts(SQLForeignKey& key, const CatalogForeignKey& facts);

}  // namespace vellicor
