// vellicor/plugins/class_registry.cpp — the classes that applications registered.
#include "vellicor/plugins/class_registry.h"

#include <map>
#include <string>
#include <utility>

#include "vellicor/platform/guarded.h"
#include "vellicor/plugins/plugin_manager.h"

namespace vellicor {

namespace {

template <class Make>
using Classes = Guarded<std::map<std::string, Make, std::less<>>>;

/// Never destroyed, like the shared objects that are made from it.
template <class Make>
Classes<Make>& classes() {
    static auto& all = *new Classes<Make>;
    return all;
}

template <class Make>
void registerClass(std::string_view name, Make make) {
    auto all = classes<Make>().lock();
    if (make)
        all->insert_or_assign(std::string(name), std::move(make));
    else
        all->erase(std::string(name));
}

/// The function is called without the lock: a class may register others while it is made.
template <class Make>
typename Make::result_type makeInstance(std::string_view name) {
    Make make;
    {
        auto all = classes<Make>().lock();
        auto found = all->find(name);
        if (found == all->end()) return nullptr;
        make = found->second;
    }
    return make();
}

}  // namespace

void ClassRegistry::registerPluginClass(std::string_view name, PluginClass make) {
    registerClass(name, std::move(make));
}

void ClassRegistry::registerManagerClass(std::string_view name, ManagerClass make) {
    registerClass(name, std::move(make));
}

std::shared_ptr<SQLPlugin> ClassRegistry::makePlugin(std::string_view name) { return makeInstance<PluginClass>(name); }

std::unique_ptr<SQLPluginManager> ClassRegistry::makeManager(std::string_view name) {
    return makeInstance<ManagerClass>(name);
}

}  // namespace vellicor
