// vellicor/util/status_log.cpp — the list of events and its observers.
#include "vellicor/util/status_log.h"

#include <utility>

#include "vellicor/platform/text_format.h"

namespace vellicor {

void QVStatusLog::addObserver(const std::shared_ptr<QVStatusLogObserver>& observer) {
    if (observer) _observers.push_back(observer);
}

void QVStatusLog::removeObserver(const std::shared_ptr<QVStatusLogObserver>& observer) {
    std::erase_if(_observers, [&](const auto& entry) {
        const auto present = entry.lock();
        return !present || present == observer;
    });
}

void QVStatusLog::addEvent(const std::shared_ptr<QVStatusEvent>& event) {
    if (!event) return;
    _events.push_back(event);
    event->setParentLog(weak_from_this().lock());
    notifyObservers();
}

void QVStatusLog::removeEvent(const std::shared_ptr<QVStatusEvent>& event) {
    std::erase(_events, event);
    notifyObservers();
}

void QVStatusLog::removeAllEvents() {
    _events.clear();
    notifyObservers();
}

void QVStatusLog::notifyObservers() {
    for (const auto& entry : Observers(_observers)) {
        if (const auto observer = entry.lock()) observer->eventListChanged(*this);
    }
}

std::string QVStatusLog::allEventsAsString() const {
    std::string all;
    for (const auto& event : _events) all += text("%@ %@\n", event->summary(), event->detail());
    return all;
}

}  // namespace vellicor
