// vellicor/platform/xml_encoding.cpp — finding out the encoding of a document; ICU's converters and its detector.
#include "vellicor/platform/xml_encoding.h"

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>

#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_events.h"

namespace vellicor {

namespace {

constexpr std::int64_t kInvalidByteCode = 9;
constexpr std::int64_t kUnknownEncodingCode = 32;
constexpr std::string_view kUTF8Mark = "\xEF\xBB\xBF";
constexpr std::size_t kLongestDeclaration = 1024;

using Converter = std::unique_ptr<UConverter, void (*)(UConverter*)>;

/// Null for a name that no converter has.
Converter converterNamed(const std::string& name) {
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(name.c_str(), &status), ucnv_close);
    if (U_FAILURE(status)) converter.reset();
    return converter;
}

bool isEncodingLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isEncodingCharacter(char c) { return isEncodingLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-'; }
bool isXMLBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

/// Encodings of two and four bytes a character show by a mark, or by the zeros around the first "<".
std::string_view wideEncodingOf(std::string_view bytes) {
    using namespace std::string_view_literals;
    constexpr std::pair<std::string_view, std::string_view> kStarts[] = {
        {"\xFF\xFE\0\0"sv, "UTF-32LE"}, {"\0\0\xFE\xFF"sv, "UTF-32BE"}, {"<\0\0\0"sv, "UTF-32LE"},
        {"\0\0\0<"sv, "UTF-32BE"},      {"\xFF\xFE"sv, "UTF-16LE"},     {"\xFE\xFF"sv, "UTF-16BE"},
        {"<\0"sv, "UTF-16LE"},          {"\0<"sv, "UTF-16BE"},
    };
    const auto* found =
        std::ranges::find_if(kStarts, [&](const auto& start) { return bytes.starts_with(start.first); });
    return found == std::end(kStarts) ? std::string_view() : found->second;
}

/// The name behind "encoding" in the declaration, a part of `bytes`; empty without a sound one.
std::string_view declaredEncoding(std::string_view bytes) {
    std::string_view rest = bytes.substr(0, kLongestDeclaration);
    if (rest.starts_with(kUTF8Mark)) rest.remove_prefix(kUTF8Mark.size());
    if (!rest.starts_with("<?xml") || rest.size() < 6 || !isXMLBlank(rest[5])) return {};
    rest = rest.substr(0, rest.find("?>"));
    constexpr std::string_view key = "encoding";
    const auto skipBlanks = [&] {
        while (!rest.empty() && isXMLBlank(rest.front())) rest.remove_prefix(1);
    };
    const std::size_t at = rest.find(key);
    if (at == rest.npos || !isXMLBlank(rest[at - 1])) return {};
    rest.remove_prefix(at + key.size());
    skipBlanks();
    if (!rest.starts_with('=')) return {};
    rest.remove_prefix(1);
    skipBlanks();
    if (rest.empty() || (rest.front() != '"' && rest.front() != '\'')) return {};
    const std::size_t end = rest.find(rest.front(), 1);
    if (end == rest.npos || end == 1) return {};
    const std::string_view name = rest.substr(1, end - 1);
    return isEncodingLetter(name.front()) && std::ranges::all_of(name, isEncodingCharacter) ? name : std::string_view();
}

/// At the last of the bytes that were `read`.
XMLError errorBehind(std::string_view read, std::string_view encoding) {
    const std::string_view line = read.substr(read.rfind('\n') + 1);  // from the start without a line break
    return {kInvalidByteCode,
            text("There is a byte here that %@, the declared encoding, does not have: declare the encoding that the "
                 "document is in",
                 encoding),
            std::ranges::count(read, '\n') + 1, std::max<std::int64_t>(static_cast<std::int64_t>(line.size()), 1)};
}

/// Appends `bytes` to `out` as UTF-8. 0, or how many were read up to the first that the encoding does not have, unless
/// those are skipped.
std::size_t convertToUTF8(UConverter* from, std::string_view bytes, bool skipping, std::string& out) {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(from, skipping ? UCNV_TO_U_CALLBACK_SKIP : UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
    const Converter toUTF8 = converterNamed("UTF-8");
    const char* source = bytes.data();
    const char* const sourceEnd = source + bytes.size();
    UChar pivot[4096];
    UChar* pivotSource = pivot;
    UChar* pivotTarget = pivot;
    char piece[16384];
    bool isFirst = true;
    do {
        status = U_ZERO_ERROR;
        char* target = piece;
        ucnv_convertEx(toUTF8.get(), from, &target, std::end(piece), &source, sourceEnd, pivot, &pivotSource,
                       &pivotTarget, std::end(pivot), isFirst, true, &status);
        isFirst = false;
        out.append(piece, target);
    } while (status == U_BUFFER_OVERFLOW_ERROR);
    return U_SUCCESS(status) ? 0 : static_cast<std::size_t>(source - bytes.data());
}

}  // namespace

XMLEncoding xmlEncodingOf(std::string_view bytes) {
    if (const std::string_view wide = wideEncodingOf(bytes); !wide.empty())
        return {.name = std::string(wide), .isUTF8 = false, .isStated = true};
    if (bytes.starts_with(kUTF8Mark)) return {.isStated = true};
    const std::string_view declared = declaredEncoding(bytes);
    if (declared.empty()) return {};
    XMLEncoding encoding{.name = std::string(declared),
                         .isStated = true,
                         .position = static_cast<std::size_t>(declared.data() - bytes.data())};
    const Converter converter = converterNamed(encoding.name);
    encoding.isKnown = converter != nullptr;
    if (!converter) return encoding;
    const UConverterType type = ucnv_getType(converter.get());
    encoding.isUTF8 = type == UCNV_UTF8 || type == UCNV_US_ASCII || ucnv_getMinCharSize(converter.get()) > 1;
    return encoding;
}

std::string_view xmlAsUTF8(std::string_view bytes, std::string& storage) {
    const XMLEncoding encoding = xmlEncodingOf(bytes);
    if (!encoding.isKnown) {
        const auto column = static_cast<std::int64_t>(encoding.position) + 1;
        throw XMLError(
            kUnknownEncodingCode,
            text("The declared character encoding %@ is not known: save the document as UTF-8", encoding.name), 1,
            column);
    }
    if (encoding.isUTF8) return bytes;
    storage.clear();
    if (const std::size_t read = convertToUTF8(converterNamed(encoding.name).get(), bytes, false, storage))
        throw errorBehind(bytes.substr(0, read), encoding.name);
    return storage;
}

std::string_view xmlAsRepairableUTF8(std::string_view bytes, std::string& storage) {
    const XMLEncoding encoding = xmlEncodingOf(bytes);
    const bool hasZeros = bytes.find('\0') != bytes.npos;  // of an encoding with two or four bytes a character
    if (!encoding.isKnown || encoding.isUTF8 || (!hasZeros && isValidUTF8(bytes))) return bytes;
    storage.clear();
    convertToUTF8(converterNamed(encoding.name).get(), bytes, true, storage);
    return storage;
}

std::string likelyEncoding(std::string_view bytes) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, void (*)(UCharsetDetector*)> detector(ucsdet_open(&status), ucsdet_close);
    if (U_FAILURE(status)) return {};
    // A part that shows enough: the lines around the first bytes that are no ASCII.
    constexpr std::size_t kBefore = 256, kShown = 65536;
    const auto firstHigh = std::ranges::find_if(bytes, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    const auto high = static_cast<std::size_t>(firstHigh - bytes.begin());
    const std::string_view part = bytes.substr(high > kBefore ? high - kBefore : 0, kShown);
    ucsdet_setText(detector.get(), part.data(), static_cast<std::int32_t>(part.size()), &status);
    ucsdet_enableInputFilter(detector.get(), true);
    const UCharsetMatch* match = ucsdet_detect(detector.get(), &status);
    const char* name = match && U_SUCCESS(status) ? ucsdet_getName(match, &status) : nullptr;
    return name && U_SUCCESS(status) ? name : std::string();
}

}  // namespace vellicor
