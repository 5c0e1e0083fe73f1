// vellicor/dialects/type_replacer.h — renaming a column type across a whole document.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "vellicor/model/forward.h"

namespace vellicor {

class SQLTypeReplacer {
public:
    /// From old type to new type.
    using ReplacementMap = std::map<std::string, std::string, std::less<>>;

    static void replaceType(std::string_view oldType, std::string_view newType, SQLContainer& container);
    /// Sets the new type on every field of every table whose full type text is a key of the map, letter for letter.
    static void replaceContainerTypes(SQLContainer& container, const ReplacementMap& replacements);
};

}  // namespace vellicor
