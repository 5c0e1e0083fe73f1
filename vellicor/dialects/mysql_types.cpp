// vellicor/dialects/mysql_types.cpp — MySQL: what its types are and take.
#include <algorithm>

#include "vellicor/dialects/mysql_exporter.h"
#include "vellicor/model/field.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

using Words = std::span<const std::string_view>;

constexpr std::string_view kStringTypes[] = {"CHAR", "VARCHAR",  "BINARY",    "VARBINARY",  "BLOB",       "ENUM",
                                             "SET",  "BLOB",     "TINYBLOB",  "SHORTBLOB",  "MEDIUMBLOB", "LONGBLOB",
                                             "TEXT", "TINYTEXT", "SHORTTEXT", "MEDIUMTEXT", "LONGTEXT"};
constexpr std::string_view kOtherQuotableTypes[] = {"ENUM", "SET", "DATE", "DATETIME", "TIME"};
constexpr std::string_view kTypesWithSize[] = {"BIT",    "TINYINT", "SMALLINT", "MEDIUMINT", "INT",     "INTEGER",
                                               "BIGINT", "REAL",    "DOUBLE",   "FLOAT",     "DECIMAL", "NUMERIC",
                                               "CHAR",   "VARCHAR", "BINARY",   "VARBINARY"};
constexpr std::string_view kTypesWithEntries[] = {"SET", "ENUM"};
constexpr std::string_view kTypesWithoutSize[] = {"LONGTEXT",   "MEDIUMTEXT", "TEXT",     "TINYTEXT", "LONGBLOB",
                                                  "MEDIUMBLOB", "BLOB",       "TINYBLOB", "DATE",     "YEAR"};
constexpr std::string_view kTypesWithCharacterSet[] = {"CHAR",       "VARCHAR",  "TINYTEXT", "TEXT",
                                                       "MEDIUMTEXT", "LONGTEXT", "ENUM",     "SET"};
constexpr std::string_view kIndexTypesWithPrefixSize[] = {"BLOB", "TEXT"};
constexpr std::string_view kTypesOfQuotedNumbers[] = {"DATE", "TIME", "DATETIME"};
constexpr std::string_view kBinaryTypes[] = {"CHAR", "VARCHAR", "TEXT"};
constexpr std::string_view kNumberTypes[] = {"BIT",   "BOOL",    "BOOLEAN", "TINYINT", "SMALLINT", "MEDIUMINT",
                                             "INT",   "INTEGER", "BIGINT",  "REAL",    "DOUBLE",   "DOUBLE PRECISION",
                                             "FLOAT", "DECIMAL", "DEC",     "NUMERIC", "FIXED",    "SERIAL",
                                             "YEAR"};
constexpr std::string_view kTypesWithPrefixSize[] = {"TINYBLOB", "BLOB", "MEDIUMBLOB", "LONGBLOB",
                                                     "TINYTEXT", "TEXT", "MEDIUMTEXT", "LONGTEXT"};

bool contains(Words words, std::string_view type) { return std::ranges::find(words, uppercased(type)) != words.end(); }

}  // namespace

Words MySQLExporter::getStringTypesList() { return kStringTypes; }
Words MySQLExporter::getOtherQuotableTypesList() { return kOtherQuotableTypes; }
Words MySQLExporter::typesWithSize() { return kTypesWithSize; }
Words MySQLExporter::typesWithEntries() { return kTypesWithEntries; }
Words MySQLExporter::typesWithoutSize() { return kTypesWithoutSize; }
Words MySQLExporter::typesSupportingCharacterSetAndCollation() { return kTypesWithCharacterSet; }
Words MySQLExporter::indexTypeRequiresPrefixSize() { return kIndexTypesWithPrefixSize; }

std::string MySQLExporter::fieldType(SQLField& field) {
    const std::string& stored = field.getDataType();
    std::string type = uppercased(stored);
    if (typeHasSize(stored)) type = field.getFullTypeString();
    if (typeRequiresSize(stored) && field.getDataTypeSize().empty())
        type = text("%@(%@)", stored, defaultSizeForType(stored));
    if (field.getPropertyAsBoolean(keys::zeroFill)) type += " ZEROFILL ";
    if (fieldIsUnsigned(field)) type += " UNSIGNED";
    if (field.getPropertyAsBoolean(keys::binary) && contains(kBinaryTypes, stored)) type += " BINARY";
    if (contains(typesSupportingCharacterSetAndCollation(), stored)) {
        if (const std::string set = field.getProperty(keys::fieldCharacterSet); !set.empty())
            type += text(" CHARACTER SET %@", set);
        if (const std::string collation = field.getProperty(keys::fieldCollation); !collation.empty())
            type += text(" COLLATE %@", collation);
    }
    return type;
}

bool MySQLExporter::fieldIsUnsigned(SQLField& field) const {
    return (field.isForcedUnsigned() && field.getForcedUnsigned()) || field.getPropertyAsBoolean(keys::unsigned_);
}

OptionalText MySQLExporter::requiredSizeForType(std::string_view type) {
    return typeRequiresSize(type) ? OptionalText("255") : std::nullopt;
}

bool MySQLExporter::typeRequiresSize(std::string_view type) const { return uppercased(type) == "VARCHAR"; }

std::string MySQLExporter::defaultSizeForType(std::string_view) const { return "255"; }

bool MySQLExporter::typeHasSize(std::string_view type) {
    return contains(typesWithSize(), type) || contains(typesWithEntries(), type) || !contains(typesWithoutSize(), type);
}

bool MySQLExporter::isStringType(std::string_view type) { return contains(getStringTypesList(), type); }

bool MySQLExporter::isQuotableType(std::string_view type) const {
    const std::string_view word = trimmed(type.substr(0, type.find('(')));
    return contains(getStringTypesList(), word) || contains(getOtherQuotableTypesList(), word);
}

bool MySQLExporter::isNumberType(std::string_view type) { return contains(kNumberTypes, type); }

bool MySQLExporter::needsPrefixSize(std::string_view type) { return contains(kTypesWithPrefixSize, type); }

bool MySQLExporter::supportsIndexType(std::string_view type) const {
    return type == "UNIQUE" || type == "FULLTEXT" || type == "SPATIAL";
}

bool MySQLExporter::shouldStripQuotesOnType(std::string_view type) const {
    return contains(kTypesOfQuotedNumbers, type);
}

}  // namespace vellicor
