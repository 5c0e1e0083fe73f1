// vellicor/platform/guarded.h — a value that can only be reached while its re-entrant lock is held.
#pragma once

#include <mutex>
#include <utility>

namespace vellicor {

/// A value whose lock is held while this lives.
template <class Value>
class LockedHandle {
public:
    LockedHandle(Value& value, std::recursive_mutex& mutex) : _lock(mutex), _value(&value) {}
    Value& operator*() const { return *_value; }
    Value* operator->() const { return _value; }
    /// Hands the lock over to a handle of something else that it guards.
    template <class Part>
    [[nodiscard]] LockedHandle<Part> of(Part& part) && {
        return {part, std::move(_lock)};
    }

private:
    template <class Other>
    friend class LockedHandle;
    LockedHandle(Value& value, std::unique_lock<std::recursive_mutex> lock) : _lock(std::move(lock)), _value(&value) {}

    std::unique_lock<std::recursive_mutex> _lock;
    Value* _value;
};

/// Owns a value together with its recursive mutex. `lock()` answers a handle, the only way to the value; take it at
/// the top of a whole operation and name it (`auto fields = _fields.lock();`), since a temporary handle in a range-for
/// releases the lock before the first step.
/// When two locks are needed the order is: container list, table list, property dictionary; of two of a kind, the one
/// at the lower address comes first.
template <class T>
class Guarded {
public:
    template <class Value>
    using Handle = LockedHandle<Value>;

    Guarded() = default;
    explicit Guarded(T value) : _value(std::move(value)) {}
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;

    [[nodiscard]] Handle<T> lock() { return {_value, _mutex}; }
    [[nodiscard]] Handle<const T> lock() const { return {_value, _mutex}; }

private:
    T _value{};
    mutable std::recursive_mutex _mutex;
};

}  // namespace vellicor
