// vellicor/export/runnable/runnable_text.h — names, values and comments as servers read them.
#pragma once

#include <string>
#include <string_view>

namespace vellicor {

/// A default value as a literal that servers read back as it is meant: quotes inside are doubled. A value that already
/// stands in quotes keeps them.
[[nodiscard]] std::string runnableLiteral(std::string_view value);
/// Any text as such a literal.
[[nodiscard]] std::string runnableTextLiteral(std::string_view content);
/// An expression as a default: in parentheses unless it is one word, number or literal.
[[nodiscard]] std::string runnableExpression(std::string_view value);
/// A text inside a comment, which neither ends early nor opens another.
[[nodiscard]] std::string runnableComment(std::string_view comment);
/// True for a comment and nothing else.
[[nodiscard]] bool isRemark(std::string_view sql);
/// True when the last line ends in a remark, which hides whatever is put behind it.
[[nodiscard]] bool endsInRemark(std::string_view sql);
/// True for a name that is no plain word, or a reserved one, where the preferences do not forbid to quote it.
[[nodiscard]] bool isRefusedBare(std::string_view name, bool isReservedWord);

}  // namespace vellicor
