// vellicor/platform/atomic_property.h — a value read and written as one unit, without a lock of its own.
#pragma once

#include <cstdint>
#include <mutex>
#include <utility>

namespace vellicor {

/// The lock for the values that live inside `owner`, out of a small table for each type that is shared by address. Hold
/// it for single reads and writes only, never while asking for another one.
template <class Owner>
[[nodiscard]] std::mutex& sharedLock(const Owner* owner) {
    static std::mutex mutexes[16];
    return mutexes[(reinterpret_cast<std::uintptr_t>(owner) >> 6) % 16];
}

/// Holds a value that any thread may read and write; no read sees half a write. The locks are shared by address.
template <class T>
class AtomicProperty {
public:
    AtomicProperty() = default;
    [[nodiscard]] T get() const {
        std::scoped_lock lock(sharedLock(this));
        return _value;
    }
    void set(T value) {
        std::scoped_lock lock(sharedLock(this));
        std::swap(_value, value);
    }
    /// Stores `value` unless there is one that is not null; answers what is stored then.
    T setIfNull(T value) {
        std::scoped_lock lock(sharedLock(this));
        if (!_value) _value = std::move(value);
        return _value;
    }

private:
    T _value{};
};

}  // namespace vellicor
