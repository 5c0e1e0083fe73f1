// vellicor/export/generic_exporter.h — create and alter scripts in a neutral dialect; the parent of every dialect.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "vellicor/export/dispatch.h"
#include "vellicor/export/source_node.h"
#include "vellicor/model/connectable.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/export_dialect.h"
#include "vellicor/model/table.h"

namespace vellicor {

class PrimaryKeyReferences;

/// How a foreign key's clause is asked for.
struct ForeignKeyForm {
    bool asExternalInstruction = true;     ///< an ALTER TABLE statement, otherwise the bare clause
    bool isInstructionComparison = false;  ///< accepted and not read
};

/// Turns a document into a create script and the difference of two objects into ALTER statements. Dialects override
/// single answers and operations; what they do not override behaves as here. An exporter belongs to one thread.
class GenericSQLExporter : public SQLExportDialect {
public:
    void init() override;
    static std::shared_ptr<GenericSQLExporter> exporter() { return create<GenericSQLExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override {
        return create<GenericSQLExporter>();
    }
    [[nodiscard]] std::string_view className() const override { return "GenericSQLExporter"; }

    // === answers: what dialects override most ===
    [[nodiscard]] std::string getName() const override { return "Generic SQL"; }
    [[nodiscard]] bool isDisplayable() const override { return true; }
    [[nodiscard]] virtual std::string instructionSeparator() { return ";"; }
    [[nodiscard]] std::string getInstructionSeparator() override { return instructionSeparator(); }
    [[nodiscard]] virtual std::string autoIncrementKeyword() { return "AUTO_INCREMENT"; }
    [[nodiscard]] virtual std::string getIndexKeyword(SQLIndex&) { return "INDEX"; }
    [[nodiscard]] virtual bool supportsIfNotExists() const { return false; }
    [[nodiscard]] virtual bool supportsIfNotExistsSQLIndex() const { return false; }
    [[nodiscard]] virtual bool supportsCheckConstraints() const { return true; }
    [[nodiscard]] virtual bool usePrimaryKeyConstraintName() const { return true; }
    [[nodiscard]] virtual bool supportsInlineAutoIncrement() const { return true; }
    [[nodiscard]] virtual bool useIndexPrefixSize() const { return false; }
    [[nodiscard]] virtual bool supportsIndexPrefixSize() const { return false; }
    [[nodiscard]] virtual bool supportsIndexPostLoad() const { return false; }
    [[nodiscard]] virtual bool shouldPrefixFieldLevelIndexNames() const { return true; }
    [[nodiscard]] virtual bool addForeignKeyConstraintName() const { return true; }
    [[nodiscard]] virtual bool dialectRequiresGloballyUniqueIndexes() const { return false; }
    /// 0 leaves the case of type names as it is.
    [[nodiscard]] virtual int requiredCaseForTypes() const { return 0; }
    [[nodiscard]] virtual bool fieldTypeAllowsTimeZone(std::string_view) { return true; }
    [[nodiscard]] virtual bool checkIndexValid(SQLIndex&) { return true; }
    [[nodiscard]] virtual bool supportsAlterSQLIndex() const { return true; }
    [[nodiscard]] virtual bool supportsDropSQLConstraint() const { return true; }
    [[nodiscard]] virtual std::uint64_t defaultDeleteAction() const { return action::noAction; }
    [[nodiscard]] virtual std::uint64_t defaultUpdateAction() const { return action::noAction; }
    /// True for exactly this class; a dialect says so itself.
    [[nodiscard]] virtual bool supportsViews() const;
    [[nodiscard]] virtual bool canUpdateViewWithStandardCommand() const { return false; }
    [[nodiscard]] virtual bool requiresOwnershipForAlter() const { return false; }
    [[nodiscard]] virtual bool isStringType(std::string_view type);
    // Asked in runnable scripts only:
    [[nodiscard]] virtual bool supportsDropIfExists() const { return false; }
    [[nodiscard]] virtual bool supportsTablesWithoutColumns() const { return false; }
    /// True when the script makes a schema of this name where there is none yet.
    [[nodiscard]] virtual bool createsSchema(std::string_view) const { return false; }
    /// The type is in upper case.
    [[nodiscard]] virtual bool supportsIndexType(std::string_view) const { return true; }
    /// True for a name that the server refuses without quotes.
    [[nodiscard]] virtual bool runsOnlyQuoted(std::string_view) const { return false; }
    virtual void configureDialectSpecficInterface() {}
    /// The rows by which operations are found; a subclass that adds operations answers its own table.
    [[nodiscard]] virtual const DispatchTables& dispatchTables() const;

    // === settings ===
    void configureForExport() override;
    [[nodiscard]] virtual bool useQuotedIdentifier() const { return _useQuotedIdentifier; }
    void setUseQuotedIdentifier(bool flag) { _useQuotedIdentifier = flag; }
    [[nodiscard]] bool shouldPrefixIndexNames() const { return _shouldPrefixIndexNames; }
    void setShouldPrefixIndexNames(bool flag) { _shouldPrefixIndexNames = flag; }
    [[nodiscard]] bool autoQuoteIdentifiersWithWhitespace() const { return _autoQuoteIdentifiersWithWhitespace; }
    void setAutoQuoteIdentifiersWithWhitespace(bool flag) { _autoQuoteIdentifiersWithWhitespace = flag; }
    [[nodiscard]] std::int32_t indentSize() const { return _indentSize; }
    void setIndentSize(std::int32_t blanks) { _indentSize = blanks; }
    [[nodiscard]] std::string indent() const;
    [[nodiscard]] bool shouldIncludeTitleHeader() const;
    /// True when scripts must run on the dialect's own server rather than be the classic text; every place that differs
    /// asks here.
    [[nodiscard]] static bool writesRunnableScripts();
    [[nodiscard]] std::shared_ptr<SQLExportDialect> currentExporter() const override { return _currentExporter; }
    void setCurrentExporter(std::shared_ptr<SQLExportDialect> exporter) override {
        _currentExporter = std::move(exporter);
    }
    void setDocumentInfo(std::shared_ptr<SQLDocumentInfo> info) override { _documentInfo = std::move(info); }
    [[nodiscard]] const std::shared_ptr<SQLDocumentInfo>& documentInfo() const { return _documentInfo; }
    /// A connection's metadata makes this an exporter to a live database; its product is logged.
    void setJDBCMetaData(std::shared_ptr<DatabaseMetaData> metaData) override;
    [[nodiscard]] const std::shared_ptr<DatabaseMetaData>& jdbcMetaData() const { return _jdbcMetaData; }
    [[nodiscard]] bool isJDBCExporter() const { return _isJDBCExporter; }
    [[nodiscard]] SQLContainer* exportContainer() const { return _exportContainer; }
    [[nodiscard]] bool addExplicitDeferrable() const { return _addExplicitDeferrable; }
    void setAddExplicitDeferrable(bool flag) { _addExplicitDeferrable = flag; }
    /// False while a live database already holds the index.
    [[nodiscard]] bool shouldExportIndex(SQLIndex& index);
    void clearIndexCache();

    // === dispatch by class name (generic_exporter_dispatch.cpp) ===
    std::string export_(SQLObject& object) override;
    std::string drop(SQLObject& object) override;
    std::string postLoad(SQLObject& object) override;
    std::string getCanonicalName(SQLObject& object) override;
    std::string prologue(SQLObject& object);
    Statements postLoadAsVector(SQLObject& object) override;
    /// Silent when the class has no such operation.
    Statements postLoadAsVector(SQLObject& object, SQLTable& table) override;
    using SQLExportDialect::alterAsVector;  // Kept: the form with two arguments stays the root's, which answers nothing
    Statements alterAsVector(SQLObject& object, SQLObject& oldObject, SQLObject* extra) override;
    /// Silent when the class has no such operation.
    Statements postLoadAlterAsVector(SQLObject& object, SQLObject& oldObject);
    [[nodiscard]] static bool canExportObject(const SQLObject& object);
    [[nodiscard]] static bool canLinkToObject(const SQLObject& object);

    // === create script: document (generic_exporter_container.cpp) ===
    virtual std::string exportSQLContainer(SQLContainer& container);
    virtual std::string prologueSQLContainer(SQLContainer& container);
    /// The tables in the order in which they are dropped: those that reference a table stand before it.
    [[nodiscard]] std::vector<SQLTable*> tablesInDropOrder(SQLContainer& container);
    /// The tables with keys to this one. Classic text minds the keys of single columns only.
    [[nodiscard]] std::vector<SQLTable*> referencingTables(const SQLTable& table) const;
    void addTablesLinkedToTable(SQLTable& table, std::vector<SQLTable*>& tables,
                                std::unordered_set<const SQLTable*>& visited);
    virtual std::string dropSQLTable(SQLTable& table);
    virtual std::string dropTableInstruction(SQLTable& table);
    virtual std::string postLoadSQLContainer(SQLContainer& container);
    virtual Statements postLoadAsVectorSQLContainer(SQLContainer& container);
    virtual std::string exportSQLDocumentInfo(SQLDocumentInfo&) { return {}; }
    virtual std::string exportSQLCanvasArea(SQLCanvasArea&) { return {}; }

    // === create script: table and column (generic_exporter_table.cpp) ===
    virtual std::string exportSQLTable(SQLTable& table);
    virtual SourceNodePtr fieldBlock(SQLTable& table);
    /// A table's comment as a block on lines of its own.
    [[nodiscard]] SourceNodePtr tableCommentBlock(std::string_view comment) const;
    virtual std::string getCreateTableString(SQLTable& table);
    [[nodiscard]] virtual SQLTable::Components fieldListForTable(SQLTable& table);
    [[nodiscard]] virtual std::string schemaNameForTable(SQLTable& table);
    virtual std::string fieldComment(SQLTableComponent& component);
    /// "/*…*/" around the trimmed comment; empty for a blank one.
    [[nodiscard]] std::string quoteComment(std::string_view comment) const;
    /// The text as it may stand inside a comment block.
    [[nodiscard]] std::string commentText(std::string_view comment) const;
    [[nodiscard]] virtual bool isIgnoredTableComponent(SQLTableComponent& component);
    virtual std::string exportSQLTableComponent(SQLTableComponent& component);
    virtual std::string exportSQLField(SQLField& field);
    [[nodiscard]] virtual std::string fieldType(SQLField& field);
    virtual SourceNodePtr inlineCheckConstraint(SQLObject& object);
    virtual SourceNodePtr primaryKeyBlock(SQLTable& table);
    [[nodiscard]] virtual OptionalText primaryKeyConstraintName(SQLTable& table);

    // === indexes (generic_exporter_index.cpp) ===
    virtual std::string exportSQLIndex(SQLIndex& index);
    virtual std::string exportSQLConstraint(SQLConstraint& constraint);
    virtual std::string createFieldIndexOnField(SQLField& field, SQLTable& table);
    [[nodiscard]] virtual std::string getIndexNameForFieldIndexed(SQLField& field);
    virtual std::string createIndexStatement(SQLField& field, std::string_view indexName);
    virtual std::string createIndexIfNotDuplicate(SQLTable& table, SQLIndex& index);
    virtual std::string indexSizeStringForField(SQLField& field, SQLIndex* index);
    std::string addIndex(SQLIndex& index) override;
    virtual std::string addIndex(SQLIndex& index, SQLTable& table);
    std::string addConstraint(SQLIndex& constraint) override;
    virtual std::string addConstraint(SQLIndex& constraint, SQLTable& table);
    [[nodiscard]] virtual std::string prefixForIndexedProperty(SQLField&) { return {}; }

    // === post-load statements ===
    virtual Statements postLoadAsVectorSQLTable(SQLTable& table);
    virtual Statements postLoadAsVectorSQLTableComponent(SQLTableComponent& component, SQLTable& table);
    virtual Statements postLoadAsVectorSQLField(SQLField& field, SQLTable& table);
    virtual Statements postLoadAsVectorSQLIndex(SQLIndex& index, SQLTable& table);
    virtual Statements postLoadAsVectorSQLConstraint(SQLConstraint& constraint, SQLTable& table);
    virtual Statements postLoadAsVectorSQLForeignKey(SQLForeignKey& foreignKey, SQLTable& table);

    // === foreign keys (generic_exporter_foreign_key.cpp) ===
    virtual std::string exportSQLForeignKey(SQLForeignKey&) { return {}; }
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

    // === views (generic_exporter_view.cpp) ===
    [[nodiscard]] virtual std::string viewCreateStringPart(std::string_view name);
    virtual std::string exportSQLView(SQLView& view);
    /// The query as the view's definition holds it.
    [[nodiscard]] virtual std::string viewQuery(SQLView& view);
    virtual std::string dropSQLView(SQLView& view);
    virtual Statements postLoadAsVectorSQLView(SQLView& view);
    virtual std::string postLoadSQLView(SQLView& view);
    virtual std::string changeOwnerToCurrent(SQLObject&) { return {}; }
    virtual Statements alterSQLViewAsVector(SQLView& view, SQLView& oldView, SQLObject* extra);

    // === names and values (generic_exporter_quoting.cpp) ===
    [[nodiscard]] virtual std::string getQuoteIdentifierString() const { return "'"; }
    [[nodiscard]] virtual std::string getStartingQuoteIdentifierString() const { return getQuoteIdentifierString(); }
    [[nodiscard]] virtual std::string getEndingQuoteIdentifierString() const { return getQuoteIdentifierString(); }
    [[nodiscard]] virtual std::string getQuoteDefaultString() const { return "'"; }
    [[nodiscard]] virtual bool replaceSpacesInIdentifier() const { return true; }
    /// Upper-case words in the dialect's own order. Empty for a dialect without a list.
    [[nodiscard]] virtual std::span<const std::string_view> reservedWords() const;
    std::string quoteIdentifier(std::string_view name) override;
    virtual std::string& quoteIdentifierAsMutableString(std::string& name);
    virtual void quoteString(std::string& name);
    [[nodiscard]] virtual bool objectNameRequiresQuoting(std::string_view name);
    [[nodiscard]] bool quoteReservedWord(std::string_view name);
    std::vector<std::string> quoteAllMembers(const std::vector<std::string>& names) override;
    virtual std::string getCanonicalNameSQLField(SQLField& field);
    virtual std::string getCanonicalNameSQLIndex(SQLIndex& index);
    virtual std::string getCanonicalNameSQLConstraint(SQLConstraint& constraint);
    virtual std::string getCanonicalNameSQLTable(SQLTable& table);
    virtual std::string getCanonicalNameSQLView(SQLView& view);
    virtual std::string getCanonicalNameWithLinkString(SQLTable& table, std::string_view linkString);
    std::string getNameForIndexWithIndex(SQLTable& table, SQLIndex& index) override;
    std::string getNameForIndex(SQLTable& table, std::string_view name);
    std::string getNameForIndex(SQLTable& table, std::string_view name, const OptionalText& suffix);
    std::string getNameForIndex(SQLTable& table, std::string_view name, const OptionalText& suffix,
                                bool quotes) override;
    virtual std::string quoteDefaultValue(std::string_view value, SQLField& field);
    [[nodiscard]] virtual bool shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field);
    virtual std::string addDefaultQuotes(std::string_view value);
    [[nodiscard]] std::string escapeQuoteCharacter(std::string_view text);
    [[nodiscard]] std::string escapeQuoteCharacter(std::string_view text, std::string_view quoteCharSet);
    [[nodiscard]] std::string addQuotes(std::string_view text);
    std::string quoteForSQL(std::string_view text) { return quoteForSQL(text, false); }
    virtual std::string quoteForSQL(std::string_view text, bool force);

    // === runnable scripts (generic_exporter_runnable.cpp) ===
    /// A default value as a literal that servers read back as it is meant: quotes inside are doubled. A value that
    /// already stands in quotes keeps them.
    [[nodiscard]] static std::string runnableLiteral(std::string_view value);
    /// Any text as such a literal.
    [[nodiscard]] static std::string runnableTextLiteral(std::string_view content);
    /// An expression as a default: in parentheses unless it is one word, number or literal.
    [[nodiscard]] static std::string runnableExpression(std::string_view value);
    /// The quoted name of an index in the statement that makes it.
    std::string nameForIndexStatement(SQLTable& table, std::string_view name);
    /// The name itself, or numbered when the server would find it taken. The same for constraints of a table.
    virtual std::string indexNameInScript(SQLTable&, std::string_view name) { return std::string(name); }
    virtual std::string constraintNameInScript(SQLTable&, std::string_view name) { return std::string(name); }
    /// Keeps the table's own name from indexes, where both share one list of names.
    virtual void reserveTableName(SQLTable&) {}
    /// Empty for a plain index and for a type that the server does not know.
    [[nodiscard]] std::string indexTypeInScript(SQLIndex& index);
    /// The user's own statements as they stand in the script.
    [[nodiscard]] virtual std::string userBlock(std::string_view block);
    /// With the separator, which no remark at the end hides.
    [[nodiscard]] std::string endedStatement(std::string_view sql);
    /// Statements that drop tables which reference each other in a circle.
    [[nodiscard]] virtual std::string withoutForeignKeyChecks(std::string_view statements) {
        return std::string(statements);
    }

    // === alter scripts: tables, columns, indexes (generic_exporter_alter.cpp) ===
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
    /// The quoted name under which an index is dropped; for a column's index it is logged.
    [[nodiscard]] std::string nameOfExistingIndex(SQLIndex& index);
    [[nodiscard]] std::string nameOfExistingIndex(SQLField& field, SQLTable& table);

    // === alter scripts: keys (generic_exporter_alter_keys.cpp) ===
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

    // === bookkeeping of alter scripts; `AlterRun` calls the first two ===
    void beginAlterRun(const SQLContainer& database, const PrimaryKeyReferences& references);
    void endAlterRun();
    [[nodiscard]] const std::vector<std::shared_ptr<SQLObject>>& droppedObjects() const { return _droppedObjects; }
    [[nodiscard]] const std::vector<std::shared_ptr<SQLObject>>& addedObjects() const { return _addedObjects; }

    /// The text of a tree; empty for null.
    [[nodiscard]] static std::string nodeText(const SourceNodePtr& node);

protected:
    /// "ALTER TABLE", the table's canonical name and "ADD" or whatever follows, as words of one node.
    SourceNodePtr alterTableNode(SQLTable& table, std::initializer_list<std::string_view> words);
    /// A parenthesised list of quoted names without blanks.
    SourceNodePtr quotedNameList(const std::vector<std::string>& names);
    /// The table of a component, as statements need it; asserts that there is one.
    static SQLTable& tableOf(SQLTableComponent& component);
    /// The canonical name of a component's table; empty while the component stands in none.
    [[nodiscard]] std::string canonicalTableName(SQLTableComponent& component);
    [[nodiscard]] bool wasDropped(const SQLConnectable& key) const { return _droppedForeignKeys.contains(&key); }
    void markDropped(SQLConnectable& key);
    /// Says in a comment that a key must go whose name nobody knows.
    [[nodiscard]] std::string unknownForeignKeyComment(SQLConnectable& key, std::string_view keyName);
    void logDropIndexName(std::string_view indexName, const SQLField& field);

    /// Whether the preferences let a name be quoted that is no plain word, or a reserved one.
    [[nodiscard]] bool isRefusedBare(std::string_view name, bool isReservedWord) const;
    /// Without regard to case. A list that was asked for keeps its words while this exporter lives.
    [[nodiscard]] bool containsWord(std::span<const std::string_view> words, std::string_view name) const;
    /// The name, or a numbered one when this script has used it in the scope already.
    std::string nameInScript(std::string_view scope, std::string_view name);
    /// A comment in place of a table that the server refuses to make; empty when it can.
    [[nodiscard]] std::string missingColumnsRemark(SQLTable& table);
    /// "IF EXISTS " in runnable scripts where the dialect has it.
    [[nodiscard]] std::string ifExists() const {
        return writesRunnableScripts() && supportsDropIfExists() ? "IF EXISTS " : "";
    }

    /// "IF NOT EXISTS " when the preference asks for it and no live database is written to.
    [[nodiscard]] std::string ifNotExists(bool supported) const;
    friend class ExporterCommon;

private:
    std::string runnablePrologue(SQLContainer& container);
    std::string dropInstructions(SQLContainer& container);
    /// Views behind everything else, each behind the views that its query names.
    void putViewsLast(SQLContainer::Objects& objects);
    void putForeignKeysLast(Statements& statements);
    std::string foreignKeyStatement(SQLConnectable& key);
    void clearNamesInScript(SQLContainer& container);
    /// A check that the dialect never writes: runnable scripts neither add nor drop it.
    [[nodiscard]] bool isNeverWritten(const SQLConstraint& constraint) const;

    struct ForeignKeyChange {
        std::string drop;  // a statement without separator
        std::string add;   // a statement with separator, trimmed
    };
    ForeignKeyChange foreignKeyChange(SQLField& field, SQLField& databaseField);
    /// A column's key in the form that both sides are compared in; empty when it has none.
    std::string foreignKeyClause(SQLField& field);
    std::string createReference(SQLConnectable& key);
    std::vector<SQLConnectable*> foreignKeysReferencing(const SQLTable& table) const;

    std::shared_ptr<SQLExportDialect> _currentExporter;  // the side that holds the database's state; null when none
    std::shared_ptr<DatabaseMetaData> _jdbcMetaData;     // null unless writing to a live database
    std::shared_ptr<SQLDocumentInfo> _documentInfo;      // null: taken from the container
    bool _isJDBCExporter = false;
    bool _useQuotedIdentifier = true;
    bool _shouldPrefixIndexNames = false;
    bool _autoQuoteIdentifiersWithWhitespace = false;
    std::int32_t _indentSize = 0;
    std::unordered_map<std::string, std::unordered_set<std::string>> _indexCache;   // table uid to index names created
    std::unordered_set<std::string> _namesInScript;                                 // scope, line feed, folded name
    std::unordered_map<std::string, std::size_t> _nextNumbersInScript;              // by the same
    std::unordered_map<const SQLTable*, std::vector<SQLTable*>> _referencingByKey;  // while drop statements are made
    std::unordered_set<std::string> _foreignKeyStatements;  // of the post-load statements being collected
    // Copies of the word lists, by address: a dialect may make its list when it is made itself.
    mutable std::unordered_map<const std::string_view*, std::unordered_set<std::string>> _wordSets;
    bool _addExplicitDeferrable = false;
    SQLContainer* _exportContainer = nullptr;  // only while an export runs
    std::vector<std::shared_ptr<SQLObject>> _droppedObjects;
    std::vector<std::shared_ptr<SQLObject>> _addedObjects;
    // Keys already dropped, found by identity and kept alive so that no other key takes their address.
    std::unordered_map<const SQLConnectable*, std::shared_ptr<SQLObject>> _droppedForeignKeys;
    const SQLContainer* _databaseContainer = nullptr;             // only while a run lives
    const PrimaryKeyReferences* _primaryKeyReferences = nullptr;  // of that document
};

}  // namespace vellicor
