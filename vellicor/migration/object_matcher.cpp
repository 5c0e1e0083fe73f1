// vellicor/migration/object_matcher.cpp — which object of one document is which object of another.
#include "vellicor/migration/object_matcher.h"

#include <algorithm>
#include <array>

#include "vellicor/model/document_info.h"
#include "vellicor/model/table_component.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 10> kKinds{{
    {"SQLTable", "table"},
    {"SQLView", "view"},
    {"SQLField", "column"},
    {"SQLIndex", "index"},
    {"SQLConstraint", "constraint"},
    {"SQLForeignKey", "foreign key"},
    {"SQLComment", "note"},
    {"SQLCanvasArea", "area"},
    {"SQLSchema", "schema"},
    {"SQLDocumentInfo", "document"},
}};

std::string uidKey(const SQLObject& object) { return std::string(object.getClassType()) + "\n" + object.uid(); }
std::string nameKey(const SQLObject& object) {
    // There is one document info, whatever its name.
    const bool isOnlyOne = object.getClassType() == "SQLDocumentInfo";
    return std::string(object.getClassType()) + "\n" + (isOnlyOne ? std::string() : caseFolded(object.getName()));
}

/// Joins what shares a key; objects that have a partner already, and all but the first of a key, stay as they are.
template <class Key>
void join(const std::vector<SQLObject*>& before, std::vector<ObjectMatch>& after,
          std::unordered_map<const SQLObject*, bool>& taken, bool byName, Key key) {
    std::unordered_map<std::string, SQLObject*> byKey;
    for (SQLObject* object : before)
        if (!taken.contains(object)) byKey.try_emplace(key(*object), object);
    for (ObjectMatch& match : after) {
        if (match.before) continue;
        const auto found = byKey.find(key(*match.after));
        if (found == byKey.end() || !taken.try_emplace(found->second, true).second) continue;
        match.before = found->second;
        match.byName = byName;
    }
}

std::vector<SQLObject*> comparedComponents(const SQLTable& table) {
    std::vector<SQLObject*> components;
    if (as<const SQLView>(&table)) return components;  // the rows of a view are made of its query
    for (const auto& component : table.getFields()) components.push_back(component.get());
    return components;
}

}  // namespace

ObjectMatcher::ObjectMatcher(const SQLContainer& before, const SQLContainer& after, MatchMode mode) : _mode(mode) {
    const auto listOf = [](const SQLContainer& document) {
        Objects objects;
        for (const auto& object : document.objectList()) objects.push_back(object.get());
        if (auto* info = as<SQLObject>(document.documentInfo());
            info && std::ranges::find(objects, info) == objects.end())
            objects.push_back(info);
        return objects;
    };
    _objects = matchesOf(listOf(before), listOf(after));
    for (const ObjectMatch& match : _objects) {
        if (!match.before || !match.after) continue;
        _successors.emplace(match.before, match.after);
        const auto* table = as<SQLTable>(match.before);
        if (!table) continue;
        for (const ObjectMatch& component : components(*table, *as<SQLTable>(match.after)))
            if (component.before && component.after) _successors.emplace(component.before, component.after);
    }
}

std::vector<ObjectMatch> ObjectMatcher::components(const SQLTable& before, const SQLTable& after) const {
    return matchesOf(comparedComponents(before), comparedComponents(after));
}

SQLObject* ObjectMatcher::successorOf(const SQLObject& before) const {
    const auto found = _successors.find(&before);
    return found == _successors.end() ? nullptr : found->second;
}

std::vector<ObjectMatch> ObjectMatcher::matchesOf(const Objects& before, const Objects& after) const {
    std::vector<ObjectMatch> matches;
    for (SQLObject* object : after) matches.push_back({nullptr, object});
    std::unordered_map<const SQLObject*, bool> taken;
    if (_mode != MatchMode::Name) join(before, matches, taken, false, uidKey);
    if (_mode != MatchMode::Uid) join(before, matches, taken, true, nameKey);
    for (SQLObject* object : before)
        if (!taken.contains(object)) matches.push_back({object, nullptr});
    return matches;
}

std::string kindOfObject(const SQLObject& object) {
    const auto* kind =
        std::ranges::find(kKinds, object.getClassType(), &std::pair<std::string_view, std::string_view>::first);
    return std::string(kind == kKinds.end() ? object.getClassType() : kind->second);
}

std::string pathOfObject(const SQLObject& object) {
    const SQLTable* table = as<const SQLTableComponent>(&object) ? object.parentTable() : nullptr;
    return table ? table->getName() + "." + object.getName() : object.getName();
}

}  // namespace vellicor
