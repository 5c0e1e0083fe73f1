// vellicor/dialects/runnable/mysql_runnable.h — what MySQL's scripts need, beyond the classic text, to run.
#pragma once

#include "vellicor/dialects/mysql_exporter.h"
#include "vellicor/export/runnable/runnable_exporter.h"

namespace vellicor {

class RunnableMySQLExporter final : public RunnableExporter<MySQLExporter> {
public:
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override {
        return create<RunnableMySQLExporter>();
    }

    // Answers
    [[nodiscard]] bool supportsDropIfExists() const override { return true; }
    [[nodiscard]] bool createsSchema(std::string_view) const override { return true; }
    [[nodiscard]] bool supportsIndexType(std::string_view type) const override;
    [[nodiscard]] bool runsOnlyQuoted(std::string_view name) const override;
    [[nodiscard]] bool needsPrefixSize(std::string_view type) const override;
    [[nodiscard]] std::string withoutForeignKeyChecks(std::string_view statements) override;

    // Names, values, comments
    [[nodiscard]] OptionalText foreignKeyConstraintName(SQLConnectable& key) override;
    std::string foreignKeyIndexName(SQLConnectable& key) override;
    [[nodiscard]] bool shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) override;
    std::string quoteDefaultValue(std::string_view value, SQLField& field) override;
    std::string addDefaultQuotes(std::string_view value) override;
    /// Within the server's limit for the type of object.
    [[nodiscard]] std::string formatComment(std::string_view comment, std::string_view type) override;
    [[nodiscard]] std::string formatTableComment(const SQLTable& table) override;

    // Create script
    SourceNodePtr fieldBlock(SQLTable& table) override;
    SourceNodePtr primaryKeyBlock(SQLTable& table) override;
    [[nodiscard]] bool fieldCanSupportDefaultValue(SQLField& field) const override;

    // Alter script: an index is dropped under the name that the create script gives it
    [[nodiscard]] bool shouldPrefixFieldLevelIndexNames() const override { return false; }
    [[nodiscard]] std::string getIndexNameForFieldIndexed(SQLField& field) override;
    std::string dropSQLConstraint(SQLConstraint& constraint) override;
    std::string addSQLConstraint(SQLConstraint& constraint) override;

protected:
    [[nodiscard]] std::string columnIndexName(SQLTable& table, std::string_view name,
                                              const OptionalText& suffix) override;
    [[nodiscard]] std::string keyToDrop(SQLConnectable& key) override;
    [[nodiscard]] std::string dropUniqueIndexInstruction(SQLTable& table, const std::string& indexName) override;

private:
    /// True when the key brought an index along, which keeps the key's name.
    [[nodiscard]] static bool hasIndexOfItsOwn(SQLConnectable& key);
};

}  // namespace vellicor
