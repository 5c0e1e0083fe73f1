// vellicor/migration/shape_comparison.cpp — two databases side by side, the old one under the new names.
#include "vellicor/migration/shape_comparison.h"

#include <algorithm>
#include <unordered_set>

#include "vellicor/model/field.h"
#include "vellicor/model/view.h"

namespace vellicor {

namespace {

/// Shapes by their objects, and by name for those without one.
template <class Shape>
struct ShapeFinder {
    std::unordered_map<const void*, const Shape*> byObject;
    std::unordered_map<std::string, const Shape*> byName;
};

const void* objectOf(const TableShape& table) { return table.table; }
const void* objectOf(const ViewShape& view) { return view.view; }
const SQLObject* modelObjectOf(const TableShape& table) { return table.table; }
const SQLObject* modelObjectOf(const ViewShape& view) { return view.view; }

template <class Shape>
ShapeFinder<Shape> finderOf(const std::vector<Shape>& shapes) {
    ShapeFinder<Shape> finder;
    for (const Shape& shape : shapes) {
        if (objectOf(shape))
            finder.byObject.emplace(objectOf(shape), &shape);
        else
            finder.byName.emplace(shape.name.key(), &shape);
    }
    return finder;
}

/// The new shape of an old one; null when it is gone.
template <class Shape, class ModelClass>
const Shape* successorOf(const Shape& before, const ShapeFinder<Shape>& after, const ObjectMatcher& matcher) {
    if (const SQLObject* object = modelObjectOf(before)) {
        const SQLObject* successor = matcher.successorOf(*object);
        const auto found = successor ? after.byObject.find(as<const ModelClass>(successor)) : after.byObject.end();
        return found == after.byObject.end() ? nullptr : found->second;
    }
    const auto found = after.byName.find(before.name.key());
    return found == after.byName.end() ? nullptr : found->second;
}

}  // namespace

bool isSameTable(const TableShape& before, const TableShape& after) {
    return before.body == after.body && before.comment == after.comment &&
           std::ranges::equal(before.constraints, after.constraints,
                              [](const ConstraintShape& a, const ConstraintShape& b) {
                                  return a.name == b.name && a.statement == b.statement;
                              }) &&
           std::ranges::equal(before.columns, after.columns, {}, &ColumnShape::comment, &ColumnShape::comment);
}

bool TablePair::hasOtherColumns() const {
    return !added.empty() || !dropped.empty() || std::ranges::any_of(changes, &ColumnChange::type) ||
           std::ranges::any_of(columns,
                               [](const ColumnPair& pair) { return !(pair.before->name == pair.after->name); });
}

ShapeComparison::ShapeComparison(const DatabaseShape& before, const DatabaseShape& after, const ObjectMatcher& matcher,
                                 const MigrationDialect& dialect)
    : _matcher(matcher), _dialect(dialect) {
    join(before, after);
    for (const TableShape& table : before.tables) {
        const auto found = _successors.find(table.name.key());
        if (found == _successors.end()) {
            dropped.push_back(&table);
            continue;
        }
        const Successor& successor = found->second;
        if (table.name == successor.after->name && successor.columns.empty() && isSameTable(table, *successor.after))
            continue;
        addPair(successor);
    }
    std::unordered_set<const TableShape*> kept;
    for (const auto& [key, successor] : _successors) kept.insert(successor.after);
    for (const TableShape& table : after.tables)
        if (!kept.contains(&table)) added.push_back(&table);

    const auto finder = finderOf(after.views);
    std::unordered_set<const ViewShape*> keptViews;
    for (const ViewShape& view : before.views) {
        const ViewShape* successor = successorOf<ViewShape, SQLView>(view, finder, matcher);
        if (successor && !keptViews.insert(successor).second) successor = nullptr;
        views.push_back({&view, successor});
    }
    for (const ViewShape& view : after.views)
        if (!keptViews.contains(&view)) views.push_back({nullptr, &view});
}

TablePair& ShapeComparison::addPair(const Successor& successor) {
    TablePair& pair = *pairs.emplace_back(std::make_unique<TablePair>());
    pair.before = successor.before;
    pair.after = successor.after;
    _pairs.emplace(successor.before, &pair);
    rename(pair);
    compareColumns(pair);
    compareConstraints(pair);
    return pair;
}

TablePair* ShapeComparison::pairOf(const TableShape& before) {
    if (const auto found = _pairs.find(&before); found != _pairs.end()) return found->second;
    const auto successor = _successors.find(before.name.key());
    return successor == _successors.end() ? nullptr : &addPair(successor->second);
}

void ShapeComparison::join(const DatabaseShape& before, const DatabaseShape& after) {
    const auto finder = finderOf(after.tables);
    std::unordered_set<const TableShape*> taken;
    for (const TableShape& table : before.tables) {
        const TableShape* successor = successorOf<TableShape, SQLTable>(table, finder, _matcher);
        if (!successor || !taken.insert(successor).second) continue;
        Successor& entry = _successors.emplace(table.name.key(), Successor{&table, successor, {}}).first->second;
        joinColumns(entry);
    }
}

void ShapeComparison::joinColumns(Successor& successor) {
    std::unordered_map<const SQLObject*, const ColumnShape*> after;
    // Most tables keep their columns where they were.
    const auto& columns = successor.after->columns;
    for (std::size_t i = 0; i < successor.before->columns.size(); ++i) {
        const ColumnShape& column = successor.before->columns[i];
        const SQLObject* object = column.column ? _matcher.successorOf(*column.column) : nullptr;
        if (!object) continue;
        const ColumnShape* now = i < columns.size() && columns[i].column == object ? &columns[i] : nullptr;
        if (!now) {
            if (after.empty())
                for (const ColumnShape& candidate : columns) after.emplace(candidate.column, &candidate);
            const auto found = after.find(object);
            if (found == after.end()) continue;
            now = found->second;
        }
        if (!(now->name == column.name)) successor.columns.emplace(column.name.key, now->name);
    }
}

QualifiedName ShapeComparison::presentName(const QualifiedName& before) const {
    const auto found = _successors.find(before.key());
    return found == _successors.end() ? before : found->second.after->name;
}

void ShapeComparison::rename(TablePair& pair) const {
    pair.renamed = *pair.before;
    pair.renamed.name = pair.after->name;
    const ColumnNames& columns = _successors.at(pair.before->name.key()).columns;
    const auto apply = [](SQLName& name, const ColumnNames& names) {
        if (const auto found = names.find(name.key); found != names.end()) name = found->second;
    };
    for (ColumnShape& column : pair.renamed.columns) apply(column.name, columns);
    for (ConstraintShape& constraint : pair.renamed.constraints) {
        for (ConstraintShape::Column& column : constraint.columns) apply(column.name, columns);
        if (constraint.kind == ConstraintKind::Check) constraint.words = renamedInWords(constraint.words, columns);
        const auto target = _successors.find(constraint.target.key());
        if (constraint.kind != ConstraintKind::ForeignKey || target == _successors.end()) continue;
        constraint.target = target->second.after->name;
        for (ConstraintShape::Column& column : constraint.targetColumns) apply(column.name, target->second.columns);
    }
}

void ShapeComparison::compareColumns(TablePair& pair) const {
    std::unordered_map<const SQLObject*, const ColumnShape*> byObject;
    std::unordered_map<std::string, const ColumnShape*> byName;
    for (const ColumnShape& column : pair.after->columns) {
        if (column.column) byObject.emplace(column.column, &column);
        byName.emplace(column.name.key, &column);
    }
    std::unordered_set<const ColumnShape*> kept;
    for (std::size_t i = 0; i < pair.before->columns.size(); ++i) {
        const ColumnShape& before = pair.before->columns[i];
        const ColumnShape& renamed = pair.renamed.columns[i];
        const ColumnShape* after = nullptr;
        if (before.column) {
            const auto found = byObject.find(_matcher.successorOf(*before.column));
            if (found != byObject.end()) after = found->second;
        } else if (const auto found = byName.find(renamed.name.key); found != byName.end()) {
            after = found->second;
        }
        if (!after || !kept.insert(after).second) {
            pair.dropped.push_back(&renamed);
            continue;
        }
        pair.columns.push_back({&before, &renamed, after});
        const auto differs = [&](ColumnPart part) { return renamed.normal(part) != after->normal(part); };
        ColumnChange change{renamed, *after};
        change.type = !_dialect.isSameType(renamed.normal(ColumnPart::Type), after->normal(ColumnPart::Type));
        change.nullability = renamed.refusesNull != after->refusesNull;
        change.defaultValue = renamed.text(ColumnPart::Default) != after->text(ColumnPart::Default);
        change.counting = renamed.has(ColumnPart::Counting) != after->has(ColumnPart::Counting);
        change.comment = differs(ColumnPart::Comment) || renamed.comment != after->comment;
        change.other = differs(ColumnPart::Other) || differs(ColumnPart::Null);
        if (change.any()) pair.changes.push_back(change);
    }
    for (const ColumnShape& column : pair.after->columns)
        if (!kept.contains(&column)) pair.added.push_back(&column);
}

void ShapeComparison::compareConstraints(TablePair& pair) const {
    std::vector<const ConstraintShape*> old;
    for (const ConstraintShape& constraint : pair.renamed.constraints) old.push_back(&constraint);
    std::vector<const ConstraintShape*> now;
    for (const ConstraintShape& constraint : pair.after->constraints) now.push_back(&constraint);
    const auto take = [&](auto isSame) {
        for (const ConstraintShape*& after : now) {
            if (!after) continue;
            const auto found = std::ranges::find_if(old, [&](const ConstraintShape* before) {
                return before && before->isLike(*after) && isSame(*before, *after);
            });
            if (found == old.end()) continue;
            pair.constraints.push_back({*found, after});
            *found = after = nullptr;
        }
    };
    take([](const ConstraintShape& before, const ConstraintShape& after) { return before.name == after.name; });
    take([](const ConstraintShape&, const ConstraintShape&) { return true; });
    for (const ConstraintShape* constraint : old)
        if (constraint) pair.gone.push_back(constraint);
    for (const ConstraintShape* constraint : now)
        if (constraint) pair.made.push_back(constraint);
}

}  // namespace vellicor
