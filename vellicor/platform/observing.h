// vellicor/platform/observing.h — being told before and after a value with a key changes.
#pragma once

#include <memory>
#include <string_view>

namespace vellicor {

/// Told of changes of the keys it registered for. Implement only what matters.
class KeyObserver {
public:
    virtual ~KeyObserver() = default;
    virtual void willChangeValue(const void* /*object*/, std::string_view /*key*/) {}
    virtual void didChangeValue(const void* /*object*/, std::string_view /*key*/) {}
};

/// A list of (observer, key) registrations; empty until somebody observes, and free until then. Observers are not kept
/// alive and must remove themselves. The list is copied before it is walked.
class KeyObserverList {
public:
    KeyObserverList();
    ~KeyObserverList();
    KeyObserverList(const KeyObserverList&) = delete;
    KeyObserverList& operator=(const KeyObserverList&) = delete;

    void add(KeyObserver& observer, std::string_view key);
    void remove(KeyObserver& observer, std::string_view key);
    void willChange(const void* object, std::string_view key) const;
    void didChange(const void* object, std::string_view key) const;

private:
    struct Registrations;
    std::unique_ptr<Registrations> _registrations;
};

}  // namespace vellicor
