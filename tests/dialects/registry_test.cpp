// tests/dialects/registry_test.cpp — the registry of the dialects.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

TEST(Registry, ListsTheDialectsInOrderWithTheirDriversInLowerCase) {
    EXPECT_THAT(SQLDialectManager::sharedDialectManager().dialectList(),
                ElementsAre("generic", "OpenBase", "SQLite", "sybase", "postgres", "FileMaker", "SQLServer", "Redshift",
                            "mysql", "Oracle"));
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
    EXPECT_EQ(ExportDialect::dialectWithName("empty")->driver(), std::nullopt);
}

TEST(Registry, APluginThatFailsLeavesTheRegistrysOwnAnswers) {
    struct Failing : SQLPlugin {
        bool initPlugin(QVVersionedPluginLoader&) override { return true; }
        std::optional<bool> canExportType(std::string_view type) override { return type == "failing"; }
        std::optional<std::variant<std::shared_ptr<SQLExportDialect>, Exporters>> exporter() override {
            throw std::runtime_error("no licence");
        }
    };
    SQLPluginManager::sharedPluginManager().registerPluginFromInstance(std::make_shared<Failing>(), {});
    auto& front = SQLDialectManager::sharedDialectManager();
    const LogCapture log;
    EXPECT_EQ(exporterNamedWithPlugins("failing")->getName(), "Generic SQL");
    EXPECT_EQ(front.exportFileTypeForDialect("failing"), "sql");
    EXPECT_EQ(front.validFileNameForDialect("failing", "shop", false, nullptr), "shop");
    EXPECT_THAT(log.lines(), ElementsAre("plugin failed: no licence", "export plugin ignores validFileNameFromName:"));
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
    for (const auto& [dialect, name, words] : rows) {
        EXPECT_EQ(testing::exporterOf(dialect)->getName(), name);
        EXPECT_EQ(testing::exporterOf(dialect)->reservedWords().size(), words) << name;
    }
}

}  // namespace
}  // namespace vellicor
