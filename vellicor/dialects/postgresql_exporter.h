// vellicor/dialects/postgresql_exporter.h — PostgreSQL, and Redshift, which differs from it in its name.
#pragma once

#include "vellicor/export/generic_exporter.h"

namespace vellicor {

/// PostgreSQL: SERIAL for auto-increment, UNIQUE as constraints, comments as statements of their own, one ALTER COLUMN
/// per attribute.
class PostgresqlExporter : public GenericSQLExporter {
public:
    static std::shared_ptr<PostgresqlExporter> exporter() { return create<PostgresqlExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override {
        return create<PostgresqlExporter>();
    }
    [[nodiscard]] std::string_view className() const override { return "PostgresqlExporter"; }

    // Answers
    [[nodiscard]] std::string getName() const override { return "Postgres"; }
    [[nodiscard]] std::string getQuoteIdentifierString() const override { return "\""; }
    [[nodiscard]] std::string getQuoteDefaultString() const override { return "'"; }
    [[nodiscard]] bool addForeignKeyConstraintName() const override { return true; }
    [[nodiscard]] int requiredCaseForTypes() const override { return 2; }
    [[nodiscard]] bool supportsAlterSQLConstraint() const override { return true; }
    [[nodiscard]] bool supportsIndexPostLoad() const override { return true; }
    [[nodiscard]] bool supportsInlineAutoIncrement() const override { return false; }
    [[nodiscard]] bool supportsViews() const override { return true; }
    [[nodiscard]] bool requiresOwnershipForAlter() const override { return false; }
    [[nodiscard]] bool supportsDropIfExists() const override { return true; }
    [[nodiscard]] bool supportsTablesWithoutColumns() const override { return true; }
    [[nodiscard]] bool createsSchema(std::string_view name) const override { return name != "public"; }
    [[nodiscard]] bool supportsIndexType(std::string_view type) const override { return type == "UNIQUE"; }
    [[nodiscard]] bool runsOnlyQuoted(std::string_view name) const override;
    [[nodiscard]] std::string getIndexKeyword(SQLIndex& index) override;
    [[nodiscard]] std::span<const std::string_view> reservedWords() const override;
    std::string exportSQLIndex(SQLIndex&) override { return {}; }  // indexes are statements of their own

    // Types
    [[nodiscard]] bool typeHasSize(std::string_view type) override;
    [[nodiscard]] bool fieldTypeAllowsTimeZone(std::string_view type) override;
    [[nodiscard]] std::string fieldType(SQLField& field) override;

    // Names and values
    [[nodiscard]] bool objectNameRequiresQuoting(std::string_view name) override;
    [[nodiscard]] std::string schemaNameForTable(SQLTable& table) override;
    [[nodiscard]] OptionalText primaryKeyConstraintName(SQLTable& table) override;
    [[nodiscard]] bool shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) override;
    /// Lower-case values that are never quoted.
    [[nodiscard]] virtual std::span<const std::string_view> defaultValuesNotQuotableForField(SQLField& field) const;
    /// Functions that are never quoted, also with a precision in parentheses.
    [[nodiscard]] virtual std::span<const std::string_view> defaultValuesRegularExpressionsNotQuotable() const;
    [[nodiscard]] bool defaultMatchesRegexForField(SQLField& field, std::string_view defaultValue) const;
    std::string addDefaultQuotes(std::string_view value) override;
    /// Indexes share the names of the tables of a schema.
    std::string indexNameInScript(SQLTable& table, std::string_view name) override;
    std::string constraintNameInScript(SQLTable& table, std::string_view name) override;
    /// Of a constraint that brings an index of the same name along.
    std::string nameOfKeyInScript(SQLTable& table, std::string_view name);
    void reserveTableName(SQLTable& table) override { nameInScript(schemaNameForTable(table), table.getBaseName()); }
    [[nodiscard]] OptionalText foreignKeyConstraintName(SQLConnectable& key) override;

    // Create script
    std::string exportSQLTable(SQLTable& table) override;
    virtual SourceNodePtr tablePropertiesNode(SQLTable& table);
    std::string exportSQLField(SQLField& field) override;
    /// Nothing calls it: tables are dropped by `dropTableInstruction`.
    std::string dropTable(SQLTable& table);
    std::string dropTableInstruction(SQLTable& table) override;
    using GenericSQLExporter::addConstraint;
    using GenericSQLExporter::addIndex;
    std::string addIndex(SQLIndex& index, SQLTable& table) override;
    std::string addConstraint(SQLIndex& constraint, SQLTable& table) override;
    virtual SourceNodePtr addConstraintBlock(SQLIndex& constraint);
    SourceNodePtr foreignKeyDeferredBlock(SQLConnectable& key, SQLConnectable* oldForeignKey) override;
    virtual SourceNodePtr constraintDeferrableBlock(SQLIndex& constraint, SQLIndex* oldIndex);

    // Comments as statements
    virtual std::string postgresComment(SQLObject& object);
    virtual std::string alterPostgresComment(SQLObject& object, SQLObject* curObject);
    Statements postLoadAsVectorSQLTable(SQLTable& table) override;
    Statements postLoadAsVectorSQLTableComponent(SQLTableComponent& component, SQLTable& table) override;
    Statements postLoadAsVectorSQLField(SQLField& field, SQLTable& table) override;
    Statements postLoadAlterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject* extra) override;

    // Alter script
    Statements alterSQLTableAsVector(SQLTable& table, SQLTable& curTable, SQLObject* extra) override;
    virtual std::string alterTablespace(SQLTable& table, SQLTable& curTable);
    Statements alterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject* extra) override;
    std::string alterPrimaryKey(SQLField& field, SQLField& curField) override;
    std::string alterType(SQLField& field, SQLField& curField) override;
    virtual std::string alterNotNull(SQLField& field, SQLField& curField);
    virtual std::string alterDefault(SQLField& field, SQLField& curField);
    SourceNodePtr dropPrimaryKeyInstruction(SQLTable& table) override;
    std::string dropIndex(SQLField& field, SQLTable& table) override;
    std::string dropSQLIndex(SQLIndex& index) override;
    std::string alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) override;
    std::string alterSQLConstraint(SQLConstraint& constraint, SQLConstraint& oldConstraint) override;
    std::string dropForeignKey(SQLConnectable& key) override;
    std::string dropForeignKey(SQLTable& table, SQLConnectable& key);
    std::string changeOwnerToCurrent(SQLObject& object) override;

private:
    /// "ALTER TABLE … ALTER COLUMN …" and the words; empty for a column without a table.
    std::string alterColumnStatement(SQLField& field, std::initializer_list<std::string_view> words);
    std::string dropIndexInstruction(SQLTable& table, std::string_view quotedName);
    /// Whether or not the object has a comment.
    std::string commentStatement(SQLObject& object);
    /// SET or DROP, as the column has a default or none.
    std::string defaultStatement(SQLField& field);
    [[nodiscard]] static bool isTextType(std::string_view type);
};

class RedshiftExporter final : public PostgresqlExporter {
public:
    static std::shared_ptr<RedshiftExporter> exporter() { return create<RedshiftExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override { return create<RedshiftExporter>(); }
    [[nodiscard]] std::string_view className() const override { return "RedshiftExporter"; }
    [[nodiscard]] std::string getName() const override { return "Redshift"; }
};

}  // namespace vellicor
