// vellicor/model/foreign_key_names.h — the names that the resolved foreign keys of a document have.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vellicor/model/forward.h"
#include "vellicor/model/name_scope.h"

namespace vellicor {

/// Gathered when somebody first asks, and kept in step from then on. Questions are asked under the lock of the
/// document's list; changes are noted from anywhere, whatever lock is held.
class ForeignKeyNames {
public:
    explicit ForeignKeyNames(const SQLContainer& document) : _document(document) {}

    /// A component, or a table with all of its components, is new in the document or has another name or target.
    void note(SQLObject& object);
    /// Something that keys may stand in, or point to, is gone: every document gathers its names anew when it is asked.
    static void noteLoss() { ++_losses; }
    /// Gathers this document's names anew.
    void forget() { _isGathered = false; }

    /// A key that has a target has exactly this name.
    [[nodiscard]] bool holds(std::string_view name);
    /// The first number from `start` on that behind `base` and an underscore makes a name which no key with a target
    /// has, and which `isTaken` does not know.
    [[nodiscard]] std::uint64_t firstFreeNumber(std::string_view base, std::uint64_t start,
                                                const std::function<bool(const std::string&)>& isTaken);

private:
    void update();
    void gather();
    void take(SQLObject& object);
    void takeComponent(SQLTableComponent& component);

    static inline std::atomic<std::uint64_t> _losses{0};
    const SQLContainer& _document;
    std::atomic<bool> _isGathered = false;
    std::uint64_t _lossesSeen = 0;
    std::unordered_map<const SQLTableComponent*, std::string> _names;  // of the keys that have a target
    std::unordered_map<std::string, std::size_t, TextHash, std::equal_to<>> _counts;
    NumberHints _hints;
    std::mutex _notedLock;
    std::vector<std::weak_ptr<SQLObject>> _noted;
};

}  // namespace vellicor
