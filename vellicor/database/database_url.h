// vellicor/database/database_url.h — which database is meant, as people write it.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

enum class DatabaseEngine { SQLite, PostgreSQL, MySQL };

/// `sqlite:FILE`, `postgres://user@host:port/database?schema=a,b`, `mysql://…`. A folder of sockets, or a socket,
/// stands in `?host=` or, its slashes as %2F, in the host's place. What is missing comes from the engine's own
/// settings.
struct DatabaseUrl {
    DatabaseEngine engine = DatabaseEngine::SQLite;
    std::string file;  ///< SQLite's; ":memory:" for a new empty database
    std::string user;
    std::string host;  ///< begins with "/" for a socket or its folder
    std::string port;
    std::string database;
    std::vector<std::string> schemas;            ///< empty: all that are the user's own
    unsigned timeout = 10;                       ///< seconds to wait for the server
    std::map<std::string, std::string> options;  ///< for the engine's client: "sslmode" and the like

    /// Whether the text begins like one.
    [[nodiscard]] static bool isUrl(std::string_view text);
    /// Raises `DatabaseError`; a password in the text is refused, without being repeated.
    [[nodiscard]] static DatabaseUrl parse(std::string_view text);
    /// For messages.
    [[nodiscard]] std::string text() const;
    /// What files made from the database are called.
    [[nodiscard]] std::string stem() const;
    /// The name of the engine's dialect in the registry.
    [[nodiscard]] std::string_view dialect() const;
};

/// "SQLite", "PostgreSQL", "MySQL".
[[nodiscard]] std::string_view engineName(DatabaseEngine engine);

}  // namespace vellicor
