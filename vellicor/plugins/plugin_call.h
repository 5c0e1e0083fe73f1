// vellicor/plugins/plugin_call.h — calling code of plug-ins, which may throw.
#pragma once

#include <exception>

#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

/// What `call` answers; null or false, with the reason logged, when it throws.
template <class Call>
auto callPlugin(Call call) -> decltype(call()) {
    try {
        return call();
    } catch (const std::exception& exception) {
        log(text("plugin failed: %@", exception.what()));
    } catch (...) {
        log("plugin failed: unknown exception");
    }
    return {};
}

}  // namespace vellicor
