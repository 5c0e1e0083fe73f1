// vellicor/fileformat/recovery.cpp — repairs of damaged documents, on their bytes and on their text.
#include "vellicor/fileformat/recovery.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "vellicor/platform/log.h"
#include "vellicor/platform/regular_expression.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

bool isKeptASCII(unsigned char byte) {
    return (byte >= 0x20 && byte <= 0x7E) || byte == '\t' || byte == '\n' || byte == '\r';
}

/// The length of the well-formed sequence of two or three bytes at the start of `bytes`; 0 when there is none.
std::size_t sequenceLength(std::string_view bytes) {
    const auto byte = [&](std::size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u; };
    const auto continues = [&](std::size_t i) { return (byte(i) & 0xC0) == 0x80; };
    const unsigned lead = byte(0);
    if (lead >= 0xC2 && lead <= 0xDF) return continues(1) ? 2 : 0;
    if (lead < 0xE0 || lead > 0xEF || !continues(1) || !continues(2)) return 0;
    const bool overlong = lead == 0xE0 && byte(1) < 0xA0;
    const bool surrogate = lead == 0xED && byte(1) > 0x9F;
    return overlong || surrogate ? 0 : 3;
}

bool isKeyCharacter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '.' ||
           c == '-';
}

}  // namespace

std::string dataByRemovingInvalidCharacters(std::string_view bytes) {
    std::string kept;
    kept.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t length =
            isKeptASCII(static_cast<unsigned char>(bytes[i])) ? 1 : sequenceLength(bytes.substr(i));
        kept += bytes.substr(i, length);
        i += std::max<std::size_t>(length, 1);
    }
    return kept;
}

std::string attemptBrokenReference(std::string_view text) {
    constexpr std::string_view broken = "]]>referenceDependentField>";
    constexpr std::string_view whole = "]]></referenceDependentField>";
    std::string repaired;
    std::int64_t count = 0;
    std::size_t copied = 0;
    for (std::size_t at; (at = text.find(broken, copied)) != std::string_view::npos;
         copied = at + broken.size(), ++count)
        repaired.append(text, copied, at - copied).append(whole);
    if (count > 0)
        log(vellicor::text("[NOTE] Found %ld occurances of broken referenceDependentField and fixed them", count));
    return repaired.append(text, copied);
}

std::string attemptDjangoFix(std::string_view text) {
    static const RegularExpression pattern("</?(django[^>]+)>");
    std::string repaired;
    std::size_t copied = 0;
    std::size_t location = 0;  // of the end of `repaired`, in 16-bit units
    for (const RegularExpression::Match& match : pattern.allMatches(text)) {
        const RegularExpression::Match::Range range = *match.groups[1];
        const std::string_view between = text.substr(copied, range.position - copied);
        const std::string_view old = text.substr(range.position, range.length);
        const std::string fixed = filteredKeyString(old);
        location += utf16Length(between);
        log(vellicor::text("FIX: [%@] replaced string \"%@\" with \"%@\"",
                           vellicor::text("{%lu, %lu}", location, utf16Length(old)), old, fixed));
        repaired.append(between).append(fixed);
        location += fixed.size();
        copied = range.position + range.length;
    }
    return repaired.append(text, copied);
}

std::string filteredKeyString(std::string_view key) {
    std::string kept;
    std::ranges::copy_if(key, std::back_inserter(kept), isKeyCharacter);
    return kept;
}

}  // namespace vellicor
