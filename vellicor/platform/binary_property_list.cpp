// vellicor/platform/binary_property_list.cpp — walks the references of a binary property list.
#include "vellicor/platform/binary_property_list.h"

#include <cstdint>

namespace vellicor {

namespace {

constexpr std::string_view kMagic = "bplist";
constexpr std::size_t kTrailerSize = 32;

/// The form: a header, the objects, a table with the offset of each object, and a trailer with the sizes and places.
class Walk {
public:
    explicit Walk(std::string_view bytes, int deepest) : _bytes(bytes), _deepest(deepest) {}

    bool isSound() {
        if (_bytes.size() < kMagic.size() + 2 + kTrailerSize) return false;
        const std::size_t trailer = _bytes.size() - kTrailerSize;
        _offsetSize = number(trailer + 6, 1);
        _referenceSize = number(trailer + 7, 1);
        _objectCount = number(trailer + 8, 8);
        _table = number(trailer + 24, 8);
        if (_offsetSize < 1 || _offsetSize > 8 || _referenceSize < 1 || _referenceSize > 8) return false;
        if (_table > trailer || _objectCount > (trailer - _table) / _offsetSize) return false;
        return visit(number(trailer + 16, 8), 0);
    }

private:
    /// The big-endian number of `size` bytes; the caller has checked that it lies within the bytes.
    std::uint64_t number(std::uint64_t position, std::uint64_t size) const {
        std::uint64_t result = 0;
        for (std::uint64_t i = 0; i < size; ++i)
            result = result << 8 | static_cast<unsigned char>(_bytes[position + i]);
        return result;
    }

    bool visit(std::uint64_t object, int depth) {
        if (object >= _objectCount || depth > _deepest || --_valuesLeft < 0) return false;
        std::uint64_t position = number(_table + object * _offsetSize, _offsetSize);
        if (position >= _table) return false;
        const std::uint64_t marker = number(position++, 1), kind = marker >> 4;
        if (kind < 0xA) return true;  // a single value; its length is checked where it is read
        std::uint64_t count = marker & 0xF;
        if (count == 0xF) {  // the count follows as an integer of 2^n bytes
            if (position >= _table) return false;
            const std::uint64_t size = 1u << (number(position++, 1) & 0x3);
            if (size > _table - position) return false;
            count = number(position, size);
            position += size;
        }
        if (count > _table / _referenceSize) return false;
        const std::uint64_t references = kind == 0xD ? 2 * count : count;
        if (references > (_table - position) / _referenceSize) return false;
        for (std::uint64_t i = 0; i < references; ++i)
            if (!visit(number(position + i * _referenceSize, _referenceSize), depth + 1)) return false;
        return true;
    }

    std::string_view _bytes;
    int _deepest;
    int _valuesLeft = 1'000'000;
    std::uint64_t _offsetSize = 0, _referenceSize = 0, _objectCount = 0;
    std::uint64_t _table = 0;  // position of the offset table, behind the last object
};

}  // namespace

bool isBinaryPropertyList(std::string_view bytes) { return bytes.starts_with(kMagic); }

bool binaryPropertyListIsSound(std::string_view bytes, int deepest) { return Walk(bytes, deepest).isSound(); }

}  // namespace vellicor
