// tests/engines/server.cpp — starting, asking and stopping a database server.
#include "tests/engines/server.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace vellicor::testing {

namespace {

constexpr auto kPatience = std::chrono::minutes(2);
constexpr const char* kNextQuery = "---- next query ----";

/// The user that a server runs as when this program may do everything; null when it runs as we do.
const passwd* serverUser() {
    if (geteuid() != 0) return nullptr;
    const passwd* user = getpwnam("nobody");
    if (!user) throw std::runtime_error("no user nobody to run a server as");
    return user;
}

}  // namespace

Server::Server() {
    if (const passwd* user = serverUser(); user && chown(folder().c_str(), user->pw_uid, user->pw_gid) != 0)
        throw std::runtime_error("cannot give a folder away");
}

Server::~Server() {
    if (_server < 0) return;
    kill(_server, _stopSignal);
    waitpid(_server, nullptr, 0);
}

std::optional<std::string> Server::program(const Words& folders, const std::string& name) {
    for (const std::string& folder : folders)
        if (const std::string path = folder + "/" + name; access(path.c_str(), X_OK) == 0) return path;
    return std::nullopt;
}

pid_t Server::launch(const Words& words, bool asServer, const std::string& files) const {
    const passwd* user = asServer ? serverUser() : nullptr;
    std::vector<char*> arguments;
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const std::string in = folder() / (files + ".in"), out = folder() / (files + ".out"),
                      err = folder() / (files + ".err");
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child != 0) return child;

    const std::array<int, 3> streams{open(in.c_str(), O_RDONLY | O_CREAT, 0644),
                                     open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644),
                                     open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644)};
    for (int i = 0; i < 3; ++i) dup2(streams[static_cast<std::size_t>(i)], i);
    if (user && (setgroups(0, nullptr) != 0 || setgid(user->pw_gid) != 0 || setuid(user->pw_uid) != 0)) _exit(126);
    prctl(PR_SET_PDEATHSIG, SIGTERM);  // behind the change of user, which would undo it
    if (getppid() != parent || chdir(folder().c_str()) != 0) _exit(126);
    execv(arguments.front(), arguments.data());
    _exit(127);
}

ProgramRun Server::runProgram(const Words& words, std::string_view input, bool asServer) {
    _folder.write("client.in", input);
    const pid_t child = launch(words, asServer, "client");
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) return {};
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, TempFolder::read(folder() / "client.out"),
            TempFolder::read(folder() / "client.err")};
}

void Server::start(const Words& setUp, const Words& server, int stopSignal) {
    if (const ProgramRun run = runProgram(setUp, "", true); run.status != 0) {
        _trouble = "cannot make the data: " + run.out + run.err;
        return;
    }
    _stopSignal = stopSignal;
    _server = launch(server, true, "server");
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        if (int status = 0; waitpid(_server, &status, WNOHANG) == _server) {
            _server = -1;
            _trouble = "the server stopped: " + TempFolder::read(folder() / "server.err");
            return;
        }
        if (runProgram(client(), "SELECT 1;\n").status == 0) return;
    }
    _trouble = "the server answers nobody";
}

std::vector<Rows> Server::rows(const std::vector<std::string>& queries) {
    std::string script;
    for (const std::string& query : queries) script += query + ";\nSELECT '" + kNextQuery + "';\n";
    const ProgramRun run = runProgram(client(), script);
    if (run.status != 0) throw std::runtime_error(run.err + "\nin " + script);
    std::vector<Rows> results(1);
    for (auto& row : rowsOf(run.out)) {
        if (row.size() == 1 && row.front() == kNextQuery)
            results.emplace_back();
        else
            results.back().push_back(std::move(row));
    }
    results.pop_back();
    return results;
}

}  // namespace vellicor::testing
