// vellicor/platform/keyed_archive.h — archives with named entries, for copying and pasting objects.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "vellicor/platform/value.h"

namespace vellicor {

/// Collects the entries that an object writes of itself.
class KeyedArchiver {
public:
    void encode(Value value, std::string_view key) { _entries.insert_or_assign(std::string(key), std::move(value)); }
    const Value::Map& entries() const { return _entries; }
    /// The archive as bytes.
    [[nodiscard]] std::string data() const;

private:
    Value::Map _entries;
};

/// Answers the entries of an archive; an absent key is null.
class KeyedUnarchiver {
public:
    explicit KeyedUnarchiver(Value::Map entries) : _entries(std::move(entries)) {}
    /// Raises SQLException named "ArchiveException" when the bytes are no archive.
    static KeyedUnarchiver fromData(std::string_view bytes);
    [[nodiscard]] const Value* decode(std::string_view key) const;

private:
    Value::Map _entries;
};

}  // namespace vellicor
