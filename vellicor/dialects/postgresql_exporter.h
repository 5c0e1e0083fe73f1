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
    [[nodiscard]] std::string getIndexKeyword(SQLIndex& index) override;
    [[nodiscard]] std::span<const std::string_view> reservedWords() const override;
    [[nodiscard]] bool indexesStandInTable() const override { return false; }

    // Types
    [[nodiscard]] bool typeHasSize(std::string_view type) override;
    [[nodiscard]] bool fieldTypeAllowsTimeZone(std::string_view type) override;
    [[nodiscard]] std::string fieldType(SQLField& field) override;
    /// Whether the size of such a type is written.
    [[nodiscard]] virtual bool writesSizeOf(std::string_view type) { return typeHasSize(type); }

    // Names and values
    [[nodiscard]] bool objectNameRequiresQuoting(std::string_view name) override;
    [[nodiscard]] std::string schemaNameForTable(SQLTable& table) override;
    /// Kept: a key that was never named has no name, and the word CONSTRAINT stands alone.
    [[nodiscard]] OptionalText primaryKeyConstraintName(SQLTable& table) override;
    /// The name in the statement that adds a constraint.
    [[nodiscard]] virtual std::string constraintName(SQLIndex& constraint);
    [[nodiscard]] bool shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) override;
    /// Lower-case values that are never quoted.
    [[nodiscard]] virtual std::span<const std::string_view> defaultValuesNotQuotableForField(SQLField& field) const;
    /// Functions that are never quoted, also with a precision in parentheses.
    [[nodiscard]] virtual std::span<const std::string_view> defaultValuesRegularExpressionsNotQuotable() const;
    [[nodiscard]] bool defaultMatchesRegexForField(SQLField& field, std::string_view defaultValue) const;
    std::string addDefaultQuotes(std::string_view value) override;
    [[nodiscard]] virtual bool fieldCanSupportDefaultValue(SQLField&) const { return true; }

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
    virtual std::string alterNotNull(SQLField& field, SQLField& curField);
    virtual std::string alterDefault(SQLField& field, SQLField& curField);
    SourceNodePtr dropPrimaryKeyInstruction(SQLTable& table) override;
    std::string alterSQLConstraint(SQLConstraint& constraint, SQLConstraint& oldConstraint) override;
    std::string dropForeignKey(SQLConnectable& key) override;
    std::string dropForeignKey(SQLTable& table, SQLConnectable& key);
    std::string changeOwnerToCurrent(SQLObject& object) override;

protected:
    /// True for a value that is never quoted, whatever the column's type.
    [[nodiscard]] bool isBareDefault(std::string_view value, SQLField& field) const;
    /// "ALTER TABLE … ALTER COLUMN …" and the words; empty for a column without a table.
    std::string alterColumnStatement(SQLField& field, std::initializer_list<std::string_view> words);
    /// SET or DROP, as the column has a default or none.
    std::string defaultStatement(SQLField& field);
    /// Whether or not the object has a comment. Kept: no separator follows.
    virtual std::string commentStatement(SQLObject& object);
    /// "COLUMN t.c", "TABLE t"; empty for what takes no comment, or when comments are not wanted as statements.
    [[nodiscard]] std::string commentedObject(SQLObject& object);
    /// Kept: a view is a table here too.
    [[nodiscard]] virtual std::string_view kindOfTable(SQLTable&) const { return "TABLE"; }
};

class RedshiftExporter : public PostgresqlExporter {
public:
    static std::shared_ptr<RedshiftExporter> exporter() { return create<RedshiftExporter>(); }
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override { return create<RedshiftExporter>(); }
    [[nodiscard]] std::string_view className() const override { return "RedshiftExporter"; }
    [[nodiscard]] std::string getName() const override { return "Redshift"; }
};

}  // namespace vellicor
