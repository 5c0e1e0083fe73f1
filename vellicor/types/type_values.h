// vellicor/types/type_values.h — what a column of a type can hold.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "vellicor/types/type_text.h"

namespace vellicor {

/// The values of one sized type. Numbers that its family does not use are zero.
struct TypeValues {
    TypeFamily family = TypeFamily::Worded;
    unsigned flags = 0;
    std::int64_t low = 0;          ///< least integer, first year, shape
    std::uint64_t high = 0;        ///< greatest integer, last year, hours, bits of mantissa
    std::uint64_t digits = 0;      ///< before the point; longest bits
    std::uint64_t fraction = 0;    ///< digits behind the point, of a number or a second
    std::uint64_t characters = 0;  ///< longest text; of other families, of their text form
    std::uint64_t bytes = 0;       ///< longest text or binary

    [[nodiscard]] bool has(unsigned flag) const { return (flags & flag) != 0; }
};

/// What the row holds in the size that the text gives it.
[[nodiscard]] TypeValues valuesOf(const TypeRow& row, const TypeText& type);
/// The same values as members of another family: whole numbers as exact ones, anything as its text.
[[nodiscard]] TypeValues asFamily(const TypeValues& values, TypeFamily family);

enum class TypeFit : std::uint8_t {
    None,    ///< another kind, or too narrow
    Shape,   ///< the same kind of value, apart from its range and zone
    Moment,  ///< the moment as well, not the zone it was given in
    Zone,    ///< the zone as well
    All,     ///< every value has a place and comes back
};
/// How well `outer` holds the values of `inner`; both of one family.
[[nodiscard]] TypeFit fitOf(const TypeValues& outer, const TypeValues& inner);
/// "65,535 bytes", "about a gigabyte".
[[nodiscard]] std::string lengthText(std::uint64_t length, std::string_view unit);
/// What of `inner` has no place in `outer`, in words.
[[nodiscard]] std::string lossOf(const TypeValues& outer, const TypeValues& inner);

}  // namespace vellicor
