// vellicor/migration/plan_builder_renames.cpp — tables, columns and constraints that take other names.
#include <algorithm>

#include "vellicor/migration/plan_builder.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

std::function<SQLName(const SQLName&)> PlanBuilder::freeName() const {
    return [this](const SQLName& name) {
        const std::string key = name.key + "_moved";
        const ScriptReader reader(_dialect.wordRules(), _dialect.folding());
        return reader.nameOf(_dialect.exporter().quoteIdentifier(key));
    };
}

void PlanBuilder::renameTables() {
    std::vector<Rename> renames;
    std::unordered_set<std::string> taken;
    std::vector<QualifiedName> present;
    for (const TableShape& table : _before.tables)
        if (!_droppedTables.contains(table.name.key()))
            taken.insert(nameInScope(table.name.schema.key, table.name.name));
    for (std::size_t i = 0; i < _comparison.pairs.size(); ++i) {
        const QualifiedName& before = _comparison.pairs[i]->before->name;
        const QualifiedName& after = _comparison.pairs[i]->after->name;
        present.push_back(before);
        if (before == after) continue;
        const bool isMoved = !(before.schema == after.schema);
        // A table of joined names has its schema in its name.
        if (isMoved) {
            std::string sql = _dialect.moveTable(before, after.schema);
            if (sql.empty()) sql = _dialect.renameTable(before, after);
            const bool isWhole = sql == _dialect.renameTable(before, after);
            add(Phase::TablesRenamed, "table " + after.text(), sql);
            present[i].schema = after.schema;
            if (isWhole) present[i].name = after.name;
            taken.erase(nameInScope(before.schema.key, before.name));
            taken.insert(nameInScope(after.schema.key, present[i].name));
        }
        if (!(present[i].name == after.name)) renames.push_back({after.schema.key, present[i].name, after.name, i});
    }
    for (const Rename& rename : orderedRenames(std::move(renames), std::move(taken), freeName())) {
        QualifiedName& name = present[rename.subject];
        QualifiedName next = name;
        next.name = rename.to;
        add(Phase::TablesRenamed, "table " + _comparison.pairs[rename.subject]->after->name.text(),
            _dialect.renameTable(name, next));
        name = next;
    }
}

void PlanBuilder::renameColumns() {
    for (const auto& pair : _comparison.pairs) {
        std::vector<Rename> renames;
        std::unordered_set<std::string> taken;
        std::unordered_set<std::string> wanted;
        for (const ColumnShape& column : pair->before->columns) taken.insert(nameInScope({}, column.name));
        for (const ColumnShape& column : pair->after->columns) wanted.insert(nameInScope({}, column.name));
        for (const auto& columns : pair->columns)
            if (!(columns.before->name == columns.after->name))
                renames.push_back({{}, columns.before->name, columns.after->name});
        for (const ColumnShape* column : pair->dropped) {
            // What goes last steps aside for what takes its name.
            if (!wanted.contains(nameInScope({}, column->name)) || !_dialect.canRenameColumns()) continue;
            SQLName aside = column->name;
            do aside = freeName()(aside);
            while (taken.contains(nameInScope({}, aside)) || wanted.contains(nameInScope({}, aside)));
            renames.push_back({{}, column->name, aside});
            _parked.emplace(column, aside);
        }
        for (const Rename& rename : orderedRenames(std::move(renames), std::move(taken), freeName()))
            add(Phase::ColumnsRenamed, "column " + pair->after->name.text() + "." + rename.to.text,
                _dialect.renameColumn(*pair->after, rename.from, rename.to));
    }
}

void PlanBuilder::renameConstraints() {
    struct Subject {
        const TablePair* pair;
        const ConstraintShape* constraint;
    };
    std::vector<Subject> subjects;
    std::vector<Rename> renames;
    std::unordered_set<std::string> taken;
    // Constraints of a table have names of their own; indexes may share theirs with the whole schema.
    const auto scopeOf = [this](const TablePair& pair, const ConstraintShape& constraint) {
        const bool isIndex = constraint.kind == ConstraintKind::Index;
        if (_dialect.sharesIndexNames() &&
            (isIndex || constraint.kind == ConstraintKind::Unique || constraint.kind == ConstraintKind::PrimaryKey))
            return pair.after->name.schema.key;
        return pair.after->name.key() + (isIndex ? "\nindexes" : "\nconstraints");
    };
    for (const auto& pair : _comparison.pairs)
        for (const auto& [before, after] : pair->constraints) {
            taken.insert(nameInScope(scopeOf(*pair, *before), before->name));
            if (before->name == after->name || pair->isRebuilt) continue;
            renames.push_back({scopeOf(*pair, *before), before->name, after->name, subjects.size()});
            subjects.push_back({pair.get(), before});
        }
    for (const Rename& rename : orderedRenames(std::move(renames), std::move(taken), freeName())) {
        const auto& [pair, constraint] = subjects[rename.subject];
        add(Phase::ConstraintsRenamed, text("%@ %@", wordsFor(constraint->kind), rename.to.text),
            _dialect.renameConstraint(*pair->after, *constraint, rename.from, rename.to));
    }
}

}  // namespace vellicor
