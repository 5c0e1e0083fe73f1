// vellicor/export/generic_exporter_settings.cpp — settings of an exporter and the small answers that depend on them.
#include "vellicor/export/generic_exporter_settings.h"

#include <algorithm>
#include <array>

#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

void GenericSettings::configureForExport() {
    const Preferences& preferences = Preferences::shared();
    _useQuotedIdentifier = preferences.boolForKey(prefs::quoteIdentifiersOnExport);
    _shouldPrefixIndexNames = preferences.boolForKey(prefs::addTablePrefixToIndexNamesInExport);
    _autoQuoteIdentifiersWithWhitespace = preferences.boolForKey(prefs::autoQuoteIdentifiersWithWhitespace);
}

bool GenericSettings::shouldIncludeTitleHeader() const {
    return Preferences::shared().boolForKey(prefs::includeTitleHeaderInExport);
}

std::string GenericSettings::indent() const { return _indentSize < 1 ? std::string() : std::string(_indentSize, ' '); }

std::string GenericSettings::ifNotExists(bool supported) const {
    const bool wanted =
        !isJDBCExporter() && supported && Preferences::shared().boolForKey(prefs::useIfNotExistsOnTableExport);
    return wanted ? "IF NOT EXISTS " : "";
}

void GenericSettings::setJDBCMetaData(std::shared_ptr<DatabaseMetaData> metaData) {
    _jdbcMetaData = std::move(metaData);
    if (!_jdbcMetaData) return;
    try {
        const std::string product = _jdbcMetaData->databaseProductName();
        log(text("Exporting to %@ %@", product, _jdbcMetaData->databaseProductVersion()));
    } catch (const std::exception& failure) {
        log(text("failed to get database productName or product version\n %@", failure.what()));
    }
}

bool GenericSettings::shouldExportIndex(SQLIndex& index) {
    return !_currentExporter || !_currentExporter->indexExists(index);
}

bool GenericAnswers::isStringType(std::string_view type) {
    static constexpr std::array<std::string_view, 8> kStringTypes{"CHAR", "VARCHAR", "BINARY", "VARBINARY",
                                                                  "BLOB", "TEXT",    "ENUM",   "SET"};
    const std::string word = uppercased(type.substr(0, type.find('(')));
    return std::ranges::find(kStringTypes, word) != kStringTypes.end();
}

}  // namespace vellicor
