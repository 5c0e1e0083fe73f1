// vellicor/util/status_log.h — the events of a long operation, for a list that the user can read.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vellicor/platform/observer_list.h"
#include "vellicor/util/status_event.h"

namespace vellicor {

/// Told by the logs it observes.
class QVStatusLogObserver {
public:
    virtual ~QVStatusLogObserver() = default;
    virtual void eventListChanged(QVStatusLog& /*log*/) {}
};

/// An ordered list of events with observers, for use from one thread. Held by a shared_ptr, so that its events know it.
class QVStatusLog : public std::enable_shared_from_this<QVStatusLog> {
public:
    using Events = std::vector<std::shared_ptr<QVStatusEvent>>;
    using Observers = std::vector<std::shared_ptr<QVStatusLogObserver>>;

    /// A copy.
    [[nodiscard]] Events events() const { return _events; }
    /// Replaces the list as it is: nobody is told, and the events' logs stay.
    void setEvents(Events events) { _events = std::move(events); }
    /// Owned until they are removed.
    [[nodiscard]] Observers observers() const { return _observers.observers(); }
    void setObservers(const Observers& observers);
    /// One that is added twice is told twice.
    void addObserver(const std::shared_ptr<QVStatusLogObserver>& observer);
    void removeObserver(const std::shared_ptr<QVStatusLogObserver>& observer);
    /// Until the guard goes.
    [[nodiscard]] Observation observe(const std::shared_ptr<QVStatusLogObserver>& observer) {
        return _observers.observe(observer);
    }

    /// Appends the event, makes this its log and that of all warnings below it, and tells the observers.
    void addEvent(std::shared_ptr<QVStatusEvent> event);
    /// Every occurrence; the observers are told in any case.
    void removeEvent(std::shared_ptr<QVStatusEvent> event);
    void removeAllEvents();
    void notifyObservers();
    /// Summary, blank, detail and a line break of each event, without its warnings; an absent text reads "(null)".
    [[nodiscard]] std::string allEventsAsString() const;

private:
    Events _events;
    ObserverList<std::shared_ptr<QVStatusLogObserver>> _observers;
};

}  // namespace vellicor
