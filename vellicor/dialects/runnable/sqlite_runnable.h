// vellicor/dialects/runnable/sqlite_runnable.h — what SQLite's scripts need, beyond the classic text, to run.
#pragma once

#include "vellicor/dialects/sqlite_exporter.h"
#include "vellicor/export/runnable/runnable_exporter.h"

namespace vellicor {

class RunnableSQLiteExporter final : public RunnableExporter<SQLiteExporter> {
public:
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override {
        return create<RunnableSQLiteExporter>();
    }

    // Answers
    [[nodiscard]] bool supportsDropIfExists() const override { return true; }
    [[nodiscard]] bool supportsIndexType(std::string_view type) const override { return type == "UNIQUE"; }
    [[nodiscard]] bool runsOnlyQuoted(std::string_view name) const override;
    [[nodiscard]] std::string withoutForeignKeyChecks(std::string_view statements) override;

    // Names. There are no schemas: schema and name make one name, in queries of views too
    std::string getCanonicalNameWithLinkString(SQLTable& table, std::string_view linkString) override;
    [[nodiscard]] std::string viewQuery(SQLView& view) override;
    [[nodiscard]] std::string userBlock(std::string_view block) override;
    /// Indexes share the names of the tables.
    [[nodiscard]] std::string indexNameInScript(SQLTable&, std::string_view name) override;

    // Statements
    std::string dropTableInstruction(SQLTable& table) override;
    std::string quoteDefaultValue(std::string_view value, SQLField& field) override;
    std::string dropIndex(SQLField& field, SQLTable& table) override;
    std::string alterSQLIndex(SQLIndex& index, SQLIndex& oldIndex) override;
    std::string dropSQLConstraint(SQLConstraint& constraint) override;
    std::string addSQLConstraint(SQLConstraint& constraint) override;

protected:
    [[nodiscard]] std::unique_ptr<ExportRun> newRun(SQLContainer& container) override;
    void reserveTableName(RunnableRun& run, SQLTable& table) override;
    [[nodiscard]] bool countsRows(const SQLField& field) const override { return field.getAutoIncrement(); }
};

}  // namespace vellicor
