// vellicor/platform/keyed_archive.cpp — the bytes of an archive: a JSON object with a mark and the entries.
#include "vellicor/platform/keyed_archive.h"

#include "vellicor/platform/exception.h"
#include "vellicor/platform/json.h"

namespace vellicor {

namespace {

constexpr const char* kMarkKey = "archive";
constexpr const char* kMark = "vellicor 1";
constexpr const char* kEntriesKey = "entries";

[[noreturn]] void fail(const std::string& reason) { throw SQLException("ArchiveException", reason); }

}  // namespace

std::string KeyedArchiver::data() const { return jsonText(Value::Map{{kMarkKey, kMark}, {kEntriesKey, _entries}}); }

KeyedUnarchiver KeyedUnarchiver::fromData(std::string_view bytes) {
    Value archive;
    try {
        archive = valueFromJson(bytes);
    } catch (const SQLException& error) {
        fail("not an archive: " + error.reason());
    }
    const Value* mark = archive.find(kMarkKey);
    if (!mark || *mark != Value(kMark)) fail("not an archive, or one of another version");
    const Value* entries = archive.find(kEntriesKey);
    if (!entries || !entries->asMap()) fail("an archive without entries");
    return KeyedUnarchiver(*entries->asMap());
}

const Value* KeyedUnarchiver::decode(std::string_view key) const {
    const auto entry = _entries.find(key);
    return entry == _entries.end() ? nullptr : &entry->second;
}

}  // namespace vellicor
