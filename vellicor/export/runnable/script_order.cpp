// vellicor/export/runnable/script_order.cpp — the order in which a server takes objects and statements.
#include "vellicor/export/runnable/script_order.h"

#include <algorithm>

#include "vellicor/export/sql_identifiers.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::string dropInstructions(GenericCreateScript& exporter, RunnableDialect& dialect, SQLContainer& container) {
    std::string views;
    // A view stands in the way of dropping what it reads.
    SQLContainer::Objects objects = container.objectList();
    putViewsLast(objects, exporter);
    for (auto object = objects.rbegin(); object != objects.rend(); ++object)
        if (auto* view = as<SQLView>(object->get()); view && exporter.isWritten(*view))
            views += exporter.dropSQLView(*view);

    std::string tables;
    std::unordered_set<const SQLTable*> dropped;
    bool inCycle = false;
    for (SQLTable* table : exporter.tablesInDropOrder(container)) {
        if (as<SQLView>(table) || !exporter.isWritten(*table)) continue;
        dropped.insert(table);
        for (const SQLTable* referencing : exporter.referencingTables(*table))
            inCycle |= exporter.isWritten(*referencing) && !dropped.contains(referencing);
        tables += exporter.dropSQLTable(*table);
    }
    return views + (inCycle ? dialect.withoutForeignKeyChecks(tables) : tables);
}

}  // namespace

ReferencingTables tablesReferencingByKey(SQLContainer& container) {
    ReferencingTables referencing;
    for (const auto& object : container.objectList())
        if (auto* table = as<SQLTable>(object.get()))
            for (const SQLForeignKey* key : table->foreignKeyObjectsInTable())
                if (key->targetTable()) referencing[key->targetTable()].push_back(table);
    return referencing;
}

void putViewsLast(SQLContainer::Objects& objects, GenericNames& names) {
    const auto isView = [](const auto& object) { return as<SQLView>(object.get()) != nullptr; };
    const auto firstView =
        std::stable_partition(objects.begin(), objects.end(), [&](const auto& object) { return !isView(object); });
    const SQLContainer::Objects views(firstView, objects.end());
    std::unordered_map<std::string, std::vector<std::size_t>> viewsByName;  // positions behind the first view
    for (std::size_t i = 0; i < views.size(); ++i) {
        const std::string name = as<SQLView>(views[i].get())->getBaseName();
        viewsByName[caseFolded(name)].push_back(i);
        // A query may also spell it as the script does, without its blanks.
        for (const SQLIdentifier& word : identifiersIn(names.quoteIdentifier(name)))
            if (word.name != name) viewsByName[caseFolded(word.name)].push_back(i);
    }

    struct Step {
        std::size_t view;
        std::vector<std::size_t> reads;
        std::size_t next = 0;
    };
    const auto stepOf = [&](std::size_t view) {
        Step step{view, {}};
        for (const SQLIdentifier& word : identifiersIn(as<SQLView>(views[view].get())->queryString()))
            if (const auto read = viewsByName.find(caseFolded(word.name)); read != viewsByName.end())
                step.reads.insert(step.reads.end(), read->second.begin(), read->second.end());
        return step;
    };
    SQLContainer::Objects ordered;
    std::vector<bool> visited(views.size());
    for (std::size_t i = 0; i < views.size(); ++i) {
        if (visited[i]) continue;
        visited[i] = true;
        std::vector<Step> path{stepOf(i)};  // an explicit stack: views may read each other in a long chain
        while (!path.empty()) {
            Step& step = path.back();
            if (step.next == step.reads.size()) {
                ordered.push_back(views[step.view]);
                path.pop_back();
            } else if (const std::size_t read = step.reads[step.next++]; !visited[read]) {
                visited[read] = true;
                path.push_back(stepOf(read));
            }
        }
    }
    std::move(ordered.begin(), ordered.end(), firstView);
}

void putLast(Statements& statements, const std::unordered_set<std::string>& last) {
    std::stable_partition(statements.begin(), statements.end(),
                          [&](const std::string& sql) { return !last.contains(sql); });
}

std::string runnablePrologue(GenericCreateScript& exporter, RunnableDialect& dialect, SQLContainer& container) {
    const SQLDocumentInfo* info = container.documentInfo();
    std::string sql = dialect.userBlock(info ? info->prologueExportSQL() : std::string()) + "\n";
    std::unordered_set<std::string> schemas;
    for (const auto& object : container.objectList()) {
        auto* table = as<SQLTable>(object.get());
        if (!table || !exporter.isWritten(*table)) continue;
        const std::string schema(trimmed(exporter.schemaNameForTable(*table)));
        if (!schema.empty() && dialect.createsSchema(schema) && schemas.insert(schema).second)
            sql += text("CREATE SCHEMA IF NOT EXISTS %@%@\n", exporter.quoteIdentifier(schema),
                        exporter.instructionSeparator());
    }
    return exporter.dropsFirst() ? sql + dropInstructions(exporter, dialect, container) : sql;
}

}  // namespace vellicor
