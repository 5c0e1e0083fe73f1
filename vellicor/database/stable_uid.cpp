// vellicor/database/stable_uid.cpp — two independent 64-bit hashes make one identifier.
#include "vellicor/database/stable_uid.h"

#include <cstdint>

namespace vellicor {

namespace {

/// FNV-1a from a start of its own.
class Hash {
public:
    explicit Hash(std::uint64_t start) : _value(start) {}
    void add(unsigned char byte) { _value = (_value ^ byte) * 0x100000001B3u; }
    /// Every bit of the input in every bit of the result.
    [[nodiscard]] std::uint64_t mixed() const {
        std::uint64_t value = _value;
        value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
        value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
        return value ^ (value >> 31);
    }

private:
    std::uint64_t _value;
};

}  // namespace

std::string stableUid(std::initializer_list<std::string_view> names) {
    Hash first(0xCBF29CE484222325u);
    Hash second(0x9E3779B97F4A7C15u);
    for (const std::string_view name : names) {
        for (const char c : name) {
            first.add(static_cast<unsigned char>(c));
            second.add(static_cast<unsigned char>(c));
        }
        first.add(0);  // no name holds one
        second.add(0);
    }
    constexpr std::uint64_t kVersion = 8;  // made by a rule of its own
    const std::uint64_t high = (first.mixed() & ~std::uint64_t{0xF000}) | (kVersion << 12);
    const std::uint64_t low = (second.mixed() & ~(std::uint64_t{3} << 62)) | (std::uint64_t{2} << 62);

    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (int i = 0; i < 32; ++i) {
        if (i == 8 || i == 12 || i == 16 || i == 20) text += '-';
        text += kDigits[((i < 16 ? high : low) >> (60 - i % 16 * 4)) & 15];
    }
    return text;
}

}  // namespace vellicor
