// tests/dialects/registry_test.cpp — the registry, and the constant answers of every dialect.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/log_capture.h"
#include "tests/support/temp_folder.h"
#include "vellicor/dialects/sql_dialect_manager.h"
#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/exporter_source.h"
#include "vellicor/plugins/plugin_manager.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using ::testing::ElementsAre;

DialectManager& manager() { return DialectManager::getDialectManager(); }

TEST(Registry, ListsTheDialectsInOrderWithTheirDriversInLowerCase) {
    EXPECT_THAT(SQLDialectManager::sharedDialectManager().dialectList(),
                ElementsAre("generic", "OpenBase", "SQLite", "sybase", "postgres", "FileMaker", "SQLServer", "Redshift", "mysql", "Oracle"));
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
    EXPECT_EQ(manager().getIdentifierFromURL("ORG.POSTGRESQL.DRIVER"), "postgres");
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
    EXPECT_FALSE(record->exporterSupportsDriver("Some.Driver")) << "given drivers are kept as written, asked ones lowered";
    record->addDriverClassPath("Some.Driver");
    EXPECT_TRUE(record->exporterSupportsDriver("SOME.driver"));
    EXPECT_EQ(ExportDialect::dialectWithName("empty")->driver(), std::nullopt);
}

TEST(Registry, ADriverListFileAddsNothing) {
    testing::TempFolder folder;
    const std::size_t before = manager().exporterList().size();
    manager().loadDriverListFromPath(folder.write("drivers.plist",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><dict><key>name</key><string>New</string><key>exporter</key>"
        "<string>GenericSQLExporter</string><key>jdbcDriver</key><array><string>d</string></array></dict></array></plist>"));
    manager().loadDriverListFromPath(folder.path() / "missing");
    EXPECT_EQ(manager().exporterList().size(), before);
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
    EXPECT_EQ(front.validFileNameForDialect("SQLite", "shop", false, nullptr), "shop-sql");
    EXPECT_EQ(front.validFileNameForDialect("SQLite", "shop-sql", false, nullptr), "shop-sql");
    EXPECT_EQ(front.exportFileTypeForDialect("SQLite"), "sql");
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

struct Answers {
    const char* dialect;
    const char* name;
    const char* quotes;
    bool views, checks, ifNotExists, indexPostLoad, inlineAuto, keyName, foreignKeyName;
    std::size_t words;
};

TEST(Registry, ConstantAnswersOfEveryDialect) {
    const Answers matrix[] = {
        // dialect    own name       quotes  views  checks exists indexes auto   pkName fkName words
        {"generic", "Generic SQL", "''", true, true, false, false, true, true, true, 299},
        {"OpenBase", "OpenBase", "''", false, true, false, false, true, true, true, 0},
        {"SQLite", "SQLite", "\"\"", true, true, true, true, true, false, false, 121},
        {"sybase", "Sybase", "''", true, true, false, true, true, true, true, 185},
        {"postgres", "Postgres", "\"\"", true, true, false, true, false, true, true, 100},
        {"FileMaker", "FileMaker", "\"\"", false, false, false, false, false, true, true, 259},
        {"SQLServer", "SQLServer", "[]", true, true, false, true, true, true, true, 185},
        {"Redshift", "Redshift", "\"\"", true, true, false, true, false, true, true, 100},
        {"mysql", "MySQL (2)", "``", true, false, true, true, true, false, true, 232},
        {"Oracle", "Oracle", "\"\"", true, true, false, true, false, true, true, 109},
    };
    for (const Answers& row : matrix) {
        auto exporter = std::dynamic_pointer_cast<GenericSQLExporter>(exporterNamed(row.dialect));
        EXPECT_EQ(exporter->getName(), row.name);
        EXPECT_EQ(exporter->getStartingQuoteIdentifierString() + exporter->getEndingQuoteIdentifierString(), row.quotes) << row.name;
        EXPECT_EQ(exporter->supportsViews(), row.views) << row.name;
        EXPECT_EQ(exporter->supportsCheckConstraints(), row.checks) << row.name;
        EXPECT_EQ(exporter->supportsIfNotExists(), row.ifNotExists) << row.name;
        EXPECT_EQ(exporter->supportsIndexPostLoad(), row.indexPostLoad) << row.name;
        EXPECT_EQ(exporter->supportsInlineAutoIncrement(), row.inlineAuto) << row.name;
        EXPECT_EQ(exporter->usePrimaryKeyConstraintName(), row.keyName) << row.name;
        EXPECT_EQ(exporter->addForeignKeyConstraintName(), row.foreignKeyName) << row.name;
        EXPECT_EQ(exporter->reservedWords().size(), row.words) << row.name;
        EXPECT_EQ(exporter->instructionSeparator(), ";") << row.name;
    }
}

}  // namespace
}  // namespace vellicor
