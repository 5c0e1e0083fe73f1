// vellicor/dialects/mysql_types.cpp — MySQL: what its types are and take.
#include "vellicor/dialects/mysql_exporter.h"
#include "vellicor/dialects/word_list.h"
#include "vellicor/model/field.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::string_view kStringTypes[] = {"CHAR", "VARCHAR",  "BINARY",    "VARBINARY",  "BLOB",       "ENUM",
                                             "SET",  "BLOB",     "TINYBLOB",  "SHORTBLOB",  "MEDIUMBLOB", "LONGBLOB",
                                             "TEXT", "TINYTEXT", "SHORTTEXT", "MEDIUMTEXT", "LONGTEXT"};
constexpr std::string_view kOtherQuotableTypes[] = {"ENUM", "SET", "DATE", "DATETIME", "TIME"};
constexpr std::string_view kMySqlTypesWithSize[] = {"BIT",    "TINYINT", "SMALLINT", "MEDIUMINT", "INT",     "INTEGER",
                                                    "BIGINT", "REAL",    "DOUBLE",   "FLOAT",     "DECIMAL", "NUMERIC",
                                                    "CHAR",   "VARCHAR", "BINARY",   "VARBINARY"};
constexpr std::string_view kTypesWithEntries[] = {"SET", "ENUM"};
constexpr std::string_view kMySqlTypesWithoutSize[] = {"LONGTEXT",   "MEDIUMTEXT", "TEXT",     "TINYTEXT", "LONGBLOB",
                                                       "MEDIUMBLOB", "BLOB",       "TINYBLOB", "DATE",     "YEAR"};
constexpr std::string_view kTypesWithCharacterSet[] = {"CHAR",       "VARCHAR",  "TINYTEXT", "TEXT",
                                                       "MEDIUMTEXT", "LONGTEXT", "ENUM",     "SET"};
constexpr std::string_view kIndexTypesWithPrefixSize[] = {"BLOB", "TEXT"};
constexpr std::string_view kTypesOfQuotedNumbers[] = {"DATE", "TIME", "DATETIME"};
constexpr std::string_view kBinaryTypes[] = {"CHAR", "VARCHAR", "TEXT"};

bool holdsType(WordList types, std::string_view type) { return holds(types, uppercased(type)); }

}  // namespace

WordList MySQLExporter::getStringTypesList() { return kStringTypes; }
WordList MySQLExporter::getOtherQuotableTypesList() { return kOtherQuotableTypes; }
WordList MySQLExporter::typesWithSize() { return kMySqlTypesWithSize; }
WordList MySQLExporter::typesWithEntries() { return kTypesWithEntries; }
WordList MySQLExporter::typesWithoutSize() { return kMySqlTypesWithoutSize; }
WordList MySQLExporter::typesSupportingCharacterSetAndCollation() { return kTypesWithCharacterSet; }
WordList MySQLExporter::indexTypeRequiresPrefixSize() { return kIndexTypesWithPrefixSize; }

std::string MySQLExporter::fieldType(SQLField& field) {
    const std::string& stored = field.getDataType();
    std::string type = uppercased(stored);
    if (typeHasSize(stored)) type = field.getFullTypeString();
    if (typeRequiresSize(stored) && field.getDataTypeSize().empty())
        type = text("%@(%@)", stored, defaultSizeForType(stored));
    if (field.getPropertyAsBoolean(keys::zeroFill)) type += " ZEROFILL ";
    if (fieldIsUnsigned(field)) type += " UNSIGNED";
    if (field.getPropertyAsBoolean(keys::binary) && holdsType(kBinaryTypes, stored)) type += " BINARY";
    if (holdsType(typesSupportingCharacterSetAndCollation(), stored)) {
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
    return holdsType(typesWithSize(), type) || holdsType(typesWithEntries(), type) ||
           !holdsType(typesWithoutSize(), type);
}

bool MySQLExporter::isStringType(std::string_view type) { return holdsType(getStringTypesList(), type); }

bool MySQLExporter::isQuotableType(std::string_view type) const {
    const std::string_view word = trimmed(type.substr(0, type.find('(')));
    return holdsType(getStringTypesList(), word) || holdsType(getOtherQuotableTypesList(), word);
}

bool MySQLExporter::needsPrefixSize(std::string_view type) const {
    return holdsType(indexTypeRequiresPrefixSize(), type);
}

bool MySQLExporter::shouldStripQuotesOnType(std::string_view type) const {
    return holdsType(kTypesOfQuotedNumbers, type);
}

}  // namespace vellicor
