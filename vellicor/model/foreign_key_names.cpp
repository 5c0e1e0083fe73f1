// vellicor/model/foreign_key_names.cpp — gathering the names of keys, and keeping them in step.
#include "vellicor/model/foreign_key_names.h"

#include <utility>

#include "vellicor/model/connectable.h"
#include "vellicor/model/container.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::size_t kMostNoted = 100'000;

}  // namespace

void ForeignKeyNames::note(SQLObject& object) {
    if (!_isGathered) return;
    const std::scoped_lock lock(_notedLock);
    if (_noted.size() == kMostNoted) {  // nobody asks any more
        _noted.clear();
        _isGathered = false;
    } else {
        _noted.push_back(object.weak_from_this());
    }
}

bool ForeignKeyNames::holds(std::string_view name) {
    update();
    return _counts.contains(name);
}

std::uint64_t ForeignKeyNames::firstFreeNumber(std::string_view base, std::uint64_t start,
                                               const std::function<bool(const std::string&)>& isTaken) {
    update();
    for (std::uint64_t number = _hints.firstCandidate(base, start);; number = _hints.firstCandidate(base, number)) {
        const std::string name = text("%@_%ld", base, static_cast<std::int64_t>(number));
        if (_counts.contains(name))
            _hints.remember(base, number, number);
        else if (isTaken(name))
            ++number;
        else
            return number;
    }
}

void ForeignKeyNames::update() {
    if (!_isGathered || _lossesSeen != _losses) return gather();
    std::vector<std::weak_ptr<SQLObject>> noted;
    {
        const std::scoped_lock lock(_notedLock);
        noted.swap(_noted);
    }
    for (const auto& each : noted)
        if (const auto object = each.lock()) take(*object);
}

void ForeignKeyNames::gather() {
    {
        const std::scoped_lock lock(_notedLock);
        _noted.clear();
    }
    _isGathered = true;  // what changes from here on is noted
    _lossesSeen = _losses;
    _names.clear();
    _counts.clear();
    _hints.clear();
    for (const auto& object : _document.objectList()) take(*object);
}

void ForeignKeyNames::take(SQLObject& object) {
    if (auto* component = as<SQLTableComponent>(&object)) return takeComponent(*component);
    if (const auto* table = as<SQLTable>(&object))
        for (const auto& component : table->getFields()) takeComponent(*component);
}

void ForeignKeyNames::takeComponent(SQLTableComponent& component) {
    const auto* key = as<SQLConnectable>(&component);
    if (!key) return;
    if (const auto known = _names.find(&component); known != _names.end()) {
        const auto count = _counts.find(known->second);
        if (--count->second == 0) {
            _hints.nameBecameFree(count->first);
            _counts.erase(count);
        }
        _names.erase(known);
    }
    if (!key->targetTable()) return;
    const auto entered = _names.emplace(&component, key->foreignKeyName()).first;
    ++_counts[entered->second];
}

}  // namespace vellicor
