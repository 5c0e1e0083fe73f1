// vellicor/platform/library_paths.h — the folders in which programs look for their data.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace vellicor {

/// The folder of the running program; empty when the system does not tell.
[[nodiscard]] std::filesystem::path programFolder();
/// `path` with a leading "~" replaced by the user's home; as it is without one or when the home is unknown.
[[nodiscard]] std::filesystem::path expandingTilde(const std::filesystem::path& path);
/// $XDG_DATA_HOME, or ~/.local/share when that is not set or not absolute; null when the user has no home either. The
/// folder need not exist.
[[nodiscard]] std::optional<std::filesystem::path> userDataFolder();
/// The user's data folder, then those of $XDG_DATA_DIRS (/usr/local/share and /usr/share when that is not set), each
/// once. They need not exist.
[[nodiscard]] std::vector<std::filesystem::path> libraryFolders();

}  // namespace vellicor
