// vellicor/platform/weak_ref.h — a back-reference that reads as null once its target is gone.
#pragma once

#include <memory>

namespace vellicor {

/// Points at an object owned elsewhere without keeping it alive. The target must be held by a shared_ptr and derive
/// from enable_shared_from_this.
template <class T>
class WeakRef {
public:
    WeakRef() = default;
    explicit WeakRef(T* target) { *this = target; }
    WeakRef& operator=(T* target) {
        _target = target;
        _alive.reset();
        if (target) _alive = target->weak_from_this();
        return *this;
    }

    /// The target, or null when none was set or it was destroyed.
    [[nodiscard]] T* get() const { return _target && !_alive.expired() ? _target : nullptr; }
    explicit operator bool() const { return get() != nullptr; }
    T* operator->() const { return get(); }
    /// The address last set, whether its object still lives or not; for comparing identities only.
    [[nodiscard]] const T* address() const { return _target; }

private:
    T* _target = nullptr;
    std::weak_ptr<const void> _alive;
};

}  // namespace vellicor
