// vellicor/export/generic_exporter.cpp — settings of an exporter and the small answers that depend on them.
#include "vellicor/export/generic_exporter.h"

#include <algorithm>
#include <array>
#include <typeinfo>

#include "vellicor/model/index.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::shared_ptr<SQLExportDialect> SQLExportDialect::newInstance() const { return create<SQLExportDialect>(); }

void GenericSQLExporter::init() {
    SQLExportDialect::init();
    _useQuotedIdentifier = true;
    configureForExport();
    configureDialectSpecficInterface();
}

void GenericSQLExporter::configureForExport() {
    const Preferences& preferences = Preferences::shared();
    _useQuotedIdentifier = preferences.boolForKey(prefs::quoteIdentifiersOnExport);
    _shouldPrefixIndexNames = preferences.boolForKey(prefs::addTablePrefixToIndexNamesInExport);
    _autoQuoteIdentifiersWithWhitespace = preferences.boolForKey(prefs::autoQuoteIdentifiersWithWhitespace);
}

bool GenericSQLExporter::shouldIncludeTitleHeader() const {
    return Preferences::shared().boolForKey(prefs::includeTitleHeaderInExport);
}

std::string GenericSQLExporter::indent() const {
    return _indentSize < 1 ? std::string() : std::string(_indentSize, ' ');
}

std::string GenericSQLExporter::ifNotExists(bool supported) const {
    const bool wanted =
        !_isJDBCExporter && supported && Preferences::shared().boolForKey(prefs::useIfNotExistsOnTableExport);
    return wanted ? "IF NOT EXISTS " : "";
}

void GenericSQLExporter::setJDBCMetaData(std::shared_ptr<DatabaseMetaData> metaData) {
    _jdbcMetaData = std::move(metaData);
    _isJDBCExporter = _jdbcMetaData != nullptr;
    if (!_jdbcMetaData) return;
    try {
        const std::string product = _jdbcMetaData->databaseProductName();
        log(text("Exporting to %@ %@", product, _jdbcMetaData->databaseProductVersion()));
    } catch (const std::exception& failure) {
        log(text("failed to get database productName or product version\n %@", failure.what()));
    }
}

bool GenericSQLExporter::shouldExportIndex(SQLIndex& index) {
    return !_currentExporter || !_currentExporter->indexExists(index);
}

void GenericSQLExporter::clearIndexCache() { _indexCache.clear(); }

bool GenericSQLExporter::supportsViews() const { return typeid(*this) == typeid(GenericSQLExporter); }

bool GenericSQLExporter::isStringType(std::string_view type) {
    static constexpr std::array<std::string_view, 8> kStringTypes{"CHAR", "VARCHAR", "BINARY", "VARBINARY",
                                                                  "BLOB", "TEXT",    "ENUM",   "SET"};
    const std::string word = uppercased(type.substr(0, type.find('(')));
    return std::ranges::find(kStringTypes, word) != kStringTypes.end();
}

std::string GenericSQLExporter::nodeText(const SourceNodePtr& node) { return node ? node->string() : std::string(); }

SQLTable& GenericSQLExporter::tableOf(SQLTableComponent& component) {
    if (SQLTable* table = component.parentTable()) return *table;
    throw AssertionFailure("component should stand in a table");
}

SourceNodePtr GenericSQLExporter::alterTableNode(SQLTable& table, std::initializer_list<std::string_view> words) {
    auto node = QVSourceNode::node();
    node->addChildWithValue("ALTER TABLE");
    node->addChildWithValue(getCanonicalName(table));
    for (std::string_view word : words) node->addChildWithValue(word);
    return node;
}

SourceNodePtr GenericSQLExporter::quotedNameList(const std::vector<std::string>& names) {
    auto list = QVSourceNode::bracketBlock();
    for (const std::string& name : names) list->addChildWithValue(quoteIdentifier(name), "");
    return list;
}

}  // namespace vellicor
