// vellicor/plugins/plugin_entry.h — what a compiled plug-in exports, so that its principal class can be made.
#pragma once

#include "vellicor/plugins/plugin.h"

namespace vellicor {

/// Raised whenever the virtual operations of `SQLPlugin` or of the exporters change: a plug-in that was compiled for
/// another number must be compiled again.
inline constexpr int kPluginInterfaceVersion = 1;

/// Makes a plug-in, owned by the caller; null when the plug-in was compiled for another interface.
using PluginFactory = SQLPlugin* (*)(int interfaceVersion);

/// The exported function is called so, with the name of the principal class behind it.
inline constexpr const char* kPluginFactoryPrefix = "vellicor_create_";

}  // namespace vellicor

/// Exports the factory of one principal class, a subclass of `SQLPlugin` without constructor arguments. Stands behind
/// the class, in its namespace (not an unnamed one); the bundle's "NSPrincipalClass" is the name without namespaces.
#define VELLICOR_PLUGIN(PrincipalClass)                                                                        \
    extern "C" __attribute__((visibility("default"))) ::vellicor::SQLPlugin* vellicor_create_##PrincipalClass( \
        int interfaceVersion) {                                                                                \
        return interfaceVersion == ::vellicor::kPluginInterfaceVersion ? new PrincipalClass : nullptr;         \
    }
