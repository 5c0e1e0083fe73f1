// vellicor/migration/document_differences.cpp — what differs between two documents.
#include "vellicor/migration/document_differences.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "vellicor/migration/object_properties.h"
#include "vellicor/model/field.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

using Change = ObjectDifference::Change;

/// Drawn only: nothing of it reaches a database.
bool isDrawing(const SQLObject& object) {
    return object.getClassType() == "SQLComment" || object.getClassType() == "SQLCanvasArea";
}

std::string_view wordFor(Change change) {
    switch (change) {
        case Change::Added: return "added";
        case Change::Removed: return "removed";
        case Change::Renamed: return "renamed";
        case Change::Changed: return "changed";
    }
    return {};
}

using Names = std::vector<std::string>;

/// The names of the columns that two matching tables share, in the order of each; by their present names.
std::pair<Names, Names> columnOrders(const ObjectMatcher& matcher, const ObjectMatch& match) {
    const auto* before = as<SQLTable>(match.before);
    const auto* after = as<SQLTable>(match.after);
    Names was, is;
    if (!before || !after) return {was, is};
    std::unordered_set<const SQLObject*> shared;
    before->forEachComponent<SQLField>([&](SQLField& column) {
        if (const SQLObject* successor = matcher.successorOf(column); successor && shared.insert(successor).second)
            was.push_back(successor->getName());
    });
    after->forEachComponent<SQLField>([&](SQLField& column) {
        if (shared.contains(&column)) is.push_back(column.getName());
    });
    return {was, is};
}

/// One line, whatever the value holds.
std::string shown(const std::string& value) {
    if (value.empty()) return "none";
    return "'" + replacingAll(replacingAll(value, "\r", "\\r"), "\n", "\\n") + "'";
}

}  // namespace

DocumentDifferences::DocumentDifferences(const ObjectMatcher& matcher) {
    for (const ObjectMatch& match : matcher.objects()) {
        compare(matcher, match);
        const auto* before = match.before ? as<SQLTable>(match.before) : nullptr;
        const auto* after = match.after ? as<SQLTable>(match.after) : nullptr;
        if (!before || !after) continue;
        for (const ObjectMatch& component : matcher.components(*before, *after)) compare(matcher, component);
    }
}

void DocumentDifferences::compare(const ObjectMatcher& matcher, const ObjectMatch& match) {
    if (match.before && match.after) {
        compareProperties(matcher, match);
        const std::string kind = kindOfObject(*match.after);
        if (match.byName && kind != "document")
            _matchesByName.push_back(text("%@ %@ was matched by name", kind, pathOfObject(*match.after)));
        return;
    }
    const SQLObject& object = match.after ? *match.after : *match.before;
    ObjectDifference difference{match.after ? Change::Added : Change::Removed,
                                kindOfObject(object),
                                pathOfObject(object),
                                {},
                                {},
                                isDrawing(object)};
    (difference.isLayout ? _layout : _schema).push_back(std::move(difference));
}

void DocumentDifferences::compareProperties(const ObjectMatcher& matcher, const ObjectMatch& match) {
    // A reference to an object that has another name now is no other reference.
    const ReferenceName presentName = [&](const SQLObject& object) {
        const SQLObject* successor = matcher.successorOf(object);
        return pathOfObject(successor ? *successor : object);
    };
    const auto before = propertiesOfObject(*match.before, presentName);
    const auto after = propertiesOfObject(*match.after, pathOfObject);

    std::unordered_map<std::string_view, const ObjectProperty*> old;
    for (const ObjectProperty& property : before) old.emplace(property.key, &property);
    const std::string kind = kindOfObject(*match.after);
    const std::string path = pathOfObject(*match.after);
    const std::string formerPath = pathOfObject(*match.before);
    ObjectDifference schema{Change::Changed, kind, path, {}, {}, false};
    ObjectDifference layout{Change::Changed, kind, path, {}, {}, true};
    const auto add = [&](const ObjectProperty& property, std::string was, std::string is) {
        if (property.key == "name" || property.key == "schema") {
            schema.change = Change::Renamed;
            schema.before = formerPath;
        }
        const bool isLayout = property.isLayout || isDrawing(*match.after);
        (isLayout ? layout : schema).properties.push_back({property.key, std::move(was), std::move(is)});
    };
    for (const ObjectProperty& property : after) {
        const auto found = old.find(property.key);
        const std::string was = found == old.end() ? std::string() : found->second->value;
        if (found != old.end()) old.erase(found);
        if (was != property.value) add(property, was, property.value);
    }
    for (const ObjectProperty& property : before)
        if (old.contains(property.key)) add(property, property.value, {});
    if (const auto [was, is] = columnOrders(matcher, match); was != is)
        schema.properties.push_back({"column order", joined(was, ", "), joined(is, ", ")});
    if (!schema.properties.empty()) _schema.push_back(std::move(schema));
    if (!layout.properties.empty()) _layout.push_back(std::move(layout));
}

std::string differencesInWords(const std::vector<ObjectDifference>& differences) {
    std::string words;
    for (const ObjectDifference& difference : differences) {
        words += difference.kind;
        if (!difference.name.empty()) words += " " + difference.name;
        words += text(": %@", wordFor(difference.change));
        if (difference.change == Change::Renamed) words += text(" from %@", difference.before);
        words += "\n";
        for (const PropertyDifference& property : difference.properties)
            words += text("    %@: %@ -> %@\n", property.key, shown(property.before), shown(property.after));
    }
    return words;
}

Value differencesAsValue(const std::vector<ObjectDifference>& differences) {
    Value::List list;
    for (const ObjectDifference& difference : differences) {
        Value::Map map{{"change", wordFor(difference.change)}, {"kind", difference.kind}, {"name", difference.name}};
        if (!difference.before.empty()) map.emplace("before", difference.before);
        Value::List properties;
        for (const PropertyDifference& property : difference.properties)
            properties.emplace_back(
                Value::Map{{"key", property.key}, {"before", property.before}, {"after", property.after}});
        if (!properties.empty()) map.emplace("properties", std::move(properties));
        list.emplace_back(std::move(map));
    }
    return list;
}

}  // namespace vellicor
