// vellicor/platform/text.cpp — UTF-8 text: white space, validity, lengths, searching and joining.
#include "vellicor/platform/text.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace vellicor {

namespace {

constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

unsigned char byteAt(std::string_view text, std::size_t position) { return static_cast<unsigned char>(text[position]); }

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

/// Length in bytes of the white space character that starts at `position`; 0 when another character stands there.
std::size_t whitespaceLength(std::string_view text, std::size_t position, TrimSet set) {
    const bool newlines = set == TrimSet::WhitespaceAndNewline;
    const unsigned char first = byteAt(text, position);
    if (first < 0x80) return first == ' ' || first == '\t' || (newlines && first >= 0x0A && first <= 0x0D) ? 1 : 0;
    const std::size_t left = text.size() - position;
    if (first == 0xC2 && left >= 2) {
        const unsigned char second = byteAt(text, position + 1);
        return second == 0xA0 || (newlines && second == 0x85) ? 2 : 0;
    }
    if (left < 3 || (first != 0xE1 && first != 0xE2 && first != 0xE3)) return 0;
    const unsigned char second = byteAt(text, position + 1), third = byteAt(text, position + 2);
    bool found = false;
    if (first == 0xE1) found = second == 0x9A && third == 0x80;  // U+1680
    if (first == 0xE3) found = second == 0x80 && third == 0x80;  // U+3000
    if (first == 0xE2 && second == 0x80)                         // U+2000-200A, 202F, 2028, 2029
        found = (third >= 0x80 && third <= 0x8A) || third == 0xAF || (newlines && (third == 0xA8 || third == 0xA9));
    if (first == 0xE2 && second == 0x81) found = third == 0x9F;  // U+205F
    return found ? 3 : 0;
}

/// Length in bytes of the white space character that ends at the end of `text`; 0 when another character stands there.
std::size_t whitespaceLengthAtEnd(std::string_view text, TrimSet set) {
    const std::size_t longest = std::min<std::size_t>(text.size(), 3);
    for (std::size_t length = 1; length <= longest; ++length) {
        const std::size_t position = text.size() - length;
        if (!isContinuation(byteAt(text, position)))
            return whitespaceLength(text, position, set) == length ? length : 0;
    }
    return 0;
}

/// Position of the first byte from `position` on that is not ASCII; the size of `text` when there is none.
std::size_t endOfASCII(std::string_view text, std::size_t position = 0) {
    std::uint64_t word = 0;
    for (; position + sizeof word <= text.size(); position += sizeof word) {
        std::memcpy(&word, text.data() + position, sizeof word);
        if (word & 0x8080808080808080u) break;
    }
    while (position < text.size() && byteAt(text, position) < 0x80) ++position;
    return position;
}

/// The character at `position`, which moves behind it; negative for an ill-formed sequence.
UChar32 nextCharacter(std::string_view text, std::size_t& position) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const std::size_t length = text.size();
    UChar32 character;
    U8_NEXT(bytes, position, length, character);
    return character;
}

/// Position of the first ill-formed sequence; the size of `text` when there is none.
std::size_t endOfValidUTF8(std::string_view text) {
    std::size_t position = 0;
    while ((position = endOfASCII(text, position)) < text.size()) {
        const std::size_t start = position;
        if (nextCharacter(text, position) < 0) return start;
    }
    return position;
}

}  // namespace

std::string_view trimmed(std::string_view text, TrimSet set) {
    while (!text.empty()) {
        const std::size_t length = whitespaceLength(text, 0, set);
        if (!length) break;
        text.remove_prefix(length);
    }
    while (const std::size_t length = whitespaceLengthAtEnd(text, set)) text.remove_suffix(length);
    return text;
}

bool containsWhitespace(std::string_view text, TrimSet set) {
    for (std::size_t position = 0; position < text.size(); ++position)
        if (whitespaceLength(text, position, set)) return true;
    return false;
}

std::string replacingAll(std::string_view text, std::string_view what, std::string_view with) {
    std::string result;
    std::size_t position = 0;
    std::size_t found = what.empty() ? text.npos : text.find(what);
    if (found != text.npos) result.reserve(text.size() + with.size());
    while (found != text.npos) {
        result.append(text, position, found - position).append(with);
        position = found + what.size();
        found = text.find(what, position);
    }
    return result.append(text, position);
}

std::string removingCharacters(std::string_view text, std::string_view asciiCharacters) {
    std::array<bool, 256> removed{};
    for (char character : asciiCharacters) removed[static_cast<unsigned char>(character)] = true;
    std::string result;
    result.reserve(text.size());
    for (char character : text)
        if (!removed[static_cast<unsigned char>(character)]) result += character;
    return result;
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
    if (parts.empty()) return {};
    std::size_t size = separator.size() * (parts.size() - 1);
    for (const std::string& part : parts) size += part.size();
    std::string result;
    result.reserve(size);
    for (const std::string& part : parts) {
        if (&part != &parts.front()) result += separator;
        result += part;
    }
    return result;
}

std::size_t utf16Length(std::string_view text) {
    std::size_t position = endOfASCII(text);
    std::size_t length = position;
    while (position < text.size()) {
        const UChar32 character = nextCharacter(text, position);
        length += character > 0xFFFF ? 2 : 1;
    }
    return length;
}

bool isValidUTF8(std::string_view text) { return endOfValidUTF8(text) == text.size(); }

std::string repairedUTF8(std::string_view text) {
    std::size_t position = endOfValidUTF8(text);
    std::string result(text.substr(0, position));
    while (position < text.size()) {
        const std::size_t start = position;
        if (nextCharacter(text, position) < 0)
            result += kReplacementCharacter;
        else
            result.append(text, start, position - start);
    }
    return result;
}

}  // namespace vellicor
