// vellicor/platform/notifications.h — named announcements delivered at once, on the posting thread, in order.
#pragma once

#include <functional>
#include <string_view>

#include "vellicor/platform/observer_list.h"

namespace vellicor {

/// Process-wide posting and receiving of named announcements.
class NotificationCenter {
public:
    using Handler = std::function<void(std::string_view name, const void* object)>;

    /// Calls `handler` for every later post of `name` until the guard goes; only those about `object` unless that is
    /// null.
    [[nodiscard]] static Observation observe(std::string_view name, const void* object, Handler handler);
    /// Calls the handlers in the order of their registration; handlers may register and remove while it runs.
    static void post(std::string_view name, const void* object = nullptr);
};

namespace notifications {
inline constexpr std::string_view preferencesChanged = "preferencesChanged";
inline constexpr std::string_view exportDialectChanged = "exportDialectChanged";
inline constexpr std::string_view objectLabelListChanged = "ObjectLabelListChanged";
}  // namespace notifications

}  // namespace vellicor
