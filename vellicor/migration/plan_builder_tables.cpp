// vellicor/migration/plan_builder_tables.cpp — what changes inside a table that stays.
#include <algorithm>

#include "vellicor/migration/plan_builder.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::string aboutColumn(const TableShape& table, const SQLName& column) {
    return text("column %@.%@", table.name.text(), column.text);
}

ColumnShape withoutCounting(const ColumnShape& column) {
    ColumnShape copy = column;
    std::erase_if(copy.words, [](const ColumnShape::Words& words) { return words.part == ColumnPart::Counting; });
    return copy;
}

const ConstraintShape* leadingKey(const std::vector<const ConstraintShape*>& constraints, const SQLName& column) {
    const auto found = std::ranges::find_if(constraints, [&](const ConstraintShape* constraint) {
        return (constraint->kind == ConstraintKind::PrimaryKey || constraint->kind == ConstraintKind::Index) &&
               constraint->columns.front().name == column;
    });
    return found == constraints.end() ? nullptr : *found;
}

}  // namespace

// === tables that must be made anew

std::string PlanBuilder::reasonNotToAdd(const ColumnShape& column) {
    if (column.has(ColumnPart::PrimaryKey)) return "a primary key cannot be added";
    if (column.has(ColumnPart::Unique)) return "a unique column cannot be added";
    const std::string value = column.text(ColumnPart::Default);
    const bool hasValue = !value.empty() && uppercased(value) != "DEFAULT NULL";
    if (column.has(ColumnPart::NotNull) && !hasValue)
        return "a column that refuses null cannot be added without a default";
    if (uppercased(value).starts_with("DEFAULT CURRENT_") || value.starts_with("DEFAULT ("))
        return "a column whose default is computed cannot be added";
    if (column.has(ColumnPart::Reference) && hasValue) return "a key with a default cannot be added";
    return {};
}

std::vector<MigrationGap> PlanBuilder::reasonsToRebuild(const TablePair& pair) const {
    std::vector<MigrationGap> reasons;
    const TableShape& table = *pair.after;
    for (const ColumnChange& change : pair.changes)
        reasons.push_back({aboutColumn(table, change.after.name), "the definition of a column cannot change"});
    const auto isOf = [](const auto& columns, const ConstraintShape& constraint) {
        return std::ranges::any_of(columns,
                                   [&](const ColumnShape* column) { return constraint.mentions(column->name); });
    };
    for (const ConstraintShape* constraint : pair.gone)
        if (constraint->inTable)
            reasons.push_back(
                {aboutColumn(table, constraint->name), text("a %@ cannot be dropped", wordsFor(constraint->kind))});
    for (const ConstraintShape* constraint : pair.made)
        if (constraint->inTable && !(constraint->inColumn && isOf(pair.added, *constraint)))
            reasons.push_back(
                {aboutColumn(table, constraint->name), text("a %@ cannot be added", wordsFor(constraint->kind))});
    for (const auto& [before, after] : pair.constraints)
        if (before->inTable && (!(before->name == after->name) || before->inColumn != after->inColumn))
            reasons.push_back({aboutColumn(table, after->name), text("a %@ cannot be renamed", wordsFor(after->kind))});
    for (const ColumnShape* column : pair.added)
        if (const std::string reason = reasonNotToAdd(*column); !reason.empty())
            reasons.push_back({aboutColumn(table, column->name), reason});
    if (pair.renamed.options != table.options)
        reasons.push_back({"table " + table.name.text(), "its options cannot change"});
    return reasons;
}

void PlanBuilder::chooseRebuilds() {
    if (!_dialect.rebuildsTables()) return;
    for (const auto& pair : _comparison.pairs) {
        const std::vector<MigrationGap> reasons = reasonsToRebuild(*pair);
        if (reasons.empty()) continue;
        if (_mayRebuild) {
            pair->isRebuilt = true;
            continue;
        }
        for (const MigrationGap& gap : reasons)
            gaps.push_back({gap.about, gap.reason + " in place; a rebuild of the table would do it"});
        for (const ColumnShape* column : pair->added)
            if (!reasonNotToAdd(*column).empty()) _skipped.insert(column);
        for (const ColumnShape* column : pair->dropped)
            if (std::ranges::any_of(pair->gone, [&](const ConstraintShape* constraint) {
                    return constraint->inTable && constraint->mentions(column->name);
                }))
                _skipped.insert(column);
    }
}

void PlanBuilder::rebuildTable(TablePair& pair) {
    const TableShape& table = *pair.after;
    isRebuild = true;
    SQLName aside = freeName()(table.name.name);
    const auto isTaken = [&](const std::vector<TableShape>& tables) {
        return std::ranges::any_of(
            tables, [&](const TableShape& other) { return caseFolded(other.name.name.key) == caseFolded(aside.key); });
    };
    while (isTaken(_before.tables) || isTaken(_after.tables)) aside = freeName()(aside);

    std::vector<std::string> names;
    std::vector<std::string> values;
    std::vector<std::string> reasons;
    Verdict verdict = Verdict::Rewrites;
    const auto weigh = [&](Verdict found, const std::string& reason) {
        verdict = std::max(verdict, found);
        reasons.push_back(reason);
    };
    for (const TablePair::ColumnPair& columns : pair.columns) {
        const ColumnShape& column = *columns.after;
        const std::string value = column.text(ColumnPart::Default);
        const bool isFilled = column.refusesNull && !columns.renamed->refusesNull && value.size() > 8;
        names.push_back(column.name.text);
        values.push_back(isFilled ? text("COALESCE(%@, %@)", column.name.text, value.substr(8)) : column.name.text);
        if (column.refusesNull && !columns.renamed->refusesNull && !isFilled)
            weigh(Verdict::MayFail, text("rows without a value of %@ are refused", column.name.text));
    }
    for (const ColumnShape* column : pair.dropped)
        weigh(Verdict::LosesData, text("the values of %@ go", column->name.text));
    for (const ColumnShape* column : pair.added)
        if (column->refusesNull && !column->has(ColumnPart::Default))
            weigh(Verdict::MayFail, text("rows have no value for %@", column->name.text));
    for (const ConstraintShape* constraint : pair.made)
        if (constraint->inTable) weigh(Verdict::MayFail, text("rows may break a new %@", wordsFor(constraint->kind)));

    MigrationSteps steps("table " + table.name.text());
    steps.add(text("CREATE TABLE %@\n%@", aside.text, table.body));
    if (!names.empty())
        steps.add(text("INSERT INTO %@ (%@)\nSELECT %@ FROM %@", aside.text, joined(names, ", "), joined(values, ", "),
                       table.name.text()),
                  verdict, reasons.empty() ? "every row is copied" : joined(reasons, "; "));
    steps.add("DROP TABLE " + table.name.text(), names.empty() ? Verdict::LosesData : Verdict::Safe,
              names.empty() ? joined(reasons, "; ") : "");
    steps.add(_dialect.renameTable({{}, aside}, table.name));
    add(Phase::TablesRebuilt, steps);
    for (const ConstraintShape& constraint : table.constraints)
        if (!constraint.inTable) makeConstraint(table, constraint);
}

// === tables that change in place

void PlanBuilder::addTable(TablePair& pair) {
    dropConstraints(pair);
    if (pair.isRebuilt) return rebuildTable(pair);
    addColumns(pair);
    changeColumns(pair);
    for (const ConstraintShape* constraint : pair.made) {
        if (_skipped.contains(constraint) || (_dialect.rebuildsTables() && constraint->inTable)) continue;
        makeConstraint(*pair.after, *constraint);
    }
    const TableShape& table = *pair.after;
    for (const ColumnShape* dropped : pair.dropped) {
        if (_skipped.contains(dropped)) continue;
        ColumnShape column = *dropped;
        if (const auto parked = _parked.find(dropped); parked != _parked.end()) column.name = parked->second;
        add(Phase::ColumnsDropped, aboutColumn(table, dropped->name), _dialect.dropColumn(table, column),
            Verdict::LosesData, "the values of the column go");
    }
    if (pair.renamed.options != table.options && !_dialect.rebuildsTables())
        add(Phase::OptionsChanged, "table " + table.name.text(), _dialect.alterOptions(pair.renamed, table));
    if (pair.renamed.comment != table.comment)
        add(Phase::OptionsChanged, "table " + table.name.text(), _dialect.commentOnTable(table));
}

void PlanBuilder::addColumns(TablePair& pair) {
    const TableShape& table = *pair.after;
    for (const ColumnShape* column : pair.added) {
        if (_skipped.contains(column)) continue;
        const ColumnShape* previous = column == table.columns.data() ? nullptr : column - 1;
        std::string sql = _dialect.addColumn(table, *column, previous);
        const ConstraintShape* key = _dialect.countsOnlyInKeys() && column->has(ColumnPart::Counting)
                                         ? leadingKey(pair.made, column->name)
                                         : nullptr;
        if (key) {
            // Both in one statement, so that the rows that are there are numbered.
            const std::string clause = _dialect.addConstraint(table, *key);
            const std::string start = text("ALTER TABLE %@ ADD ", table.name.text());
            std::vector<std::string> names;
            for (const ConstraintShape::Column& name : key->columns) names.push_back(name.name.text + name.more);
            sql += ", ADD " + (clause.starts_with(start) ? clause.substr(start.size())
                                                         : text("%@ INDEX %@ (%@)", trimmed(key->words), key->name.text,
                                                                joined(names, ", ")));
            _skipped.insert(key);
        }
        const bool mustHaveValue =
            column->refusesNull && !column->has(ColumnPart::Default) && !column->has(ColumnPart::Counting);
        add(Phase::ColumnsAdded, aboutColumn(table, column->name), sql,
            mustHaveValue ? Verdict::MayFail : Verdict::Safe,
            mustHaveValue ? "rows that are there have no value for it, and there is no default" : "");
        if (!column->comment.empty())
            add(Phase::OptionsChanged, aboutColumn(table, column->name), _dialect.commentOnColumn(table, *column));
    }
}

void PlanBuilder::changeColumns(TablePair& pair) {
    if (_dialect.rebuildsTables()) return;
    const TableShape& table = *pair.after;
    std::unordered_set<const ColumnShape*> stripped;
    if (_dialect.countsOnlyInKeys()) {
        const auto strip = [&](const ColumnShape& before, const ColumnShape& renamed) {
            const bool keyGoes = leadingKey(pair.gone, renamed.name) != nullptr;
            const bool keyStays =
                std::ranges::any_of(pair.constraints, [&](const TablePair::ConstraintPair& constraints) {
                    return leadingKey({constraints.before}, renamed.name) != nullptr;
                });
            if (!renamed.has(ColumnPart::Counting) || !keyGoes || keyStays) return false;
            // It must stop counting before its key goes.
            const ColumnShape still = withoutCounting(before);
            ColumnChange change{before, still};
            change.counting = true;
            MigrationSteps steps(aboutColumn(*pair.before, before.name));
            _dialect.alterColumn(*pair.before, change, steps);
            add(Phase::KeysDropped, steps);
            return true;
        };
        for (const TablePair::ColumnPair& columns : pair.columns)
            if (strip(*columns.before, *columns.renamed)) stripped.insert(columns.after);
        for (const ColumnShape* column : pair.dropped)
            (void)strip(pair.before->columns[static_cast<std::size_t>(column - pair.renamed.columns.data())], *column);
        for (const TablePair::ColumnPair& columns : pair.columns) {
            const ColumnShape& column = *columns.after;
            if (!column.has(ColumnPart::Counting) ||
                (columns.renamed->has(ColumnPart::Counting) && !stripped.contains(&column)))
                continue;
            ColumnChange change{*columns.renamed, column};
            change.counting = true;
            MigrationSteps steps(aboutColumn(table, column.name));
            _dialect.alterColumn(table, change, steps);
            add(Phase::ColumnsCount, steps);
            stripped.insert(&column);
        }
    }
    for (const ColumnChange& change : pair.changes) {
        MigrationSteps steps(aboutColumn(table, change.after.name));
        if (stripped.contains(&change.after)) {
            ColumnShape still = withoutCounting(change.after);
            ColumnChange first{change.before,       still, change.type,    change.nullability,
                               change.defaultValue, false, change.comment, change.other};
            if (first.any()) _dialect.alterColumn(table, first, steps);
        } else {
            _dialect.alterColumn(table, change, steps);
        }
        add(Phase::ColumnsChanged, steps);
    }
}

}  // namespace vellicor
