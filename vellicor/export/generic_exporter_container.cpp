// vellicor/export/generic_exporter_container.cpp — the create script of a whole document.
#include <algorithm>
#include <iterator>

#include "vellicor/export/generic_exporter_appender.h"
#include "vellicor/export/generic_exporter_create.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/scoped_value.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::int64_t kNameOrder = 1;

/// An exporter that has no document info takes the container's.
std::shared_ptr<SQLDocumentInfo> infoOf(SQLContainer& container) { return shared(container.documentInfo()); }

}  // namespace

std::unique_ptr<ExportRun> GenericCreateScript::newRun(SQLContainer& container) {
    return std::make_unique<ExportRun>(container);
}

std::string GenericCreateScript::exportSQLContainer(SQLContainer& container) {
    configureForExport();
    clearIndexCache();
    const ScopedValue running(_run, newRun(container));
    if (!documentInfo()) setDocumentInfo(infoOf(container));

    ScriptParts parts;
    if (shouldIncludeTitleHeader()) parts.header = text("/* Vellicor (%@)*/\n", getName());
    parts.prologue = prologue(container);
    for (const auto& object : objectsInScript(container)) {
        const std::string sql = canExportObject(*object)
                                    ? export_(*object)
                                    : text("/* Export disabled for %@ */", commentText(getCanonicalName(*object)));
        if (const std::string_view statement = trimmed(sql); !statement.empty()) parts.objects.emplace_back(statement);
    }
    parts.postLoad = postLoad(container);
    return layOut(std::move(parts));
}

std::string GenericCreateScript::layOut(ScriptParts parts) const {
    std::string script = std::move(parts.header);
    std::size_t size = script.size() + parts.prologue.size() + parts.postLoad.size() + 1;
    for (const std::string& object : parts.objects) size += object.size() + 2;
    script.reserve(size);
    script += parts.prologue;
    for (const std::string& object : parts.objects) {
        script += '\n';
        script += object;
        script += '\n';
    }
    script += '\n';
    return script += parts.postLoad;
}

SQLContainer::Objects GenericCreateScript::objectsInScript(SQLContainer& container) {
    const bool byName = Preferences::shared().integerForKey(prefs::exportObjectSortOrder) == kNameOrder;
    return byName ? container.objectListSortedByName() : container.objectList();
}

bool GenericCreateScript::isWritten(const SQLObject& object) const {
    if (const auto* constraint = as<const SQLConstraint>(&object))
        return supportsCheckConstraints() || !constraint->isCheckConstraint();
    return canExportObject(object) && (supportsViews() || !as<const SQLView>(&object));
}

/// The user's SQL, before and behind, is the container's; whether tables are dropped is the given document info's
/// choice.
std::string GenericCreateScript::prologueSQLContainer(SQLContainer& container) {
    container.reorderByForeignKeys();
    container.updateTargetTableLists();
    std::string sql = joined(GenericSQLExporterAppender::prologueSQLBlockForContainer(container), "\n") + "\n";
    for (SQLTable* table : tablesInDropOrder(container)) {  // Kept: ignored tables are dropped too
        auto* view = as<SQLView>(table);
        if (!view)
            sql += dropSQLTable(*table);
        else if (dropsFirst() && supportsViews())
            sql += dropSQLView(*view);
    }
    return sql;
}

std::vector<SQLTable*> GenericCreateScript::referencingTables(const SQLTable& table) const {
    return table.getTargetTableForFKList();
}

std::vector<SQLTable*> GenericCreateScript::tablesInDropOrder(SQLContainer& container) {
    std::vector<SQLTable*> tables;
    std::unordered_set<const SQLTable*> visited;
    for (const auto& object : container.objectList())
        if (auto* table = as<SQLTable>(object.get())) addTablesLinkedToTable(*table, tables, visited);
    return tables;
}

void GenericCreateScript::addTablesLinkedToTable(SQLTable& table, std::vector<SQLTable*>& tables,
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

std::string GenericCreateScript::dropSQLTable(SQLTable& table) {
    return dropsFirst() ? dropTableInstruction(table) : std::string();
}

std::string GenericCreateScript::dropTableInstruction(SQLTable& table) {
    return text("DROP TABLE %@%@\n", getCanonicalName(table), instructionSeparator());
}

std::string GenericCreateScript::postLoadSQLContainer(SQLContainer& container) {
    return joined(postLoadAsVector(container), "\n");
}

Statements GenericCreateScript::postLoadOfTables(SQLContainer& container) {
    Statements statements;
    for (const auto& object : container.objectList()) {
        if (!canLinkToObject(*object) || !as<SQLTable>(object.get())) continue;
        std::ranges::move(postLoadAsVector(*object), std::back_inserter(statements));
    }
    return statements;
}

Statements GenericCreateScript::postLoadAsVectorSQLContainer(SQLContainer& container) {
    Statements statements = postLoadOfTables(container);
    std::ranges::move(GenericSQLExporterAppender::postAppendSQLBlockForContainer(container),
                      std::back_inserter(statements));
    std::erase(statements, "");
    return statements;
}

}  // namespace vellicor
