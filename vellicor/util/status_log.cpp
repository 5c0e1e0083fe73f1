// vellicor/util/status_log.cpp — the list of events and its observers.
#include "vellicor/util/status_log.h"

#include <utility>

#include "vellicor/platform/text_format.h"

namespace vellicor {

void QVStatusLog::addObserver(const std::shared_ptr<QVStatusLogObserver>& observer) {
    if (observer) _observers.add(observer);
}

void QVStatusLog::removeObserver(const std::shared_ptr<QVStatusLogObserver>& observer) {
    _observers.removeAll([&](const auto& present) { return present == observer; });
}

void QVStatusLog::setObservers(const Observers& observers) {
    _observers.removeAll([](const auto&) { return true; });
    for (const auto& observer : observers) addObserver(observer);
}

void QVStatusLog::addEvent(std::shared_ptr<QVStatusEvent> event) {
    if (!event) return;
    _events.push_back(event);
    event->setParentLog(weak_from_this().lock());
    notifyObservers();
}

void QVStatusLog::removeEvent(std::shared_ptr<QVStatusEvent> event) {
    std::erase(_events, event);
    notifyObservers();
}

void QVStatusLog::removeAllEvents() {
    _events.clear();
    notifyObservers();
}

void QVStatusLog::notifyObservers() {
    _observers.tell([this](const auto& observer) { observer->eventListChanged(*this); });
}

std::string QVStatusLog::allEventsAsString() const {
    std::string all;
    for (const auto& event : _events) all += text("%@ %@\n", event->summary(), event->detail());
    return all;
}

}  // namespace vellicor
