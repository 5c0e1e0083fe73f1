// vellicor/dialects/runnable/postgresql_runnable.h — what scripts of PostgreSQL and Redshift need to run.
#pragma once

#include "vellicor/dialects/postgresql_exporter.h"
#include "vellicor/export/runnable/runnable_exporter.h"

namespace vellicor {

/// Over PostgreSQL or Redshift.
template <class Classic>
class RunnablePostgresql final : public RunnableExporter<Classic> {
public:
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override {
        return create<RunnablePostgresql>();
    }

    // Answers
    [[nodiscard]] bool supportsDropIfExists() const override { return true; }
    [[nodiscard]] bool supportsTablesWithoutColumns() const override { return true; }
    [[nodiscard]] bool createsSchema(std::string_view name) const override { return name != "public"; }
    [[nodiscard]] bool supportsIndexType(std::string_view type) const override { return type == "UNIQUE"; }
    [[nodiscard]] bool runsOnlyQuoted(std::string_view name) const override;
    [[nodiscard]] std::string getIndexKeyword(SQLIndex&) override { return "INDEX"; }
    [[nodiscard]] bool writesSizeOf(std::string_view type) override;

    // Names
    [[nodiscard]] OptionalText primaryKeyConstraintName(SQLTable& table) override;
    [[nodiscard]] OptionalText foreignKeyConstraintName(SQLConnectable& key) override;
    [[nodiscard]] std::string constraintName(SQLIndex& constraint) override;
    /// Indexes share the names of the tables of a schema.
    [[nodiscard]] std::string indexNameInScript(SQLTable& table, std::string_view name) override;
    [[nodiscard]] std::string constraintNameInScript(SQLTable& table, std::string_view name) override;

    // Values
    [[nodiscard]] bool shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) override;
    /// A serial type brings a default of its own, and the server takes only one.
    [[nodiscard]] bool fieldCanSupportDefaultValue(SQLField& field) const override;

    // Create script
    using RunnableExporter<Classic>::addIndex;
    std::string addIndex(SQLIndex& index, SQLTable& table) override;
    Statements postLoadAsVectorSQLField(SQLField& field, SQLTable& table) override;

    // Alter script
    Statements alterSQLFieldAsVector(SQLField& field, SQLField& curField, SQLObject* extra) override;
    std::string alterPrimaryKey(SQLField& field, SQLField& curField) override;
    std::string alterType(SQLField& field, SQLField& curField) override;
    std::string alterNotNull(SQLField& field, SQLField& curField) override;
    std::string alterPostgresComment(SQLObject& object, SQLObject* curObject) override;
    std::string dropIndex(SQLField& field, SQLTable& table) override;
    std::string dropSQLIndex(SQLIndex& index) override;
    std::string alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) override;

protected:
    void reserveTableName(RunnableRun& run, SQLTable& table) override;
    std::string commentStatement(SQLObject& object) override;
    [[nodiscard]] std::string_view kindOfTable(SQLTable& table) const override;

private:
    using Base = RunnableExporter<Classic>;
    /// Of a constraint that brings an index of the same name along.
    [[nodiscard]] std::string nameOfKey(SQLTable& table, std::string_view name);
    [[nodiscard]] std::string dropIndexInstruction(SQLTable& table, std::string_view quotedName);
};

extern template class RunnablePostgresql<PostgresqlExporter>;
extern template class RunnablePostgresql<RedshiftExporter>;

}  // namespace vellicor
