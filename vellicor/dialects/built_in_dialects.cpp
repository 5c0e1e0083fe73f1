// vellicor/dialects/built_in_dialects.cpp — the table of dialects. A new dialect is a row here.
#include "vellicor/dialects/built_in_dialects.h"

#include "vellicor/dialects/filemaker_exporter.h"
#include "vellicor/dialects/openbase_exporter.h"
#include "vellicor/dialects/oracle_exporter.h"
#include "vellicor/dialects/runnable/generic_runnable.h"
#include "vellicor/dialects/runnable/mysql_runnable.h"
#include "vellicor/dialects/runnable/postgresql_runnable.h"
#include "vellicor/dialects/runnable/sql_server_runnable.h"
#include "vellicor/dialects/runnable/sqlite_runnable.h"
#include "vellicor/dialects/runnable/sybase_runnable.h"

namespace vellicor {

namespace {

template <class Exporter>
std::shared_ptr<SQLExportDialect> make() {
    return create<Exporter>();
}

constexpr std::string_view kGeneric[] = {""};
constexpr std::string_view kOpenBase[] = {"com.openbase.jdbc.ObDriver"};
constexpr std::string_view kSqlite[] = {"SQLite.JDBCDriver", "org.sqlite.JDBC", "vellicor.sqlite.native"};
constexpr std::string_view kSybase[] = {"com.sybase"};
constexpr std::string_view kPostgres[] = {"org.postgresql", "org.postgresql.Driver", "vellicor.postgres.native"};
constexpr std::string_view kFileMaker[] = {"com.filemaker.jdbc.Driver"};
constexpr std::string_view kSqlServer[] = {"com.microsoft.sqlserver.jdbc.SQLServerDriver"};
constexpr std::string_view kRedshift[] = {"com.amazon.redshift.jdbc4.Driver", "com.amazon.redshift.jdbc41.Driver"};
constexpr std::string_view kMySql[] = {"com.mysql.jdbc.Driver", "vellicor.mysql-drizzle.native"};
constexpr std::string_view kOracle[] = {"oracle.jdbc.OracleDriver"};

constexpr BuiltInDialect kDialects[] = {
    {"generic", make<GenericSQLExporter>, make<RunnableGenericExporter>, kGeneric},
    {"OpenBase", make<OpenBaseSQLExporter>, make<RunnableExporter<OpenBaseSQLExporter>>, kOpenBase},
    {"SQLite", make<SQLiteExporter>, make<RunnableSQLiteExporter>, kSqlite},
    {"sybase", make<SybaseSQLExporter>, make<RunnableSybaseExporter>, kSybase},
    {"postgres", make<PostgresqlExporter>, make<RunnablePostgresql<PostgresqlExporter>>, kPostgres},
    {"FileMaker", make<FilemakerExporter>, make<RunnableExporter<FilemakerExporter>>, kFileMaker},
    {"SQLServer", make<SQLServerExporter>, make<RunnableSQLServerExporter>, kSqlServer},
    {"Redshift", make<RedshiftExporter>, make<RunnablePostgresql<RedshiftExporter>>, kRedshift},
    {"mysql", make<MySQLExporter>, make<RunnableMySQLExporter>, kMySql},
    {"Oracle", make<OracleSQLExporter>, make<RunnableExporter<OracleSQLExporter>>, kOracle},
};

}  // namespace

std::span<const BuiltInDialect> builtInDialects() { return kDialects; }

}  // namespace vellicor
