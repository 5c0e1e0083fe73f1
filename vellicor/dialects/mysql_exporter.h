// vellicor/dialects/mysql_exporter.h — MySQL.
#pragma once

#include <unordered_map>
#include <unordered_set>

#include "vellicor/export/generic_exporter.h"

namespace vellicor {

/// MySQL: table options, prefix sizes of indexes, names for the indexes of foreign keys, one CHANGE per altered column.
class MySQLExporter : public GenericSQLExporter {
public:
    void init() override;
    static std::shared_ptr<MySQLExporter> exporter() { return create<MySQLExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override { return create<MySQLExporter>(); }
    [[nodiscard]] std::string_view className() const override { return "MySQLExporter"; }

    // Answers
    [[nodiscard]] std::string getName() const override { return "MySQL (2)"; }
    [[nodiscard]] std::string getQuoteIdentifierString() const override { return "`"; }
    [[nodiscard]] bool usePrimaryKeyConstraintName() const override { return false; }
    [[nodiscard]] bool addForeignKeyConstraintName() const override { return true; }
    [[nodiscard]] std::uint64_t defaultDeleteAction() const override { return action::restrict_; }
    [[nodiscard]] std::uint64_t defaultUpdateAction() const override { return action::restrict_; }
    std::string fieldComment(SQLTableComponent&) override { return {}; }  // part of the column's definition instead
    [[nodiscard]] bool supportsIndexPrefixSize() const override { return true; }
    [[nodiscard]] bool useIndexPrefixSize() const override { return true; }
    [[nodiscard]] bool supportsIfNotExists() const override { return true; }
    [[nodiscard]] bool supportsViews() const override { return true; }
    [[nodiscard]] bool canUpdateViewWithStandardCommand() const override { return false; }
    [[nodiscard]] bool supportsIndexPostLoad() const override { return true; }
    [[nodiscard]] bool supportsInlineAutoIncrement() const override { return true; }
    [[nodiscard]] bool supportsCheckConstraints() const override { return false; }
    [[nodiscard]] std::span<const std::string_view> reservedWords() const override;
    [[nodiscard]] bool indexesStandInTable() const override { return false; }

    // Types (mysql_types.cpp)
    [[nodiscard]] static std::span<const std::string_view> getStringTypesList();
    [[nodiscard]] static std::span<const std::string_view> getOtherQuotableTypesList();
    [[nodiscard]] static std::span<const std::string_view> typesWithSize();
    [[nodiscard]] static std::span<const std::string_view> typesWithEntries();
    [[nodiscard]] static std::span<const std::string_view> typesWithoutSize();
    [[nodiscard]] static std::span<const std::string_view> typesSupportingCharacterSetAndCollation();
    [[nodiscard]] static std::span<const std::string_view> indexTypeRequiresPrefixSize();
    [[nodiscard]] std::string fieldType(SQLField& field) override;
    [[nodiscard]] bool fieldIsUnsigned(SQLField& field) const;
    [[nodiscard]] OptionalText requiredSizeForType(std::string_view type) override;
    [[nodiscard]] bool typeRequiresSize(std::string_view type) const;
    /// Kept: the same for every type.
    [[nodiscard]] std::string defaultSizeForType(std::string_view type) const;
    [[nodiscard]] bool typeHasSize(std::string_view type) override;
    [[nodiscard]] bool isStringType(std::string_view type) override;
    [[nodiscard]] bool isQuotableType(std::string_view type) const;
    /// True for the types whose indexes always get a prefix size.
    [[nodiscard]] virtual bool needsPrefixSize(std::string_view type) const;
    [[nodiscard]] bool shouldStripQuotesOnType(std::string_view type) const;

    // Names and values
    [[nodiscard]] bool objectNameRequiresQuoting(std::string_view name) override;
    [[nodiscard]] bool shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) override;
    std::string quoteDefaultValue(std::string_view value, SQLField& field) override;
    [[nodiscard]] std::string getDeleteActionStringForCode(std::uint64_t code) override;
    [[nodiscard]] std::string getUpdateActionStringForCode(std::uint64_t code) override;
    /// The comment as it stands between quotes. The preference "limitSQLCommentLength" has no effect.
    [[nodiscard]] virtual std::string formatComment(std::string_view comment, std::string_view type);
    /// A table's comment as it stands between quotes. Kept: it is escaped twice.
    [[nodiscard]] virtual std::string formatTableComment(const SQLTable& table);

    // Create script
    std::string exportSQLContainer(SQLContainer& container) override;
    std::string exportSQLTable(SQLTable& table) override;
    virtual SourceNodePtr tablePropertiesNode(SQLTable& table);
    std::string exportSQLField(SQLField& field) override { return exportSQLField(field, nullptr); }
    /// Against a database's column when there is one.
    virtual std::string exportSQLField(SQLField& field, SQLField* compareWith);
    [[nodiscard]] bool shouldDisplayNULL(SQLField& field) const;
    [[nodiscard]] virtual bool fieldCanSupportDefaultValue(SQLField& field) const;
    [[nodiscard]] bool fieldIsFirstAutoIncrement(SQLField& field) const;
    [[nodiscard]] bool fieldCanBeAutoIncrement(SQLField& field, SQLField* compareWith) const;
    [[nodiscard]] std::string viewCreateStringPart(std::string_view name) override;
    std::string dropTableInstruction(SQLTable& table) override;

    // Indexes and foreign keys (mysql_indexes.cpp)
    [[nodiscard]] bool shouldUseAlterTableForIndex() const;
    [[nodiscard]] bool overrideShouldUseAlterTableForIndex() const { return _overrideShouldUseAlterTableForIndex; }
    void setOverrideShouldUseAlterTableForIndex(bool flag) { _overrideShouldUseAlterTableForIndex = flag; }
    using GenericSQLExporter::addIndex;
    std::string addIndex(SQLIndex& index, SQLTable& table) override;
    std::string createFieldIndexOnField(SQLField& field, SQLTable& table) override;
    std::string createIndexStatement(SQLField& field, std::string_view indexName) override;
    std::string setIndex(SQLField& field, SQLIndex* index);
    std::string indexSizeStringForField(SQLField& field, SQLIndex* index) override;
    [[nodiscard]] bool shouldAddIndexForFK(SQLField& field, std::string_view indexName) const;
    [[nodiscard]] std::string getForeignKeyFieldIndexName(const SQLObject& object) const;
    std::string getUniqueForeignKeyName(const std::string& name);
    /// As it stands in the clause. Kept: it is not quoted.
    virtual std::string foreignKeyIndexName(SQLConnectable& key);
    SourceNodePtr foreignKeyNode(SQLConnectable* key) override;

    // Alter script (mysql_alter.cpp)
    Statements alterSQLTableAsVector(SQLTable& table, SQLTable& databaseTable, SQLObject* extra) override;
    std::string alterTableEngine(SQLTable& table, SQLTable& existingTable);
    std::string alterTableComment(SQLTable& table, SQLTable& existingTable);
    std::string alterAutoIncrement(SQLTable& table, SQLTable& curTable);
    SourceNodePtr alterPrimaryKeyForTable(SQLTable& table, SQLTable& databaseTable) override;
    Statements alterSQLFieldAsVector(SQLField& field, SQLField& databaseField, SQLObject* extra) override;
    std::string alterColumnSpecification(SQLField& field, SQLField& databaseField);
    std::string alterColumnInstruction(SQLField& field, SQLField& databaseField);
    [[nodiscard]] bool shouldAlterColumnComment(SQLField& field, SQLField& databaseField) const;
    std::string alterUniqueConstraint(SQLField& field, SQLField& dbField) override;
    Statements postLoadAlterSQLFieldAsVector(SQLField& field, SQLField& databaseField, SQLObject* extra) override;
    std::string dropSQLIndex(SQLIndex& index) override;
    std::string dropSQLIndexWithoutCheck(SQLIndex& index);
    [[nodiscard]] bool canDropIndex(SQLIndex& index);
    std::string dropSQLForeignKey(SQLForeignKey& key) override;
    std::string dropForeignKey(SQLConnectable& key) override;

    /// Kept: white space around the type stays.
    [[nodiscard]] std::string indexTypeInScript(SQLIndex& index) override;

protected:
    /// The name of a column's index. Kept: it is quoted before a suffix is put behind it, and again with the suffix.
    [[nodiscard]] virtual std::string columnIndexName(SQLTable& table, std::string_view name,
                                                      const OptionalText& suffix);
    /// What DROP FOREIGN KEY names. Kept: the id of a column's key is not quoted.
    [[nodiscard]] virtual std::string keyToDrop(SQLConnectable& key);
    /// Kept: neither name is quoted.
    [[nodiscard]] virtual std::string dropUniqueIndexInstruction(SQLTable& table, const std::string& indexName);

private:
    [[nodiscard]] bool columnChanges(SQLField& field, SQLField& databaseField, bool typeDiffers);

    std::unordered_set<std::string> _fkIndexList;                        // names handed out during one export
    std::unordered_map<std::string, std::size_t> _nextNumberForFkIndex;  // first number to try behind a name
    bool _overrideShouldUseAlterTableForIndex = false;
};

}  // namespace vellicor
