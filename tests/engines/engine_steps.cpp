// tests/engines/engine_steps.cpp — statements on the tables of the example documents, and awkward documents.
#include "tests/engines/engine_steps.h"

#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/fileformat/document_file.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {

namespace {

constexpr const char* kRuns = "runs";
constexpr const char* kRefused = "refused";
constexpr const char* kCheck = "refused where the dialect writes checks";

struct Step {
    const char* sql;
    const char* outcome;  ///< one of the words above, or the only value that the query gives
};

constexpr Step kShop[] = {
    {"INSERT INTO customers (email, name) VALUES ('a@example.org', 'A')", kRuns},
    {"INSERT INTO customers (email, name) VALUES ('a@example.org', 'B')", kRefused},
    {"INSERT INTO customers (email) VALUES ('b@example.org')", kRefused},
    {"SELECT id FROM customers WHERE created_at IS NOT NULL", "1"},
    {"INSERT INTO products (sku, title) VALUES ('s1', 'Screw')", kRuns},
    {"SELECT stock FROM products WHERE price = 0", "0"},
    {"INSERT INTO products (sku, title, price) VALUES ('s2', 'Nut', -1)", kCheck},
    {"INSERT INTO orders (customer_id) VALUES (1)", kRuns},
    {"SELECT status FROM orders", "new"},
    {"INSERT INTO orders (customer_id) VALUES (99)", kRefused},
    {"INSERT INTO order_items (order_id, line_no, product_id, unit_price) VALUES (1, 1, 1, 5)", kRuns},
    {"INSERT INTO order_items (order_id, line_no, product_id, unit_price) VALUES (1, 1, 1, 5)", kRefused},
    {"INSERT INTO order_items (order_id, line_no, product_id, unit_price) VALUES (1, 2, 1, 5)", kRefused},
    {"DELETE FROM products WHERE id = 1", kRefused},
    {"DELETE FROM customers", kRefused},
    {"UPDATE customers SET id = 7", kRuns},
    {"SELECT customer_id FROM orders", "7"},
    {"DELETE FROM orders", kRuns},
    {"SELECT COUNT(*) FROM order_items", "0"},
};
constexpr Step kWarehouse[] = {
    {"INSERT INTO stock.warehouses (warehouse_code, name) VALUES ('W1', 'Main')", kRuns},
    {"INSERT INTO stock.bins (warehouse_code, bin_code) VALUES ('W1', 'A-1')", kRuns},
    {"INSERT INTO stock.bins (warehouse_code, bin_code) VALUES ('W1', 'A-1')", kRefused},
    {"INSERT INTO stock.bins (warehouse_code, bin_code) VALUES ('W2', 'A-1')", kRefused},
    {"INSERT INTO stock.bins (warehouse_code, bin_code, capacity) VALUES ('W1', 'A-2', 0)", kCheck},
    {"SELECT capacity + is_cold FROM stock.bins WHERE bin_code = 'A-1'", "1"},
    {"INSERT INTO stock.articles (article_no, title, reorder_level) VALUES (1, 'Bolt', 10)", kRuns},
    {"SELECT unit FROM stock.articles", "piece"},
    {"INSERT INTO stock.stock_levels (warehouse_code, bin_code, article_no, quantity) VALUES ('W1', 'A-1', 1, 3)",
     kRuns},
    {"SELECT title FROM stock.low_stock", "Bolt"},
    {"INSERT INTO purchasing.suppliers (supplier_no, name) VALUES (1, 'S')", kRuns},
    {"INSERT INTO purchasing.suppliers (supplier_no, name) VALUES (2, 'S')", kRefused},
    {"INSERT INTO purchasing.deliveries (supplier_no, delivery_no, expected_on) VALUES (1, 'D1', '2024-05-01')", kRuns},
    {"SELECT delivery_no FROM purchasing.late_deliveries", "D1"},
    {"INSERT INTO purchasing.delivery_lines VALUES (1, 'D1', 1, 1, 5, 'W1', 'A-1')", kRuns},
    {"INSERT INTO purchasing.delivery_lines VALUES (1, 'D1', 2, 1, 5, NULL, NULL)", kRefused},
    {"DELETE FROM stock.articles", kRefused},
    {"UPDATE stock.warehouses SET warehouse_code = 'W9'", kRuns},
    {"SELECT warehouse_code FROM purchasing.delivery_lines", "W9"},
    {"DELETE FROM stock.bins WHERE bin_code = 'A-1'", kRuns},
    {"SELECT COUNT(*) FROM stock.stock_levels", "0"},
    {"SELECT bin_code FROM purchasing.delivery_lines", "NULL"},
    {"UPDATE purchasing.suppliers SET supplier_no = 3", kRuns},
    {"SELECT supplier_no FROM purchasing.delivery_lines", "3"},
};
constexpr Step kLegacy[] = {
    {"INSERT INTO companies (company_no, name) VALUES (1, 'C')", kRuns},
    {"INSERT INTO departments (company_no, department_no) VALUES (1, 10)", kRuns},
    {"INSERT INTO departments (company_no, department_no) VALUES (2, 10)", kRefused},
    {"INSERT INTO departments (company_no, department_no) VALUES (1, 1000)", kCheck},
    {"SELECT title FROM departments WHERE department_no = 10", "untitled"},
    {"INSERT INTO employees (company_no, department_no) VALUES (1, 10)", kRuns},
    {"INSERT INTO employees (company_no, department_no) VALUES (1, 11)", kRefused},
    {"INSERT INTO employees (manager_no, salary) VALUES (1, -1)", kCheck},
    {"INSERT INTO employees (employee_no, manager_no, salary) VALUES (20, 1, 1)", kRuns},
    {"DELETE FROM employees WHERE employee_no = 1", kRuns},
    {"SELECT manager_no FROM employees WHERE employee_no = 20", "NULL"},
    {"DELETE FROM companies", kRuns},
    {"SELECT COUNT(*) FROM departments WHERE department_no = 10", "0"},
};

void take(Engine& engine, const Step& step) {
    // Schemas are what the engine makes of them.
    std::string sql = step.sql;
    for (const char* schema : {"stock", "purchasing"})
        sql = replacingAll(sql, " " + std::string(schema) + ".", " " + engine.tableName(schema, ""));
    if (sql.starts_with("SELECT")) {
        const Rows rows = engine.query(sql);
        ASSERT_EQ(rows.size(), 1u) << sql;
        EXPECT_EQ(rows[0].at(0), step.outcome) << sql;
        return;
    }
    const bool isRefused = step.outcome == kRefused || (step.outcome == kCheck && engine.dialect() != "mysql");
    EXPECT_EQ(!engine.run(sql + ";\n").empty(), isRefused) << sql;
}

}  // namespace

void expectExampleOnEngine(Engine& engine, std::string_view example) {
    ScopedPreference runnable(prefs::runnableScripts);
    ScopedPreference comments(prefs::usePostgresComments);
    const auto loaded =
        loadDocument(std::filesystem::path(VELLICOR_SOURCE_DIR) / "examples" / (std::string(example) + ".xml"));
    expectDocumentOnEngine(engine, *loaded.container, std::string(example));
    if (::testing::Test::HasFailure()) return;
    std::span<const Step> steps = kShop;
    if (example == "warehouse") steps = kWarehouse;
    if (example == "legacy") steps = kLegacy;
    for (const Step& step : steps) take(engine, step);
}

void expectAwkwardDocumentsRun(Engine& engine) {
    ScopedPreference runnable(prefs::runnableScripts);
    constexpr const char* kDocuments[] = {
        // a key that needs a unique index made later: of its own table, and of one that references back
        "t(id INTEGER pk; code VARCHAR(20); parent VARCHAR(20); index u UNIQUE (code); key k (parent) -> t(code))",
        "a(id INTEGER pk; code VARCHAR(20); key k (code) -> b(code));;b(code VARCHAR(20); a_id INTEGER; index u UNIQUE "
        "(code); key l (a_id) -> a(id))",
        // indexes and constraints of types that no engine, or another one, has
        "t(a VARCHAR(20); index i NONSENSE (a); constraint c NONSENSE (a); index e UNIQUE (); constraint d UNIQUE ())",
        "t(a VARCHAR(200); index i FULLTEXT (a))",
        // names of indexes and keys that repeat in the document, in another case, or as a table's name
        "t(a INTEGER pk; b INTEGER -> t.a; index same (a); index u (b));;u(a INTEGER indexed; index SAME (a); index "
        "same_1 (a))",
        "a(x INTEGER pk; key k (x) -> b(x));;b(x INTEGER pk; key k (x) -> a(x))",
        "a(x INTEGER check=x>0; constraint a_pkey CHECK [x < 9]; constraint same CHECK [x <> 5]; y INTEGER pk);;b(x "
        "INTEGER; index same (x))",
        // keys that count, and long or repeated parts of keys
        "t(a INTEGER pk; b INTEGER pk auto);;u(a INTEGER auto indexed; b INTEGER auto default=5)",
        "t(a TEXT pk; b INTEGER pk; c TEXT indexed)",
        // defaults
        "t(a INTEGER notnull default=NULL; b INTEGER pk default=null; c BOOLEAN default=0; d BOOLEAN notnull "
        "default=true; e DATE default=NULL)",
        "t(a TIMESTAMP default=CURRENT_TIMESTAMP; b DATE default=CURRENT_DATE; c INTEGER expression=1~+~1; d "
        "VARCHAR(9) expression=upper('x'))",
        R"(t(a VARCHAR(9) default='; b VARCHAR(9) default='it's'; c VARCHAR(9) default=a\'b; d VARCHAR(9) default=\\; e VARCHAR(9) default='it\'s'))",
        // the document as a whole
        "no_columns();;t(a INTEGER pk comment=ends*/DROP);;u(a INTEGER comment=/*nested)",
        "schema~one.t(a INTEGER pk; b INTEGER -> schema~one.t.a);;other.t(a INTEGER pk);;schema~one.u(a INTEGER -> "
        "other.t.a)",
    };
    for (const char* description : kDocuments) {
        auto made = document(description);
        auto info = create<SQLDocumentInfo>();
        info->setDropTableOption(true);
        made->add(info);
        const std::string script = scriptOf(engine.dialect(), *made);
        engine.clear();
        for (int run = 1; run <= 2; ++run) EXPECT_EQ(engine.run(script), "") << "in run " << run << " of " << script;
    }
}

}  // namespace vellicor::testing
