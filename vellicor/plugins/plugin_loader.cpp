// vellicor/plugins/plugin_loader.cpp — the search for plug-in bundles, the choice among versions, and loading.
#include "vellicor/plugins/plugin_loader.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "vellicor/platform/dynamic_code.h"
#include "vellicor/platform/library_paths.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/plugins/class_registry.h"
#include "vellicor/plugins/plugin_call.h"
#include "vellicor/plugins/plugin_entry.h"

namespace vellicor {

namespace {

using BundlePtr = QVVersionedPluginLoader::BundlePtr;

constexpr std::size_t kExpectedSearchPaths = 5;

/// A text or number of an information dictionary as text; null for everything else.
OptionalText textOf(const Value::Map& dictionary, std::string_view key) {
    auto found = dictionary.find(key);
    if (found == dictionary.end()) return std::nullopt;
    if (const std::string* words = found->second.asText()) return *words;
    if (const std::int64_t* number = found->second.asInteger()) return PropertyValue::integer(*number).text();
    if (const double* number = found->second.asReal()) return PropertyValue::real(*number).text();
    return std::nullopt;
}

OptionalText versionText(const Value::Map& dictionary) { return textOf(dictionary, "CFBundleVersion"); }

long double versionNumber(const Bundle& bundle) {
    const Value& version = *bundle.version();
    return version.asInteger() ? static_cast<long double>(*version.asInteger()) : *version.asReal();
}

/// The candidate of the highest version, the first of them among equals.
BundlePtr bestChoice(const std::vector<BundlePtr>& candidates) {
    // Text and numbers side by side are compared as text, all of them, since otherwise there would be no order.
    const bool numbers =
        std::ranges::none_of(candidates, [](const BundlePtr& bundle) { return bundle->version()->asText(); });
    return *std::ranges::max_element(candidates, [numbers](const BundlePtr& a, const BundlePtr& b) {
        if (numbers) return versionNumber(*a) < versionNumber(*b);
        return versionText(a->infoDictionary()) < versionText(b->infoDictionary());
    });
}

/// A fresh instance of a bundle's principal class; null when there is no such class.
std::shared_ptr<SQLPlugin> makePrincipal(const Bundle& bundle) {
    const OptionalText name = bundle.principalClass();
    if (!name) return nullptr;
    std::string error;
    const auto file = bundle.executablePath();
    if (const auto code = file ? DynamicCode::load(*file, error) : std::nullopt) {
        if (void* symbol = code->symbol(kPluginFactoryPrefix + *name))
            return std::shared_ptr<SQLPlugin>(reinterpret_cast<PluginFactory>(symbol)(kPluginInterfaceVersion));
    }
    return ClassRegistry::makePlugin(*name);
}

bool staysBelow(const std::filesystem::path& folder, const std::filesystem::path& link) {
    std::error_code error;
    const std::filesystem::path root = std::filesystem::canonical(folder, error);
    if (error) return false;
    const std::filesystem::path target = std::filesystem::canonical(link, error);
    if (error) return false;
    return std::ranges::mismatch(root, target).in1 == root.end();
}

}  // namespace

void QVVersionedPluginLoader::init() {
    _pluginDirectoryList.clear();
    _pluginDirectoryList.reserve(kExpectedSearchPaths);
    _pluginList.clear();
    _descriptions.clear();
    _pluginMap.clear();
    configureDirectoryPaths();
}

void QVVersionedPluginLoader::configureDirectoryPaths() {
    const std::filesystem::path program = programFolder();
    if (!program.empty()) _pluginDirectoryList.push_back(program / "Contents/Plugins/");
    for (const std::filesystem::path& folder : libraryFolders())
        _pluginDirectoryList.push_back(folder / "Application Support/Vellicor/Plugins/");
}

void QVVersionedPluginLoader::loadPlugins() {
    for (const std::filesystem::path& folder : _pluginDirectoryList) findPluginsAtPath(folder);
    loadBestChoicePlugins();
    reportLoadedPlugins();
}

void QVVersionedPluginLoader::findPluginsAtPath(const std::filesystem::path& path) {
    const std::filesystem::path folder = expandingTilde(path);
    std::vector<std::filesystem::path> bundles;
    std::error_code error, ignored;
    std::filesystem::recursive_directory_iterator entry(
        folder, std::filesystem::directory_options::skip_permission_denied, error);
    for (; !error && entry != std::filesystem::recursive_directory_iterator(); entry.increment(error)) {
        if (entry->path().extension() != ".bundle") continue;
        entry.disable_recursion_pending();
        if (entry->is_symlink(ignored) && !staysBelow(folder, entry->path()))
            log(text("ignored plugin outside of its folder (%@)", entry->path().string()));
        else
            bundles.push_back(entry->path());
    }
    std::ranges::sort(bundles);
    for (std::filesystem::path& bundle : bundles) addBundleToMap(std::make_shared<Bundle>(std::move(bundle)));
}

void QVVersionedPluginLoader::addBundleToMap(const BundlePtr& bundle) {
    const OptionalText identifier = bundle ? bundle->identifier() : std::nullopt;
    if (!identifier || !bundle->version()) {
        const OptionalText described = bundle ? OptionalText(bundle->description()) : std::nullopt;
        log(text("found invalid information in info.plist (%@)", described));
        return;
    }
    _pluginMap[*identifier].push_back(bundle);
}

void QVVersionedPluginLoader::loadBestChoicePlugins() {
    std::vector<BundlePtr> best;  // first all choices: a plug-in may add bundles while it is initialised
    for (const auto& [identifier, candidates] : _pluginMap) best.push_back(bestChoice(candidates));
    for (const BundlePtr& bundle : best) loadPlugin(bundle);
}

void QVVersionedPluginLoader::loadPlugin(const BundlePtr& bundle) {
    if (!bundle) {
        log("warning bundle is nil");
    } else if (!isJavascriptPlugin(*bundle)) {
        std::string error;
        const auto file = bundle->executablePath();
        if (!file || !DynamicCode::load(*file, error)) log("warning: failed to load plugin code");
    }
    initPlugin(bundle);
}

void QVVersionedPluginLoader::initPlugin(const BundlePtr& bundle) {
    const OptionalText identifier = bundle ? bundle->identifier() : std::nullopt;
    std::shared_ptr<SQLPlugin> instance;
    if (bundle && isJavascriptPlugin(*bundle)) {
        instance = callPlugin([&] {
            auto script = ClassRegistry::makePlugin(classNames::scriptPlugin);
            if (script) script->setBundle(bundle->path().string());
            return script;
        });
        if (!instance) {
            log(text("Javascript Vellicor plugins cannot be loaded on this system %@", identifier));
            return;
        }
    } else {
        if (bundle) instance = callPlugin([&] { return makePrincipal(*bundle); });
        if (!instance) {
            log(text("unable to load plugin [%@] - invalid principle class", identifier));
            return;
        }
    }
    registerPluginFromInstance(instance, bundle->infoDictionary());
}

bool QVVersionedPluginLoader::isJavascriptPlugin(const Value::Map& infoDictionary) {
    auto own = infoDictionary.find("VellicorPlugin");
    const Value* variant = own == infoDictionary.end() ? nullptr : own->second.find("variant");
    return variant && variant->asText() && *variant->asText() == "javascript";
}

void QVVersionedPluginLoader::registerPluginFromInstance(const std::shared_ptr<SQLPlugin>& instance,
                                                         const Value::Map& infoDictionary) {
    const OptionalText identifier = textOf(infoDictionary, "CFBundleIdentifier");
    if (!instance || !callPlugin([&] { return instance->initPlugin(*this); })) {
        log(text("plugin [%@] does not respond to correct init message", identifier));
        return;
    }
    _pluginList.push_back(instance);
    _descriptions.push_back(
        text("%@ %@%@", identifier, versionText(infoDictionary), isJavascriptPlugin(infoDictionary) ? " JS" : ""));
}

void QVVersionedPluginLoader::reportLoadedPlugins() const {
    log(text("Loaded Plugins: %@", joined(_descriptions, ", ")));
}

}  // namespace vellicor
