// vellicor/platform/notifications.cpp — the registrations of the process and their delivery.
#include "vellicor/platform/notifications.h"

#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vellicor/platform/guarded.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

struct Registration {
    const void* object;  // null: every object
    NotificationCenter::Handler handler;
    std::atomic<bool> active{true};
};

/// By name; tokens grow, so the order by token is the order of registration.
struct Registrations {
    using OfOneName = std::map<NotificationCenter::Token, std::shared_ptr<Registration>>;

    std::unordered_map<std::string, OfOneName, TextHash, std::equal_to<>> byName;
    std::unordered_map<NotificationCenter::Token, OfOneName*> byToken;
    NotificationCenter::Token last = 0;
};

/// Never destroyed, since destructors of other statics may still remove their registrations.
Guarded<Registrations>& registrations() {
    static auto& all = *new Guarded<Registrations>;
    return all;
}

}  // namespace

NotificationCenter::Token NotificationCenter::addObserver(std::string_view name, const void* object, Handler handler) {
    auto registration = std::make_shared<Registration>();
    registration->object = object;
    registration->handler = std::move(handler);
    auto all = registrations().lock();
    Registrations::OfOneName& named = all->byName[std::string(name)];
    Token token = ++all->last;
    named.emplace(token, std::move(registration));
    all->byToken.emplace(token, &named);
    return token;
}

void NotificationCenter::removeObserver(Token token) {
    std::shared_ptr<Registration> removed;  // destroyed after the lock is gone: what a handler owns may call back
    auto all = registrations().lock();
    auto found = all->byToken.find(token);
    if (found == all->byToken.end()) return;
    auto entry = found->second->find(token);
    removed = std::move(entry->second);
    removed->active = false;
    found->second->erase(entry);
    all->byToken.erase(found);
}

void NotificationCenter::post(std::string_view name, const void* object) {
    std::vector<std::shared_ptr<Registration>> receivers;
    {
        auto all = registrations().lock();
        auto named = all->byName.find(name);
        if (named == all->byName.end()) return;
        for (const auto& [token, registration] : named->second) {
            if (!registration->object || registration->object == object) receivers.push_back(registration);
        }
    }
    for (const auto& receiver : receivers) {
        if (receiver->active) receiver->handler(name, object);
    }
}

}  // namespace vellicor
