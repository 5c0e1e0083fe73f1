// vellicor/platform/known_preferences.cpp — the table of preferences. A new key of `preference_keys.h` is a row here.
#include "vellicor/platform/known_preferences.h"

#include <algorithm>
#include <charconv>

#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

using enum PreferenceType;

constexpr KnownPreference kPreferences[] = {
    // model
    {prefs::defaultSourceCardinality, Integer, "cardinality that the source end of a new reference starts with"},
    {prefs::defaultDestinationCardinality, Integer,
     "cardinality that the destination end of a new reference starts with"},
    {prefs::defaultImportSourceCardinality, Integer, "the same for the source end of imported references"},
    {prefs::defaultImportDestinationCardinality, Integer, "the same for the destination end of imported references"},
    {prefs::forceForeignKeyUnique, Flag, "number the names of foreign keys so that each is unique in the document"},
    {prefs::forceForeignKeyTypeMatching, Flag, "columns take the type of the column that they reference"},
    {prefs::documentLevelLabels, Flag, "write the labels into the document"},
    {prefs::addTablePrefixToIndexNamesAtCreation, Flag,
     "put the table's name before the names of new indexes and keys"},
    {prefs::convertExistingCompoundForeignKeys, Flag, "ask for old compound keys to become foreign keys of the table"},
    {prefs::useNewColoring, Flag, "colour tables without a label as unselected tables"},
    {prefs::collapseSingleEntryIndices, Flag, "turn plain indexes on one column into a flag of the column"},
    {prefs::useNewXMLFileLoader, Flag, "read documents by the careful setters only"},
    {prefs::losslessDocuments, Flag, "write documents such that every name, reference and type comes back as it was"},
    // SQL scripts
    {prefs::quoteIdentifiersOnExport, Flag, "quote every name in scripts"},
    {prefs::addTablePrefixToIndexNamesInExport, Flag, "put the table's name before index names in scripts"},
    {prefs::autoQuoteIdentifiersWithWhitespace, Flag, "quote names that contain white space"},
    {prefs::autoQuoteIdentifiersWithInvalidCharacters, Flag,
     "quote names that the dialect does not take bare (MySQL, PostgreSQL)"},
    {prefs::includeTitleHeaderInExport, Flag, "begin scripts with a title line"},
    {prefs::exportObjectSortOrder, Integer, "order of the objects in scripts: 1 by name, otherwise as in the document"},
    {prefs::canIgnoreObjectsOnExport, Flag, "leave out objects that are marked so in the document"},
    {prefs::useIfNotExistsOnTableExport, Flag, "write IF NOT EXISTS where the dialect has it"},
    {prefs::quoteReservedWords, Flag, "quote names that are reserved words of the dialect"},
    {prefs::runnableScripts, Flag, "write scripts that the dialect's own server accepts, instead of the classic text"},
    // single dialects
    {prefs::useAlterTableForMySQLIndexCreation, Flag, "MySQL: create indexes by ALTER TABLE"},
    {prefs::limitSQLCommentLength, Flag, "MySQL: accepted, without effect"},
    {prefs::preventTypeSizeUpdateWhenNil, Flag, "MySQL: an empty new size of a type is no change"},
    {prefs::postgresTypesUppercase, Flag, "PostgreSQL: types in upper case"},
    {prefs::usePostgresComments, Flag, "PostgreSQL: write comments as COMMENT ON statements"},
    {prefs::postgresQuoteSolelyUppercaseIdentifiers, Flag,
     "PostgreSQL: names wholly in upper case count among those not taken bare"},
    {prefs::sqlServerAddNullable, Flag, "SQL Server: write NULL at columns that may be null"},
    {prefs::sqlServerFindPKNameForDrop, Flag, "SQL Server: find the name of a primary key in the database to drop it"},
    {prefs::sybaseUseGo, Flag, "Sybase and SQL Server: separate statements by a line with go"},
    // colours
    {prefs::tableNotSelectedColor, Text, "colour of unselected tables"},
    {prefs::tableSelectedColor, Text, "colour of selected tables"},
    {prefs::tableBackgroundColor, Text, "background of tables"},
    {prefs::fieldBackgroundColor, Text, "background of columns"},
    {prefs::commentBackgroundColor, Text, "background of comments"},
    {prefs::commentSelectedColor, Text, "colour of selected comments"},
    {prefs::commentNotSelectedColor, Text, "colour of unselected comments"},
    {prefs::connectorDefault, Text, "colour of connectors"},
    // files
    {prefs::disableNavigationPanelFix, Flag, "leave the folder of file panels as it is"},
    {prefs::navLastRootDirectory, Text, "the folder in which file panels open"},
};

}  // namespace

std::span<const KnownPreference> knownPreferences() { return kPreferences; }

const KnownPreference* knownPreference(std::string_view key) {
    const auto* found = std::ranges::find(kPreferences, key, &KnownPreference::key);
    return found == std::end(kPreferences) ? nullptr : found;
}

std::string_view preferenceTypeName(PreferenceType type) {
    switch (type) {
        case Flag: return "bool";
        case Integer: return "int";
        case Text: break;
    }
    return "text";
}

std::string_view preferenceDefault(PreferenceType type) {
    switch (type) {
        case Flag: return "false";
        case Integer: return "0";
        case Text: break;
    }
    return "";
}

std::optional<Value> preferenceValue(PreferenceType type, std::string_view text) {
    if (type == Text) return Value(text);
    if (type == Integer) {
        std::int64_t number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
        return Value::integer(number);
    }
    for (std::string_view word : {"true", "yes", "on", "1"})
        if (equalIgnoringCase(text, word)) return Value::boolean(true);
    for (std::string_view word : {"false", "no", "off", "0"})
        if (equalIgnoringCase(text, word)) return Value::boolean(false);
    return std::nullopt;
}

}  // namespace vellicor
