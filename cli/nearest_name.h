// cli/nearest_name.h — the name that somebody probably meant.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellicor::cli {

/// The candidate that takes the fewest insertions, deletions, replacements and swaps of neighbours to become `name`,
/// without regard to case; the first of equal ones. Null when even that one differs in more than a third of the
/// letters.
[[nodiscard]] std::optional<std::string> nearestName(std::string_view name, const std::vector<std::string>& candidates);

/// " (did you mean 'x'?)", or nothing when no candidate is near.
[[nodiscard]] std::string suggestion(std::string_view name, const std::vector<std::string>& candidates);

}  // namespace vellicor::cli
