// vellicor/platform/preferences.cpp — the store of preferences and the file behind it.
#include "vellicor/platform/preferences.h"

#include <algorithm>
#include <limits>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <utility>

#include "vellicor/platform/files.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/main_thread.h"
#include "vellicor/platform/notifications.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/property_list.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::int64_t truncated(double number) {
    constexpr double kLimit = 9223372036854775808.0;  // 2 to the 63rd
    if (number != number) return 0;
    if (number >= kLimit) return std::numeric_limits<std::int64_t>::max();
    if (number < -kLimit) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(number);
}

}  // namespace

struct Preferences::Storage {
    mutable std::shared_mutex mutex;
    std::unordered_map<std::string, Value, TextHash, std::equal_to<>> values;
    std::filesystem::path backingFile;  // empty: in memory only
    std::mutex saving;                  // taken before `mutex`, so that an earlier state never overwrites a later one

    /// What `read` makes of the stored value; `absent` without one. The value is read in place, under the lock.
    template <class Result, class Read>
    Result read(std::string_view key, Result absent, Read read) const {
        std::shared_lock lock(mutex);
        auto found = values.find(key);
        return found == values.end() ? absent : read(found->second);
    }

    /// Applies a change, then saves and announces the result with no lock held.
    template <class Change>
    void change(const Preferences& store, Change change) {
        {
            std::unique_lock lock(mutex);
            change();
        }
        save();
        NotificationCenter::post(notifications::preferencesChanged, &store);
    }

    void save() {
        std::scoped_lock onlySaver(saving);
        std::filesystem::path file;
        Value::Map snapshot;
        {
            std::shared_lock lock(mutex);
            if (backingFile.empty()) return;
            file = backingFile;
            snapshot.insert(values.begin(), values.end());
        }
        std::string error;
        std::optional<std::string> bytes = propertyListText(Value(std::move(snapshot)), error);
        if (!bytes || !writeFileAtomically(file, *bytes, error))
            log(text("preferences not saved to %@: %@", file.string(), error));
    }
};

Preferences& Preferences::shared() {
    static auto& store = *[] {
        static_cast<void>(isMainThread());  // the first use of the library names the main thread
        return new Preferences;             // never destroyed, since destructors of other statics may still read
    }();
    return store;
}

Preferences::Preferences() : _storage(std::make_unique<Storage>()) {}
Preferences::~Preferences() = default;

bool Preferences::boolForKey(std::string_view key) const {
    return _storage->read(key, false, [](const Value& value) {
        if (const bool* flag = value.asBoolean()) return *flag;
        if (const std::int64_t* integer = value.asInteger()) return *integer != 0;
        if (const double* real = value.asReal()) return *real != 0;
        if (const std::string* words = value.asText()) return boolValue(*words);
        return false;
    });
}

std::int64_t Preferences::integerForKey(std::string_view key) const {
    return _storage->read(key, std::int64_t{0}, [](const Value& value) -> std::int64_t {
        if (const bool* flag = value.asBoolean()) return *flag ? 1 : 0;
        if (const std::int64_t* integer = value.asInteger()) return *integer;
        if (const double* real = value.asReal()) return truncated(*real);
        if (const std::string* words = value.asText()) return integerValue(*words);
        return 0;
    });
}

std::optional<std::string> Preferences::stringForKey(std::string_view key) const {
    return _storage->read(key, OptionalText(), [](const Value& value) -> OptionalText {
        if (const std::string* words = value.asText()) return *words;
        if (const bool* flag = value.asBoolean()) return PropertyValue::boolean(*flag).text();
        if (const std::int64_t* integer = value.asInteger()) return PropertyValue::integer(*integer).text();
        if (const double* real = value.asReal()) return PropertyValue::real(*real).text();
        return std::nullopt;
    });
}

std::optional<Value> Preferences::objectForKey(std::string_view key) const {
    return _storage->read(key, std::optional<Value>(), [](const Value& value) { return std::optional<Value>(value); });
}

std::vector<std::string> Preferences::keys() const {
    std::vector<std::string> keys;
    {
        std::shared_lock lock(_storage->mutex);
        for (const auto& entry : _storage->values) keys.push_back(entry.first);
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

void Preferences::setObject(const Value& value, std::string_view key) {
    _storage->change(*this, [&] {
        if (value.isNull()) {
            if (auto found = _storage->values.find(key); found != _storage->values.end()) _storage->values.erase(found);
        } else {
            _storage->values.insert_or_assign(std::string(key), value);
        }
    });
}

void Preferences::setBool(bool flag, std::string_view key) { setObject(Value::boolean(flag), key); }

void Preferences::removeObject(std::string_view key) { setObject(Value(), key); }

bool Preferences::readFile(const std::filesystem::path& file, std::string& error) {
    std::optional<std::string> bytes = vellicor::readFile(file, error);
    if (!bytes) return false;
    std::optional<Value> list = valueFromPropertyList(*bytes, error);
    if (!list) return false;
    const Value::Map* dictionary = list->asMap();
    if (!dictionary) {
        error = "the property list holds no dictionary";
        return false;
    }
    _storage->change(*this, [&] {
        for (const auto& [key, value] : *dictionary) _storage->values.insert_or_assign(key, value);
    });
    return true;
}

void Preferences::setBackingFile(const std::filesystem::path& file) {
    std::unique_lock lock(_storage->mutex);
    _storage->backingFile = file;
}

}  // namespace vellicor
