// vellicor/export/runnable/runnable_exporter.h — what every dialect does differently in scripts that shall run.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

#include "vellicor/export/generic_exporter.h"
#include "vellicor/export/runnable/runnable_dialect.h"
#include "vellicor/export/runnable/runnable_text.h"
#include "vellicor/export/runnable/script_order.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/scoped_value.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

/// The runnable form over a dialect's classic text: overrides only what a server would refuse or read as something
/// else. A dialect that differs in more derives from it, in `dialects/runnable/`.
template <class Classic>
class RunnableExporter : public Classic, public RunnableDialect {
public:
    [[nodiscard]] std::shared_ptr<SQLExportDialect> newInstance() const override { return create<RunnableExporter>(); }

    // === the document
    [[nodiscard]] SQLContainer::Objects objectsInScript(SQLContainer& container) override {
        SQLContainer::Objects objects = Classic::objectsInScript(container);
        putViewsLast(objects, *this);
        return objects;
    }
    std::string prologueSQLContainer(SQLContainer& container) override {
        container.reorderByForeignKeys();
        container.updateTargetTableLists();
        const ReferencingTables byKey = this->dropsFirst() ? tablesReferencingByKey(container) : ReferencingTables();
        const ScopedValue scope(_referencingByKey, &byKey);
        return runnablePrologue(*this, *this, container);
    }
    [[nodiscard]] std::vector<SQLTable*> referencingTables(const SQLTable& table) const override {
        std::vector<SQLTable*> tables = Classic::referencingTables(table);
        if (!_referencingByKey) return tables;
        if (const auto keys = _referencingByKey->find(&table); keys != _referencingByKey->end())
            tables.insert(tables.end(), keys->second.begin(), keys->second.end());
        return tables;
    }
    std::string dropSQLView(SQLView& view) override {
        return text("DROP VIEW %@%@%@\n", this->ifExists(), this->getCanonicalName(view), this->instructionSeparator());
    }
    Statements postLoadAsVectorSQLContainer(SQLContainer& container) override {
        std::unordered_set<std::string> keyStatements;
        const ScopedValue scope(_keyStatements, &keyStatements);
        Statements statements = this->postLoadOfTables(container);
        putLast(statements, keyStatements);  // a key may need the unique index of a table that comes later
        const SQLDocumentInfo* info = container.documentInfo();
        statements.push_back(this->userBlock(info ? info->postExportSQL() : std::string()));
        std::erase(statements, "");
        return statements;
    }
    [[nodiscard]] std::string userBlock(std::string_view block) override {
        block = trimmed(block);
        // Not cut into statements: a semicolon in a comment is no end.
        const bool isEnded = block.ends_with(';') && !endsInRemark(block);
        return block.empty() || isEnded ? std::string(block) : endedStatement(block);
    }

    // === tables
    std::string exportSQLTable(SQLTable& table) override {
        if (!this->supportsTablesWithoutColumns()) {
            const auto components = table.lockedFields();
            const auto isColumn = [](const auto& component) { return as<SQLField>(component.get()) != nullptr; };
            if (std::ranges::none_of(*components, isColumn)) {
                lose(table, "the table", "it has no columns");
                return text("/* TABLE %@ - no columns specified */", commentText(this->getCanonicalName(table)));
            }
        }
        return Classic::exportSQLTable(table);
    }
    SourceNodePtr fieldBlock(SQLTable& table) override {
        std::string remarks;
        const ScopedValue scope(_remarks, &remarks);
        SourceNodePtr node = Classic::fieldBlock(table);
        if (!remarks.empty()) node->childAtIndex(1)->setSpaceBeforeChildren("\n" + remarks);
        return node;
    }
    SourceNodePtr componentItem(SQLTableComponent& component, const std::string& sql) override {
        if (!_remarks || !isRemark(sql)) return Classic::componentItem(component, sql);
        *_remarks += sql + "\n";  // an item of its own would leave a separator without an item
        return nullptr;
    }
    [[nodiscard]] std::string checkConstraintName(SQLObject& object) override {
        const std::string name = Classic::checkConstraintName(object);
        const auto* component = as<SQLTableComponent>(&object);
        SQLTable* table = component ? component->parentTable() : nullptr;
        return table && !name.empty() ? this->constraintNameInScript(*table, name) : name;
    }
    SourceNodePtr foreignKeyErrorNode(SQLConnectable& key, bool ignoreEmpty) override {
        SourceNodePtr error = Classic::foreignKeyErrorNode(key, ignoreEmpty);
        if (error) lose(key.connectableComponent(), "the foreign key", "its columns and target make no key");
        return error;
    }

    // === names
    [[nodiscard]] bool objectNameRequiresQuoting(std::string_view name) override {
        return Classic::objectNameRequiresQuoting(name) || this->runsOnlyQuoted(name);
    }
    void quoteString(std::string& name) override {
        const std::string start = this->getStartingQuoteIdentifierString();
        const std::string end = this->getEndingQuoteIdentifierString();
        const bool isQuoted =
            name.size() >= start.size() + end.size() && name.starts_with(start) && name.ends_with(end);
        if (!isQuoted) name = start + replacingAll(name, end, end + end) + end;
    }
    std::string nameForIndexStatement(SQLTable& table, std::string_view name) override {
        const std::string bare = this->getNameForIndex(table, name, std::string(), false);
        return this->quoteIdentifier(this->indexNameInScript(table, bare));
    }
    std::string nameForIndexStatement(SQLTable& table, SQLIndex& index) override {
        const bool isRemark = index.indexListCount() == 0;  // which takes no name
        return isRemark ? Classic::nameForIndexStatement(table, index) : nameForIndexStatement(table, index.getName());
    }
    /// The name itself, or numbered when the server would find it taken. The same for constraints of a table.
    [[nodiscard]] virtual std::string indexNameInScript(SQLTable&, std::string_view name) { return std::string(name); }
    [[nodiscard]] virtual std::string constraintNameInScript(SQLTable&, std::string_view name) {
        return std::string(name);
    }
    [[nodiscard]] std::string indexTypeInScript(SQLIndex& index) override {
        std::string type(trimmed(index.getIndexTypeString()));
        if (this->supportsIndexType(uppercased(type))) return type;
        if (!type.empty()) lose(index, text("the type %@", type), text("%@ has no such index", this->getName()));
        return {};
    }

    // === values and comments
    std::string addDefaultQuotes(std::string_view value) override {
        return this->getQuoteDefaultString() == "'" ? runnableLiteral(value) : Classic::addDefaultQuotes(value);
    }
    [[nodiscard]] std::string commentText(std::string_view comment) const override { return runnableComment(comment); }

    // === alter scripts
    std::string dropSQLConstraint(SQLConstraint& constraint) override {
        return this->isWritten(constraint) ? Classic::dropSQLConstraint(constraint) : std::string();
    }
    SourceNodePtr addSQLConstraintAsNode(SQLConstraint& constraint) override {
        return this->isWritten(constraint) ? Classic::addSQLConstraintAsNode(constraint) : QVSourceNode::node();
    }
    /// An index is dropped under the name with which it was made, the table's prefix included.
    [[nodiscard]] std::string nameOfExistingIndex(SQLIndex& index) override {
        SQLTable* table = index.parentTable();
        return table ? this->getNameForIndexWithIndex(*table, index) : Classic::nameOfExistingIndex(index);
    }
    [[nodiscard]] std::string nameOfExistingIndex(SQLField& field, SQLTable& table) override {
        const std::string keyName = field.getProperty(keys::indexedKeyName);
        const std::string name = keyName.empty() ? this->fieldIndexName(field, table) : this->quoteIdentifier(keyName);
        this->logDropIndexName(name, field);
        return name;
    }

protected:
    [[nodiscard]] std::unique_ptr<ExportRun> newRun(SQLContainer& container) override {
        auto run = std::make_unique<RunnableRun>(container, this->newLosses());
        reserveTableNames(*run);
        return run;
    }
    void reserveTableNames(RunnableRun& run) {
        for (const auto& object : run.container().objectList())
            if (auto* table = as<SQLTable>(object.get())) this->reserveTableName(run, *table);
    }
    /// Keeps the table's own name from indexes, where both share one list of names.
    virtual void reserveTableName(RunnableRun&, SQLTable&) {}
    /// The running export; null while none runs.
    [[nodiscard]] RunnableRun* runnableRun() const { return static_cast<RunnableRun*>(this->run()); }
    /// The name, or a numbered one when the running script has used it in the scope already.
    [[nodiscard]] std::string nameInScript(std::string_view scope, std::string_view name) const {
        RunnableRun* run = runnableRun();
        return run ? run->freeName(scope, name) : std::string(name);
    }
    /// Says what the running script does not carry.
    void lose(const SQLObject& object, std::string_view what, std::string_view why) const {
        if (RunnableRun* run = runnableRun()) run->losses().add(object, what, why);
    }

    [[nodiscard]] std::string endedStatement(std::string_view sql) override {
        // A remark to the end of the line would take the separator in.
        return text("%@%@%@", sql, endsInRemark(sql) ? "\n" : "", this->instructionSeparator());
    }
    std::string foreignKeyStatement(SQLConnectable& key) override {
        std::string sql = Classic::foreignKeyStatement(key);
        if (_keyStatements) _keyStatements->insert(sql);
        return sql;
    }
    [[nodiscard]] bool isUnchanged(SQLForeignKey& key, SQLForeignKey& oldKey) override {
        return Classic::isUnchanged(key, oldKey) &&
               this->actionsMatch(key.deleteAction(), oldKey.deleteAction(), this->defaultDeleteAction()) &&
               this->actionsMatch(key.updateAction(), oldKey.updateAction(), this->defaultUpdateAction());
    }

private:
    // Each lives in the operation that sets it.
    const ReferencingTables* _referencingByKey = nullptr;
    std::unordered_set<std::string>* _keyStatements = nullptr;
    std::string* _remarks = nullptr;
};

/// A fresh exporter of the dialect in the form that is wanted now. For plug-ins, which make their exporters themselves.
template <class Classic>
[[nodiscard]] std::shared_ptr<SQLExportDialect> exporterInWantedForm() {
    if (wantsRunnableScripts()) return create<RunnableExporter<Classic>>();
    return create<Classic>();
}

}  // namespace vellicor
