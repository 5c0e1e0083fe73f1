// vellicor/platform/regular_expression.cpp — regular expressions over ICU.
#include "vellicor/platform/regular_expression.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <limits>
#include <mutex>

#include "vellicor/platform/text_format.h"

namespace vellicor {

/// The pattern never changes once compiled. One matcher is kept for whoever comes while nobody else uses it.
struct RegularExpression::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
    std::string error;
    std::mutex matcherMutex;
    std::unique_ptr<icu::RegexMatcher> matcher;

    /// Calls `use(matcher, length)` with a matcher set to `text`, whose length is in 16-bit units. Without a pattern,
    /// or with a text longer than ICU takes, nothing is called: no match.
    template <class Use>
    void match(std::string_view text, Use use) {
        if (!pattern || text.size() > std::numeric_limits<std::int32_t>::max() / 2) return;
        const auto units = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
        std::unique_lock lock(matcherMutex, std::try_to_lock);
        std::unique_ptr<icu::RegexMatcher> temporary;
        std::unique_ptr<icu::RegexMatcher>& used = lock ? matcher : temporary;
        UErrorCode status = U_ZERO_ERROR;
        if (!used) used.reset(pattern->matcher(status));
        if (U_FAILURE(status) || !used) return;
        used->reset(units);
        use(*used, units.length());
    }
};

namespace {

/// A failure on the way, such as ICU's stack running over on a very long text, counts as no match.
bool findNext(icu::RegexMatcher& matcher) {
    UErrorCode status = U_ZERO_ERROR;
    return matcher.find(status) && U_SUCCESS(status);
}

/// A place in a text, in bytes and in the 16-bit units that ICU counts by.
struct Place {
    std::size_t bytes = 0;
    std::int32_t units = 0;

    void advanceTo(std::int32_t target, std::string_view text) {
        const auto* data = reinterpret_cast<const std::uint8_t*>(text.data());
        const std::size_t size = text.size();
        while (units < target && bytes < size) {
            UChar32 character;
            U8_NEXT(data, bytes, size, character);
            units += character > 0xFFFF ? 2 : 1;
        }
    }
};

/// The current match in bytes. `place` must not be behind its start; it is left there.
RegularExpression::Match currentMatch(const icu::RegexMatcher& matcher, std::string_view text, Place& place) {
    UErrorCode status = U_ZERO_ERROR;
    place.advanceTo(matcher.start(status), text);
    RegularExpression::Match match;
    match.groups.reserve(static_cast<std::size_t>(matcher.groupCount()) + 1);
    for (std::int32_t group = 0; group <= matcher.groupCount(); ++group) {
        const std::int32_t start = matcher.start(group, status), end = matcher.end(group, status);
        if (start < 0) {
            match.groups.emplace_back();
            continue;
        }
        Place inside = start < place.units ? Place() : place;  // a look-behind may capture before the match
        inside.advanceTo(start, text);
        const std::size_t position = inside.bytes;
        inside.advanceTo(end, text);
        match.groups.push_back(RegularExpression::Match::Range{position, inside.bytes - position});
    }
    return match;
}

}  // namespace

std::string_view RegularExpression::Match::group(std::size_t index, std::string_view searched) const {
    if (index >= groups.size() || !groups[index] || groups[index]->position > searched.size()) return {};
    return searched.substr(groups[index]->position, groups[index]->length);
}

RegularExpression::RegularExpression(std::string_view pattern) : _compiled(std::make_unique<Compiled>()) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError place{};
    place.line = place.offset = -1;
    const auto units = icu::UnicodeString::fromUTF8({pattern.data(), static_cast<std::int32_t>(pattern.size())});
    _compiled->pattern.reset(icu::RegexPattern::compile(units, 0, place, status));
    if (U_SUCCESS(status)) return;
    _compiled->pattern.reset();
    _compiled->error =
        text("%@ at line %d, offset %d of the pattern %@", u_errorName(status), place.line, place.offset, pattern);
}

RegularExpression::~RegularExpression() = default;

const std::string& RegularExpression::error() const { return _compiled->error; }

std::optional<RegularExpression::Match> RegularExpression::firstMatch(std::string_view text) const {
    std::optional<Match> match;
    _compiled->match(text, [&](icu::RegexMatcher& matcher, std::int32_t) {
        Place place;
        if (findNext(matcher)) match = currentMatch(matcher, text, place);
    });
    return match;
}

std::vector<RegularExpression::Match> RegularExpression::allMatches(std::string_view text) const {
    std::vector<Match> matches;
    _compiled->match(text, [&](icu::RegexMatcher& matcher, std::int32_t) {
        Place place;
        while (findNext(matcher)) matches.push_back(currentMatch(matcher, text, place));
    });
    return matches;
}

bool RegularExpression::firstMatchCovers(std::string_view text) const {
    bool covers = false;
    _compiled->match(text, [&](icu::RegexMatcher& matcher, std::int32_t length) {
        UErrorCode status = U_ZERO_ERROR;
        covers = findNext(matcher) && matcher.start(status) == 0 && matcher.end(status) == length;
    });
    return covers;
}

}  // namespace vellicor
