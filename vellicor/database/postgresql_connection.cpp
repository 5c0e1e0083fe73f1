// vellicor/database/postgresql_connection.cpp — PostgreSQL; nothing else sees its library.
#include <libpq-fe.h>

#include <memory>

#include "vellicor/database/connection.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr int kOldestVersion = 100000;  // 10, which knows identity columns
constexpr const char* kStatementTimeout = "10min";
constexpr const char* kLockTimeout = "30s";

struct ClosePostgreSQL {
    void operator()(PGconn* connection) const { PQfinish(connection); }
};
struct ClearPostgreSQLResult {
    void operator()(PGresult* result) const { PQclear(result); }
};
using PostgreSQLResult = std::unique_ptr<PGresult, ClearPostgreSQLResult>;

/// What the server says, without the lines that repeat the statement.
std::string firstLineOfAnswer(std::string_view message) {
    std::string_view line = trimmed(message.substr(0, message.find('\n')));
    for (const std::string_view start : {"ERROR:", "FATAL:"})
        if (line.starts_with(start)) line = trimmed(line.substr(start.size()));
    return std::string(line);
}

class PostgreSQLConnection final : public DatabaseConnection {
public:
    PostgreSQLConnection(const DatabaseUrl& url, DatabaseAccess access) : DatabaseConnection(url) {
        const bool isReading = access == DatabaseAccess::ReadOnly;
        const std::string timeout = std::to_string(url.timeout);
        std::string options = text("-c lock_timeout=%@", kLockTimeout);
        if (isReading)
            options += text(" -c default_transaction_read_only=on -c statement_timeout=%@", kStatementTimeout);
        std::vector<const char*> names;
        std::vector<const char*> values;
        const auto add = [&](const char* name, const std::string& value) {
            if (value.empty()) return;
            names.push_back(name);
            values.push_back(value.c_str());
        };
        add("host", url.host);
        add("port", url.port);
        add("user", url.user);
        add("dbname", url.database);
        for (const auto& [name, value] : url.options) add(name.c_str(), value);
        const std::string encoding = "UTF8";
        const std::string program = "vellicor";
        add("connect_timeout", timeout);
        add("client_encoding", encoding);
        add("fallback_application_name", program);
        add("options", options);
        names.push_back(nullptr);
        values.push_back(nullptr);
        _connection.reset(PQconnectdbParams(names.data(), values.data(), 0));
        if (PQstatus(_connection.get()) != CONNECTION_OK) refuse();
        PQsetNoticeProcessor(
            _connection.get(), [](void*, const char*) {}, nullptr);
        if (const int version = PQserverVersion(_connection.get()); version < kOldestVersion)
            fail(DatabaseError::Kind::TooOld,
                 text("the server is PostgreSQL %@; versions from 10 on are read", databaseProductVersion()));
    }

    std::string databaseProductName() override { return "PostgreSQL"; }
    std::string databaseProductVersion() override {
        const char* version = PQparameterStatus(_connection.get(), "server_version");
        return version ? version : "";
    }

    DatabaseRows query(const std::string& sql) override {
        const PostgreSQLResult result = run(sql);
        DatabaseRows rows(static_cast<std::size_t>(PQntuples(result.get())));
        const int columns = PQnfields(result.get());
        for (int i = 0; i < PQntuples(result.get()); ++i) {
            auto& row = rows[static_cast<std::size_t>(i)];
            row.reserve(static_cast<std::size_t>(columns));
            for (int k = 0; k < columns; ++k) {
                if (PQgetisnull(result.get(), i, k))
                    row.emplace_back(std::nullopt);
                else
                    row.emplace_back(std::string(PQgetvalue(result.get(), i, k),
                                                 static_cast<std::size_t>(PQgetlength(result.get(), i, k))));
            }
        }
        return rows;
    }
    void execute(const std::string& sql) override { static_cast<void>(run(sql)); }
    std::string literal(std::string_view value) const override {
        const std::string doubled = replacingAll(value, "'", "''");
        return doubled.find('\\') == doubled.npos ? "'" + doubled + "'"
                                                  : " E'" + replacingAll(doubled, "\\", "\\\\") + "'";
    }

private:
    PostgreSQLResult run(const std::string& sql) {
        PostgreSQLResult result(PQexec(_connection.get(), sql.c_str()));
        const ExecStatusType status = PQresultStatus(result.get());
        if (status == PGRES_TUPLES_OK || status == PGRES_COMMAND_OK || status == PGRES_EMPTY_QUERY) return result;
        if (PQstatus(_connection.get()) != CONNECTION_OK)
            fail(DatabaseError::Kind::Failed,
                 "the connection was lost: " + firstLineOfAnswer(PQerrorMessage(_connection.get())));
        const char* state = PQresultErrorField(result.get(), PG_DIAG_SQLSTATE);
        const bool isRight = state && std::string_view(state) == "42501";
        fail(isRight ? DatabaseError::Kind::Refused : DatabaseError::Kind::Failed,
             firstLineOfAnswer(PQresultErrorMessage(result.get())));
    }

    [[noreturn]] void refuse() const {
        const std::string message = PQerrorMessage(_connection.get());
        const auto says = [&](std::string_view words) { return message.find(words) != message.npos; };
        if (PQconnectionNeedsPassword(_connection.get()) || says("password authentication failed") ||
            says("no password"))
            fail(DatabaseError::Kind::Refused,
                 text("the server asks for a password (%@); put the right one into PGPASSWORD or ~/.pgpass",
                      lastLineOf(message)));
        const bool isAnswer = says("FATAL:") && !says("does not exist");
        fail(isAnswer ? DatabaseError::Kind::Refused : DatabaseError::Kind::NotThere, lastLineOf(message));
    }
    static std::string lastLineOf(std::string_view message) {
        message = trimmed(message);
        return std::string(replacingAll(message, "\n", " "));
    }

    std::unique_ptr<PGconn, ClosePostgreSQL> _connection;
};

}  // namespace

std::unique_ptr<DatabaseConnection> openPostgreSQL(const DatabaseUrl& url, DatabaseAccess access) {
    return std::make_unique<PostgreSQLConnection>(url, access);
}

}  // namespace vellicor
