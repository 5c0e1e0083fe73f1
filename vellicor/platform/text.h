// vellicor/platform/text.h — Unicode text as UTF-8: trimming, case, comparing, searching.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

/// A text that may be absent; null and empty behave apart wherever this type is used.
using OptionalText = std::optional<std::string>;

/// `Whitespace`: TAB and the Unicode space separators (Zs). `WhitespaceAndNewline` adds U+000A-U+000D, U+0085,
/// U+2028 and U+2029.
enum class TrimSet { Whitespace, WhitespaceAndNewline };

/// The part of `text` between its outer white space; a view into `text`.
[[nodiscard]] std::string_view trimmed(std::string_view text, TrimSet set = TrimSet::WhitespaceAndNewline);
/// True when any character of `text` is in `set`.
[[nodiscard]] bool containsWhitespace(std::string_view text, TrimSet set = TrimSet::WhitespaceAndNewline);

/// Full Unicode case mappings without a locale; ill-formed bytes become U+FFFD.
[[nodiscard]] std::string lowercased(std::string_view text);
[[nodiscard]] std::string uppercased(std::string_view text);
/// Full default case folding: equal results mean "equal without regard to case".
[[nodiscard]] std::string caseFolded(std::string_view text);
[[nodiscard]] bool equalIgnoringCase(std::string_view a, std::string_view b);
/// Folded texts compared by UTF-16 code unit: negative, zero or positive.
[[nodiscard]] int compareIgnoringCase(std::string_view a, std::string_view b);

[[nodiscard]] std::string replacingAll(std::string_view text, std::string_view what, std::string_view with);
/// `text` without any byte that occurs in `asciiCharacters`.
[[nodiscard]] std::string removingCharacters(std::string_view text, std::string_view asciiCharacters);
/// The parts joined with `separator` between them.
[[nodiscard]] std::string joined(const std::vector<std::string>& parts, std::string_view separator);

/// Length in 16-bit code units.
[[nodiscard]] std::size_t utf16Length(std::string_view text);
[[nodiscard]] bool isValidUTF8(std::string_view text);
/// `text` with every ill-formed sequence replaced by U+FFFD.
[[nodiscard]] std::string repairedUTF8(std::string_view text);

/// A sort key whose byte order is the name order: without regard to case, runs of digits by number, otherwise the
/// collation of the user's locale (the root collation when the locale has none).
[[nodiscard]] std::string nameSortKey(std::string_view name);

/// Transparent hash, so that maps keyed by std::string are searched with views.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

}  // namespace vellicor
