// vellicor/database/mysql_connection.cpp — MySQL and MariaDB; nothing else sees their library.
#include <mysql.h>

#include <memory>

#include "vellicor/database/connection.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr unsigned long kOldestMySQL = 50700;
constexpr unsigned long kOldestMariaDB = 100300;
constexpr unsigned kAnswerTimeout = 600;  // seconds

struct CloseMySQL {
    void operator()(MYSQL* connection) const { mysql_close(connection); }
};
struct FreeMySQLResult {
    void operator()(MYSQL_RES* result) const { mysql_free_result(result); }
};
using MySQLResult = std::unique_ptr<MYSQL_RES, FreeMySQLResult>;

enum ServerError : unsigned {
    kAccessDeniedToDatabase = 1044,
    kAccessDenied = 1045,
    kNoDatabase = 1049,
    kTableDenied = 1142
};

const char* orNull(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

class MySQLConnection final : public DatabaseConnection {
public:
    MySQLConnection(const DatabaseUrl& url, DatabaseAccess access) : DatabaseConnection(url) {
        static const int ready = mysql_library_init(0, nullptr, nullptr);
        _connection.reset(ready == 0 ? mysql_init(nullptr) : nullptr);
        if (!_connection) fail(DatabaseError::Kind::Failed, "the client library cannot be started");
        MYSQL* connection = _connection.get();
        const unsigned timeout = url.timeout;
        mysql_optionsv(connection, MYSQL_OPT_CONNECT_TIMEOUT, &timeout);
        mysql_optionsv(connection, MYSQL_OPT_READ_TIMEOUT, &kAnswerTimeout);
        mysql_optionsv(connection, MYSQL_READ_DEFAULT_GROUP,
                       "client");  // the user's own settings, the password among them
        mysql_optionsv(connection, MYSQL_SET_CHARSET_NAME, "utf8mb4");
        if (const auto file = url.options.find("sslca"); file != url.options.end())
            mysql_optionsv(connection, MYSQL_OPT_SSL_CA, file->second.c_str());
        const bool isSocket = url.host.starts_with('/');
        const unsigned port = url.port.empty() ? 0 : static_cast<unsigned>(std::stoul(url.port));
        if (!mysql_real_connect(connection, isSocket ? "localhost" : orNull(url.host), orNull(url.user), nullptr,
                                orNull(url.database), port, isSocket ? url.host.c_str() : nullptr,
                                CLIENT_MULTI_STATEMENTS))
            refuse();
        const unsigned long version = mysql_get_server_version(connection);
        _isMariaDB = std::string_view(mysql_get_server_info(connection)).find("MariaDB") != std::string_view::npos;
        if (version < (_isMariaDB ? kOldestMariaDB : kOldestMySQL))
            fail(DatabaseError::Kind::TooOld, text("the server is %@ %@; MySQL is read from 5.7 on, MariaDB from 10.3",
                                                   databaseProductName(), databaseProductVersion()));
        if (access == DatabaseAccess::ReadOnly) execute("SET SESSION TRANSACTION READ ONLY");
    }

    std::string databaseProductName() override { return _isMariaDB ? "MariaDB" : "MySQL"; }
    std::string databaseProductVersion() override { return mysql_get_server_info(_connection.get()); }

    DatabaseRows query(const std::string& sql) override {
        DatabaseRows rows;
        run(sql, [&](MYSQL_RES* result) {
            const unsigned columns = mysql_num_fields(result);
            while (MYSQL_ROW fields = mysql_fetch_row(result)) {
                const unsigned long* lengths = mysql_fetch_lengths(result);
                auto& row = rows.emplace_back();
                for (unsigned i = 0; i < columns; ++i)
                    row.push_back(fields[i] ? OptionalText(std::string(fields[i], lengths[i])) : std::nullopt);
            }
        });
        return rows;
    }
    void execute(const std::string& sql) override {
        run(sql, [](MYSQL_RES*) {});
    }
    std::string literal(std::string_view value) const override {
        return "'" + replacingAll(replacingAll(value, "\\", "\\\\"), "'", "''") + "'";
    }

private:
    template <class Take>
    void run(const std::string& sql, Take take) {
        if (trimmed(sql).empty()) return;  // the server refuses a script without statements
        MYSQL* connection = _connection.get();
        if (mysql_real_query(connection, sql.data(), sql.size()) != 0) complain();
        for (int more = 0; more == 0; more = mysql_next_result(connection)) {
            if (const MySQLResult result(mysql_store_result(connection)); result)
                take(result.get());
            else if (mysql_field_count(connection) > 0)
                complain();
            if (!mysql_more_results(connection)) return;
        }
        complain();
    }

    [[noreturn]] void complain() {
        const unsigned code = mysql_errno(_connection.get());
        const bool isRight = code == kAccessDeniedToDatabase || code == kTableDenied;
        fail(isRight ? DatabaseError::Kind::Refused : DatabaseError::Kind::Failed, mysql_error(_connection.get()));
    }
    [[noreturn]] void refuse() {
        const unsigned code = mysql_errno(_connection.get());
        const std::string reason = mysql_error(_connection.get());
        if (code == kAccessDenied)
            fail(DatabaseError::Kind::Refused,
                 reason + "; put the right password into the section [client] of ~/.my.cnf");
        const bool isAnswer = code >= 1000 && code < 2000 && code != kNoDatabase;
        fail(isAnswer ? DatabaseError::Kind::Refused : DatabaseError::Kind::NotThere, reason);
    }

    std::unique_ptr<MYSQL, CloseMySQL> _connection;
    bool _isMariaDB = false;
};

}  // namespace

std::unique_ptr<DatabaseConnection> openMySQL(const DatabaseUrl& url, DatabaseAccess access) {
    return std::make_unique<MySQLConnection>(url, access);
}

}  // namespace vellicor
