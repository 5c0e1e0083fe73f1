// vellicor/database/connection.cpp — the engines that this build can reach.
#include "vellicor/database/connection.h"

#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// Null for an engine without a client.
OpenDatabase makerFor(DatabaseEngine engine) {
    switch (engine) {
        case DatabaseEngine::SQLite:
#ifdef VELLICOR_WITH_SQLITE
            return openSQLite;
#else
            return nullptr;
#endif
        case DatabaseEngine::PostgreSQL:
#ifdef VELLICOR_WITH_POSTGRESQL
            return openPostgreSQL;
#else
            return nullptr;
#endif
        case DatabaseEngine::MySQL:
#ifdef VELLICOR_WITH_MYSQL
            return openMySQL;
#else
            return nullptr;
#endif
    }
    return nullptr;
}

}  // namespace

std::unique_ptr<DatabaseConnection> DatabaseConnection::open(const DatabaseUrl& url, DatabaseAccess access) {
    if (const OpenDatabase maker = makerFor(url.engine)) return maker(url, access);
    throw DatabaseError(DatabaseError::Kind::NotBuilt, text("%@ cannot be opened: this build has no client for %@",
                                                            url.text(), engineName(url.engine)));
}

std::string DatabaseConnection::literal(std::string_view text) const {
    return "'" + replacingAll(text, "'", "''") + "'";
}

void DatabaseConnection::fail(DatabaseError::Kind kind, std::string_view what) const {
    throw DatabaseError(kind, text("%@: %@", _url.text(), trimmed(what)));
}

}  // namespace vellicor
