// vellicor/model/property_map.h — a flat map from interned keys to values, made for a handful of entries.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vellicor/platform/interned.h"
#include "vellicor/platform/value.h"

namespace vellicor {

/// Keeps its entries in the order of their arrival. Past a handful an index keeps look-ups constant-time.
class PropertyMap {
public:
    struct Entry {
        InternedText key;
        PropertyValue value;
    };

    /// Null when the key is absent; valid until the map changes.
    [[nodiscard]] const PropertyValue* find(std::string_view key) const;
    void set(std::string_view key, PropertyValue value);
    /// False when the key was absent.
    bool remove(std::string_view key);
    [[nodiscard]] std::size_t size() const { return _entries.size(); }
    [[nodiscard]] auto begin() const { return _entries.begin(); }
    [[nodiscard]] auto end() const { return _entries.end(); }

private:
    static constexpr std::size_t kIndexedFrom = 24;
    static constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);
    std::size_t position(std::string_view key) const;
    void reindex();

    std::vector<Entry> _entries;
    std::unique_ptr<std::unordered_map<std::string_view, std::size_t>> _index;  // null for a handful of entries
};

}  // namespace vellicor
