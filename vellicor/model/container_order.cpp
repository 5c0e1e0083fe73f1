// vellicor/model/container_order.cpp — the orders of a document's objects: by uid, name, stacking and foreign keys.
#include <algorithm>
#include <functional>
#include <tuple>
#include <unordered_map>

#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/view.h"

namespace vellicor {

namespace {

using Objects = SQLContainer::Objects;

/// The objects in the order of one key each, compared by `precedes`; equal keys keep their order.
template <class KeyOf, class Precedes = std::less<>>
Objects sortedBy(const Objects& objects, KeyOf keyOf, Precedes precedes = {}) {
    std::vector<std::pair<decltype(keyOf(*objects.front())), std::shared_ptr<SQLObjectPeer>>> keyed;
    keyed.reserve(objects.size());
    for (const auto& object : objects) keyed.emplace_back(keyOf(*object), object);
    std::ranges::stable_sort(keyed, [&](const auto& a, const auto& b) { return precedes(a.first, b.first); });
    Objects sorted;
    sorted.reserve(keyed.size());
    for (auto& [key, object] : keyed) sorted.push_back(std::move(object));
    return sorted;
}

Objects sortedByUid(const Objects& objects) {
    return sortedBy(
        objects, [](const SQLObjectPeer& object) { return object.uid(); },
        [](const std::string& a, const std::string& b) { return compareIgnoringCase(a, b) < 0; });
}

Objects sortedByName(const Objects& objects) {
    return sortedBy(objects, [](const SQLObjectPeer& object) { return nameSortKey(object.getName()); });
}

Objects sortedByZOrder(const Objects& objects) {
    return sortedBy(objects, [](const SQLObjectPeer& object) { return object.getZOrder(); });
}

/// Calls `visit` with the table that each reference of a column goes to.
template <class Visit>
void forEachTableReferencedByColumns(const SQLTable& table, Visit visit) {
    for (const SQLField* column : table.foreignKeyFieldsInTable())
        if (const SQLField* target = column->getFkField())
            if (SQLTable* targetTable = target->parentTable()) visit(*targetTable);
}

/// A document's tables in name order, and which of them each references.
class TableGraph {
public:
    explicit TableGraph(const Objects& objects) : _objectCount(objects.size()) {
        std::size_t index = 0;
        for (const auto& object : sortedByName(objects)) {
            if (auto* table = as<SQLTable>(object.get()); table && _places.emplace(table, _nodes.size()).second)
                _nodes.push_back({table, static_cast<std::int64_t>(index), {}});
            ++index;
        }
        for (Node& node : _nodes) {
            auto note = [&](const SQLTable& target) {
                if (auto place = _places.find(&target); place != _places.end())
                    node.referenced.push_back(place->second);
            };
            forEachTableReferencedByColumns(*node.table, note);
            for (const SQLForeignKey* key : node.table->foreignKeyObjectsInTable())
                if (const SQLTable* target = key->targetTable()) note(*target);
        }
    }

    /// Moves each table behind those it references. Kept: five passes at most, so a long chain in an unlucky order of
    /// names is not sorted to its end.
    void storePositions() {
        bool changed = true;
        for (int pass = 0; changed && pass < 5; ++pass) {
            changed = false;
            for (Node& node : _nodes) {
                for (std::size_t target : node.referenced) {
                    if (_nodes[target].position <= node.position) continue;
                    node.position = _nodes[target].position + 1;
                    changed = true;
                }
            }
        }
        for (const Node& node : _nodes) {
            const bool isView = as<SQLView>(node.table) != nullptr;
            node.table->setSortPosition(node.position + (isView ? static_cast<std::int64_t>(_objectCount) : 0));
        }
    }

    /// For each table its place in a walk that visits, from each table in name order, the referenced ones first.
    [[nodiscard]] std::unordered_map<const SQLTable*, std::size_t> ranks() const {
        std::unordered_map<const SQLTable*, std::size_t> ranks;
        std::vector<bool> visited(_nodes.size());
        struct Step {
            std::size_t node;
            std::size_t next = 0;
        };
        std::vector<Step> path;
        for (std::size_t start = 0; start < _nodes.size(); ++start) {
            if (visited[start]) continue;
            visited[start] = true;
            path.push_back({start});
            while (!path.empty()) {
                Step& step = path.back();
                const Node& node = _nodes[step.node];
                if (step.next == node.referenced.size()) {
                    ranks.emplace(node.table, ranks.size());
                    path.pop_back();
                } else if (const std::size_t target = node.referenced[step.next++]; !visited[target]) {
                    visited[target] = true;
                    path.push_back({target});
                }
            }
        }
        return ranks;
    }

private:
    struct Node {
        SQLTable* table;
        std::int64_t position;  // the index by name at first
        std::vector<std::size_t> referenced;
    };
    std::size_t _objectCount;
    std::vector<Node> _nodes;
    std::unordered_map<const SQLTable*, std::size_t> _places;
};

/// The stacking order, its tables exchanged among the places of tables: tables before views, by position, at equal
/// positions referenced ones first.
Objects inPositionOrder(const Objects& objects, const TableGraph& graph) {
    auto isTable = [](const auto& object) { return as<SQLTable>(object.get()) != nullptr; };
    Objects tables;
    std::ranges::copy_if(objects, std::back_inserter(tables), isTable);
    const auto ranks = graph.ranks();
    tables = sortedBy(tables, [&](const SQLObjectPeer& object) {
        const auto& table = static_cast<const SQLTable&>(object);
        return std::tuple(as<const SQLView>(&object) != nullptr, table.getSortPosition(), ranks.at(&table));
    });
    Objects sorted = sortedByZOrder(objects);
    auto next = tables.begin();
    for (auto& object : sorted)
        if (isTable(object)) object = std::move(*next++);
    return sorted;
}

}  // namespace

SQLContainer::Objects SQLContainer::objectListSortedByUid() const {
    auto list = _objectList.lock();
    return sortedByUid(list->snapshot());
}

SQLContainer::Objects SQLContainer::objectListSortedByZOrder() const {
    auto list = _objectList.lock();
    return sortedByZOrder(list->snapshot());
}

SQLContainer::Objects SQLContainer::objectListSortedByName() const {
    auto list = _objectList.lock();
    return sortedByName(list->snapshot());
}

SQLContainer::Objects SQLContainer::objectListSortedByForeignKeyOrder() const {
    auto list = _objectList.lock();
    const Objects objects = list->snapshot();
    return inPositionOrder(objects, TableGraph(objects));
}

void SQLContainer::sortByZOrder() {
    auto list = _objectList.lock();
    list->reorder(sortedByZOrder(list->snapshot()));
}

void SQLContainer::reorderByUID() {
    auto list = _objectList.lock();
    list->reorder(sortedByUid(list->snapshot()));
}

void SQLContainer::reorderByForeignKeys() {
    auto list = _objectList.lock();
    const Objects objects = list->snapshot();
    TableGraph graph(objects);
    graph.storePositions();
    list->reorder(inPositionOrder(objects, graph));
}

void SQLContainer::updateTargetTableLists() {
    auto list = _objectList.lock();
    std::vector<SQLTable*> tables;
    list->forEach([&](const auto& object) {
        if (auto* table = as<SQLTable>(object.get())) tables.push_back(table);
    });
    for (SQLTable* table : tables) table->clearTargetTableList();
    // Kept: references of columns only; those of foreign-key objects do not count here.
    for (SQLTable* table : tables)
        forEachTableReferencedByColumns(*table, [&](SQLTable& target) { target.addTableToTargetList(*table); });
}

// --- stacking

void SQLContainer::Stacking::place(SQLObjectPeer& object, std::int64_t index) {
    if (index < 0)
        order.append(&object);
    else
        order.insertAt(static_cast<std::uint64_t>(index), &object);
    owned.emplace(&object, shared(&object));
}

void SQLContainer::Stacking::remove(const SQLObjectPeer& object) {
    order.remove(&object);
    owned.erase(&object);
}

SQLContainer::Objects SQLContainer::objectListByZOrder() const {
    auto stacking = _zorderArray.lock();
    Objects objects;
    objects.reserve(stacking->order.count());
    for (SQLObjectPeer* object : stacking->order) objects.push_back(stacking->owned.at(object));
    return objects;
}

std::int64_t SQLContainer::zorderForObject(const SQLObjectPeer& object) const {
    auto stacking = _zorderArray.lock();
    return static_cast<std::int64_t>(stacking->order.indexOf(&object).value_or(0));
}

void SQLContainer::setZorderForObject(SQLObjectPeer& object, std::int64_t zorder) {
    _zorderArray.lock()->place(object, zorder);
}

void SQLContainer::moveElementToPosition(SQLObjectPeer& object, std::size_t index) {
    auto list = lockedList();
    const std::size_t position = list->position(object);
    if (position == ObjectList::kAbsent) return;
    index = std::min(index, list->size() - 1);
    if (index == position) return;
    const auto kept = shared(&object);
    remove(object);
    list->insert(std::min(index, list->size()), kept);
    if (object.container() != this) watchGuest(object);
    updateZOrder();
}

}  // namespace vellicor
