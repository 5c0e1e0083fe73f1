// vellicor/export/generic_exporter_runnable.cpp — what scripts need, beyond the classic text, to run on a server.
#include <algorithm>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/export/sql_identifiers.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

bool endsInRemark(std::string_view sql) { return sql.substr(sql.rfind('\n') + 1).find("--") != std::string_view::npos; }

}  // namespace

bool GenericSQLExporter::writesRunnableScripts() { return Preferences::shared().boolForKey(prefs::runnableScripts); }

// === names

bool GenericSQLExporter::isRefusedBare(std::string_view name, bool isReservedWord) const {
    // Who decided about a kind of quoting is obeyed; nobody having decided, the server does.
    const Preferences& preferences = Preferences::shared();
    const auto mayQuote = [&](const char* key) {
        return !preferences.objectForKey(key) || preferences.boolForKey(key);
    };
    if (isReservedWord) return mayQuote(prefs::quoteReservedWords);
    const bool isDigit = !name.empty() && name.front() >= '0' && name.front() <= '9';
    const bool isWord = !isDigit && std::ranges::all_of(name, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == ' ' ||
               static_cast<unsigned char>(c) >= 0x80;
    });
    return !isWord && mayQuote(prefs::autoQuoteIdentifiersWithInvalidCharacters);
}

std::string GenericSQLExporter::nameInScript(std::string_view scope, std::string_view name) {
    if (!writesRunnableScripts() || !_exportContainer) return std::string(name);
    const std::string key = text("%@\n", caseFolded(scope));
    std::string free(name);
    std::size_t& next = _nextNumbersInScript[key + caseFolded(name)];
    while (!_namesInScript.insert(key + caseFolded(free)).second) free = text("%@_%lu", name, ++next);
    return free;
}

void GenericSQLExporter::clearNamesInScript(SQLContainer& container) {
    _namesInScript.clear();
    _nextNumbersInScript.clear();
    if (!writesRunnableScripts()) return;
    for (const auto& object : container.objectList())
        if (auto* table = as<SQLTable>(object.get())) reserveTableName(*table);
}

std::string GenericSQLExporter::nameForIndexStatement(SQLTable& table, std::string_view name) {
    if (!writesRunnableScripts()) return getNameForIndex(table, name);
    return quoteIdentifier(indexNameInScript(table, getNameForIndex(table, name, std::string(), false)));
}

// === values

std::string GenericSQLExporter::runnableTextLiteral(std::string_view content) {
    return "'" + replacingAll(content, "'", "''") + "'";
}

std::string GenericSQLExporter::runnableLiteral(std::string_view value) {
    const bool isQuoted = value.size() >= 2 && value.starts_with('\'') && value.ends_with('\'');
    const std::string_view content = isQuoted ? value.substr(1, value.size() - 2) : value;
    // Inside quotes a quote is already escaped by a backslash or by doubling.
    return runnableTextLiteral(isQuoted ? replacingAll(replacingAll(content, "\\'", "'"), "''", "'")
                                        : std::string(content));
}

std::string GenericSQLExporter::runnableExpression(std::string_view value) {
    const std::string_view expression = trimmed(value);
    const bool standsBare = isSimpleToken(expression) || isTextLiteral(expression) || expression.starts_with('(');
    return standsBare ? std::string(value) : text("(%@)", expression);
}

// === the script as a whole

std::string GenericSQLExporter::runnablePrologue(SQLContainer& container) {
    const SQLDocumentInfo* info = container.documentInfo();
    std::string sql = userBlock(info ? info->prologueExportSQL() : std::string()) + "\n";
    std::unordered_set<std::string> schemas;
    for (const auto& object : container.objectList()) {
        auto* table = as<SQLTable>(object.get());
        if (!table || !canExportObject(*table)) continue;
        const std::string schema(trimmed(schemaNameForTable(*table)));
        if (!schema.empty() && createsSchema(schema) && schemas.insert(schema).second)
            sql += text("CREATE SCHEMA IF NOT EXISTS %@%@\n", quoteIdentifier(schema), instructionSeparator());
    }
    return _documentInfo && _documentInfo->getDropTableOption() ? sql + dropInstructions(container) : sql;
}

std::vector<SQLTable*> GenericSQLExporter::referencingTables(const SQLTable& table) const {
    std::vector<SQLTable*> tables = table.getTargetTableForFKList();
    if (const auto keys = _referencingByKey.find(&table); keys != _referencingByKey.end())
        tables.insert(tables.end(), keys->second.begin(), keys->second.end());
    return tables;
}

std::string GenericSQLExporter::dropInstructions(SQLContainer& container) {
    for (const auto& object : container.objectList())
        if (auto* table = as<SQLTable>(object.get()))
            for (const SQLForeignKey* key : table->foreignKeyObjectsInTable())
                if (key->targetTable()) _referencingByKey[key->targetTable()].push_back(table);

    std::string sql;
    // A view stands in the way of dropping what it reads.
    SQLContainer::Objects objects = container.objectList();
    putViewsLast(objects);
    if (supportsViews())
        for (auto object = objects.rbegin(); object != objects.rend(); ++object)
            if (auto* view = as<SQLView>(object->get())) sql += dropSQLView(*view);

    std::string drops;
    std::unordered_set<const SQLTable*> dropped;
    bool inCycle = false;
    for (SQLTable* table : tablesInDropOrder(container)) {
        if (as<SQLView>(table)) continue;
        dropped.insert(table);
        for (const SQLTable* referencing : referencingTables(*table)) inCycle |= !dropped.contains(referencing);
        drops += dropSQLTable(*table);
    }
    _referencingByKey.clear();
    return sql + (inCycle ? withoutForeignKeyChecks(drops) : drops);
}

std::string GenericSQLExporter::userBlock(std::string_view block) {
    block = trimmed(block);
    // Not cut into statements: a semicolon in a comment is no end.
    const bool isEnded = block.ends_with(';') && !endsInRemark(block);
    return block.empty() || isEnded ? std::string(block) : endedStatement(block);
}

std::string GenericSQLExporter::endedStatement(std::string_view sql) {
    // A remark to the end of the line would take the separator in.
    return text("%@%@%@", sql, endsInRemark(sql) ? "\n" : "", instructionSeparator());
}

void GenericSQLExporter::putViewsLast(SQLContainer::Objects& objects) {
    const auto isView = [](const auto& object) { return as<SQLView>(object.get()) != nullptr; };
    const auto firstView =
        std::stable_partition(objects.begin(), objects.end(), [&](const auto& object) { return !isView(object); });
    const SQLContainer::Objects views(firstView, objects.end());
    std::unordered_map<std::string, std::vector<std::size_t>> viewsByName;  // positions behind the first view
    for (std::size_t i = 0; i < views.size(); ++i) {
        const std::string name = as<SQLView>(views[i].get())->getBaseName();
        viewsByName[caseFolded(name)].push_back(i);
        // A query may also spell it as the script does, without its blanks.
        for (const SQLIdentifier& word : identifiersIn(quoteIdentifier(name)))
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

std::string GenericSQLExporter::missingColumnsRemark(SQLTable& table) {
    if (!writesRunnableScripts() || supportsTablesWithoutColumns()) return {};
    const auto components = table.lockedFields();
    const bool hasColumns =
        std::ranges::any_of(*components, [](const auto& component) { return as<SQLField>(component.get()); });
    return hasColumns ? std::string()
                      : text("/* TABLE %@ - no columns specified */", commentText(getCanonicalName(table)));
}

bool GenericSQLExporter::isNeverWritten(const SQLConstraint& constraint) const {
    return writesRunnableScripts() && constraint.isCheckConstraint() && !supportsCheckConstraints();
}

std::string GenericSQLExporter::indexTypeInScript(SQLIndex& index) {
    const std::string type(trimmed(index.getIndexTypeString()));
    return writesRunnableScripts() && !supportsIndexType(uppercased(type)) ? std::string() : type;
}

std::string GenericSQLExporter::foreignKeyStatement(SQLConnectable& key) {
    std::string sql = nodeText(getSQLForForeignKeyFieldNode(key, true));
    if (writesRunnableScripts()) _foreignKeyStatements.insert(sql);
    return sql;
}

void GenericSQLExporter::putForeignKeysLast(Statements& statements) {
    // A key may need the unique index of a table that comes later.
    std::stable_partition(statements.begin(), statements.end(),
                          [this](const std::string& sql) { return !_foreignKeyStatements.contains(sql); });
    _foreignKeyStatements.clear();
}

}  // namespace vellicor
