// cli/nearest_name.cpp — distance between names.
#include "cli/nearest_name.h"

#include <algorithm>

#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

constexpr std::size_t kLongestName = 64;  // nobody mistypes more than that, and the distance is quadratic

std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> beforeLast(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        std::swap(beforeLast, last);
        std::swap(last, row);
    }
    return last[b.size()];
}

}  // namespace

std::optional<std::string> nearestName(std::string_view name, const std::vector<std::string>& candidates) {
    if (name.size() > kLongestName) return std::nullopt;
    const std::string folded = caseFolded(name);
    const std::string* nearest = nullptr;
    std::size_t fewest = 0;
    for (const std::string& candidate : candidates) {
        const std::size_t changes = distance(folded, caseFolded(candidate));
        const std::size_t allowed = std::max<std::size_t>(1, std::max(name.size(), candidate.size()) / 3);
        if (changes > allowed || (nearest && changes >= fewest)) continue;
        nearest = &candidate;
        fewest = changes;
    }
    return nearest ? std::optional(*nearest) : std::nullopt;
}

std::string suggestion(std::string_view name, const std::vector<std::string>& candidates) {
    const auto nearest = nearestName(name, candidates);
    return nearest ? text(" (did you mean '%@'?)", *nearest) : std::string();
}

}  // namespace vellicor::cli
