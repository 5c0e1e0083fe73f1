// tests/dialects/registry_test.cpp — the registry of the dialects.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

#include "tests/support/dialect_text.h"
#include "tests/support/log_capture.h"
#include "vellicor/dialects/sql_dialect_manager.h"
#include "vellicor/plugins/plugin_manager.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using ::testing::ElementsAre;

DialectManager& manager() { return DialectManager::getDialectManager(); }

TEST(Registry, KeepsDriversInLowerCase) {
    EXPECT_THAT(manager().exporterList().at(2)->driverClassPathList(),
                ElementsAre("sqlite.jdbcdriver", "org.sqlite.jdbc", "vellicor.sqlite.native"));
    EXPECT_THAT(manager().exporterList().front()->driverClassPathList(), ElementsAre(""));
    EXPECT_EQ(manager().exporterList().at(4)->driver(), "org.postgresql");
}

TEST(Registry, NamesCompareWithoutCaseAndUnknownOnesGetTheGenericExporter) {
    EXPECT_EQ(exporterNamed("MYSQL")->getName(), "MySQL (2)");
    EXPECT_EQ(exporterNamed("MySQL (2)")->getName(), "Generic SQL") << "an exporter's own name is no key";
    EXPECT_EQ(exporterNamedWithPlugins("nothing of the kind")->getName(), "Generic SQL");
    EXPECT_NE(exporterNamed("postgres"), exporterNamed("postgres"));
    EXPECT_EQ(manager().getExporterFromUrl("ORG.POSTGRESQL.DRIVER")->getName(), "Postgres");
    EXPECT_EQ(manager().getIdentifierFromURL("unknown"), "generic");
    DialectManager::addDriver("extra", "Postgres");
    EXPECT_EQ(manager().getIdentifierFromURL("extra"), "generic") << "keys are exact here";
    EXPECT_EQ(manager().extensionForDialect("Rails"), "rb");
    EXPECT_EQ(manager().extensionForDialect("rails"), "sql");
}

TEST(Registry, RecordsMadeByHand) {
    LogCapture log;
    auto record = ExportDialect::dialectWithName("mine", "Some.Driver", nullptr);
    EXPECT_THAT(log.lines(), ElementsAre("SQLExporter requested ((null)) not available"));
    EXPECT_EQ(record->getExporter()->getName(), "Generic SQL");
    EXPECT_THAT(record->description(),
                ::testing::MatchesRegex("<ExportDialect: 0x[0-9a-f]+> .exporter = Generic SQL; name = mine;."));
    EXPECT_FALSE(record->exporterSupportsDriver("Some.Driver")) << "given ones are kept as written, asked ones lowered";
    record->addDriverClassPath("Some.Driver");
    EXPECT_TRUE(record->exporterSupportsDriver("SOME.driver"));
    const auto empty = ExportDialect::dialectWithName("empty");
    EXPECT_EQ(empty->driver(), std::nullopt);
    EXPECT_EQ(empty->getExporter()->getName(), "Generic SQL");
    EXPECT_EQ(log.lines().size(), 2u) << "as it was logged above";
}

/// Says nothing of how another one is made.
struct PlainExporter : GenericSQLExporter {
    std::string getName() const override { return "Plain"; }
};

TEST(Registry, ClassesAreKeptAndThoseThatMakeNothingAreSkipped) {
    const std::size_t before = manager().exporterList().size();
    const LogCapture log;
    for (DialectManager::ExporterClass none : {DialectManager::ExporterClass(nullptr),
                                               DialectManager::ExporterClass(+[] {
                                                   return std::shared_ptr<SQLExportDialect>();
                                               })})
        DialectManager::registerDialectExporterWithName("none", "", none);
    const char* skipped = "dialect none is not registered, its class makes no exporter";
    EXPECT_THAT(log.lines(), ElementsAre(skipped, skipped));
    manager().addDialect(nullptr);
    EXPECT_EQ(manager().exporterList().size(), before);

    DialectManager own;
    auto record = ExportDialect::dialectWithName("plain");
    EXPECT_TRUE(record->setExporterClass([]() -> std::shared_ptr<SQLExportDialect> { return create<PlainExporter>(); }));
    own.addDialect(record);
    EXPECT_EQ(own.getExporterWithName("PLAIN")->getName(), "Plain");
    EXPECT_NE(own.getExporterWithName("plain"), own.getExporterWithName("plain"));
}

TEST(Registry, APluginThatFailsLeavesTheRegistrysOwnAnswers) {
    struct Failing : SQLPlugin {
        bool initPlugin(QVVersionedPluginLoader&) override { return true; }
        std::optional<bool> canExportType(std::string_view type) override {
            asked = type;
            return type == "failing" || type == "void";
        }
        std::optional<std::variant<std::shared_ptr<SQLExportDialect>, Exporters>> exporter() override {
            if (asked == "void") return Exporters{nullptr};
            throw std::runtime_error("no licence");
        }
        std::string asked;
    };
    SQLPluginManager::sharedPluginManager().registerPluginFromInstance(std::make_shared<Failing>(), {});
    auto& front = SQLDialectManager::sharedDialectManager();
    const LogCapture log;
    EXPECT_EQ(exporterNamedWithPlugins("failing")->getName(), "Generic SQL");
    EXPECT_EQ(front.exportFileTypeForDialect("failing"), "sql");
    EXPECT_EQ(front.validFileNameForDialect("failing", "shop", false, nullptr), "shop");
    EXPECT_EQ(exporterNamedWithPlugins("void")->getName(), "Generic SQL");
    EXPECT_THAT(log.lines(), ElementsAre("plugin failed: no licence", "export plugin ignores validFileNameFromName:",
                                         "export plugin for void answers no exporter"));
}

TEST(Registry, FileNamesAndMenus) {
    auto& front = SQLDialectManager::sharedDialectManager();
    for (const char* name : {"shop", "shop-sql"})
        EXPECT_EQ(front.validFileNameForDialect("SQLite", name, false, nullptr), "shop-sql");
    struct Popup : DialectPopup {
        std::vector<std::string> items{"old"};
        int bound = 0;
        void removeAllItems() override { items.clear(); }
        void setTarget(void*) override { ++bound; }
        void setAction(void*) override { ++bound; }
        void addItemWithTitle(std::string_view title) override { items.emplace_back(title); }
    } popup;
    int something = 0;
    front.updateDialectPopup(popup, &something, nullptr, true);
    EXPECT_EQ(popup.bound, 0);
    front.updateDialectPopup(popup, &something, &something, true);
    EXPECT_EQ(popup.bound, 2);
    EXPECT_EQ(popup.items, front.dialectList());
}

TEST(Registry, EveryDialectHasItsOwnNameAndWords) {
    const struct {
        const char* dialect;
        const char* name;
        std::size_t words;
    } rows[] = {{"generic", "Generic SQL", 299}, {"OpenBase", "OpenBase", 0},    {"SQLite", "SQLite", 121},
                {"sybase", "Sybase", 185},       {"postgres", "Postgres", 100},  {"FileMaker", "FileMaker", 259},
                {"SQLServer", "SQLServer", 185}, {"Redshift", "Redshift", 100},  {"mysql", "MySQL (2)", 232},
                {"Oracle", "Oracle", 109}};
    const std::vector<std::string> dialects = SQLDialectManager::sharedDialectManager().dialectList();
    std::size_t position = 0;
    for (const auto& [dialect, name, words] : rows) {
        EXPECT_EQ(dialects.at(position++), dialect) << "menus show them in this order, newer ones behind";
        EXPECT_EQ(testing::exporterOf(dialect)->getName(), name);
        EXPECT_EQ(testing::exporterOf(dialect)->reservedWords().size(), words) << name;
    }
    std::set<std::string> names, classes;
    for (const auto& record : manager().exporterList()) {
        const auto fresh = record->getExporter();
        EXPECT_NE(fresh, record->exporter()) << record->getName();
        EXPECT_EQ(fresh->className(), record->exporter()->className()) << record->getName();
        EXPECT_TRUE(names.insert(lowercased(record->getName())).second) << record->getName();
        EXPECT_TRUE(classes.emplace(fresh->className()).second) << record->getName();
    }
}

}  // namespace
}  // namespace vellicor
