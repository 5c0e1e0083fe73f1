// vellicor/types/type_text.h — the text of a type, taken apart and put together.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/types/type_families.h"

namespace vellicor {

/// "national character varying (20) character set x" is the name NATIONAL CHARACTER VARYING with the argument 20.
struct TypeText {
    std::string name;                    ///< upper-case words with one blank between; "VARCHAR(MAX)" is a name
    std::vector<std::string> arguments;  ///< as written, trimmed; of "INTERVAL DAY(2) TO SECOND(6)" the first ones
    bool isArray = false;

    [[nodiscard]] static TypeText parsed(std::string_view type);
    /// The argument as a number; null when it is absent or no number.
    [[nodiscard]] std::optional<std::uint32_t> number(std::size_t index) const;
};

/// The row that has the name; null when none has.
[[nodiscard]] const TypeRow* findType(TypeDialect dialect, const TypeText& type);
/// The name of the row with the size in its place: "TIMESTAMP(3) WITH TIME ZONE"; no size when it is empty.
[[nodiscard]] std::string sizedName(const TypeRow& row, std::string_view size);
/// Inside an SQL literal: 'it''s' is it's.
[[nodiscard]] std::string literalContent(std::string_view literal);

}  // namespace vellicor
