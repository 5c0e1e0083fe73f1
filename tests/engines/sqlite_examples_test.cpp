// tests/engines/sqlite_examples_test.cpp — the examples' scripts in the real SQLite, which enforces what they say.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>

#include "tests/support/scoped_preference.h"
#include "vellicor/fileformat/document_file.h"
#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor {
namespace {

using testing::ScopedPreference;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A database in memory with foreign keys switched on.
class Database {
public:
    Database() {
        sqlite3* opened = nullptr;
        sqlite3_open(":memory:", &opened);
        _handle.reset(opened);
        EXPECT_EQ(run("PRAGMA foreign_keys = ON"), "");
    }
    /// What the engine objects to; empty when it accepts.
    std::string run(const std::string& sql) {
        char* message = nullptr;
        sqlite3_exec(_handle.get(), sql.c_str(), nullptr, nullptr, &message);
        const std::unique_ptr<char, decltype(&sqlite3_free)> owner(message, &sqlite3_free);
        return message ? message : "";
    }
    /// The first column of each row.
    std::vector<std::string> query(const std::string& sql) {
        std::vector<std::string> rows;
        auto add = [](void* list, int, char** values, char**) {
            static_cast<std::vector<std::string>*>(list)->push_back(values[0] ? values[0] : "NULL");
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(_handle.get(), sql.c_str(), add, &rows, nullptr), SQLITE_OK) << sqlite3_errmsg(_handle.get());
        return rows;
    }

private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::unique_ptr<sqlite3, Close> _handle;
};

std::shared_ptr<SQLContainer> example(const std::string& name) {
    return loadDocument(VELLICOR_SOURCE_DIR "/examples/" + name + ".xml").container;
}

std::string engineName(const SQLTable& table) {
    const std::string schema = table.getSchemaName();
    return schema.empty() ? table.getBaseName() : schema + "_" + table.getBaseName();
}

class SqliteExamples : public ::testing::TestWithParam<const char*> {};

TEST_P(SqliteExamples, ItsCatalogHoldsWhatTheModelHolds) {
    ScopedPreference runnable(prefs::runnableScripts);
    const auto container = example(GetParam());
    Database database;
    ASSERT_EQ(database.run(container->exportToSQLWithDialect("SQLite")), "");
    std::size_t tables = 0;
    for (const auto& object : container->objectList()) {
        const SQLTable* table = as<SQLTable>(object.get());
        if (!table) continue;
        const std::string name = engineName(*table);
        if (as<const SQLView>(table)) {
            EXPECT_THAT(database.query("SELECT name FROM sqlite_master WHERE type = 'view' AND name = '" + name + "'"), ElementsAre(name));
            (void)database.query("SELECT * FROM \"" + name + "\"");
            continue;
        }
        ++tables;
        std::vector<std::string> columns, required, keyColumns;
        std::size_t references = 0;
        for (const auto& component : table->getFields()) {
            if (const auto* key = as<SQLForeignKey>(component.get())) references += key->getKeyPairCount();
            const auto* field = as<SQLField>(component.get());
            if (!field) continue;
            columns.push_back(field->getName());
            if (field->getNotNull()) required.push_back(field->getName());
            if (field->getPrimaryKey()) keyColumns.push_back(field->getName());
            references += field->getFkField() != nullptr;
        }
        const std::string info = " FROM pragma_table_info('" + name + "')";
        EXPECT_EQ(database.query("SELECT name" + info + " ORDER BY cid"), columns) << name;
        EXPECT_EQ(database.query("SELECT name" + info + " WHERE \"notnull\" ORDER BY cid"), required) << name;
        EXPECT_EQ(database.query("SELECT name" + info + " WHERE pk > 0 ORDER BY cid"), keyColumns) << name;
        EXPECT_EQ(database.query("SELECT \"to\" FROM pragma_foreign_key_list('" + name + "')").size(), references) << name;
    }
    EXPECT_GT(tables, 2u);
    EXPECT_THAT(database.query("PRAGMA foreign_key_check"), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, SqliteExamples, ::testing::Values("shop", "warehouse", "legacy"),
                         [](const auto& info) { return std::string(info.param); });

TEST(SqliteShop, RowsObeyTheDesign) {
    ScopedPreference runnable(prefs::runnableScripts);
    Database shop;
    ASSERT_EQ(shop.run(example("shop")->exportToSQLWithDialect("SQLite")), "");
    EXPECT_EQ(shop.run("INSERT INTO customers (email, name) VALUES ('a@x', 'A')"), "");
    EXPECT_THAT(shop.run("INSERT INTO customers (email, name) VALUES ('a@x', 'B')"), HasSubstr("UNIQUE constraint failed"));
    EXPECT_THAT(shop.run("INSERT INTO customers (email) VALUES ('b@x')"), HasSubstr("NOT NULL constraint failed"));
    EXPECT_EQ(shop.run("INSERT INTO orders (customer_id) VALUES (1)"), "");
    EXPECT_THAT(shop.query("SELECT status FROM orders WHERE ordered_at IS NOT NULL"), ElementsAre("new")) << "defaults";
    EXPECT_THAT(shop.run("INSERT INTO orders (customer_id) VALUES (9)"), HasSubstr("FOREIGN KEY constraint failed"));
    EXPECT_THAT(shop.run("DELETE FROM customers"), HasSubstr("FOREIGN KEY constraint failed")) << "restricted";
    EXPECT_EQ(shop.run("INSERT INTO products (sku, title, price) VALUES ('s', 't', 5)"), "");
    EXPECT_THAT(shop.run("INSERT INTO products (sku, title, price) VALUES ('u', 't', -5)"), HasSubstr("CHECK constraint failed"));
    EXPECT_EQ(shop.run("INSERT INTO order_items (order_id, line_no, product_id, unit_price) VALUES (1, 1, 1, 5)"), "");
    EXPECT_THAT(shop.run("INSERT INTO order_items (order_id, line_no, product_id, unit_price) VALUES (1, 1, 1, 6)"),
                HasSubstr("UNIQUE constraint failed")) << "a compound primary key";
    EXPECT_EQ(shop.run("UPDATE customers SET id = 7"), "");
    EXPECT_THAT(shop.query("SELECT customer_id FROM orders"), ElementsAre("7")) << "updates cascade";
    EXPECT_EQ(shop.run("DELETE FROM orders"), "");
    EXPECT_THAT(shop.query("SELECT count(*) FROM order_items"), ElementsAre("0")) << "deletions cascade";
}

}  // namespace
}  // namespace vellicor
