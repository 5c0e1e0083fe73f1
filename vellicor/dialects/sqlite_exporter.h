// vellicor/dialects/sqlite_exporter.h — SQLite.
#pragma once

#include <string>
#include <unordered_map>

#include "vellicor/export/generic_exporter.h"

namespace vellicor {

/// SQLite: all that CREATE TABLE can hold goes inline; most ALTERs answer nothing or say why.
class SQLiteExporter final : public GenericSQLExporter {
public:
    static std::shared_ptr<SQLiteExporter> exporter() { return create<SQLiteExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override { return create<SQLiteExporter>(); }
    [[nodiscard]] std::string_view className() const override { return "SQLiteExporter"; }

    // Answers
    [[nodiscard]] std::string getName() const override { return "SQLite"; }
    [[nodiscard]] std::string getQuoteIdentifierString() const override { return "\""; }
    [[nodiscard]] std::string getQuoteDefaultString() const override { return "'"; }
    [[nodiscard]] std::string autoIncrementKeyword() override { return "AUTOINCREMENT"; }
    [[nodiscard]] bool supportsIndexPostLoad() const override { return true; }
    [[nodiscard]] bool supportsInlineAutoIncrement() const override { return true; }
    [[nodiscard]] bool supportsIfNotExists() const override { return true; }
    [[nodiscard]] bool supportsIfNotExistsSQLIndex() const override { return true; }
    [[nodiscard]] bool supportsViews() const override { return true; }
    [[nodiscard]] bool usePrimaryKeyConstraintName() const override { return false; }
    [[nodiscard]] bool supportsIndexPrefixSize() const override { return false; }
    [[nodiscard]] bool supportsDropSQLConstraint() const override { return false; }
    [[nodiscard]] bool addForeignKeyConstraintName() const override { return false; }
    [[nodiscard]] bool supportsDropIfExists() const override { return true; }
    [[nodiscard]] bool supportsIndexType(std::string_view type) const override { return type == "UNIQUE"; }
    [[nodiscard]] bool runsOnlyQuoted(std::string_view name) const override;
    [[nodiscard]] std::span<const std::string_view> reservedWords() const override;

    // Silences: what SQLite cannot do, or holds inline already
    std::string exportSQLIndex(SQLIndex&) override { return {}; }
    std::string alterType(SQLField&, SQLField&) override { return {}; }
    std::string alterPrimaryKey(SQLField&, SQLField&) override { return {}; }
    std::string dropForeignKey(SQLConnectable&) override { return {}; }
    std::string dropSQLForeignKey(SQLForeignKey&) override { return {}; }
    SourceNodePtr alterPrimaryKeyForTable(SQLTable&, SQLTable&) override { return QVSourceNode::node(); }
    SourceNodePtr alterDropForeignKeysReferencingPrimaryKey(SQLTable&, SQLTable&) override {
        return QVSourceNode::node();
    }
    Statements postLoadAsVectorSQLForeignKey(SQLForeignKey&, SQLTable&) override { return {}; }

    // Statements
    std::string exportSQLContainer(SQLContainer& container) override;
    /// SQLite has no schemas: in runnable scripts schema and name make one name, in queries of views too.
    std::string getCanonicalNameWithLinkString(SQLTable& table, std::string_view linkString) override;
    [[nodiscard]] std::string viewQuery(SQLView& view) override;
    [[nodiscard]] SQLTable::Components fieldListForTable(SQLTable& table) override;
    std::string exportSQLField(SQLField& field) override;
    SourceNodePtr primaryKeyBlock(SQLTable& table) override;
    std::string quoteDefaultValue(std::string_view value, SQLField& field) override;
    /// Indexes share the names of the tables.
    std::string indexNameInScript(SQLTable&, std::string_view name) override { return nameInScript("", name); }
    void reserveTableName(SQLTable& table) override { nameInScript("", table.fullyQualifiedNameForIndexNames()); }
    std::string withoutForeignKeyChecks(std::string_view statements) override;
    [[nodiscard]] std::string userBlock(std::string_view block) override;
    [[nodiscard]] bool fieldIsIntegerType(const SQLField& field) const;
    [[nodiscard]] bool fieldIsFirstIntegerPK(const SQLField& field) const;
    std::string exportSQLForeignKey(SQLForeignKey& key) override;
    std::string addIndex(SQLIndex& index, SQLTable& table) override;
    using GenericSQLExporter::addIndex;
    Statements postLoadAsVectorSQLField(SQLField& field, SQLTable& table) override;
    [[nodiscard]] std::string prefixForIndexedProperty(SQLField& field) override;
    std::string dropIndex(SQLField& field, SQLTable& table) override;
    std::string alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) override;
    std::string dropSQLField(SQLField& field) override;
    std::string dropSQLConstraint(SQLConstraint& constraint) override;
    std::string addSQLConstraint(SQLConstraint& constraint) override;

private:
    std::unordered_map<std::string, std::string> _canonicalNames;  // by lower-cased qualified name, for one export
};

}  // namespace vellicor
