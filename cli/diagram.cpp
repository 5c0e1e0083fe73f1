// cli/diagram.cpp — reading the diagram off the model.
#include "cli/diagram.h"

#include <algorithm>
#include <set>
#include <unordered_map>

#include "vellicor/model/comment.h"
#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"

namespace vellicor::cli {

namespace {

/// Where an object stands: its table, and its place there.
struct Place {
    std::size_t table;
    std::size_t column;
};

constexpr const char* kActionWords[] = {"", "cascade", "restrict", "set null", "no action", "set default"};

std::string actionsOf(const SQLConnectable& link) {
    std::vector<std::string> parts;
    const auto add = [&parts](const char* when, std::uint64_t code) {
        if (code > 0 && code < std::size(kActionWords)) parts.push_back(std::string(when) + kActionWords[code]);
    };
    add("on delete ", link.deleteAction());
    add("on update ", link.updateAction());
    return joined(parts, ", ");
}

class Reader {
public:
    Diagram read(const SQLContainer& document) {
        for (const auto& object : document.objectListSortedByName()) {
            if (const auto* view = as<SQLView>(object.get()))
                _diagram.views.push_back(view);
            else if (const auto* table = as<SQLTable>(object.get()))
                addTable(*table);
            else if (const auto* remark = as<SQLComment>(object.get()); remark && !as<SQLCanvasArea>(object.get()))
                _diagram.remarks.push_back(remark);
        }
        for (std::size_t index = 0; index < _diagram.tables.size(); ++index) addArrows(index);
        return std::move(_diagram);
    }

private:
    void addTable(const SQLTable& table) {
        const std::size_t index = _diagram.tables.size();
        DiagramTable entry{&table, table.getName(), {}};
        table.forEachComponent<SQLField>([&](SQLField& field) {
            _places[&field] = {index, entry.columns.size()};
            const bool key = field.primaryKey();
            entry.columns.push_back(
                {&field, field.getName(), field.getType(), key, false, key || field.getNotNull(), field.isUnique()});
        });
        const auto keys = table.primaryKeyObjectList();
        if (keys.size() == 1) entry.columns[_places[keys.front()].column].unique = true;
        _tables[&table] = index;
        _diagram.tables.push_back(std::move(entry));
    }

    void addArrows(std::size_t index) {
        for (const auto& component : _diagram.tables[index].table->objectList()) {
            if (auto* field = as<SQLField>(component.get())) {
                if (field->getFkField()) addArrow(index, *field, {field}, {field->getFkField()});
            } else if (auto* key = as<SQLForeignKey>(component.get()); key && key->targetTable()) {
                std::vector<const SQLField*> sources, targets;
                for (const auto& pair : key->fieldPairs()) {
                    if (!pair->source() || !pair->target()) continue;
                    sources.push_back(pair->source());
                    targets.push_back(pair->target());
                }
                addArrow(index, *key, sources, targets);
            }
        }
    }

    void addArrow(std::size_t index, const SQLConnectable& link, const std::vector<const SQLField*>& sources,
                  const std::vector<const SQLField*>& targets) {
        const auto target = _tables.find(link.targetTable());
        if (target == _tables.end()) return;
        DiagramArrow arrow{link.foreignKeyName(), index, {}, target->second, {}, false, false, actionsOf(link)};
        std::vector<DiagramColumn>& columns = _diagram.tables[index].columns;
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const auto from = _places.find(sources[i]);
            const auto to = _places.find(targets[i]);
            if (from == _places.end() || to == _places.end()) continue;
            arrow.fromColumns.push_back(from->second.column);
            arrow.toColumns.push_back(to->second.column);
            columns[from->second.column].foreignKey = true;
            arrow.optional = arrow.optional || !columns[from->second.column].notNull;
        }
        arrow.single = areUniqueTogether(*_diagram.tables[index].table, columns, arrow.fromColumns);
        _diagram.arrows.push_back(std::move(arrow));
    }

    /// Whether a row is known by these columns: one is unique, or they hold the whole primary key or a unique
    /// constraint.
    bool areUniqueTogether(const SQLTable& table, const std::vector<DiagramColumn>& columns,
                           const std::vector<std::size_t>& chosen) {
        std::set<const SQLField*> fields;
        for (const std::size_t column : chosen) {
            if (columns[column].unique) return true;
            fields.insert(columns[column].field);
        }
        const auto isCovered = [&fields](const auto& list) {
            return !list.empty() &&
                   std::ranges::all_of(list, [&](const SQLField* field) { return fields.contains(field); });
        };
        bool unique = isCovered(table.primaryKeyObjectList());
        table.forEachComponent<SQLIndex>([&](SQLIndex& index) {
            unique =
                unique || (equalIgnoringCase(trimmed(index.getIndexType()), "UNIQUE") && isCovered(index.fieldList()));
        });
        return unique;
    }

    Diagram _diagram;
    std::unordered_map<const SQLTable*, std::size_t> _tables;
    std::unordered_map<const SQLField*, Place> _places;
};

}  // namespace

Diagram diagramOf(const SQLContainer& document) { return Reader().read(document); }

}  // namespace vellicor::cli
