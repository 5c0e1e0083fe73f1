// vellicor/types/type_matching.cpp — equivalent type names.
#include "vellicor/types/type_matching.h"

#include <algorithm>

namespace vellicor {

TypeMatchingManager& TypeMatchingManager::sharedTypeMatchingManager() {
    static TypeMatchingManager shared = [] {
        TypeMatchingManager made;
        made.addMatch("int", "serial");
        made.addMatch("integer", "serial");
        made.addMatch("bigint", "bigserial");
        return made;
    }();
    return shared;
}

void TypeMatchingManager::addMatch(std::string_view typeA, std::string_view typeB) {
    const std::string a = lowercased(typeA), b = lowercased(typeB);
    std::vector<std::string>& equivalents = getVectorForType(a);
    if (std::ranges::find(equivalents, b) != equivalents.end()) return;
    equivalents.push_back(b);
    addMatch(b, a);
}

bool TypeMatchingManager::isTypeEquivalent(std::optional<std::string_view> typeA,
                                           std::optional<std::string_view> typeB) const {
    if (!typeA || !typeB) return false;
    const std::string a = lowercased(*typeA), b = lowercased(*typeB);
    return lists(a, b) || lists(b, a);
}

std::vector<std::string>& TypeMatchingManager::getVectorForType(std::string_view type) {
    return _matches.try_emplace(std::string(type)).first->second;
}

bool TypeMatchingManager::lists(const std::string& type, const std::string& other) const {
    auto found = _matches.find(type);
    return found != _matches.end() && std::ranges::find(found->second, other) != found->second.end();
}

}  // namespace vellicor
