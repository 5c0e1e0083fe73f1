// vellicor/export/generic_exporter_alter.h — the operations of alter scripts.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vellicor/export/generic_exporter_create.h"

namespace vellicor {

class PrimaryKeyReferences;

/// From an old state to a new one; the new object stands first.
class GenericAlterScript : public GenericCreateScript {
public:
    // === tables, columns, indexes (generic_exporter_alter.cpp)
    std::string alter(SQLObject& object, SQLObject& oldObject) override;
    virtual Statements alterSQLTableAsVector(SQLTable& table, SQLTable& oldTable, SQLObject* extra);
    virtual Statements alterSQLFieldAsVector(SQLField& field, SQLField& oldField, SQLObject* extra);
    virtual std::string alterType(SQLField& field, SQLField& oldField);
    std::string addColumn(SQLField& field) override;
    virtual std::string addField(SQLField& field, SQLTable& table);
    std::string dropSQLField(SQLField& field) override;
    std::string dropColumn(SQLField& field) override { return dropSQLField(field); }
    std::string dropSQLIndex(SQLIndex& index) override;
    virtual std::string alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex);
    virtual std::string alterSQLConstraint(SQLConstraint& constraint, SQLConstraint& oldConstraint);
    virtual SourceNodePtr dropSQLConstraintAsNode(SQLConstraint& constraint);
    virtual std::string dropSQLConstraint(SQLConstraint& constraint);
    virtual SourceNodePtr addSQLConstraintAsNode(SQLConstraint& constraint);
    virtual std::string addSQLConstraint(SQLConstraint& constraint);
    virtual std::string alterUniqueConstraint(SQLField& /*field*/, SQLField& /*dbField*/) { return {}; }
    virtual Statements postLoadAlterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject* extra);
    virtual Statements alterIndexedProperty(SQLField& field, SQLField& curField);
    /// False when the name that the column gives its index is that of an index of the table over the column.
    [[nodiscard]] virtual bool canDropIndexedProperty(SQLField& curField, SQLField& newField);
    /// Drops the index that a column's flag "indexed" stands for.
    virtual std::string dropIndex(SQLField& field, SQLTable& table);
    /// The name of that index as it is created: quoted, with the prefixes of the table.
    [[nodiscard]] std::string fieldIndexName(SQLField& field, SQLTable& table);
    /// The quoted name under which an index is dropped. Kept: the prefix that it was made with is left out.
    [[nodiscard]] virtual std::string nameOfExistingIndex(SQLIndex& index);
    /// The same for the index of a column, which is logged.
    [[nodiscard]] virtual std::string nameOfExistingIndex(SQLField& field, SQLTable& table);

    // === keys (generic_exporter_alter_keys.cpp)
    Statements alterSQLForeignKeyAsVector(SQLForeignKey* key, SQLForeignKey* oldKey, SQLObject* extra) override;
    std::string dropForeignKey(SQLConnectable& key) override;
    virtual SourceNodePtr dropSQLForeignKeyNode(SQLForeignKey& key);
    virtual std::string dropSQLForeignKey(SQLForeignKey& key);
    [[nodiscard]] bool isForeignKeyMatchForFieldA(SQLConnectable& fieldA, SQLConnectable& fieldB);
    /// 0: none or equal references; 1: only the second has one; 2: only the first; 3: different ones.
    [[nodiscard]] int foreignKeyMatches(SQLField& field, SQLField& oldField);
    virtual SourceNodePtr alterForeignKeyForTable(SQLTable& table, SQLTable& databaseTable);
    virtual SourceNodePtr alterForeignKeyAsNode(SQLField& field, SQLField& databaseField);
    virtual Statements alterForeignKey(SQLField& field, SQLField& databaseField);
    virtual SourceNodePtr alterPrimaryKeyForTable(SQLTable& table, SQLTable& databaseTable);
    virtual std::string alterPrimaryKey(SQLField& field, SQLField& databaseField);
    virtual SourceNodePtr alterDropForeignKeysReferencingPrimaryKey(SQLTable& table, SQLTable& databaseTable);
    virtual SourceNodePtr primaryKeyConstraintNameGuessWarning(SQLTable& table);
    virtual SourceNodePtr dropPrimaryKeyInstruction(SQLTable& table);
    virtual SourceNodePtr addPrimaryKeyInstruction(SQLTable& table);
    virtual SourceNodePtr dropForeignKeyList(const std::vector<SQLConnectable*>& keys);
    virtual SourceNodePtr addForeignKeyList(const std::vector<SQLConnectable*>& keys);
    [[nodiscard]] std::vector<SQLConnectable*> filterForeignKeyList(const std::vector<SQLConnectable*>& keys,
                                                                    SQLContainer* documentContainer);

    // === views (generic_exporter_view.cpp)
    virtual std::string changeOwnerToCurrent(SQLObject&) { return {}; }
    virtual Statements alterSQLViewAsVector(SQLView& view, SQLView& oldView, SQLObject* extra);

    [[nodiscard]] const std::vector<std::shared_ptr<SQLObject>>& droppedObjects() const { return _droppedObjects; }
    [[nodiscard]] const std::vector<std::shared_ptr<SQLObject>>& addedObjects() const { return _addedObjects; }

protected:
    [[nodiscard]] bool wasDropped(const SQLConnectable& key) const { return _droppedForeignKeys.contains(&key); }
    void markDropped(SQLConnectable& key);
    /// Whether a key object needs no change. Kept: a key whose actions alone have changed stays as it was.
    [[nodiscard]] virtual bool isUnchanged(SQLForeignKey& key, SQLForeignKey& oldKey);
    /// Equal, or one unset and the other what stands for that.
    [[nodiscard]] static bool actionsMatch(std::uint64_t a, std::uint64_t b, std::uint64_t unsetAction);
    /// Says in a comment that a key must go whose name nobody knows.
    [[nodiscard]] std::string unknownForeignKeyComment(SQLConnectable& key, std::string_view keyName);
    void logDropIndexName(std::string_view indexName, const SQLField& field);

private:
    friend class AlterRun;
    void beginAlterRun(const SQLContainer& database, const PrimaryKeyReferences& references);
    void endAlterRun();

    struct ForeignKeyChange {
        std::string drop;  // a statement without separator
        std::string add;   // a statement with separator, trimmed
    };
    ForeignKeyChange foreignKeyChange(SQLField& field, SQLField& databaseField);
    /// A column's key in the form that both sides are compared in; empty when it has none.
    std::string foreignKeyClause(SQLField& field);
    std::string createReference(SQLConnectable& key);
    std::vector<SQLConnectable*> foreignKeysReferencing(const SQLTable& table) const;

    std::vector<std::shared_ptr<SQLObject>> _droppedObjects;
    std::vector<std::shared_ptr<SQLObject>> _addedObjects;
    // Keys already dropped, found by identity and kept alive so that no other key takes their address.
    std::unordered_map<const SQLConnectable*, std::shared_ptr<SQLObject>> _droppedForeignKeys;
    const SQLContainer* _databaseContainer = nullptr;             // only while an alter run lives
    const PrimaryKeyReferences* _primaryKeyReferences = nullptr;  // of that document
};

}  // namespace vellicor
