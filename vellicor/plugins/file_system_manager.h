// vellicor/plugins/file_system_manager.h — the application's support folder.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace vellicor {

/// A message that the user has to dismiss with the one button.
struct Alert {
    std::string message;
    std::string button;
    std::string informativeText;
};

/// Finds and makes the folder in which the application keeps its own files, "Vellicor/" in the user's data folder.
class QVFileSystemManager {
public:
    using AlertHandler = std::function<void(const Alert& alert)>;

    /// Its creation is synchronised.
    static QVFileSystemManager& sharedManager();
    /// Shows alerts from now on, each until it is dismissed; an empty handler restores the default, which logs.
    /// Answers the handler that it replaces.
    AlertHandler setAlertHandler(AlertHandler handler);

    /// With "/" at its end. The user's data folder is made if it is missing, the support folder is not. Raises
    /// "ApplicationSupportDirectoryFail" when the user has no data folder.
    [[nodiscard]] std::filesystem::path applicationSupportDirectoryPath() const;
    [[nodiscard]] bool applicationSupportDirectoryExists() const;
    /// The path, after making the folder if it is missing.
    [[nodiscard]] std::filesystem::path applicationSupportDirectory();
    [[nodiscard]] std::filesystem::path applicationSupportURL() { return applicationSupportDirectory(); }
    /// Shows an alert when the folder is missing and cannot be made.
    void createApplicationSupportDirectory();

    /// The location itself when it is a folder, otherwise the folder around it; null, and a log line, when it does not
    /// exist.
    [[nodiscard]] static std::optional<std::filesystem::path> URLWithlastDirectoryForFileURL(
        const std::filesystem::path& file);
    /// Makes the preference "NSNavLastRootDirectory", when set, name a folder, so that panels open there and not at a
    /// file.
    static void fixOpenPanelNavDirectory();

private:
    QVFileSystemManager() = default;
    AlertHandler _alertHandler;  // empty: the default
};

}  // namespace vellicor
