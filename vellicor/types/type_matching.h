// vellicor/types/type_matching.h — which type names count as equivalent when a design is compared with a database.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vellicor/platform/text.h"

namespace vellicor {

/// Pairs of equivalent type names, kept in lower case and in both directions. No lock: pairs are added before use.
class TypeMatchingManager {
public:
    TypeMatchingManager() = default;
    /// The shared instance, which knows the serial types of auto-increment columns.
    static TypeMatchingManager& sharedTypeMatchingManager();

    void addMatch(std::string_view typeA, std::string_view typeB);
    /// Without regard to case; false when either type is absent. A type is equivalent to itself only if that was added.
    [[nodiscard]] bool isTypeEquivalent(std::optional<std::string_view> typeA,
                                        std::optional<std::string_view> typeB) const;
    /// The names equivalent to a type given in lower case. A type that has no list gets an empty one, which is kept.
    std::vector<std::string>& getVectorForType(std::string_view type);

private:
    [[nodiscard]] bool lists(const std::string& type, const std::string& other) const;

    std::unordered_map<std::string, std::vector<std::string>, TextHash, std::equal_to<>> _matches;
};

}  // namespace vellicor
