// vellicor/dialects/sybase_style_exporter.cpp — what SQL Server and Sybase have in common.
#include "vellicor/dialects/sybase_style_exporter.h"

#include "vellicor/export/exporter_common.h"
#include "vellicor/model/field.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

bool isFirstAutoIncrement(const SQLField& field) {
    const SQLTable* table = field.parentTable();
    if (!table) return false;
    const auto components = table->lockedFields();
    for (const auto& component : *components)
        if (const auto* column = as<SQLField>(component.get()); column && column->getAutoIncrement())
            return column == &field;
    return false;
}

}  // namespace

std::string SybaseStyleExporter::quoteForSQL(std::string_view text, bool force) {
    const bool isBracketed = text.starts_with('[') && text.ends_with(']');
    if (isBracketed || (!force && text.find(' ') == std::string_view::npos)) return std::string(text);
    return quoteIdentifier(text);
}

std::vector<std::string> SybaseStyleExporter::quoteMembersForSQL(const std::vector<std::string>& names) {
    std::vector<std::string> quoted;
    quoted.reserve(names.size());
    for (const std::string& name : names) quoted.push_back(quotedColumnName(name));
    return quoted;
}

std::string SybaseStyleExporter::quotedColumnName(const std::string& name) {
    // A reserved word needs quotes as a name, though it holds no blank.
    return quoteForSQL(name, objectNameRequiresQuoting(name));
}

OptionalText SybaseStyleExporter::primaryKeyConstraintName(SQLTable& table) {
    return quoteIdentifier(table.primaryKeyConstraintName());
}

std::string SybaseStyleExporter::defaultInColumn(std::string_view value, SQLField&) { return quoteForSQL(value); }

std::string SybaseStyleExporter::addIndex(SQLIndex& index, SQLTable& table) {
    return ExporterCommon::addIndex(index, table, *this);
}

std::string SybaseStyleExporter::nullOrNotString(SQLField& field) { return field.getNotNull() ? " NOT NULL" : ""; }

std::string SybaseStyleExporter::exportSQLField(SQLField& field) {
    std::string sql = text("%@ %@", quotedColumnName(field.getName()), fieldType(field));
    sql += nullOrNotString(field);
    if (const std::string value = field.getDefaultValue(); !value.empty())
        sql += text(" DEFAULT %@", defaultInColumn(value, field));
    sql += nodeText(inlineCheckConstraint(field));
    if (field.getAutoIncrement() && isFirstAutoIncrement(field)) sql += " IDENTITY";
    return sql;
}

}  // namespace vellicor
