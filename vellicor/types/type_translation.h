// vellicor/types/type_translation.h — a type of one dialect in the words of another.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/types/type_families.h"

namespace vellicor {

enum class TypeGrade : std::uint8_t {
    Exact,     ///< both hold the same values
    Widening,  ///< every value survives and comes back; the new type takes more than the old one
    Lossy,     ///< some values do not survive; the reason says which
    Unknown,   ///< nothing is known of the type or the text; it stands as it is, or is left out
};
/// "exact", "widening", "lossy", "unknown".
[[nodiscard]] std::string_view typeGradeName(TypeGrade grade);

struct TypeTranslation {
    std::string text;
    TypeGrade grade = TypeGrade::Exact;
    /// What is lost or gained; empty for an exact pair.
    std::string reason;
    /// The column counts by itself, which its type no longer says.
    bool counts = false;
    /// The values of an enumeration whose place no longer lists them, as SQL literals; empty otherwise.
    std::vector<std::string> labels;
};

struct TypeOptions {
    /// The column counts, or refers to one that does: only whole numbers will do.
    bool counts = false;
};

/// The type text of a column in the dialect `from`, such as "int(11) unsigned", as `to` says it. Names of dialects are
/// those of the registry. A dialect or type that the table does not know leaves the text as it is. In generic the names
/// of every dialect are understood; one that `to` knows, and generic itself does not, stays.
[[nodiscard]] TypeTranslation translateType(std::string_view from, std::string_view to, std::string_view type,
                                            TypeOptions options = {});
/// The family of a type; null when the dialect does not know it.
[[nodiscard]] std::optional<TypeFamily> familyOfType(std::string_view dialect, std::string_view type);

/// One line of the table: a type, in the widest size it is declared with, and its place in another dialect.
struct TypePair {
    TypeDialect from;
    TypeDialect to;
    TypeFamily family;
    std::string type;
    TypeTranslation translation;
};
/// Every pair of the table, in the order of dialects and types; the types of one dialect only when it is named.
[[nodiscard]] std::vector<TypePair> typePairs(std::optional<TypeDialect> from = std::nullopt);

}  // namespace vellicor
