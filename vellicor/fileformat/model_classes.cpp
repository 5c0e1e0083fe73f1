// vellicor/fileformat/model_classes.cpp — the one table of the classes that a document may name.
#include "vellicor/fileformat/model_classes.h"

#include <unordered_map>

#include "vellicor/model/comment.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/document_names.h"
#include "vellicor/model/exporter_source.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/label.h"
#include "vellicor/model/object_style.h"
#include "vellicor/model/schema.h"
#include "vellicor/model/table.h"
#include "vellicor/model/value_objects.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

using Make = std::shared_ptr<Loadable> (*)();

/// A document may create these.
constexpr const ClassInfo* kImportable[] = {
    &SQLTable::kClassInfo,       &SQLView::kClassInfo,
    &SQLViewEntry::kClassInfo,   &SQLField::kClassInfo,
    &SQLIndex::kClassInfo,       &SQLIndexEntry::kClassInfo,
    &SQLConstraint::kClassInfo,  &SQLComparisonIndex::kClassInfo,
    &SQLForeignKey::kClassInfo,  &SQLForeignKeyEntry::kClassInfo,
    &SQLComment::kClassInfo,     &SQLCanvasArea::kClassInfo,
    &SQLSchema::kClassInfo,      &SQLDocumentInfo::kClassInfo,
    &SQLObjectLabel::kClassInfo, &QVObjectStyle::kClassInfo,
    &SQLPoint::kClassInfo,       &SQLSize::kClassInfo,
};

/// Classes of this library that a document may not create, beside those of exporters; naming one stops the load.
constexpr std::string_view kRefused[] = {
    "SQLObject",
    "SQLObjectPeer",
    "SQLTableComponent",
    "SQLValue",
    "SQLIterator",
    "SQLNameMatch",
    "SQLObjectName",
    "SQLForeignKeyConverter",
    "SQLConnectableCardinality",
    "SQLObjectLabelManager",
    "SQLPrefs",
    "SQLDataType",
    "TypeMatchingManager",
    "SQLTypeReplacer",
    "SQLDialectManager",
    "DialectManager",
    "ExportDialect",
    "SQLPluginManager",
    "QVVersionedPluginLoader",
    "QVFileSystemManager",
    "QVMutableNotifyingPropertyDictionary",
    "QVSparseMutableArray",
    "QVSourceNode",
    "QVParserElement",
    "QVStack",
    "Parser",
    "XMLExport",
    "ExporterCommon",
    "GenericSQLExporterAppender",
    "SQLExportDialectCommon",
    "MySQLIndexExporter",
    "FKGraphNode",
    "SQLForeignKeyObjectGraph",
    "SQLForeignKeyGraph",
    "QVVisualTheme",
    "QVVisualThemeLight",
    "QVVisualThemeDark",
    "QVVisualThemeDarkContent",
    "QVStatusLog",
    "QVStatusEvent",
    "ProgressWatcher",
};

/// By element name; null for a class that is refused.
const std::unordered_map<std::string_view, Make>& makers() {
    static const auto* table = [] {
        auto* all = new std::unordered_map<std::string_view, Make>;
        for (const ClassInfo* info : kImportable) all->emplace(info->name, info->make);
        for (std::string_view name : kRefused) all->emplace(name, nullptr);
        all->emplace("location", SQLPoint::kClassInfo.make);
        all->emplace("size", SQLSize::kClassInfo.make);
        return all;
    }();
    return *table;
}

}  // namespace

bool namesObjectInDocuments(std::string_view elementName) {
    return elementName == "SQLContainer" || makers().contains(elementName);
}

std::shared_ptr<Loadable> objectForElement(std::string_view elementName) {
    const auto found = makers().find(elementName);
    if (found == makers().end() && !isExporterClass(elementName)) return nullptr;
    if (found == makers().end() || !found->second) {
        throw SQLException(exceptions::xmlSecurity,
                           text("Object (%@) did not implement protocol SQLObjectImportable", elementName));
    }
    return found->second();
}

}  // namespace vellicor
