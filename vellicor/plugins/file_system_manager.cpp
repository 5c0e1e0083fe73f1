// vellicor/plugins/file_system_manager.cpp — making and naming the support folder.
#include "vellicor/plugins/file_system_manager.h"

#include <system_error>
#include <utility>

#include "vellicor/platform/exception.h"
#include "vellicor/platform/library_paths.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// Only the user may look into a data folder that is made here.
void makeUserDataFolder(const std::filesystem::path& folder) {
    std::error_code ignored;  // what cannot be made is told by whoever needs the support folder
    if (std::filesystem::create_directories(folder, ignored))
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all, ignored);
}

}  // namespace

QVFileSystemManager& QVFileSystemManager::sharedManager() {
    static auto& manager = *new QVFileSystemManager;  // lives as long as the process
    return manager;
}

QVFileSystemManager::AlertHandler QVFileSystemManager::setAlertHandler(AlertHandler handler) {
    return std::exchange(_alertHandler, std::move(handler));
}

std::filesystem::path QVFileSystemManager::applicationSupportDirectoryPath() const {
    const auto folder = userDataFolder();
    if (!folder) throw SQLException(exceptions::applicationSupport, "Could not identify application support directory");
    makeUserDataFolder(*folder);
    return *folder / "Vellicor/";
}

bool QVFileSystemManager::applicationSupportDirectoryExists() const {
    std::error_code ignored;
    return std::filesystem::is_directory(applicationSupportDirectoryPath(), ignored);
}

std::filesystem::path QVFileSystemManager::applicationSupportDirectory() {
    createApplicationSupportDirectory();
    return applicationSupportDirectoryPath();
}

void QVFileSystemManager::createApplicationSupportDirectory() {
    if (applicationSupportDirectoryExists()) return;
    std::error_code error;
    // Without the "/" at the end, since the name behind it would be empty.
    std::filesystem::create_directories(applicationSupportDirectoryPath().parent_path(), error);
    if (!error) return;
    const Alert alert{"Unable to create Application support files", "Continue", text("%@", error.message())};
    if (_alertHandler)
        _alertHandler(alert);
    else
        log(text("%@: %@", alert.message, alert.informativeText));
}

std::optional<std::filesystem::path> QVFileSystemManager::URLWithlastDirectoryForFileURL(
    const std::filesystem::path& file) {
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (error || !std::filesystem::exists(status)) {
        log(text("invalid get getResourceValue %@", error.message()));
        return std::nullopt;
    }
    return std::filesystem::is_directory(status) ? file : std::filesystem::absolute(file, error).parent_path();
}

void QVFileSystemManager::fixOpenPanelNavDirectory() {
    Preferences& preferences = Preferences::shared();
    if (preferences.boolForKey(prefs::disableNavigationPanelFix)) return;
    const OptionalText stored = preferences.stringForKey(prefs::navLastRootDirectory);
    if (!stored || stored->empty() || stored->find('\0') != stored->npos) return;
    if (const auto folder = URLWithlastDirectoryForFileURL(expandingTilde(*stored)))
        preferences.setObject(folder->string(), prefs::navLastRootDirectory);
}

}  // namespace vellicor
