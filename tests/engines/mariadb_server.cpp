// tests/engines/mariadb_server.cpp — MariaDB, asked through its client.
#include <signal.h>

#include <algorithm>

#include "tests/engines/server.h"

namespace vellicor::testing {

namespace {

const std::vector<std::string> kFolders{"/usr/sbin", "/usr/bin", "/usr/local/sbin", "/usr/local/bin"};
constexpr const char* kOurs = " NOT IN ('mysql', 'information_schema', 'performance_schema', 'sys') ";

bool isLong(const std::string& type) { return type == "TEXT" || type == "BLOB"; }

}  // namespace

MariaDBServer::MariaDBServer() {
    const auto install = program(kFolders, "mariadb-install-db");
    const auto mariadbd = program(kFolders, "mariadbd");
    if (!install || !mariadbd || !program(kFolders, "mariadb")) {
        setNotInstalled("MariaDB");
        return;
    }
    const std::string data = "--datadir=" + (folder() / "data").string();
    // A server that starts removes the temporary tables of every other one that shares the folder.
    const std::string temporary = "--tmpdir=" + folder().string();
    _database.clear();  // none yet
    start({*install, "--no-defaults", data, temporary, "--auth-root-authentication-method=normal", "--skip-test-db"},
          {*mariadbd, "--no-defaults", data, temporary, "--socket=" + (folder() / "socket").string(),
           "--pid-file=" + (folder() / "pid").string(), "--skip-networking", "--character-set-server=utf8mb4",
           "--innodb-buffer-pool-size=32M", "--innodb-flush-method=nosync", "--innodb-flush-log-at-trx-commit=0",
           "--skip-log-bin"},
          SIGTERM);
    if (trouble().empty()) clear();
}

MariaDBServer::Words MariaDBServer::client() const {
    Words words{program(kFolders, "mariadb").value_or(""),
                "--no-defaults",
                "--socket=" + (folder() / "socket").string(),
                "--user=root",
                "--default-character-set=utf8mb4",
                "--batch",
                "--skip-column-names"};
    if (!_database.empty()) words.push_back("--database=" + _database);
    return words;
}

Rows MariaDBServer::rowsOf(std::string_view output) const {
    Rows rows;
    bool startsRow = true;
    for (std::size_t i = 0; i < output.size(); ++i) {
        if (startsRow) rows.emplace_back(1);
        startsRow = output[i] == '\n';
        if (startsRow) continue;
        if (output[i] == '\t') {
            rows.back().emplace_back();
        } else if (output[i] == '\\' && i + 1 < output.size()) {
            const char escaped = output[++i];
            rows.back().back() += escaped == 'n' ? '\n' : escaped == 't' ? '\t' : escaped == '0' ? '\0' : escaped;
        } else {
            rows.back().back() += output[i];
        }
    }
    return rows;
}

void MariaDBServer::clear() {
    _database.clear();
    std::string script = "SET FOREIGN_KEY_CHECKS = 0;\n";
    for (const auto& row :
         query(std::string("SELECT schema_name FROM information_schema.schemata WHERE schema_name") + kOurs))
        script += "DROP DATABASE `" + replacingAll(row[0], "`", "``") + "`;\n";
    (void)rows({script + "CREATE DATABASE vellicor"});
    _database = "vellicor";
}

std::string MariaDBServer::run(std::string_view script) {
    const ProgramRun run = runProgram(client(), script);
    return run.status == 0 ? "" : run.err + " ";
}

Catalog MariaDBServer::catalog() {
    const std::string where = std::string(" WHERE c.table_schema") + kOurs;
    const std::string name = "CONCAT(c.table_schema, '.', c.table_name)";
    const auto results = rows({
        "SELECT CONCAT(IF(table_type = 'VIEW', 'view ', 'table '), " + name + "), " + name +
            ", table_type, table_comment"
            " FROM information_schema.tables c" +
            where,
        "SELECT " + name +
            ", column_name, column_type, is_nullable, column_default, extra, column_comment"
            " FROM information_schema.columns c JOIN information_schema.tables t ON t.table_schema = c.table_schema"
            " AND t.table_name = c.table_name AND t.table_type = 'BASE TABLE'" +
            where,
        "SELECT " + name +
            ", index_name, non_unique, GROUP_CONCAT(column_name, IF(sub_part IS NULL, '', CONCAT('(', sub_part, ')'))"
            " ORDER BY seq_in_index) FROM information_schema.statistics c" +
            where + "GROUP BY 1, 2, 3",
        "SELECT " + name +
            ", c.constraint_name, GROUP_CONCAT(column_name ORDER BY ordinal_position), CONCAT(referenced_table_schema, "
            "'.',"
            " c.referenced_table_name), GROUP_CONCAT(referenced_column_name ORDER BY ordinal_position), delete_rule, "
            "update_rule"
            " FROM information_schema.key_column_usage c JOIN information_schema.referential_constraints r"
            " ON r.constraint_schema = c.constraint_schema AND r.constraint_name = c.constraint_name AND r.table_name "
            "= c.table_name" +
            where + "GROUP BY 1, 2, 4, 6, 7",
    });
    Catalog catalog;
    for (const auto& row : results[0]) {
        catalog.facts.insert(row[0]);
        if (row[2] != "VIEW" && !row[3].empty()) catalog.facts.insert("comment " + row[1] + " " + row[3]);
    }
    for (const auto& row : results[1]) {
        const std::string column = row[0] + "." + row[1];
        const bool counts = row[5].find("auto_increment") != std::string::npos;
        catalog.facts.insert("column " + column + " " + row[2] + (row[3] == "NO" ? " not null" : "") +
                             (counts ? " auto" : ""));
        if (row[4] != "NULL") catalog.defaults[column] = row[4];
        if (!row[6].empty()) catalog.facts.insert("comment " + column + " " + row[6]);
    }
    std::set<std::string> ofKeys;  // "table name" and "table (columns)"
    for (const auto& row : results[3]) {
        catalog.facts.insert("foreign key " + row[0] + " (" + row[2] + ") -> " + row[3] + " (" + row[4] +
                             ") on delete " + row[5] + " on update " + row[6]);
        catalog.names.insert(row[1]);
        ofKeys.insert({row[0] + " " + row[1], row[0] + " (" + row[2] + ")"});
    }
    for (const auto& row : results[2]) {
        const std::string columns = row[0] + " (" + row[3] + ")";
        catalog.names.insert(row[1]);
        if (row[1] == "PRIMARY")
            catalog.facts.insert("primary key " + columns);
        else if (row[2] == "0")
            catalog.facts.insert("unique " + columns);
        else if (!ofKeys.contains(columns) ||
                 !ofKeys.contains(row[0] + " " + row[1]))  // not one that a key brought along
            catalog.facts.insert("index " + columns);
    }
    return catalog;
}

std::vector<std::string> MariaDBServer::keywords() {
    std::vector<std::string> words;
    for (const auto& row : query("SELECT word FROM information_schema.keywords WHERE word REGEXP '^[a-zA-Z_]+$'"))
        words.push_back(row[0]);
    return words;
}

std::string MariaDBServer::typeOf(const SQLField& field) const {
    static const std::map<std::string, std::string> kTypes{
        {"int", "int(11)"},          {"integer", "int(11)"},    {"bigint", "bigint(20)"},
        {"smallint", "smallint(6)"}, {"boolean", "tinyint(1)"}, {"numeric", "decimal"},
        {"json", "longtext"},        {"year", "year(4)"},       {"double precision", "double"}};
    std::string type = lowercased(field.getDataType());
    if (field.getPropertyAsBoolean(keys::unsigned_))
        return type == "bigint" ? "bigint(20) unsigned" : "int(10) unsigned";
    if (const auto known = kTypes.find(type); known != kTypes.end()) type = known->second;
    return field.getDataTypeSize().empty() ? type : type + "(" + field.getDataTypeSize() + ")";
}

std::string MariaDBServer::actionOf(std::uint64_t code) const {
    return code == action::none || code == action::setDefault ? "RESTRICT" : Engine::actionOf(code);
}

std::string MariaDBServer::valueOf(const SQLField& field, const std::string& literal) const {
    const std::string type = typeOf(field);
    return type.starts_with("decimal") ? "CAST(" + literal + " AS " + type + ")" : literal;
}

bool MariaDBServer::keepsDefaultOf(const SQLField& field) const {
    return !field.getAutoIncrement() && !isLong(uppercased(field.getDataType()));
}

}  // namespace vellicor::testing
