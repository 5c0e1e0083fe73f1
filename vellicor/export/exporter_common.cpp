// vellicor/export/exporter_common.cpp — statements that several dialects share.
#include "vellicor/export/exporter_common.h"

#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::string columnList(SQLIndex& index, GenericCreateScript& exporter) {
    std::vector<std::string> columns;
    for (SQLField* field : index.fieldList()) {
        std::string column = exporter.quoteIdentifier(field->getName());
        const std::string size = exporter.indexSizeStringForField(*field, &index);
        if (!size.empty()) column += text("(%@)", size);
        columns.push_back(std::move(column));
    }
    return joined(columns, ",");
}

std::string dropForeignKeyStatement(SQLConnectable& key, const std::string& table) {
    const std::string name = key.foreignKeyName();
    if (!name.empty()) return text("ALTER TABLE %@ DROP CONSTRAINT %@", table, name);
    log("Note: probably wanted to delete foreign key here, but didn't have reference id");
    return {};
}

}  // namespace

std::string ExporterCommon::addIndex(SQLIndex& index, SQLTable& table, GenericCreateScript& exporter) {
    return addIndex(index, table, exporter, IndexStatementForm());
}

std::string ExporterCommon::addIndex(SQLIndex& index, SQLTable& table, GenericCreateScript& exporter, bool addSeparator,
                                     bool addCreateInstruction) {
    const IndexStatementForm form{.addSeparator = addSeparator, .addCreateInstruction = addCreateInstruction};
    return addIndex(index, table, exporter, form);
}

std::string ExporterCommon::addIndex(SQLIndex& index, SQLTable& table, GenericCreateScript& exporter,
                                     const IndexStatementForm& form) {
    if (!exporter.checkIndexValid(index)) return {};
    const std::string condition = exporter.ifNotExists(exporter.supportsIfNotExistsSQLIndex());
    const std::string name = exporter.nameForIndexStatement(table, index);
    const std::string place = form.withTableName ? text("ON %@ ", exporter.getCanonicalName(table)) : std::string();
    std::string sql(form.addCreateInstruction ? "CREATE " : "");
    sql += exporter.indexTypeInScript(index);
    // Kept: without a type two blanks stand after CREATE.
    const std::string columns = columnList(index, exporter);
    sql += text(" %@ %@%@ %@(%@)", exporter.getIndexKeyword(index), condition, name, place, columns);
    if (form.addSeparator) sql += exporter.instructionSeparator() + "\n";
    return index.indexListCount() == 0 ? text("/*%@*/\n", exporter.commentText(sql)) : sql;
}

std::string ExporterCommon::fieldTypeWithTimeZone(SQLField& field) {
    const bool withTimeZone = field.getDataType() == "TIMESTAMP" && field.getPropertyAsBoolean(keys::timezone);
    return withTimeZone ? "TIMESTAMP WITH TIMEZONE " : field.getType();
}

std::string ExporterCommon::dropForeignKey(SQLTable& table, SQLConnectable& key, GenericCreateScript& exporter) {
    return dropForeignKeyStatement(key, exporter.getCanonicalName(table));
}

std::string ExporterCommon::dropForeignKey(SQLTable& table, SQLConnectable& key) {
    const SQLContainer* document = table.topLevelContainer();
    std::shared_ptr<SQLExportDialect> exporter;
    if (document) exporter = document->currentDialectExporter();
    if (!exporter) exporter = GenericSQLExporter::exporter();
    return dropForeignKeyStatement(key, exporter->getCanonicalName(table));
}

}  // namespace vellicor
