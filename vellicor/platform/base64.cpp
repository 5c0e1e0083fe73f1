// vellicor/platform/base64.cpp — bytes to Base64 and back.
#include "vellicor/platform/base64.h"

#include <array>
#include <cstdint>

namespace vellicor {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kBytesPerLine = 48;  // 64 characters

constexpr std::int8_t kSkipped = -1, kStops = -2;

/// What each byte of a text stands for: 0 to 63, `kSkipped` or `kStops`.
constexpr std::array<std::int8_t, 256> makeMeanings() {
    std::array<std::int8_t, 256> meanings{};
    meanings.fill(kStops);
    for (char blank : {' ', '\t', '\n', '\v', '\f', '\r'}) meanings[static_cast<unsigned char>(blank)] = kSkipped;
    for (std::size_t i = 0; i < kAlphabet.size(); ++i)
        meanings[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::int8_t>(i);
    return meanings;
}

constexpr std::array<std::int8_t, 256> kMeanings = makeMeanings();

}  // namespace

std::string base64Text(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4 + bytes.size() / kBytesPerLine);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        if (i && i % kBytesPerLine == 0) text += '\n';
        const std::string_view group = bytes.substr(i, 3);
        std::uint32_t bits = 0;
        for (std::size_t k = 0; k < 3; ++k)
            bits = bits << 8 | (k < group.size() ? static_cast<unsigned char>(group[k]) : 0u);
        for (std::size_t k = 0; k < 4; ++k) text += k <= group.size() ? kAlphabet[bits >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

std::string bytesFromBase64(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    int bitCount = 0;
    for (char character : text) {
        const std::int8_t meaning = kMeanings[static_cast<unsigned char>(character)];
        if (meaning == kSkipped) continue;
        if (meaning == kStops) break;
        bits = bits << 6 | static_cast<std::uint32_t>(meaning);
        bitCount += 6;
        if (bitCount < 8) continue;
        bitCount -= 8;
        bytes += static_cast<char>(bits >> bitCount & 0xFF);
    }
    return bytes;
}

}  // namespace vellicor
