// vellicor/platform/text_case.cpp — case mapping, folding and comparing without regard to case.
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/stringoptions.h>

#include <algorithm>
#include <string>

#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

bool isASCII(char character) { return static_cast<unsigned char>(character) < 0x80; }

constexpr char lowerASCII(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
}

constexpr char upperASCII(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - ('a' - 'A')) : character;
}

/// Appends the mapping of a text to a sink, as the members of ICU's case mapper do.
using Mapping = void (*)(icu::StringPiece text, icu::ByteSink& sink, UErrorCode& status);

// The locale "" is the root; a null pointer would mean the user's, in whose Turkish form "I" is no capital "i".
void toLower(icu::StringPiece text, icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8ToLower("", 0, text, sink, nullptr, status);
}

void toUpper(icu::StringPiece text, icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8ToUpper("", 0, text, sink, nullptr, status);
}

void fold(icu::StringPiece text, icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8Fold(U_FOLD_CASE_DEFAULT, text, sink, nullptr, status);
}

/// Maps a text of any length: ICU takes lengths of 31 bits, so a longer one goes through in pieces that end between
/// two characters.
std::string mappedByICU(std::string_view text, Mapping mapping) {
    constexpr std::size_t kLongestPiece = 1u << 30;
    std::string repaired;
    if (!isValidUTF8(text)) text = repaired = repairedUTF8(text);
    std::string result;
    result.reserve(text.size() + text.size() / 4);
    icu::StringByteSink<std::string> sink(&result);
    while (!text.empty()) {
        std::size_t length = std::min(text.size(), kLongestPiece);
        while (length < text.size() && (text[length] & 0xC0) == 0x80) --length;
        UErrorCode status = U_ZERO_ERROR;
        mapping({text.data(), static_cast<std::int32_t>(length)}, sink, status);
        text.remove_prefix(length);
    }
    return result;
}

/// One pass over the bytes; only a text with a character beyond ASCII goes to ICU.
template <char (*mapASCII)(char)>
std::string mapped(std::string_view text, Mapping mapping) {
    std::string result(text.size(), '\0');
    unsigned char allBytes = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        allBytes |= static_cast<unsigned char>(text[i]);
        result[i] = mapASCII(text[i]);
    }
    return allBytes < 0x80 ? result : mappedByICU(text, mapping);
}

/// Number of leading characters that are ASCII in both texts and equal without regard to case. Folding looks at each
/// character alone, so what follows can be compared by itself.
std::size_t commonASCIIPrefix(std::string_view a, std::string_view b) {
    const std::size_t end = std::min(a.size(), b.size());
    std::size_t i = 0;
    while (i < end && lowerASCII(a[i]) == lowerASCII(b[i]) && isASCII(a[i])) ++i;
    return i;
}

/// True when the texts hold nothing but ASCII at the place where they part.
bool partWithinASCII(std::string_view a, std::string_view b, std::size_t position) {
    return (position == a.size() || isASCII(a[position])) && (position == b.size() || isASCII(b[position]));
}

/// Well-formed texts by UTF-16 code unit. That is their byte order, but for the characters beyond U+FFFF: their
/// surrogates stand before U+E000.
int compareByUTF16(std::string_view a, std::string_view b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (inA == a.end() || inB == b.end()) return inA == a.end() ? (inB == b.end() ? 0 : -1) : 1;
    auto rank = [](char byte) {
        const auto value = static_cast<unsigned char>(byte);
        if (value >= 0xF0) return value - 2;  // behind U+DFFF, before U+E000 (first bytes EE and EF)
        return value >= 0xEE ? value + 0x10 : int{value};
    };
    return rank(*inA) - rank(*inB);
}

}  // namespace

std::string lowercased(std::string_view text) { return mapped<lowerASCII>(text, toLower); }

std::string uppercased(std::string_view text) { return mapped<upperASCII>(text, toUpper); }

std::string caseFolded(std::string_view text) { return mapped<lowerASCII>(text, fold); }

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    const std::size_t common = commonASCIIPrefix(a, b);
    if (partWithinASCII(a, b, common)) return common == a.size() && common == b.size();
    return caseFolded(a.substr(common)) == caseFolded(b.substr(common));
}

int compareIgnoringCase(std::string_view a, std::string_view b) {
    const std::size_t common = commonASCIIPrefix(a, b);
    a.remove_prefix(common);
    b.remove_prefix(common);
    if (!partWithinASCII(a, b, 0)) return compareByUTF16(caseFolded(a), caseFolded(b));
    if (a.empty() || b.empty()) return int{!a.empty()} - int{!b.empty()};
    return lowerASCII(a.front()) - lowerASCII(b.front());
}

}  // namespace vellicor
