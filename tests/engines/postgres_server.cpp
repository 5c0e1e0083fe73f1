// tests/engines/postgres_server.cpp — PostgreSQL, asked through psql.
#include <signal.h>

#include <algorithm>
#include <filesystem>

#include "tests/engines/server.h"

namespace vellicor::testing {

namespace {

constexpr char kFieldEnd = '\x1f';
constexpr char kRowEnd = '\0';

/// The newest installed version's programs; Debian keeps them out of the path.
std::vector<std::string> programFolders() {
    std::vector<std::string> folders;
    std::error_code ignored;
    for (const auto& version : std::filesystem::directory_iterator("/usr/lib/postgresql", ignored))
        folders.push_back(version.path() / "bin");
    std::ranges::sort(folders, std::greater());
    folders.insert(folders.end(), {"/usr/local/bin", "/usr/bin"});
    return folders;
}

std::string columnsOf(const std::string& table, const std::string& numbers) {
    return "array_to_string(ARRAY(SELECT a.attname FROM unnest(" + numbers +
           ") WITH ORDINALITY k(n, place) JOIN pg_attribute a ON a.attrelid = " + table +
           " AND a.attnum = k.n ORDER BY place), ',')";
}

}  // namespace

PostgresServer::PostgresServer() {
    const auto initdb = program(programFolders(), "initdb");
    const auto postgres = program(programFolders(), "postgres");
    if (!initdb || !postgres || !program(programFolders(), "psql")) {
        setNotInstalled("PostgreSQL");
        return;
    }
    const std::string data = folder() / "data";
    start({*initdb, "-D", data, "--username=postgres", "--auth=trust", "--encoding=UTF8", "--locale=C.UTF-8",
           "--no-sync"},
          {*postgres, "-D", data, "-k", folder(), "-h", "", "-c", "fsync=off", "-c", "shared_buffers=16MB", "-c",
           "client_min_messages=warning", "-c", "max_locks_per_transaction=1024"},
          SIGINT);
}

PostgresServer::Words PostgresServer::client() const {
    return {program(programFolders(), "psql").value_or(""),
            "-X",
            "-q",
            "-h",
            folder(),
            "-U",
            "postgres",
            "-d",
            "postgres",
            "-v",
            "ON_ERROR_STOP=1",
            "-A",
            "-t",
            "-P",
            "null=NULL",
            "-F",
            std::string(1, kFieldEnd),
            "-0",
            "-f",
            "-"};
}

Rows PostgresServer::rowsOf(std::string_view output) const {
    Rows rows;
    for (std::size_t start = 0; start < output.size();) {
        std::size_t end = std::min(output.find(kRowEnd, start), output.size());
        rows.emplace_back();
        for (std::size_t place = start; place <= end;) {
            const std::size_t next = std::min(output.find(kFieldEnd, place), end);
            rows.back().emplace_back(output.substr(place, next - place));
            place = next + 1;
        }
        start = end + 1;
    }
    return rows;
}

void PostgresServer::clear() {
    (void)rows(
        {"DO $$ DECLARE s text; BEGIN FOR s IN SELECT nspname FROM pg_namespace"
         " WHERE nspname !~ '^pg_' AND nspname <> 'information_schema' LOOP EXECUTE format('DROP SCHEMA %I CASCADE', "
         "s); END LOOP;"
         " CREATE SCHEMA public; END $$"});
}

std::string PostgresServer::run(std::string_view script) {
    const ProgramRun run = runProgram(client(), script);
    return run.status == 0 ? "" : run.err + " ";
}

Catalog PostgresServer::catalog() {
    const std::string name = "n.nspname || '.' || c.relname";
    const std::string tables = " FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace AND n.nspname !~ '^pg_'"
                               " AND n.nspname <> 'information_schema' ";
    const auto results = rows({
        "SELECT CASE relkind WHEN 'v' THEN 'view ' ELSE 'table ' END || " + name + ", " + name +
            ", obj_description(c.oid, 'pg_class')" + tables + "WHERE relkind IN ('r', 'v')",
        "SELECT " + name +
            " || '.' || attname, format_type(atttypid, atttypmod), attnotnull, pg_get_expr(adbin, adrelid),"
            " col_description(c.oid, attnum)" +
            tables +
            "JOIN pg_attribute a ON a.attrelid = c.oid AND attnum > 0 AND NOT attisdropped"
            " LEFT JOIN pg_attrdef ON adrelid = c.oid AND adnum = attnum WHERE relkind = 'r'",
        "SELECT " + name + ", conname, contype, " + columnsOf("conrelid", "conkey") +
            ", (SELECT tn.nspname || '.' || t.relname FROM"
            " pg_class t JOIN pg_namespace tn ON tn.oid = t.relnamespace WHERE t.oid = confrelid), " +
            columnsOf("confrelid", "confkey") + ", confdeltype, confupdtype, condeferrable, condeferred" + tables +
            "JOIN pg_constraint ON conrelid = c.oid",
        "SELECT " + name + ", i.relname, " + columnsOf("c.oid", "indkey::int2[]") + tables +
            "JOIN pg_index x ON x.indrelid = c.oid JOIN pg_class i ON i.oid = x.indexrelid"
            " WHERE NOT EXISTS (SELECT FROM pg_constraint WHERE conindid = x.indexrelid AND contype IN ('p', 'u'))",
    });
    const auto action = [](const std::string& letter) {
        if (letter == "c") return " CASCADE";
        if (letter == "r") return " RESTRICT";
        if (letter == "n") return " SET NULL";
        return letter == "d" ? " SET DEFAULT" : " NO ACTION";
    };
    Catalog catalog;
    for (const auto& row : results[0]) {
        catalog.facts.insert(row[0]);
        if (row[2] != "NULL") catalog.facts.insert("comment " + row[1] + " " + row[2]);
    }
    for (const auto& row : results[1]) {
        const bool counts = row[3].starts_with("nextval(");
        catalog.facts.insert("column " + row[0] + " " + row[1] + (row[2] == "t" ? " not null" : "") +
                             (counts ? " auto" : ""));
        if (row[3] != "NULL" && !counts) catalog.defaults[row[0]] = row[3];
        if (row[4] != "NULL") catalog.facts.insert("comment " + row[0] + " " + row[4]);
    }
    std::map<std::string, int> checks;
    for (const auto& row : results[2]) {
        const std::string where = row[0] + " (" + row[3] + ")";
        catalog.names.insert(row[1]);
        if (row[2] == "p") catalog.facts.insert("primary key " + where);
        if (row[2] == "u") catalog.facts.insert("unique " + where);
        if (row[2] == "c") ++checks[row[0]];
        if (row[2] == "f")
            catalog.facts.insert("foreign key " + where + " -> " + row[4] + " (" + row[5] + ") on delete" +
                                 action(row[6]) + " on update" + action(row[7]) + (row[8] == "t" ? " deferrable" : "") +
                                 (row[9] == "t" ? " deferred" : ""));
    }
    for (const auto& [table, count] : checks) catalog.facts.insert("check " + table + " " + std::to_string(count));
    for (const auto& row : results[3]) {
        catalog.facts.insert("index " + row[0] + " (" + row[2] + ")");
        catalog.names.insert(row[1]);
    }
    return catalog;
}

std::vector<std::string> PostgresServer::keywords() {
    std::vector<std::string> words;
    for (const auto& row : query("SELECT word FROM pg_get_keywords()")) words.push_back(row[0]);
    return words;
}

std::string PostgresServer::typeOf(const SQLField& field) const {
    static const std::map<std::string, std::string> kTypes{{"int", "integer"},
                                                           {"varchar", "character varying"},
                                                           {"char", "character"},
                                                           {"decimal", "numeric"},
                                                           {"timestamp", "timestamp without time zone"}};
    std::string type = lowercased(field.getDataType());
    if (field.getAutoIncrement()) return type == "bigint" ? type : "integer";
    if (type == "timestamp" && field.getPropertyAsBoolean(keys::timezone)) return "timestamp with time zone";
    if (const auto known = kTypes.find(type); known != kTypes.end()) type = known->second;
    return field.getDataTypeSize().empty() ? type : type + "(" + field.getDataTypeSize() + ")";
}

}  // namespace vellicor::testing
