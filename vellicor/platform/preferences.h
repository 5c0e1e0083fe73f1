// vellicor/platform/preferences.h — the application's defaults store: typed values by key, read at the moment of use.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/platform/value.h"

namespace vellicor {

/// A store of preferences, in memory by default, optionally backed by a property-list file that every change rewrites
/// atomically. An absent key reads as false, 0 or null. Any thread may read and write.
class Preferences {
public:
    /// The process-wide store that the library reads.
    static Preferences& shared();

    Preferences();
    ~Preferences();
    Preferences(const Preferences&) = delete;
    Preferences& operator=(const Preferences&) = delete;

    /// Flags and numbers: not zero. Text: a boolean scan (Y, T or a digit 1 to 9 after white space, sign and zeros).
    [[nodiscard]] bool boolForKey(std::string_view key) const;
    /// Numbers truncated towards zero; flags 1 or 0; the leading integer of a text; 0 otherwise.
    [[nodiscard]] std::int64_t integerForKey(std::string_view key) const;
    /// The value as text; null when the key is absent or holds a list or a map.
    [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const;
    /// The value as stored; null when the key is absent.
    [[nodiscard]] std::optional<Value> objectForKey(std::string_view key) const;
    [[nodiscard]] std::vector<std::string> keys() const;

    /// Stores a value (a null value removes the key) and posts the notification "preferencesChanged" (see
    /// `notifications.h`).
    void setObject(const Value& value, std::string_view key);
    void setBool(bool flag, std::string_view key);
    void removeObject(std::string_view key);

    /// Merges the dictionary of a property-list file into the store; false with a reason in `error` when the file
    /// cannot be read or is no dictionary, the store then unchanged.
    bool readFile(const std::filesystem::path& file, std::string& error);
    /// From now on every change rewrites `file`; an empty path stops that.
    void setBackingFile(const std::filesystem::path& file);

private:
    struct Storage;
    std::unique_ptr<Storage> _storage;
};

}  // namespace vellicor
