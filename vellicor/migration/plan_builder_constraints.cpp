// vellicor/migration/plan_builder_constraints.cpp — indexes, constraints and keys that come, go or step aside.
#include <algorithm>

#include "vellicor/migration/plan_builder.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

bool isKey(const ConstraintShape& constraint) { return constraint.kind == ConstraintKind::ForeignKey; }

/// The old constraint under its old names.
const ConstraintShape& formerOf(const TablePair& pair, const ConstraintShape& renamed) {
    return pair.before->constraints[static_cast<std::size_t>(&renamed - pair.renamed.constraints.data())];
}

/// Whether an index over `columns` serves a key over `key`: it begins with the key's columns.
bool leadsWith(const std::vector<ConstraintShape::Column>& columns, const std::vector<ConstraintShape::Column>& key) {
    return columns.size() >= key.size() && std::ranges::equal(key, std::span(columns).first(key.size()));
}

bool isRetyped(const TablePair& pair, const SQLName& column, bool anyChange) {
    return std::ranges::any_of(pair.changes, [&](const ColumnChange& change) {
        return (change.type || (anyChange && (change.nullability || change.counting))) && change.after.name == column;
    });
}

std::string aboutConstraint(const TableShape& table, const ConstraintShape& constraint) {
    return text("%@ %@.%@", wordsFor(constraint.kind), table.name.text(),
                constraint.name.isEmpty() ? "(unnamed)" : constraint.name.text);
}

}  // namespace

template <class Condition>
bool PlanBuilder::open(TablePair& pair, Condition condition) {
    bool isOpened = false;
    std::erase_if(pair.constraints, [&](const TablePair::ConstraintPair& constraints) {
        if (!condition(constraints)) return false;
        pair.gone.push_back(constraints.before);
        pair.made.push_back(constraints.after);
        return isOpened = true;
    });
    return isOpened;
}

bool PlanBuilder::isInTheWay(const TablePair& pair, const TablePair::ConstraintPair& constraints) const {
    const ConstraintShape& before = *constraints.before;
    if (_dialect.rebuildsTables() && before.inTable) return false;
    if (!(before.name == constraints.after->name) &&
        _dialect.renameConstraint(*pair.after, before, before.name, constraints.after->name).empty())
        return true;
    const bool isHeld = before.kind == ConstraintKind::Check || _dialect.keepsIndexedTypes();
    return isHeld && !isKey(before) && std::ranges::any_of(before.columns, [&](const ConstraintShape::Column& column) {
               return isRetyped(pair, column.name, _dialect.keepsIndexedTypes());
           });
}

void PlanBuilder::openConstraints() {
    for (const auto& pair : _comparison.pairs)
        open(*pair, [&](const TablePair::ConstraintPair& constraints) { return isInTheWay(*pair, constraints); });
}

void PlanBuilder::openKeys() {
    // Tables whose columns or keys change under those that reference them.
    std::unordered_map<std::string, const TablePair*> disturbed;
    for (const auto& pair : _comparison.pairs)
        if (!pair->changes.empty() || !pair->gone.empty()) disturbed.emplace(pair->before->name.key(), pair.get());
    const auto isDisturbed = [&](const TablePair& pair, const std::vector<ConstraintShape::Column>& columns) {
        const auto changes = [&](const ConstraintShape::Column& column) {
            return isRetyped(pair, column.name, _dialect.keysNeedIndexes());
        };
        const auto servesKey = [&](const ConstraintShape* constraint) {
            return !isKey(*constraint) && constraint->kind != ConstraintKind::Check &&
                   std::ranges::any_of(constraint->columns, [&](const ConstraintShape::Column& column) {
                       return std::ranges::find(columns, column.name, &ConstraintShape::Column::name) != columns.end();
                   });
        };
        return std::ranges::any_of(columns, changes) || std::ranges::any_of(pair.gone, servesKey);
    };
    for (const TableShape& table : _before.tables) {
        for (const ConstraintShape& key : table.constraints) {
            if (!isKey(key)) continue;
            const bool mayConcern = disturbed.contains(key.target.key()) || disturbed.contains(table.name.key());
            if (!mayConcern) continue;
            if (TablePair* pair = _comparison.pairOf(table))
                open(*pair, [&](const TablePair::ConstraintPair& constraints) {
                    if (!isKey(*constraints.before)) return false;
                    const ConstraintShape& former = formerOf(*pair, *constraints.before);
                    const auto target = disturbed.find(former.target.key());
                    if (target != disturbed.end() && isDisturbed(*target->second, constraints.before->targetColumns))
                        return true;
                    const bool sourceMatters =
                        isRetyped(*pair, constraints.before->columns.front().name, _dialect.keysNeedIndexes()) ||
                        _dialect.keysNeedIndexes() ||
                        std::ranges::any_of(constraints.before->columns, [&](const ConstraintShape::Column& column) {
                            return isRetyped(*pair, column.name, false);
                        });
                    return sourceMatters && isDisturbed(*pair, constraints.before->columns);
                });
            break;
        }
    }
    if (!_dialect.keysNeedIndexes()) return;
    // Keys over the same column share the index that one of them brought along; and an index that comes replaces it.
    for (const auto& pair : _comparison.pairs) {
        const auto sharesColumn = [](const auto& list, const ConstraintShape& key) {
            return std::ranges::any_of(list, [&](const ConstraintShape* other) {
                return other->kind != ConstraintKind::Check && other->kind != ConstraintKind::PrimaryKey &&
                       other->columns.front() == key.columns.front();
            });
        };
        while (open(*pair, [&](const TablePair::ConstraintPair& constraints) {
            return isKey(*constraints.before) &&
                   (sharesColumn(pair->gone, *constraints.before) || sharesColumn(pair->made, *constraints.before));
        })) {
        }
    }
}

bool PlanBuilder::ownsIndex(const TableShape& table, const ConstraintShape& key) const {
    for (const ConstraintShape& other : table.constraints) {
        if (&other == &key) continue;
        const bool isIndex = other.kind == ConstraintKind::PrimaryKey || other.kind == ConstraintKind::Index;
        if (isIndex && leadsWith(other.columns, key.columns)) return false;
        // Of keys over the same columns the first brought the index.
        if (isKey(other) && &other < &key && leadsWith(other.columns, key.columns)) return false;
    }
    return true;
}

void PlanBuilder::dropConstraint(const TableShape& table, const ConstraintShape& constraint, bool columnsGo) {
    MigrationSteps steps(aboutConstraint(table, constraint));
    const std::string sql = _dialect.dropConstraint(table, constraint);
    if (!sql.empty()) {
        steps.add(sql);
        if (isKey(constraint) && _dialect.keysNeedIndexes() && ownsIndex(table, constraint)) {
            ConstraintShape index = constraint;
            index.kind = ConstraintKind::Index;
            steps.add(_dialect.dropConstraint(table, index));
        }
    } else if (!columnsGo) {
        steps.addGap("it has no name that a script could say, or the dialect cannot drop it");
    }
    add(isKey(constraint) ? Phase::KeysDropped : Phase::ConstraintsDropped, steps);
}

void PlanBuilder::dropConstraints(const TablePair& pair) {
    std::vector<const ConstraintShape*> gone = pair.gone;
    // Checks and indexes before the keys that they stand beside; primary keys last.
    std::ranges::stable_sort(gone, {}, [](const ConstraintShape* constraint) {
        return constraint->kind == ConstraintKind::PrimaryKey ? 1 : 0;
    });
    for (const ConstraintShape* constraint : gone) {
        if (_skipped.contains(constraint) || (_dialect.rebuildsTables() && constraint->inTable)) continue;
        const bool columnsGo = std::ranges::all_of(constraint->columns, [&](const ConstraintShape::Column& column) {
            return std::ranges::find(pair.dropped, column.name,
                                     [](const ColumnShape* dropped) { return dropped->name; }) != pair.dropped.end();
        });
        dropConstraint(*pair.before, formerOf(pair, *constraint), columnsGo);
    }
}

void PlanBuilder::dropKeysOfTables() {
    if (_dialect.rebuildsTables()) return;
    std::unordered_set<std::string> earlier;
    for (const TableShape* table : _comparison.dropped) {
        earlier.insert(table->name.key());
        // Tables go in the reverse order: what leads to a later one would stand in its way.
        for (const ConstraintShape& constraint : table->constraints)
            if (isKey(constraint) && _droppedTables.contains(constraint.target.key()) &&
                !earlier.contains(constraint.target.key()))
                dropConstraint(*table, constraint, false);
    }
}

void PlanBuilder::makeConstraint(const TableShape& table, const ConstraintShape& constraint) {
    MigrationSteps steps(aboutConstraint(table, constraint));
    const std::string sql = _dialect.addConstraint(table, constraint);
    const bool isUnique = constraint.kind == ConstraintKind::PrimaryKey || constraint.kind == ConstraintKind::Unique ||
                          constraint.words.starts_with("UNIQUE");
    const bool isNewTable = std::ranges::find(_comparison.added, &table) != _comparison.added.end();
    if (isNewTable || (constraint.kind == ConstraintKind::Index && !isUnique))
        steps.addOrGap(sql, "it", isNewTable ? Verdict::Safe : Verdict::Rewrites,
                       isNewTable ? "" : "the server reads every row");
    else if (isUnique)
        steps.addOrGap(sql, "it", Verdict::MayFail,
                       "rows that are equal in " +
                           joined(
                               [&] {
                                   std::vector<std::string> names;
                                   for (const ConstraintShape::Column& column : constraint.columns)
                                       names.push_back(column.name.text);
                                   return names;
                               }(),
                               ", ") +
                           " are refused");
    else
        steps.addOrGap(sql, "it", Verdict::MayFail,
                       isKey(constraint) ? "rows whose values the other table does not hold are refused"
                                         : "rows that break the condition are refused");
    const bool isIndex = constraint.kind == ConstraintKind::Index && _dialect.rebuildsTables();
    add(isKey(constraint) ? Phase::KeysMade : isIndex ? Phase::IndexesMade : Phase::ConstraintsMade, steps);
}

}  // namespace vellicor
