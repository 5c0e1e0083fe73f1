// vellicor/platform/notifications.cpp — the registrations of the process and their delivery.
#include "vellicor/platform/notifications.h"

#include <string>
#include <unordered_map>
#include <utility>

#include "vellicor/platform/guarded.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

struct Receiver {
    const void* object;  // null: every object
    NotificationCenter::Handler handler;
};
using Receivers = ObserverList<Receiver>;
using ReceiversByName = std::unordered_map<std::string, Receivers, TextHash, std::equal_to<>>;

/// Never destroyed, since destructors of other statics may still post. A name that came once stays, at its address.
Guarded<ReceiversByName>& receiversByName() {
    static auto& all = *new Guarded<ReceiversByName>;
    return all;
}

}  // namespace

Observation NotificationCenter::observe(std::string_view name, const void* object, Handler handler) {
    auto all = receiversByName().lock();
    return (*all)[std::string(name)].observe({object, std::move(handler)});
}

void NotificationCenter::post(std::string_view name, const void* object) {
    const Receivers* receivers = nullptr;
    {
        auto all = receiversByName().lock();
        if (const auto named = all->find(name); named != all->end()) receivers = &named->second;
    }
    if (!receivers) return;
    receivers->tell([&](const Receiver& receiver) { return !receiver.object || receiver.object == object; },
                    [&](const Receiver& receiver) { receiver.handler(name, object); });
}

}  // namespace vellicor
