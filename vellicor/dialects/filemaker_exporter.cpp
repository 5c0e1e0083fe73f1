// vellicor/dialects/filemaker_exporter.cpp — FileMaker.
#include "vellicor/dialects/filemaker_exporter.h"

#include <algorithm>
#include <array>

#include "vellicor/model/field.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

struct Translation {
    std::string_view from;
    std::string_view to;
};
constexpr std::array<Translation, 3> kDeclaredTypes{
    {{"varchar", "text"}, {"numeric", "number"}, {"blob", "container"}}};
constexpr std::array<Translation, 6> kNativeTypes{{{"varchar", "text"},
                                                   {"numeric", "number"},
                                                   {"date", "date"},
                                                   {"time", "time"},
                                                   {"timestamp", "timestamp"},
                                                   {"blob", "container"}}};

std::string translated(std::span<const Translation> map, std::string_view type) {
    const std::string word = lowercased(type);
    auto found = std::ranges::find(map, word, &Translation::from);
    return std::string(found == map.end() ? type : found->to);
}

}  // namespace

bool FilemakerExporter::typeHasSize(std::string_view type) {
    const std::string word = uppercased(type);
    return word == "VARCHAR" || word == "CHARACTER VARYING";
}

std::string FilemakerExporter::fieldType(SQLField& field) {
    if (typeHasSize(field.getDataType())) return field.getFullTypeString();
    const std::string type = translated(kDeclaredTypes, field.getDataType());
    return typeHasSize(type) && field.hasTypeSize() ? text("%@(%@)", type, field.getDataTypeSize()) : type;
}

std::string FilemakerExporter::jdbcFieldTypeFromNative(std::string_view type) const {
    return translated(kNativeTypes, type);
}

std::string FilemakerExporter::exportSQLField(SQLField& field) {
    std::string sql = text("%@ %@", quoteIdentifier(field.getName()), fieldType(field));
    const SQLTable* table = field.parentTable();
    if (table && field.getPrimaryKey() && table->primaryKeyObjectList().front() == &field) sql += " PRIMARY KEY";
    if (const std::string value = field.getDefaultValue(); !value.empty())
        sql += text(" DEFAULT %@", quoteDefaultValue(value, field));
    if (field.getNotNull()) sql += " NOT NULL";
    if (field.isUnique()) sql += " UNIQUE";
    return sql;
}

std::string FilemakerExporter::alterType(SQLField& field, SQLField& curField) {
    log(text("newField type = %@, curField type %@", field.getType(), curField.getType()));
    SQLTable* table = field.parentTable();
    if (!table || lowercased(field.getType()) == lowercased(curField.getType())) return {};
    // Kept: the column's definition repeats its name.
    return text("ALTER TABLE %@ ALTER COLUMN %@ %@", getCanonicalName(*table), quoteIdentifier(field.getName()),
                exportSQLField(field));
}

std::string FilemakerExporter::createFieldIndexOnField(SQLField& field, SQLTable&) {
    if (!field.getPropertyAsBoolean(keys::indexed)) return {};
    return text("%@%@\n", createIndexStatement(field, ""), instructionSeparator());
}

std::string FilemakerExporter::dropIndex(SQLField& field, SQLTable& table) {
    if (!field.getPropertyAsBoolean(keys::indexed)) return {};
    return text("DROP INDEX ON %@(%@)%@\n", getCanonicalName(table), getCanonicalName(field), instructionSeparator());
}

}  // namespace vellicor
