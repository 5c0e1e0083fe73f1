// cli/glob.cpp — matching of patterns, without recursion, so that no pattern takes exponential time.
#include "cli/glob.h"

#include <optional>
#include <string>

#include "vellicor/platform/text.h"

namespace vellicor::cli {

namespace {

/// The length of the UTF-8 sequence at `position`.
std::size_t sequenceLength(std::string_view text, std::size_t position) {
    std::size_t end = position + 1;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) ++end;
    return end - position;
}

/// Sequences of well-formed UTF-8 order like the characters they stand for.
std::string_view takeCharacter(std::string_view text, std::size_t& position) {
    const std::string_view character = text.substr(position, sequenceLength(text, position));
    position += character.size();
    return character;
}

/// Whether the set that begins behind a "[" at `position` holds `character`, `position` then behind its "]"; null, and
/// `position` unchanged, when the set has no end: the bracket then stands for itself.
std::optional<bool> setHolds(std::string_view pattern, std::size_t& position, std::string_view character) {
    std::size_t at = position;
    const bool negated = at < pattern.size() && (pattern[at] == '!' || pattern[at] == '^');
    if (negated) ++at;
    bool holds = false;
    for (bool first = true; at < pattern.size() && (first || pattern[at] != ']'); first = false) {
        if (pattern[at] == '\\' && at + 1 < pattern.size()) ++at;
        const std::string_view low = takeCharacter(pattern, at);
        std::string_view high = low;
        if (at + 1 < pattern.size() && pattern[at] == '-' && pattern[at + 1] != ']') {
            ++at;
            high = takeCharacter(pattern, at);
        }
        holds = holds || (low <= character && character <= high);
    }
    if (at >= pattern.size()) return std::nullopt;
    position = at + 1;
    return holds != negated;
}

/// Whether the pattern's element at `position`, which is no `*`, takes `character`; `position` then behind it.
bool elementTakes(std::string_view pattern, std::size_t& position, std::string_view character) {
    if (pattern[position] == '[') {
        std::size_t behind = position + 1;
        if (const auto holds = setHolds(pattern, behind, character)) {
            position = behind;
            return *holds;
        }
    }
    if (pattern[position] == '?') {
        ++position;
        return true;
    }
    if (pattern[position] == '\\' && position + 1 < pattern.size()) ++position;
    return takeCharacter(pattern, position) == character;
}

}  // namespace

bool globMatches(std::string_view writtenPattern, std::string_view writtenName) {
    const std::string pattern = caseFolded(writtenPattern);
    const std::string name = caseFolded(writtenName);
    std::size_t p = 0;
    std::size_t n = 0;
    std::size_t behindStar = std::string::npos;  // where to go on when what follows the last star does not fit
    std::size_t starTakes = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            behindStar = ++p;
            starTakes = n;
            continue;
        }
        std::size_t nextName = n;
        const std::string_view character = takeCharacter(name, nextName);
        if (p < pattern.size() && elementTakes(pattern, p, character)) {
            n = nextName;
        } else if (behindStar != std::string::npos) {
            p = behindStar;
            starTakes += sequenceLength(name, starTakes);
            n = starTakes;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string::npos;
}

}  // namespace vellicor::cli
