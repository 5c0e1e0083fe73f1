// vellicor/migration/rename_order.h — renaming one after the other what changes names at once.
#pragma once

#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

#include "vellicor/migration/database_shape.h"

namespace vellicor {

struct Rename {
    std::string scope;  ///< names must differ, without regard to case, only inside it
    SQLName from;
    SQLName to;
    std::size_t subject = 0;  ///< whatever the caller knows it by
};

/// Orders renames so that no step takes a name that is still in use: swaps, rings and changes of nothing but the case
/// go through a free name. `taken` holds `nameInScope` of every name in use; `freeName` makes a new one of a name.
[[nodiscard]] std::vector<Rename> orderedRenames(std::vector<Rename> renames, std::unordered_set<std::string> taken,
                                                 const std::function<SQLName(const SQLName&)>& freeName);
[[nodiscard]] std::string nameInScope(const std::string& scope, const SQLName& name);

}  // namespace vellicor
