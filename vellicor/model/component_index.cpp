// vellicor/model/component_index.cpp — names and uids of the components of a wide table.
#include "vellicor/model/component_index.h"

#include <algorithm>
#include <utility>

namespace vellicor {

std::string_view unquotedPart(std::string_view name) {
    constexpr std::string_view kQuotes = "\"'`";
    auto isQuote = [&](char character) { return kQuotes.find(character) != std::string_view::npos; };
    if (name.empty()) return name;
    if (isQuote(name.back())) {
        name.remove_suffix(1);
        if (!name.empty() && isQuote(name.front())) name.remove_prefix(1);
        return name;
    }
    if (isQuote(name.front())) {
        // Kept: the last character goes with the first, although it is no quote.
        while (name.size() > 1 && (name.back() & 0xC0) == 0x80) name.remove_suffix(1);
        name.remove_suffix(1);
        name.remove_prefix(std::min<std::size_t>(name.size(), 1));
    }
    return name;
}

ComponentNames::ComponentNames(const SQLTable::Components& components) {
    _records.reserve(components.size());
    for (const auto& component : components) append(*component);
}

const ComponentNames::Places* ComponentNames::withFoldedName(std::string_view foldedName) const {
    auto found = _byFolded.find(foldedName);
    return found == _byFolded.end() ? nullptr : &found->second;
}

bool ComponentNames::holds(std::string_view lowercasedName, const SQLObject* except) const {
    auto found = _byLowercased.find(lowercasedName);
    if (found == _byLowercased.end()) return false;
    return std::ranges::any_of(found->second, [&](const Place& place) { return place.component != except; });
}

void ComponentNames::append(SQLTableComponent& component) {
    ++_size;
    if (contains(component)) return;  // listed twice: its first place counts
    enter(component, {_nextOrder++, {}, {}});
}

std::string ComponentNames::remove(const SQLTableComponent& component) {
    auto found = _records.find(&component);
    if (found == _records.end()) return {};
    --_size;
    Record record = std::move(found->second);
    _records.erase(found);
    erase(_byLowercased, record.lowercased, record.order);
    erase(_byFolded, record.folded, record.order);
    return std::move(record.lowercased);
}

std::string ComponentNames::nameDidChange(SQLTableComponent& component) {
    auto found = _records.find(&component);
    if (found == _records.end()) return {};
    const std::uint64_t order = found->second.order;
    std::string before = remove(component);
    ++_size;
    enter(component, {order, {}, {}});
    return before;
}

void ComponentNames::enter(SQLTableComponent& component, Record record) {
    const std::string name = component.getName();
    record.lowercased = lowercased(name);
    record.folded = caseFolded(unquotedPart(name));
    const Place place{record.order, &component};
    insert(_byLowercased, record.lowercased, place);
    insert(_byFolded, record.folded, place);
    _records.emplace(&component, std::move(record));
}

void ComponentNames::insert(PlacesByName& names, const std::string& name, Place place) {
    Places& places = names[name];
    places.insert(std::ranges::upper_bound(places, place.order, {}, &Place::order), place);
}

void ComponentNames::erase(PlacesByName& names, const std::string& name, std::uint64_t order) {
    auto found = names.find(name);
    auto place = std::ranges::lower_bound(found->second, order, {}, &Place::order);
    found->second.erase(place);
    if (found->second.empty()) names.erase(found);
}

SQLTableComponent* ComponentUids::find(std::string_view uid) const {
    auto found = _map.find(uid);
    return found == _map.end() ? nullptr : found->second;
}

void ComponentUids::enter(SQLTableComponent& component, std::string_view uid) {
    auto [entry, isNew] = _map.try_emplace(std::string(uid), &component);
    if (!isNew) {
        if (entry->second == &component) return;
        auto [key, end] = _keys.equal_range(entry->second);
        while (key->second != &entry->first) ++key;
        _keys.erase(key);
        entry->second = &component;
    }
    _keys.emplace(&component, &entry->first);
}

void ComponentUids::remove(const SQLTableComponent& component) {
    auto [key, end] = _keys.equal_range(&component);
    for (auto each = key; each != end; ++each) _map.erase(_map.find(*each->second));
    _keys.erase(key, end);
}

}  // namespace vellicor
