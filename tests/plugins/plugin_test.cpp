// tests/plugins/plugin_test.cpp — finding, ranking and loading plug-ins, and the questions put to all of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/log_capture.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temp_folder.h"
#include "vellicor/model/export_dialect.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/plugins/class_registry.h"
#include "vellicor/plugins/plugin_manager.h"

namespace vellicor {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::LogCapture;
using testing::ScopedEnvironment;
using testing::TempFolder;

std::string entry(std::string_view key, std::string_view xml) { return text("<key>%@</key>%@", key, xml); }
std::string entryText(std::string_view key, std::string_view value) {
    return entry(key, text("<string>%@</string>", value));
}
std::string identified(std::string_view identifier, std::string_view version = "1") {
    return entryText("CFBundleIdentifier", identifier) + entryText("CFBundleVersion", version);
}
const std::string kScript = entry("VellicorPlugin", "<dict><key>variant</key><string>javascript</string></dict>");

/// A script plug-in that takes part and remembers where it came from.
struct ScriptPlugin : SQLPlugin {
    std::string bundle;
    bool initPlugin(QVVersionedPluginLoader&) override { return true; }
    void setBundle(std::string_view path) override { bundle = path; }
};

/// Makes a class of plug-ins known by name while it lives.
template <class Plugin>
class RegisteredClass {
public:
    explicit RegisteredClass(std::string name) : _name(std::move(name)) {
        ClassRegistry::registerPluginClass(_name, [] { return std::make_shared<Plugin>(); });
    }
    ~RegisteredClass() { ClassRegistry::registerPluginClass(_name, nullptr); }

private:
    std::string _name;
};

class PluginLoading : public ::testing::Test {
protected:
    PluginLoading() { reset(); }
    void reset() {
        loader.init();
        loader.setPluginDirectoryList({files.path() / "a", files.path() / "b", files.path() / "missing"});
    }
    void bundle(const std::string& folder, std::string_view entries) const {
        files.write(folder + "/Info.plist", text("<plist version=\"1.0\"><dict>%@</dict></plist>", entries));
    }

    TempFolder files;
    LogCapture log;
    QVVersionedPluginLoader loader;
};

TEST_F(PluginLoading, OfSeveralVersionsOnlyTheHighestIsLoaded) {
    const RegisteredClass<ScriptPlugin> scripts(classNames::scriptPlugin);
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        // the versions in the two folders, the better one, its version
        {"<string>1.2</string>", "<string>1.10</string>", "a/p.bundle", "1.2"},  // text compares as text
        {"<string>1.10</string>", "<string>1.2</string>", "b/deeper/q.bundle", "1.2"},
        {"<integer>2</integer>", "<integer>10</integer>", "b/deeper/q.bundle", "10"},
        {"<integer>3</integer>", "<real>2.5</real>", "a/p.bundle", "3"},
        {"<integer>10</integer>", "<string>9</string>", "b/deeper/q.bundle", "9"},
        {"<string>1</string>", "<string>1</string>", "a/p.bundle", "1"},  // the first found of equal ones
    };
    for (const auto& [a, b, best, version] : cases) {
        reset();
        const std::string identifier = entryText("CFBundleIdentifier", "org.example.p") + kScript;
        bundle("a/p.bundle", identifier + entry("CFBundleVersion", a));
        bundle("b/deeper/q.bundle/Contents", identifier + entry("CFBundleVersion", b));
        loader.loadPlugins();
        ASSERT_THAT(loader.pluginList(), SizeIs(1)) << a << b;
        EXPECT_EQ(static_cast<ScriptPlugin&>(*loader.pluginList().front()).bundle, (files.path() / best).string());
        EXPECT_EQ(log.lines().back(), text("Loaded Plugins: org.example.p %@ JS", version));
    }
}

TEST_F(PluginLoading, BundlesWithoutIdentifierOrVersionCostOneLineEach) {
    const RegisteredClass<ScriptPlugin> scripts(classNames::scriptPlugin);
    bundle("a/0.bundle", entryText("CFBundleVersion", "1"));
    bundle("a/1.bundle", identified(""));
    bundle("a/2.bundle", entryText("CFBundleIdentifier", "x"));
    bundle("a/3.bundle", entryText("CFBundleIdentifier", "x") + entry("CFBundleVersion", "<dict/>"));
    files.write("a/4.bundle/Info.plist", "<plist version=\"1.0\"><dict><key>CFBundle");
    files.write("a/5.bundle/Info.plist", "<plist version=\"1.0\"><array/></plist>");
    files.write("a/6.bundle/readme", "");
    files.write("a/7.bundle", "a file");
    files.write("a/8.bundle/Info.plist/readme", "no property list, but a folder");
    bundle("a/9.bundle", identified("good") + kScript);
    loader.loadPlugins();
    std::vector<std::string> expected;
    for (int i = 0; i < 9; ++i)
        expected.push_back(text("found invalid information in info.plist (Bundle <%@/a/%d.bundle>)",
                                files.path().string(), i));
    expected.push_back("Loaded Plugins: good 1 JS");
    EXPECT_EQ(log.lines(), expected);
}

TEST_F(PluginLoading, TheSearchStaysInItsFolderAndOutOfBundles) {
    bundle("a/outer.bundle", identified("outer"));
    bundle("a/outer.bundle/inner.bundle", identified("inner"));
    bundle("a/outer.bundle.old/x/nested.bundle", identified("nested"));
    bundle("elsewhere/linked.bundle", identified("linked"));
    bundle("a/locked/z.bundle", identified("z"));
    bundle("home/h.bundle", identified("home"));
    fs::create_directory_symlink(files.path() / "elsewhere", files.path() / "a/folder");
    fs::create_directory_symlink(files.path() / "elsewhere/linked.bundle", files.path() / "a/link.bundle");
    fs::create_directory_symlink(files.path() / "a", files.path() / "a/circle");
    fs::permissions(files.path() / "a/locked", fs::perms::none);
    const ScopedEnvironment home("HOME", (files.path() / "home").string());

    for (const fs::path& folder : {files.path() / "a", files.path() / "missing", fs::path("~")})
        loader.findPluginsAtPath(folder);
    fs::permissions(files.path() / "a/locked", fs::perms::owner_all);

    std::vector<std::string> found;
    for (const auto& [identifier, bundles] : loader.pluginMap())
        if (identifier != "z") found.push_back(identifier);  // a privileged user may look into locked folders
    EXPECT_THAT(found, ElementsAre("home", "nested", "outer"));
    EXPECT_THAT(log.lines(),
                ElementsAre("ignored plugin outside of its folder (" + files.path().string() + "/a/link.bundle)"));
}

TEST_F(PluginLoading, SearchesTheProgramsFolderThenEachLibraryFolderOnce) {
    const ScopedEnvironment user("XDG_DATA_HOME", "/u"), system("XDG_DATA_DIRS", "/s1/:relative:/s2:/u:/s1");
    loader.init();
    std::vector<std::string> paths;
    for (const auto& folder : loader.pluginDirectoryList()) paths.push_back(folder.string());
    const std::string tail = "/Application Support/Vellicor/Plugins/";
    EXPECT_THAT(paths, ElementsAre((fs::read_symlink("/proc/self/exe").parent_path() / "Contents/Plugins/").string(),
                                   "/u" + tail, "/s1" + tail, "/s2" + tail));

    const ScopedEnvironment home("HOME", "/h"), unset("XDG_DATA_HOME", std::nullopt),
        none("XDG_DATA_DIRS", std::nullopt);
    loader.init();
    ASSERT_THAT(loader.pluginDirectoryList(), SizeIs(4));
    EXPECT_EQ(loader.pluginDirectoryList()[1], "/h/.local/share" + tail);
    EXPECT_EQ(loader.pluginDirectoryList()[3], "/usr/share" + tail);
}

TEST_F(PluginLoading, AScriptPluginNeedsItsClass) {
    bundle("a/s.bundle", identified("org.example.s") + kScript);
    loader.loadPlugins();
    const std::string cannot = "Javascript Vellicor plugins cannot be loaded on this system org.example.s";
    EXPECT_THAT(log.lines(), ElementsAre(cannot, "Loaded Plugins: ")) << "the report comes without any plug-in, too";
    EXPECT_THAT(loader.pluginList(), IsEmpty());

    struct Choosy : ScriptPlugin {
        void setBundle(std::string_view) override { throw std::runtime_error("no such script"); }
    };
    const RegisteredClass<Choosy> scripts(classNames::scriptPlugin);
    const LogCapture again;
    loader.loadBestChoicePlugins();
    EXPECT_THAT(again.lines(), ElementsAre("plugin failed: no such script", cannot));
}

struct SilentPlugin : SQLPlugin {};
struct ThrowingPlugin : ScriptPlugin {
    bool initPlugin(QVVersionedPluginLoader&) override { throw std::runtime_error("no licence"); }
};

TEST_F(PluginLoading, ACompiledPluginThatDoesNotLoadIsSkipped) {
    const RegisteredClass<ScriptPlugin> registered("Registered");
    const RegisteredClass<SilentPlugin> silent("Silent");
    const RegisteredClass<ThrowingPlugin> throwing("Throwing");
    const std::string noCode = "warning: failed to load plugin code";
    const auto noClass = [](auto id) { return text("unable to load plugin [%@] - invalid principle class", id); };
    const auto noInit = [](auto id) { return text("plugin [%@] does not respond to correct init message", id); };
    auto compiled = [&](const std::string& id, std::string_view executable, std::string_view principal) {
        bundle("a/" + id + ".bundle", identified(id) + entryText("CFBundleExecutable", executable) +
                                          entryText("NSPrincipalClass", principal));
    };
    bundle("a/1none.bundle", identified("1none"));
    compiled("2garbage", "code.so", "P");
    files.write("a/2garbage.bundle/code.so", "\x7f" "ELF but not really");
    compiled("3missing", "code.so", "P");
    compiled("4elsewhere", "../2garbage.bundle/code.so", "P");
    compiled("5application", "code.so", "Registered");
    compiled("6silent", "code.so", "Silent");
    compiled("7throwing", "code.so", "Throwing");
    bundle("a/8other.bundle",
           identified("8other") + entry("VellicorPlugin", "<dict><key>variant</key><string>lua</string></dict>"));
    loader.loadPlugins();
    EXPECT_THAT(log.lines(),
                ElementsAre(noCode, noClass("1none"), noCode, noClass("2garbage"), noCode, noClass("3missing"), noCode,
                            noClass("4elsewhere"), noCode, noCode, noInit("6silent"), noCode,
                            "plugin failed: no licence", noInit("7throwing"), noCode, noClass("8other"),
                            "Loaded Plugins: 5application 1"));
    EXPECT_THAT(loader.pluginList(), SizeIs(1));
}

/// Answers what it was given and leaves everything else unanswered.
struct ConfiguredPlugin : SQLPlugin {
    std::optional<Texts> exportTypes, importTypes;
    std::optional<std::vector<Value::Map>> reports;
    std::optional<bool> displayable;
    std::optional<std::variant<std::shared_ptr<SQLExportDialect>, Exporters>> exporters;
    std::string data, importType, exportType;

    bool initPlugin(QVVersionedPluginLoader&) override { return true; }
    std::optional<std::vector<Value::Map>> reportTypes() override { return reports; }
    std::optional<Texts> supportedImportTypes() override { return importTypes; }
    std::optional<Texts> supportedExportTypes() override { return exportTypes; }
    std::optional<bool> exportIsUserDisplayable() override { return displayable; }
    std::optional<std::variant<std::shared_ptr<SQLExportDialect>, Exporters>> exporter() override { return exporters; }
    std::optional<bool> canImportData(std::string_view bytes) override { return bytes == data; }
    std::optional<bool> canImportType(std::string_view type) override { return type == importType; }
    std::optional<bool> canExportType(std::string_view type) override {
        if (type == "broken") throw std::runtime_error("broken");
        return exportType.empty() ? std::nullopt : std::optional(type == exportType);
    }
};

class PluginManager : public ::testing::Test {
protected:
    PluginManager() {
        manager.loadPlugins();
        for (const auto& plugin : {first, silent, hidden, last}) manager.registerPluginFromInstance(plugin, {});
    }
    TempFolder files;
    ScopedEnvironment user{"XDG_DATA_HOME", files.path().string()}, system{"XDG_DATA_DIRS", "/nowhere"};
    SQLPluginManager manager;
    const std::shared_ptr<ConfiguredPlugin> first = std::make_shared<ConfiguredPlugin>(),
                                            silent = std::make_shared<ConfiguredPlugin>(),
                                            hidden = std::make_shared<ConfiguredPlugin>(),
                                            last = std::make_shared<ConfiguredPlugin>();
};

TEST_F(PluginManager, ListsJoinTheAnswersInPluginOrder) {
    const auto one = create<SQLExportDialect>(), two = create<SQLExportDialect>(), three = create<SQLExportDialect>();
    first->exportTypes = {{"B", "A"}};
    first->importTypes = {{"x"}};
    first->reports = {{{{"name", "Summary"}}, {{"name", Value::integer(1)}}}};
    first->exporters = SQLPlugin::Exporters{one, two};
    silent->exporters = create<SQLExportDialect>();  // exports nothing, so its exporter is not asked for
    hidden->exportTypes = {{"H"}};
    hidden->displayable = false;
    hidden->exporters = three;
    last->exportTypes = {{"A"}};
    last->displayable = true;
    last->importTypes = {{"y", "z"}};
    last->reports = {{{{"title", "no name"}}}};

    EXPECT_THAT(manager.supportedExportTypes(), ElementsAre("B", "A", "H", "A"));
    EXPECT_THAT(manager.supportedExportTypes(true), ElementsAre("B", "A", "A"));
    EXPECT_THAT(manager.supportedImportTypes(), ElementsAre("x", "y", "z"));
    EXPECT_THAT(manager.reportTypes(), SizeIs(3));
    EXPECT_THAT(manager.availableDialectExporters(false), ElementsAre(one, two, three));
    EXPECT_THAT(manager.availableDialectExporters(true), ElementsAre(one, two));
    for (const char* name : {"H", "Summary"}) EXPECT_TRUE(manager.canExportDialect(name)) << name;
    for (const char* name : {"h", "no name"}) EXPECT_FALSE(manager.canExportDialect(name)) << name;
}

TEST_F(PluginManager, TheFirstPluginThatSaysYesIsAsked) {
    hidden->exportType = last->exportType = "Markdown";
    EXPECT_EQ(manager.exportPluginForType("Markdown"), hidden.get());
    EXPECT_EQ(manager.exportPluginForType("markdown"), nullptr);
    const LogCapture log;
    EXPECT_EQ(manager.exportPluginForType("broken"), nullptr);
    EXPECT_THAT(log.lines(), ::testing::AllOf(SizeIs(4), Contains("plugin failed: broken")));
}

TEST_F(PluginManager, AFileIsOfferedByExtensionAndThenByContent) {
    for (const auto& plugin : {first, silent, hidden, last}) plugin->importType = plugin->data = "-";
    first->importType = "SQL";
    hidden->data = "CREATE";
    last->importType = "Rb";
    const std::tuple<fs::path, SQLPlugin*, const char*> cases[] = {
        {files.write("a.SQL", "CREATE"), hidden.get(), "no type is asked for SQL in any case"},
        {files.write("b.Rb", "CREATE"), last.get(), "the type comes before the content"},
        {files.write("c.rb", "CREATE"), hidden.get(), "the type is asked as written"},
        {files.write("d.sql", "SELECT"), nullptr, "nobody takes the content"},
        {files.path() / "missing.Rb", last.get(), "the type needs no file"},
        {files.path() / "missing.txt", nullptr, "there is no content"},
    };
    for (const auto& [file, plugin, why] : cases) EXPECT_EQ(manager.importPluginForURL(file), plugin) << why;
}

/// What an application does: its own manager, which brings a plug-in that asks for the manager while it is made.
struct ApplicationManager : SQLPluginManager {
    struct Curious : ConfiguredPlugin {
        bool initPlugin(QVVersionedPluginLoader&) override {
            seen = &sharedPluginManager();
            return true;
        }
        SQLPluginManager* seen = nullptr;
    };
    void loadBuiltInPlugins() override { registerPluginFromInstance(curious, {{"CFBundleIdentifier", "built in"}}); }
    std::shared_ptr<Curious> curious = std::make_shared<Curious>();
};

TEST_F(PluginManager, TheSharedOneIsOfTheApplicationsClass) {
    ClassRegistry::registerManagerClass(classNames::applicationPluginManager,
                                        [] { return std::make_unique<ApplicationManager>(); });
    auto* shared = dynamic_cast<ApplicationManager*>(&SQLPluginManager::sharedPluginManager());
    ClassRegistry::registerManagerClass(classNames::applicationPluginManager, nullptr);
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(shared->curious->seen, shared);
    EXPECT_THAT(shared->pluginList(), ElementsAre(shared->curious));
}

}  // namespace
}  // namespace vellicor
