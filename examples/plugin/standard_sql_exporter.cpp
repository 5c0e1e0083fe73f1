// examples/plugin/standard_sql_exporter.cpp — a column and its default value in the SQL of the standard.
#include "standard_sql_exporter.h"

#include "vellicor/model/field.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace example {

using vellicor::text;

bool StandardSQLExporter::shouldQuoteDefaultFieldValue(std::string_view value, vellicor::SQLField& field) {
    return isStringType(field.getType()) && GenericSQLExporter::shouldQuoteDefaultFieldValue(value, field);
}

std::string StandardSQLExporter::exportSQLField(vellicor::SQLField& field) {
    std::string sql = text("%@ %@", quoteIdentifier(field.getName()), fieldType(field));
    if (field.getAutoIncrement())
        sql += text(" %@", autoIncrementKeyword());  // in the place of a default value, before all constraints
    else if (const std::string value = field.getDefaultValue(); !value.empty())
        sql += text(" DEFAULT %@", quoteDefaultValue(value, field));
    if (field.getNotNull()) sql += " NOT NULL";
    if (field.isUnique()) sql += " UNIQUE";
    return sql + nodeText(inlineCheckConstraint(field));
}

std::string StandardSQLExporter::addDefaultQuotes(std::string_view value) {
    if (value.size() >= 2 && value.starts_with('\'') && value.ends_with('\'')) return std::string(value);
    return text("'%@'", vellicor::replacingAll(value, "'", "''"));
}

}  // namespace example
