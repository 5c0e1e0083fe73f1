// vellicor/platform/observer_list.h — registrations of observers, and the guard that ends one.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace vellicor {

/// A registration that ends with this object; whichever of the two goes first, guard or list, the other does not mind.
/// Moving hands the registration over.
class Observation {
public:
    /// What a list offers its guards.
    class Registrations {
    public:
        virtual ~Registrations() = default;
        virtual void end(std::uint64_t registration) = 0;
    };

    /// Of nothing.
    Observation() = default;
    Observation(std::weak_ptr<Registrations> list, std::uint64_t registration)
        : _list(std::move(list)), _registration(registration) {}
    ~Observation() { end(); }
    Observation(Observation&& other) noexcept : _list(std::move(other._list)), _registration(other._registration) {}
    Observation& operator=(Observation&& other) noexcept {
        end();
        _list = std::move(other._list);
        _registration = other._registration;
        return *this;
    }

    /// Now; nothing when it has ended.
    void end() {
        if (const auto list = _list.lock()) list->end(_registration);
        _list.reset();
    }

private:
    std::weak_ptr<Registrations> _list;
    std::uint64_t _registration = 0;
};

/// The observers of one subject, told in the order of their registration. `Observer` is whatever the subject needs to
/// tell one: a pointer, a pointer with a key, a handler. Free until somebody observes. Any thread may register and
/// tell; no lock is held while an observer is told, so it may register and remove. One that was removed is not told any
/// more, also not by a walk that is under way; removing does not wait for a call that another thread has begun.
template <class Observer>
class ObserverList {
public:
    ObserverList() = default;
    ~ObserverList() { delete _state.load(); }
    ObserverList(const ObserverList&) = delete;
    ObserverList& operator=(const ObserverList&) = delete;

    /// Until it is removed.
    void add(Observer observer) { static_cast<void>(state()->add(std::move(observer))); }
    /// Until the guard goes.
    [[nodiscard]] Observation observe(Observer observer) {
        const std::shared_ptr<State> list = state();
        return {list, list->add(std::move(observer))};
    }
    /// The first for which `matches(observer)` is true.
    template <class Matches>
    void removeFirst(Matches matches) {
        if (const auto* list = _state.load()) (*list)->remove(matches, 1);
    }
    template <class Matches>
    void removeAll(Matches matches) {
        if (const auto* list = _state.load()) (*list)->remove(matches, static_cast<std::size_t>(-1));
    }
    /// In order.
    [[nodiscard]] std::vector<Observer> observers() const {
        std::vector<Observer> all;
        if (const auto* list = _state.load())
            for (const auto& entry : (*list)->entriesOf(everybody)) all.push_back(entry->observer);
        return all;
    }
    /// Calls `tell(observer)` for everybody.
    template <class Tell>
    void tell(Tell tell) const {
        this->tell(everybody, tell);
    }
    /// The same for those for whom `concerns(observer)` is true.
    template <class Concerns, class Tell>
    void tell(Concerns concerns, Tell tell) const {
        const auto* present = _state.load();
        if (!present) return;
        const std::shared_ptr<State> list = *present;  // an observer may end the subject itself
        for (const auto& entry : list->entriesOf(concerns))
            if (entry->isActive) tell(entry->observer);
    }

private:
    static bool everybody(const Observer&) { return true; }
    struct Entry {
        explicit Entry(Observer wanted) : observer(std::move(wanted)) {}
        Observer observer;
        std::atomic<bool> isActive = true;
    };
    using EntryPtr = std::shared_ptr<Entry>;

    struct State : Observation::Registrations {
        std::uint64_t add(Observer observer) {
            auto entry = std::make_shared<Entry>(std::move(observer));
            std::scoped_lock lock(mutex);
            entries.emplace(++last, std::move(entry));
            return last;
        }
        void end(std::uint64_t registration) override {
            EntryPtr ended;  // destroyed after the lock is gone: what an observer owns may call back
            std::scoped_lock lock(mutex);
            const auto found = entries.find(registration);
            if (found == entries.end()) return;
            ended = std::move(found->second);
            ended->isActive = false;
            entries.erase(found);
        }
        template <class Matches>
        void remove(Matches matches, std::size_t atMost) {
            std::vector<EntryPtr> ended;
            std::scoped_lock lock(mutex);
            for (auto entry = entries.begin(); entry != entries.end() && ended.size() < atMost;) {
                if (!matches(std::as_const(entry->second->observer))) {
                    ++entry;
                    continue;
                }
                entry->second->isActive = false;
                ended.push_back(std::move(entry->second));
                entry = entries.erase(entry);
            }
        }
        template <class Concerns>
        std::vector<EntryPtr> entriesOf(Concerns concerns) {
            std::vector<EntryPtr> concerned;
            std::scoped_lock lock(mutex);
            for (const auto& [registration, entry] : entries)
                if (concerns(std::as_const(entry->observer))) concerned.push_back(entry);
            return concerned;
        }

        std::mutex mutex;
        std::map<std::uint64_t, EntryPtr> entries;  // by registration, so in its order
        std::uint64_t last = 0;
    };

    const std::shared_ptr<State>& state() {
        if (const auto* present = _state.load()) return *present;
        auto fresh = std::make_unique<const std::shared_ptr<State>>(std::make_shared<State>());
        const std::shared_ptr<State>* expected = nullptr;
        return _state.compare_exchange_strong(expected, fresh.get()) ? *fresh.release() : *expected;
    }

    std::atomic<const std::shared_ptr<State>*> _state{nullptr};
};

}  // namespace vellicor
