// vellicor/database/connection.h — an open database.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/database/database_error.h"
#include "vellicor/database/database_url.h"
#include "vellicor/model/export_dialect.h"
#include "vellicor/platform/text.h"

namespace vellicor {

/// The rows of a query; a null of the database reads as null.
using DatabaseRows = std::vector<std::vector<OptionalText>>;

enum class DatabaseAccess {
    ReadOnly,  ///< the engine itself refuses changes
    ReadWrite,
};

/// Closed when the object goes. What fails is a `DatabaseError`. One thread at a time.
class DatabaseConnection : public DatabaseMetaData {
public:
    /// Waits for the server as long as the URL allows. Passwords come from the engine's own places.
    [[nodiscard]] static std::unique_ptr<DatabaseConnection> open(const DatabaseUrl& url, DatabaseAccess access);

    ~DatabaseConnection() override = default;
    DatabaseConnection(const DatabaseConnection&) = delete;
    DatabaseConnection& operator=(const DatabaseConnection&) = delete;

    [[nodiscard]] const DatabaseUrl& url() const { return _url; }
    /// One statement. Texts are UTF-8.
    [[nodiscard]] virtual DatabaseRows query(const std::string& sql) = 0;
    /// Any number of statements, whose rows are dropped; stops at the first that fails.
    virtual void execute(const std::string& sql) = 0;
    /// A text as a literal of the engine.
    [[nodiscard]] virtual std::string literal(std::string_view text) const;

protected:
    explicit DatabaseConnection(DatabaseUrl url) : _url(std::move(url)) {}
    [[noreturn]] void fail(DatabaseError::Kind kind, std::string_view what) const;

private:
    DatabaseUrl _url;
};

/// One maker an engine, each in the only source that sees the engine's client. Null where this build has none.
using OpenDatabase = std::unique_ptr<DatabaseConnection> (*)(const DatabaseUrl& url, DatabaseAccess access);
[[nodiscard]] std::unique_ptr<DatabaseConnection> openSQLite(const DatabaseUrl& url, DatabaseAccess access);
[[nodiscard]] std::unique_ptr<DatabaseConnection> openPostgreSQL(const DatabaseUrl& url, DatabaseAccess access);
[[nodiscard]] std::unique_ptr<DatabaseConnection> openMySQL(const DatabaseUrl& url, DatabaseAccess access);

}  // namespace vellicor
