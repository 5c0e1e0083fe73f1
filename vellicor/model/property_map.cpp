// vellicor/model/property_map.cpp — the flat map of properties.
#include "vellicor/model/property_map.h"

namespace vellicor {

std::size_t PropertyMap::position(std::string_view key) const {
    if (_index) {
        auto found = _index->find(key);
        return found == _index->end() ? kAbsent : found->second;
    }
    for (std::size_t i = 0; i < _entries.size(); ++i) {
        if (_entries[i].key.view() == key) return i;
    }
    return kAbsent;
}

void PropertyMap::reindex() {
    _index.reset();
    if (_entries.size() < kIndexedFrom) return;
    _index = std::make_unique<std::unordered_map<std::string_view, std::size_t>>();
    for (std::size_t i = 0; i < _entries.size(); ++i) _index->emplace(_entries[i].key.view(), i);
}

const PropertyValue* PropertyMap::find(std::string_view key) const {
    const std::size_t found = position(key);
    return found == kAbsent ? nullptr : &_entries[found].value;
}

void PropertyMap::set(std::string_view key, PropertyValue value) {
    if (const std::size_t found = position(key); found != kAbsent) {
        _entries[found].value = std::move(value);
        return;
    }
    _entries.push_back({InternedText(key), std::move(value)});
    if (_index)
        _index->emplace(_entries.back().key.view(), _entries.size() - 1);
    else
        reindex();
}

bool PropertyMap::remove(std::string_view key) {
    const std::size_t found = position(key);
    if (found == kAbsent) return false;
    const bool wasLast = found + 1 == _entries.size();
    if (_index && wasLast) _index->erase(key);
    _entries.erase(_entries.begin() + static_cast<std::ptrdiff_t>(found));
    if (_index && !wasLast) reindex();
    return true;
}

}  // namespace vellicor
