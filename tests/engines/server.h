// tests/engines/server.h — database servers of the machine's packages, started for one test program.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>

#include "tests/engines/engine.h"
#include "tests/support/temp_folder.h"

namespace vellicor::testing {

struct ProgramRun {
    int status = -1;  ///< of the program; negative when it did not run or was killed
    std::string out;
    std::string err;
};

/// A server that listens on a socket in a temporary folder only, as a user without rights when this program runs as
/// root. It is stopped when the object goes, and by the system when this process dies before.
class Server : public Engine {
public:
    ~Server() override;
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    /// Why it does not run; empty when it does.
    [[nodiscard]] const std::string& trouble() const { return _trouble; }
    [[nodiscard]] bool isInstalled() const { return _isInstalled; }
    [[nodiscard]] std::vector<Rows> rows(const std::vector<std::string>& queries) override;
    /// Where the library finds the database that scripts run in.
    [[nodiscard]] virtual std::string url() const = 0;

protected:
    using Words = std::vector<std::string>;
    Server();
    [[nodiscard]] const std::filesystem::path& folder() const { return _folder.path(); }
    [[nodiscard]] static std::optional<std::string> program(const Words& folders, const std::string& name);
    /// Runs a program to its end with `input`; a server's own program gives up root's rights.
    [[nodiscard]] ProgramRun runProgram(const Words& words, std::string_view input, bool asServer = false);
    /// Makes the data, starts the server and waits until a client is answered. What fails is in `trouble`.
    void start(const Words& setUp, const Words& server, int stopSignal);
    void setNotInstalled(std::string_view product) {
        _isInstalled = false;
        _trouble = std::string(product) + " is not installed";
    }
    /// The client, which reads statements and stops at the first that is refused.
    [[nodiscard]] virtual Words client() const = 0;
    [[nodiscard]] virtual Rows rowsOf(std::string_view output) const = 0;

private:
    [[nodiscard]] pid_t launch(const Words& words, bool asServer, const std::string& files) const;

    TempFolder _folder;
    std::string _trouble;
    bool _isInstalled = true;
    pid_t _server = -1;
    int _stopSignal = 0;
};

class PostgresServer final : public Server {
public:
    PostgresServer();
    [[nodiscard]] std::string_view dialect() const override { return "postgres"; }
    [[nodiscard]] std::string url() const override { return "postgres://postgres@/postgres?host=" + folder().string(); }
    void clear() override;
    [[nodiscard]] std::string run(std::string_view script) override;
    [[nodiscard]] Catalog catalog() override;
    [[nodiscard]] std::vector<std::string> keywords() override;
    [[nodiscard]] std::string typeOf(const SQLField& field) const override;
    [[nodiscard]] std::string tableName(const std::string& schema, const std::string& name) const override {
        return (schema.empty() ? "public" : schema) + "." + name;
    }
    [[nodiscard]] std::string foldedName(const std::string& bareName) const override { return lowercased(bareName); }
    [[nodiscard]] std::string textOf(const std::string& expression) const override {
        return "(" + expression + ")::text";
    }
    [[nodiscard]] std::string flagOf(const std::string& value) const override { return "('" + value + "')::boolean"; }
    [[nodiscard]] bool keepsDeferral() const override { return true; }
    [[nodiscard]] bool keepsChecks() const override { return true; }
    [[nodiscard]] bool keepsTablesWithoutColumns() const override { return true; }
    [[nodiscard]] bool keepsDefaultOf(const SQLField& field) const override { return !field.getAutoIncrement(); }

protected:
    [[nodiscard]] Words client() const override;
    [[nodiscard]] Rows rowsOf(std::string_view output) const override;
};

/// The dialect MySQL on MariaDB.
class MariaDBServer final : public Server {
public:
    MariaDBServer();
    [[nodiscard]] std::string_view dialect() const override { return "mysql"; }
    [[nodiscard]] std::string url() const override {
        return "mysql://root@/vellicor?socket=" + (folder() / "socket").string();
    }
    void clear() override;
    [[nodiscard]] std::string run(std::string_view script) override;
    [[nodiscard]] Catalog catalog() override;
    [[nodiscard]] std::vector<std::string> keywords() override;
    [[nodiscard]] std::string typeOf(const SQLField& field) const override;
    [[nodiscard]] std::string tableName(const std::string& schema, const std::string& name) const override {
        return (schema.empty() ? "vellicor" : schema) + "." + name;
    }
    /// Nothing said is RESTRICT, and the dialect never says SET DEFAULT.
    [[nodiscard]] std::string actionOf(std::uint64_t code) const override;
    [[nodiscard]] bool keepsPrefixSizes() const override { return true; }
    [[nodiscard]] std::string valueOf(const SQLField& field, const std::string& literal) const override;
    /// The dialect writes none for long types.
    [[nodiscard]] bool keepsDefaultOf(const SQLField& field) const override;

protected:
    [[nodiscard]] Words client() const override;
    [[nodiscard]] Rows rowsOf(std::string_view output) const override;

private:
    std::string _database = "vellicor";
};

}  // namespace vellicor::testing
