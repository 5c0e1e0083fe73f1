// vellicor/export/generic_exporter_create.h — the operations of create scripts.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "vellicor/export/generic_exporter_names.h"
#include "vellicor/model/container.h"

namespace vellicor {

/// How a foreign key's clause is asked for.
struct ForeignKeyForm {
    bool asExternalInstruction = true;     ///< an ALTER TABLE statement, otherwise the bare clause
    bool isInstructionComparison = false;  ///< accepted and not read
};

/// A script before it is laid out.
struct ScriptParts {
    std::string header;                ///< the title line with its line break; empty when none is asked for
    std::string prologue;              ///< the user's statements, schemas, drops
    std::vector<std::string> objects;  ///< trimmed; none is empty
    std::string postLoad;              ///< indexes, keys, the user's closing statements
};

/// One operation for each kind of object, called by its class name or by the operations around it.
class GenericCreateScript : public GenericNames {
public:
    // === the document (generic_exporter_container.cpp)
    virtual std::string exportSQLContainer(SQLContainer& container);
    [[nodiscard]] virtual std::string layOut(ScriptParts parts) const;
    /// The objects in the order of the script.
    [[nodiscard]] virtual SQLContainer::Objects objectsInScript(SQLContainer& container);
    virtual std::string prologue(SQLObject& object) = 0;
    virtual std::string prologueSQLContainer(SQLContainer& container);
    /// The tables in the order in which they are dropped: those that reference a table stand before it.
    [[nodiscard]] std::vector<SQLTable*> tablesInDropOrder(SQLContainer& container);
    /// The tables with keys to this one. Kept: the keys of single columns only.
    [[nodiscard]] virtual std::vector<SQLTable*> referencingTables(const SQLTable& table) const;
    void addTablesLinkedToTable(SQLTable& table, std::vector<SQLTable*>& tables,
                                std::unordered_set<const SQLTable*>& visited);
    virtual std::string dropSQLTable(SQLTable& table);
    virtual std::string dropTableInstruction(SQLTable& table);
    virtual std::string postLoadSQLContainer(SQLContainer& container);
    virtual Statements postLoadAsVectorSQLContainer(SQLContainer& container);
    virtual std::string exportSQLDocumentInfo(SQLDocumentInfo&) { return {}; }
    virtual std::string exportSQLCanvasArea(SQLCanvasArea&) { return {}; }
    /// Neither is asked while the preference about ignored objects is off.
    [[nodiscard]] static bool canExportObject(const SQLObject& object);
    [[nodiscard]] static bool canLinkToObject(const SQLObject& object);
    /// Whether the script makes the object: not an ignored one, nor a kind that the dialect never writes.
    [[nodiscard]] bool isWritten(const SQLObject& object) const;

    // === tables and columns (generic_exporter_table.cpp)
    virtual std::string exportSQLTable(SQLTable& table);
    virtual SourceNodePtr fieldBlock(SQLTable& table);
    /// The item that a component's text makes in the list of a table; null for none.
    virtual SourceNodePtr componentItem(SQLTableComponent& component, const std::string& sql);
    /// A table's comment as a block on lines of its own.
    [[nodiscard]] SourceNodePtr tableCommentBlock(std::string_view comment) const;
    virtual std::string getCreateTableString(SQLTable& table);
    [[nodiscard]] virtual SQLTable::Components fieldListForTable(SQLTable& table);
    virtual std::string fieldComment(SQLTableComponent& component);
    [[nodiscard]] virtual bool isIgnoredTableComponent(SQLTableComponent& component);
    virtual std::string exportSQLTableComponent(SQLTableComponent& component);
    virtual std::string exportSQLField(SQLField& field);
    [[nodiscard]] virtual std::string fieldType(SQLField& field);
    virtual SourceNodePtr inlineCheckConstraint(SQLObject& object);
    /// Of the check that the object holds; empty when it has no name.
    [[nodiscard]] virtual std::string checkConstraintName(SQLObject& object);
    virtual SourceNodePtr primaryKeyBlock(SQLTable& table);
    [[nodiscard]] virtual OptionalText primaryKeyConstraintName(SQLTable& table);

    // === indexes (generic_exporter_index.cpp)
    virtual std::string exportSQLIndex(SQLIndex& index);
    virtual std::string exportSQLConstraint(SQLConstraint& constraint);
    virtual std::string createFieldIndexOnField(SQLField& field, SQLTable& table);
    virtual std::string createIndexStatement(SQLField& field, std::string_view indexName);
    virtual std::string createIndexIfNotDuplicate(SQLTable& table, SQLIndex& index);
    void clearIndexCache();
    virtual std::string indexSizeStringForField(SQLField& field, SQLIndex* index);
    /// The word in front of the index keyword; empty for a plain index.
    [[nodiscard]] virtual std::string indexTypeInScript(SQLIndex& index);
    std::string addIndex(SQLIndex& index) override;
    virtual std::string addIndex(SQLIndex& index, SQLTable& table);
    std::string addConstraint(SQLIndex& constraint) override;
    virtual std::string addConstraint(SQLIndex& constraint, SQLTable& table);

    // === statements behind all tables (generic_exporter_index.cpp)
    virtual Statements postLoadAsVectorSQLTable(SQLTable& table);
    virtual Statements postLoadAsVectorSQLTableComponent(SQLTableComponent& component, SQLTable& table);
    virtual Statements postLoadAsVectorSQLField(SQLField& field, SQLTable& table);
    virtual Statements postLoadAsVectorSQLIndex(SQLIndex& index, SQLTable& table);
    virtual Statements postLoadAsVectorSQLConstraint(SQLConstraint& constraint, SQLTable& table);
    virtual Statements postLoadAsVectorSQLForeignKey(SQLForeignKey& foreignKey, SQLTable& table);

    // === foreign keys (generic_exporter_foreign_key.cpp)
    virtual std::string exportSQLForeignKey(SQLForeignKey& key);
    virtual SourceNodePtr foreignKeyNode(SQLConnectable* key);
    virtual SourceNodePtr foreignKeyConstraintNameNode(SQLConnectable& key);
    [[nodiscard]] virtual OptionalText foreignKeyConstraintName(SQLConnectable& key);
    /// Dialects say here when a key is checked.
    virtual SourceNodePtr foreignKeyDeferredBlock(SQLConnectable& key, SQLConnectable* oldForeignKey);
    virtual SourceNodePtr foreignKeyAlterTableInstructionNode(SQLConnectable& key);
    /// Null when the key can be exported or `ignoreEmpty` is set.
    virtual SourceNodePtr foreignKeyErrorNode(SQLConnectable& key, bool ignoreEmpty);
    virtual SourceNodePtr getSQLForForeignKeyFieldNode(SQLConnectable& key, bool asExternalInstruction);
    std::string getSQLForForeignKeyField(SQLConnectable& key) {
        return nodeText(getSQLForForeignKeyFieldNode(key, false));
    }
    virtual std::string createForeignKey(SQLConnectable& key, ForeignKeyForm form);
    [[nodiscard]] virtual std::string getDeleteActionStringForCode(std::uint64_t code);
    [[nodiscard]] virtual std::string getUpdateActionStringForCode(std::uint64_t code);

    // === views (generic_exporter_view.cpp)
    [[nodiscard]] virtual std::string viewCreateStringPart(std::string_view name);
    virtual std::string exportSQLView(SQLView& view);
    /// The query as the view's definition holds it.
    [[nodiscard]] virtual std::string viewQuery(SQLView& view);
    virtual std::string dropSQLView(SQLView& view);
    virtual Statements postLoadAsVectorSQLView(SQLView& view);
    virtual std::string postLoadSQLView(SQLView& view);

protected:
    /// What the export of a container remembers until it ends.
    [[nodiscard]] virtual std::unique_ptr<ExportRun> newRun(SQLContainer& container);
    /// The statements behind all tables without the user's own, empty texts among them.
    Statements postLoadOfTables(SQLContainer& container);
    /// The statement that adds a key to its table.
    virtual std::string foreignKeyStatement(SQLConnectable& key);
    /// With the separator.
    [[nodiscard]] virtual std::string endedStatement(std::string_view sql);

private:
    std::unordered_map<std::string, std::unordered_set<std::string>> _indexCache;  // table uid to index names created
};

}  // namespace vellicor
