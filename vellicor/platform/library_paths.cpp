// vellicor/platform/library_paths.cpp — data folders by the XDG base directory rules.
#include "vellicor/platform/library_paths.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>

namespace vellicor {

namespace {

constexpr std::string_view kDefaultDataFolders = "/usr/local/share:/usr/share";
constexpr std::size_t kAccountBufferSize = 16384;

/// The text of an environment variable; empty when it is not set.
std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : std::string_view();
}

std::optional<std::filesystem::path> homeFolder() {
    const std::filesystem::path fromEnvironment(environment("HOME"));
    if (fromEnvironment.is_absolute()) return fromEnvironment;
    std::string buffer(kAccountBufferSize, '\0');
    passwd account{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &account, buffer.data(), buffer.size(), &found) != 0 || !found) return std::nullopt;
    const std::filesystem::path fromAccount(found->pw_dir ? found->pw_dir : "");
    return fromAccount.is_absolute() ? std::optional(fromAccount) : std::nullopt;
}

/// As a folder without "/" at its end, so that one folder has one form; null for a relative path, which does not count.
std::optional<std::filesystem::path> folderFrom(std::string_view text) {
    std::filesystem::path folder = expandingTilde(text).lexically_normal();
    if (!folder.is_absolute()) return std::nullopt;
    return folder.has_filename() || !folder.has_relative_path() ? folder : folder.parent_path();
}

}  // namespace

std::filesystem::path programFolder() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::path() : program.parent_path();
}

std::filesystem::path expandingTilde(const std::filesystem::path& path) {
    if (path.empty() || *path.begin() != "~") return path;
    const auto home = homeFolder();
    if (!home) return path;
    std::filesystem::path expanded = *home;
    for (auto part = std::next(path.begin()); part != path.end(); ++part) expanded /= *part;
    return expanded;
}

std::optional<std::filesystem::path> userDataFolder() {
    if (auto folder = folderFrom(environment("XDG_DATA_HOME"))) return folder;
    const auto home = homeFolder();
    return home ? std::optional(*home / ".local" / "share") : std::nullopt;
}

std::vector<std::filesystem::path> libraryFolders() {
    std::vector<std::filesystem::path> folders;
    auto add = [&](const std::optional<std::filesystem::path>& folder) {
        if (folder && std::ranges::find(folders, *folder) == folders.end()) folders.push_back(*folder);
    };
    add(userDataFolder());
    std::string_view list = environment("XDG_DATA_DIRS");
    if (list.empty()) list = kDefaultDataFolders;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(':'), list.size());
        add(folderFrom(list.substr(0, end)));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return folders;
}

}  // namespace vellicor
