// vellicor/database/sqlite_connection.cpp — SQLite; nothing else sees its library.
#include <sqlite3.h>

#include <filesystem>
#include <memory>

#include "vellicor/database/connection.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

struct CloseStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, CloseStatement>;

class SQLiteConnection final : public DatabaseConnection {
public:
    SQLiteConnection(const DatabaseUrl& url, DatabaseAccess access) : DatabaseConnection(url) {
        const bool inMemory = url.file == ":memory:";
        std::error_code ignored;
        if (!inMemory && access == DatabaseAccess::ReadOnly && !std::filesystem::exists(url.file, ignored))
            fail(DatabaseError::Kind::NotThere, "there is no such file");
        const bool isWritable = inMemory || access == DatabaseAccess::ReadWrite;
        const int flags = isWritable ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE : SQLITE_OPEN_READONLY;
        const int result = sqlite3_open_v2(url.file.c_str(), &_database, flags, nullptr);
        if (result != SQLITE_OK) {
            const std::string reason = _database ? sqlite3_errmsg(_database) : sqlite3_errstr(result);
            sqlite3_close(_database);
            fail(DatabaseError::Kind::Refused, reason);
        }
        sqlite3_busy_timeout(_database, static_cast<int>(url.timeout) * 1000);
        sqlite3_extended_result_codes(_database, 1);
    }
    ~SQLiteConnection() override { sqlite3_close(_database); }

    std::string databaseProductName() override { return "SQLite"; }
    std::string databaseProductVersion() override { return sqlite3_libversion(); }

    DatabaseRows query(const std::string& sql) override {
        const Statement statement = prepared(sql.c_str(), nullptr);
        DatabaseRows rows;
        int result = SQLITE_ROW;
        while (statement && (result = sqlite3_step(statement.get())) == SQLITE_ROW) {
            auto& row = rows.emplace_back();
            for (int i = 0; i < sqlite3_column_count(statement.get()); ++i) {
                const unsigned char* content = sqlite3_column_text(statement.get(), i);
                const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), i));
                row.push_back(content ? OptionalText(std::string(reinterpret_cast<const char*>(content), size))
                                      : std::nullopt);
            }
        }
        if (statement && result != SQLITE_DONE) fail(result);
        return rows;
    }

    void execute(const std::string& sql) override {
        for (const char* rest = sql.c_str(); *rest;) {
            const Statement statement = prepared(rest, &rest);
            int result = SQLITE_ROW;
            while (statement && (result = sqlite3_step(statement.get())) == SQLITE_ROW) {
            }
            if (statement && result != SQLITE_DONE) fail(result);
        }
    }

private:
    using DatabaseConnection::fail;
    /// Null for a text without a statement.
    Statement prepared(const char* sql, const char** rest) {
        sqlite3_stmt* statement = nullptr;
        const int result = sqlite3_prepare_v2(_database, sql, -1, &statement, rest);
        if (result != SQLITE_OK) fail(result);
        return Statement(statement);
    }
    [[noreturn]] void fail(int result) {
        const std::string reason = sqlite3_errmsg(_database);
        if ((result & 0xFF) == SQLITE_NOTADB)
            fail(DatabaseError::Kind::Refused, "the file is no SQLite database, or it is encrypted");
        if ((result & 0xFF) == SQLITE_CORRUPT)
            fail(DatabaseError::Kind::Refused,
                 text("the database is damaged (%@); repair it with sqlite3's .recover", reason));
        fail(DatabaseError::Kind::Failed, reason);
    }

    sqlite3* _database = nullptr;
};

}  // namespace

std::unique_ptr<DatabaseConnection> openSQLite(const DatabaseUrl& url, DatabaseAccess access) {
    return std::make_unique<SQLiteConnection>(url, access);
}

}  // namespace vellicor
