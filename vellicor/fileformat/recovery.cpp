// vellicor/fileformat/recovery.cpp — repairs of damaged documents, on their bytes and on their text.
#include "vellicor/fileformat/recovery.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

#include "vellicor/platform/log.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_encoding.h"

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

std::string withClosedReferences(std::string_view text, std::vector<std::string>& changes) {
    constexpr std::string_view broken = "]]>referenceDependentField>";
    constexpr std::string_view whole = "]]></referenceDependentField>";
    std::string repaired;
    std::int64_t count = 0;
    std::size_t copied = 0;
    for (std::size_t at; (at = text.find(broken, copied)) != std::string_view::npos;
         copied = at + broken.size(), ++count)
        repaired.append(text, copied, at - copied).append(whole);
    if (count > 0) {
        log(vellicor::text("[NOTE] Found %ld occurances of broken referenceDependentField and fixed them", count));
        changes.push_back(vellicor::text("%ld broken ends of referenceDependentField were put right", count));
    }
    return repaired.append(text, copied);
}

/// A part of a text.
struct Piece {
    std::size_t position;
    std::size_t length;
};

/// The next name of an element that begins with "django", from `start` on: what stands between "<" or "</" and the next
/// ">". Null when there is none. Without a ">" behind it no later name ends either.
std::optional<Piece> nextDjangoName(std::string_view text, std::size_t start) {
    constexpr std::string_view beginning = "django";
    for (std::size_t open = text.find('<', start); open != text.npos; open = text.find('<', open + 1)) {
        std::size_t name = open + 1;
        if (text.substr(name).starts_with('/')) ++name;
        if (!text.substr(name).starts_with(beginning)) continue;
        const std::size_t close = text.find('>', name);
        if (close == text.npos) return std::nullopt;
        if (close > name + beginning.size()) return Piece{name, close - name};
    }
    return std::nullopt;
}

std::string withSoundDjangoNames(std::string_view text, std::vector<std::string>& changes) {
    std::string repaired;
    std::size_t copied = 0;
    std::size_t location = 0;  // of the end of `repaired`, in 16-bit units
    while (const auto name = nextDjangoName(text, copied)) {
        const std::string_view between = text.substr(copied, name->position - copied);
        const std::string_view old = text.substr(name->position, name->length);
        const std::string fixed = filteredKeyString(old);
        location += utf16Length(between);
        log(vellicor::text("FIX: [%@] replaced string \"%@\" with \"%@\"",
                           vellicor::text("{%lu, %lu}", location, utf16Length(old)), old, fixed));
        if (fixed != old) changes.push_back(vellicor::text("the element \"%@\" became \"%@\"", old, fixed));
        repaired.append(between).append(fixed);
        location += fixed.size();
        copied = name->position + name->length;
    }
    return repaired.append(text, copied);
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
    std::vector<std::string> changes;
    return withClosedReferences(text, changes);
}

std::string attemptDjangoFix(std::string_view text) {
    std::vector<std::string> changes;
    return withSoundDjangoNames(text, changes);
}

std::string repairedDocument(std::string_view bytes, std::vector<std::string>& changes) {
    std::string storage;
    const std::string_view text = xmlAsRepairableUTF8(bytes, storage);
    const std::string clean = dataByRemovingInvalidCharacters(text);
    if (const std::size_t dropped = text.size() - clean.size(); dropped > 0)
        changes.push_back(vellicor::text("%lu bytes that are no text were dropped", dropped));
    return withSoundDjangoNames(withClosedReferences(clean, changes), changes);
}

std::string filteredKeyString(std::string_view key) {
    std::string kept;
    std::ranges::copy_if(key, std::back_inserter(kept), isKeyCharacter);
    return kept;
}

}  // namespace vellicor
