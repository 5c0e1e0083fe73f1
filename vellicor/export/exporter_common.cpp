// vellicor/export/exporter_common.cpp — statements that several dialects share.
#include "vellicor/export/exporter_common.h"

#include "vellicor/export/export_dialect_common.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// The property that names a primary key in the dialects' short form; not the one that the model itself keeps.
constexpr const char* kShortPrimaryKeyName = "PK_NAME";

std::string columnList(SQLIndex& index, GenericSQLExporter& exporter) {
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

std::string ExporterCommon::addIndex(SQLIndex& index, SQLTable& table, GenericSQLExporter& exporter) {
    return addIndex(index, table, exporter, IndexStatementForm());
}

std::string ExporterCommon::addIndex(SQLIndex& index, SQLTable& table, GenericSQLExporter& exporter, bool addSeparator,
                                     bool addCreateInstruction) {
    const IndexStatementForm form{.addSeparator = addSeparator, .addCreateInstruction = addCreateInstruction};
    return addIndex(index, table, exporter, form);
}

std::string ExporterCommon::addIndex(SQLIndex& index, SQLTable& table, GenericSQLExporter& exporter,
                                     const IndexStatementForm& form) {
    if (!exporter.checkIndexValid(index)) return {};
    const std::string condition = exporter.ifNotExists(exporter.supportsIfNotExistsSQLIndex());
    const bool isEmpty = index.indexListCount() == 0;  // a remark, which takes no name
    const bool isNumbered = GenericSQLExporter::writesRunnableScripts() && !isEmpty;
    const std::string name = isNumbered ? exporter.nameForIndexStatement(table, index.getName())
                                        : exporter.getNameForIndexWithIndex(table, index);
    const std::string place = form.withTableName ? text("ON %@ ", exporter.getCanonicalName(table)) : std::string();
    std::string sql(form.addCreateInstruction ? "CREATE " : "");
    sql += exporter.indexTypeInScript(index);
    // Kept: without a type two blanks stand after CREATE.
    const std::string columns = columnList(index, exporter);
    sql += text(" %@ %@%@ %@(%@)", exporter.getIndexKeyword(index), condition, name, place, columns);
    if (form.addSeparator) sql += exporter.instructionSeparator() + "\n";
    return isEmpty ? text("/*%@*/\n", exporter.commentText(sql)) : sql;
}

std::string ExporterCommon::fieldTypeWithTimeZone(SQLField& field) {
    const bool withTimeZone = field.getDataType() == "TIMESTAMP" && field.getPropertyAsBoolean(keys::timezone);
    return withTimeZone ? "TIMESTAMP WITH TIMEZONE " : field.getType();
}

std::string ExporterCommon::dropForeignKey(SQLTable& table, SQLConnectable& key, GenericSQLExporter& exporter) {
    return dropForeignKeyStatement(key, exporter.getCanonicalName(table));
}

std::string ExporterCommon::dropForeignKey(SQLTable& table, SQLConnectable& key) {
    const SQLContainer* document = table.topLevelContainer();
    std::shared_ptr<SQLExportDialect> exporter;
    if (document) exporter = document->currentDialectExporter();
    if (!exporter) exporter = GenericSQLExporter::exporter();
    return dropForeignKeyStatement(key, exporter->getCanonicalName(table));
}

std::string SQLExportDialectCommon::dropPrimaryKeyInstruction(SQLTable& table, SQLField& newField,
                                                              SQLExportDialect& exporter) {
    if (!newField.hasProperty(kShortPrimaryKeyName)) return {};
    const std::string name = newField.getProperty(kShortPrimaryKeyName);
    return text("ALTER TABLE %@ DROP CONSTRAINT \"%@\"%@", exporter.getCanonicalName(table), name,
                exporter.getInstructionSeparator());
}

}  // namespace vellicor
