// vellicor/dialects/sql_dialect_manager.h — registered dialects and export plug-ins together, for user interfaces.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/dialects/dialect_manager.h"
#include "vellicor/model/forward.h"

namespace vellicor {

/// A menu of dialects, as the user interface provides it.
class DialectPopup {
public:
    virtual ~DialectPopup() = default;
    virtual void removeAllItems() = 0;
    virtual void setTarget(void* target) = 0;
    virtual void setAction(void* action) = 0;
    virtual void addItemWithTitle(std::string_view title) = 0;
};

/// A front of the registry that also knows the export plug-ins.
class SQLDialectManager {
public:
    SQLDialectManager() : _dialectManager(DialectManager::getDialectManager()) {}
    static SQLDialectManager& sharedDialectManager();
    [[nodiscard]] DialectManager& dialectManager() const { return _dialectManager; }

    /// Plug-ins are not asked.
    [[nodiscard]] std::shared_ptr<SQLExportDialect> exporterForDialect(std::string_view name) const;
    [[nodiscard]] std::vector<std::string> dialectList() const { return dialectList(true); }
    /// Every registered name in registry order, then the export types of plug-ins; the flag concerns the plug-ins only.
    [[nodiscard]] std::vector<std::string> dialectList(bool displayableOnly) const;
    void updateDialectPopup(DialectPopup& popup) const { updateDialectPopup(popup, nullptr, nullptr, true); }
    /// Target and action are set only when both are given.
    void updateDialectPopup(DialectPopup& popup, void* target, void* action, bool displayableOnly) const;
    /// The extension that an export plug-in answers, otherwise the registry's.
    [[nodiscard]] std::string exportFileTypeForDialect(std::string_view name) const;
    /// The name that an export plug-in makes of it; without a plug-in, with "-sql" at its end.
    [[nodiscard]] std::string validFileNameForDialect(std::string_view name, std::string_view existingFileName,
                                                      bool preDisplay, SQLContainer* forContainer) const;

private:
    DialectManager& _dialectManager;
};

}  // namespace vellicor
