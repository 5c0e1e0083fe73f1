// vellicor/export/generic_exporter_container.cpp — the create script of a whole document.
#include <algorithm>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/export/sql_block_splitter.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::int64_t kNameOrder = 1;

/// An exporter that has no document info takes the container's.
std::shared_ptr<SQLDocumentInfo> infoOf(SQLContainer& container) { return shared(container.documentInfo()); }

}  // namespace

std::string GenericSQLExporter::exportSQLContainer(SQLContainer& container) {
    configureForExport();
    clearIndexCache();
    _exportContainer = &container;
    clearNamesInScript(container);
    if (!_documentInfo) _documentInfo = infoOf(container);

    std::string script;
    if (shouldIncludeTitleHeader()) script += text("/* Vellicor (%@)*/\n", getName());
    script += prologue(container);

    const bool byName = Preferences::shared().integerForKey(prefs::exportObjectSortOrder) == kNameOrder;
    auto objects = byName ? container.objectListSortedByName() : container.objectList();
    if (writesRunnableScripts()) putViewsLast(objects);
    for (const auto& object : objects) {
        const std::string sql = canExportObject(*object)
                                    ? export_(*object)
                                    : text("/* Export disabled for %@ */", commentText(getCanonicalName(*object)));
        const std::string_view statement = trimmed(sql);
        if (statement.empty()) continue;
        script += '\n';
        script += statement;
        script += '\n';
    }
    script += '\n';
    script += postLoad(container);
    _exportContainer = nullptr;
    return script;
}

/// The user's SQL, before and behind, is the container's; whether tables are dropped is the given document info's
/// choice.
std::string GenericSQLExporter::prologueSQLContainer(SQLContainer& container) {
    container.reorderByForeignKeys();
    container.updateTargetTableLists();
    if (writesRunnableScripts()) return runnablePrologue(container);
    std::string sql = joined(GenericSQLExporterAppender::prologueSQLBlockForContainer(container), "\n") + "\n";

    const bool drops = _documentInfo && _documentInfo->getDropTableOption();
    for (SQLTable* table : tablesInDropOrder(container)) {
        auto* view = as<SQLView>(table);
        if (!view)
            sql += dropSQLTable(*table);
        else if (drops && supportsViews())
            sql += dropSQLView(*view);
    }
    return sql;
}

std::vector<SQLTable*> GenericSQLExporter::tablesInDropOrder(SQLContainer& container) {
    std::vector<SQLTable*> tables;
    std::unordered_set<const SQLTable*> visited;
    for (const auto& object : container.objectList())
        if (auto* table = as<SQLTable>(object.get())) addTablesLinkedToTable(*table, tables, visited);
    return tables;
}

void GenericSQLExporter::addTablesLinkedToTable(SQLTable& table, std::vector<SQLTable*>& tables,
                                                std::unordered_set<const SQLTable*>& visited) {
    struct Step {
        SQLTable* table;
        std::vector<SQLTable*> referencing;
        std::size_t next = 0;
    };
    if (!visited.insert(&table).second) return;
    std::vector<Step> path;  // an explicit stack: chains of references may be as long as the document
    path.push_back({&table, referencingTables(table)});
    while (!path.empty()) {
        Step& step = path.back();
        if (step.next == step.referencing.size()) {
            tables.push_back(step.table);
            path.pop_back();
        } else if (SQLTable* referencing = step.referencing[step.next++]; visited.insert(referencing).second) {
            path.push_back({referencing, referencingTables(*referencing)});
        }
    }
}

std::string GenericSQLExporter::dropSQLTable(SQLTable& table) {
    return _documentInfo && _documentInfo->getDropTableOption() ? dropTableInstruction(table) : std::string();
}

std::string GenericSQLExporter::dropTableInstruction(SQLTable& table) {
    return text("DROP TABLE %@%@%@\n", ifExists(), getCanonicalName(table), instructionSeparator());
}

std::string GenericSQLExporter::postLoadSQLContainer(SQLContainer& container) {
    return joined(postLoadAsVector(container), "\n");
}

Statements GenericSQLExporter::postLoadAsVectorSQLContainer(SQLContainer& container) {
    Statements statements;
    for (const auto& object : container.objectList()) {
        if (!canLinkToObject(*object) || !as<SQLTable>(object.get())) continue;
        std::ranges::move(postLoadAsVector(*object), std::back_inserter(statements));
    }
    if (writesRunnableScripts()) {
        putForeignKeysLast(statements);
        const SQLDocumentInfo* info = container.documentInfo();
        statements.push_back(userBlock(info ? info->postExportSQL() : std::string()));
    } else {
        std::ranges::move(GenericSQLExporterAppender::postAppendSQLBlockForContainer(container),
                          std::back_inserter(statements));
    }
    std::erase(statements, "");
    return statements;
}

std::vector<std::string> GenericSQLExporterAppender::prologueSQLBlockForContainer(SQLContainer& container) {
    const SQLDocumentInfo* info = container.documentInfo();
    if (!info || !info->hasProperty(keys::prologueExportSQL)) return {};
    return SQLBlockArrayFromString(trimmed(info->prologueExportSQL()));
}

std::vector<std::string> GenericSQLExporterAppender::postAppendSQLBlockForContainer(SQLContainer& container) {
    const SQLDocumentInfo* info = container.documentInfo();
    if (!info || !info->hasProperty(keys::postExportSQL)) return {};
    return SQLBlockArrayFromString(trimmed(info->postExportSQL()));
}

}  // namespace vellicor
