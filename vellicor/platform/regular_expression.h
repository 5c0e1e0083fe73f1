// vellicor/platform/regular_expression.h — regular expressions with Unicode properties.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

/// A compiled pattern (ICU's syntax, no options). Compile once, as a static; any thread may match.
class RegularExpression {
public:
    /// One match: byte ranges into the searched text; group 0 is the whole match, an absent group has no value.
    struct Match {
        struct Range {
            std::size_t position;
            std::size_t length;
        };
        std::vector<std::optional<Range>> groups;
        /// The text of a group within the searched text; empty when the group is absent.
        [[nodiscard]] std::string_view group(std::size_t index, std::string_view searched) const;
    };

    /// A pattern that does not compile leaves an expression that matches nothing and says why in `error()`.
    explicit RegularExpression(std::string_view pattern);
    ~RegularExpression();
    RegularExpression(const RegularExpression&) = delete;
    RegularExpression& operator=(const RegularExpression&) = delete;

    [[nodiscard]] const std::string& error() const;  ///< empty when the pattern compiled
    [[nodiscard]] std::optional<Match> firstMatch(std::string_view text) const;
    [[nodiscard]] std::vector<Match> allMatches(std::string_view text) const;
    /// True when the first match starts at the beginning and covers all of `text`.
    [[nodiscard]] bool firstMatchCovers(std::string_view text) const;

private:
    struct Compiled;
    std::unique_ptr<Compiled> _compiled;
};

}  // namespace vellicor
