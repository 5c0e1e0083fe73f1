// vellicor/model/foreign_key_graph_flat.cpp — reference trees as plain lists of columns.
#include <algorithm>

#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key_graph.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

bool holds(const SQLForeignKeyGraph::Subgraph& columns, const SQLField* field) {
    return std::ranges::find(columns, field, &SQLForeignKeyGraph::Column::get) != columns.end();
}

std::string columnListText(const SQLForeignKeyGraph::Subgraph& columns) {
    std::vector<std::string> lines;
    for (const auto& column : columns) lines.push_back("    " + column->description());
    return lines.empty() ? "(\n)" : text("(\n%@\n)", joined(lines, ",\n"));
}

}  // namespace

SQLForeignKeyGraph::Subgraph* SQLForeignKeyGraph::subgraphForField(const SQLField* field) {
    auto holdsField = [&](const Subgraph& columns) { return holds(columns, field); };
    const auto found = std::ranges::find_if(_subgraphList, holdsField);
    return found == _subgraphList.end() ? nullptr : &*found;
}

SQLForeignKeyGraph::Subgraph& SQLForeignKeyGraph::addNewSubgraphForPair(SQLField* field, SQLField* target) {
    return _subgraphList.emplace_back(Subgraph{shared(target), shared(field)});
}

SQLForeignKeyGraph::Subgraph SQLForeignKeyGraph::dependendentFields(const SQLField* field) {
    Subgraph dependents;
    if (const Subgraph* columns = subgraphForField(field))
        std::ranges::copy_if(*columns, std::back_inserter(dependents),
                             [&](const Column& column) { return column->getFkField() == field; });
    return dependents;
}

void SQLForeignKeyGraph::updateForeignKey(SQLField* field) {
    if (!field) return;
    SQLField* target = field->getFkField();
    Subgraph* own = subgraphForField(field);
    if (!target) {
        if (own && own->front().get() != field) removeForeignKeyEntry(field);
        return;
    }
    log(text("updating foreign key %@ %@", field->description(), target->description()));
    if (!holds(_graph, field)) _graph.push_back(shared(field));
    Subgraph* others = subgraphForField(target);
    if (own && own == others) return;
    if (!own && !others) {
        addNewSubgraphForPair(field, target);
    } else if (!own) {
        others->push_back(shared(field));
    } else {
        const Subgraph dependents = dependendentFields(field);
        std::erase_if(*own,
                      [&](const Column& column) { return column.get() == field || holds(dependents, column.get()); });
        // Kept: the column stands behind its dependents in a list it joins, before them in one of its own.
        if (others) {
            others->insert(others->end(), dependents.begin(), dependents.end());
            others->push_back(shared(field));
        } else {
            Subgraph& added = _subgraphList.emplace_back(Subgraph{shared(field)});
            added.insert(added.end(), dependents.begin(), dependents.end());
        }
        std::erase_if(_subgraphList, &Subgraph::empty);
    }
}

void SQLForeignKeyGraph::removeForeignKeyEntry(SQLField* field) {
    Subgraph others;
    std::erase_if(_subgraphList, [&](const Subgraph& columns) {
        if (!holds(columns, field)) return false;
        std::ranges::copy_if(columns, std::back_inserter(others),
                             [&](const Column& column) { return column.get() != field; });
        return true;
    });
    log(text("need to rebuild: %@", columnListText(others)));
    for (const Column& column : others) updateForeignKey(column.get());
}

std::string SQLForeignKeyGraph::typeForField(SQLField& field) {
    const Subgraph* columns = subgraphForField(&field);
    return columns ? columns->front()->getType() : field.getType();
}

}  // namespace vellicor
