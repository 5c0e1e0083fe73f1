// vellicor/model/name_scope.cpp — remembering taken numbers.
#include "vellicor/model/name_scope.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace vellicor {

namespace {

constexpr std::uint64_t kLast = std::numeric_limits<std::uint64_t>::max();

}  // namespace

std::optional<std::uint64_t> plainNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || std::to_string(number) != text) return std::nullopt;
    return static_cast<std::uint64_t>(number);
}

std::uint64_t NumberHints::firstCandidate(std::string_view base, std::uint64_t start) const {
    auto found = _taken.find(base);
    if (found == _taken.end()) return start;
    const Runs& runs = found->second;
    while (true) {
        auto next = runs.upper_bound(start);
        if (next == runs.begin() || std::prev(next)->second < start) return start;
        start = std::prev(next)->second + 1;  // behind the last number this is 0, which may be taken as well
    }
}

void NumberHints::remember(std::string_view base, std::uint64_t start, std::uint64_t last) {
    if (last < start) {
        remember(base, start, kLast);
        remember(base, 0, last);
        return;
    }
    auto found = _taken.find(base);
    if (found == _taken.end()) found = _taken.emplace(base, Runs()).first;
    Runs& runs = found->second;
    auto next = runs.upper_bound(start);
    if (next != runs.begin()) {
        auto previous = std::prev(next);
        if (previous->second >= start || previous->second + 1 == start) {
            start = previous->first;
            last = std::max(last, previous->second);
            runs.erase(previous);
        }
    }
    while (next != runs.end() && (next->first <= last || next->first == last + 1)) {
        last = std::max(last, next->second);
        next = runs.erase(next);
    }
    runs.emplace_hint(next, start, last);
}

void NumberHints::nameBecameFree(std::string_view name) {
    const std::size_t underscore = name.rfind('_');
    if (underscore == std::string_view::npos) return;
    auto found = _taken.find(name.substr(0, underscore));
    if (found == _taken.end()) return;
    const auto number = plainNumber(name.substr(underscore + 1));
    if (!number) return;
    Runs& runs = found->second;
    auto next = runs.upper_bound(*number);
    if (next == runs.begin()) return;
    const auto [first, last] = *std::prev(next);
    if (last < *number) return;
    next = runs.erase(std::prev(next));
    if (first < *number) runs.emplace_hint(next, first, *number - 1);
    if (*number < last) runs.emplace_hint(next, *number + 1, last);
    if (runs.empty()) _taken.erase(found);
}

}  // namespace vellicor
