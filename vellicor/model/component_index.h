// vellicor/model/component_index.h — finds the components of a wide table by name and by uid without walking its list.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vellicor/model/table.h"
#include "vellicor/platform/text.h"

namespace vellicor {

/// The part of a name that counts when names are compared; see `SQLTable::unquotedName`. A view into `name`.
[[nodiscard]] std::string_view unquotedPart(std::string_view name);

/// The names of a component list. It answers what a walk over the list would. Its table keeps it in step, or drops it.
class ComponentNames {
public:
    /// Shorter lists are walked.
    static constexpr std::size_t kIndexedFrom = 32;

    /// A component and its place among all; places rise along the list.
    struct Place {
        std::uint64_t order;
        SQLTableComponent* component;
    };
    using Places = std::vector<Place>;

    explicit ComponentNames(const SQLTable::Components& components);

    /// How many elements the list must have for this to be in step with it.
    [[nodiscard]] std::size_t size() const { return _size; }
    [[nodiscard]] bool contains(const SQLTableComponent& component) const { return _records.contains(&component); }
    /// The components whose unquoted name folds to `foldedName`, in list order; null when there are none.
    [[nodiscard]] const Places* withFoldedName(std::string_view foldedName) const;
    /// A component other than `except` has this lower-cased name.
    [[nodiscard]] bool holds(std::string_view lowercasedName, const SQLObject* except) const;

    /// The component now stands at the end of the list.
    void append(SQLTableComponent& component);
    /// Answers the lower-cased name under which it was known; empty when it was not.
    std::string remove(const SQLTableComponent& component);
    /// The same for a component that has another name now.
    std::string nameDidChange(SQLTableComponent& component);

private:
    struct Record {
        std::uint64_t order;
        std::string lowercased;  // the whole name
        std::string folded;      // its unquoted part
    };
    using PlacesByName = std::unordered_map<std::string, Places, TextHash, std::equal_to<>>;
    void enter(SQLTableComponent& component, Record record);
    static void insert(PlacesByName& names, const std::string& name, Place place);
    static void erase(PlacesByName& names, const std::string& name, std::uint64_t order);

    std::unordered_map<const SQLTableComponent*, Record> _records;
    PlacesByName _byLowercased;
    PlacesByName _byFolded;
    std::uint64_t _nextOrder = 0;
    std::size_t _size = 0;
};

/// The uids of a component list.
class ComponentUids {
public:
    [[nodiscard]] const SQLTable::UidMap& map() const { return _map; }
    /// Null when nobody is known under this uid.
    [[nodiscard]] SQLTableComponent* find(std::string_view uid) const;
    /// Takes the uid over from a component that has it already.
    void enter(SQLTableComponent& component, std::string_view uid);
    /// Removes every entry of the component.
    void remove(const SQLTableComponent& component);

private:
    SQLTable::UidMap _map;
    std::unordered_multimap<const SQLTableComponent*, const std::string*> _keys;  // the keys of `_map` by component
};

}  // namespace vellicor
