// tests/engines/sqlite_engine.h — SQLite in this process.
#pragma once

#include "tests/engines/engine.h"

struct sqlite3;

namespace vellicor::testing {

/// Foreign keys are enforced.
class SQLiteEngine final : public Engine {
public:
    SQLiteEngine() { clear(); }
    ~SQLiteEngine() override;
    [[nodiscard]] std::string_view dialect() const override { return "SQLite"; }
    void clear() override;
    [[nodiscard]] std::string run(std::string_view script) override;
    [[nodiscard]] std::vector<Rows> rows(const std::vector<std::string>& queries) override;
    [[nodiscard]] Catalog catalog() override;
    [[nodiscard]] std::vector<std::string> keywords() override;
    [[nodiscard]] std::string typeOf(const SQLField& field) const override;
    [[nodiscard]] bool joinsSchemas() const override { return true; }
    [[nodiscard]] std::string tableName(const std::string& schema, const std::string& name) const override {
        return schema.empty() ? name : schema + "_" + name;
    }
    [[nodiscard]] bool keyImpliesNotNull() const override { return false; }
    [[nodiscard]] bool keepsComments() const override { return false; }
    [[nodiscard]] bool keepsAutoIncrement() const override { return false; }
    [[nodiscard]] bool keepsKeyNames() const override { return false; }

private:
    sqlite3* _database = nullptr;
};

}  // namespace vellicor::testing
