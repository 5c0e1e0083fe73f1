// vellicor/export/runnable/script_losses.h — what a document says and its script does not carry.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vellicor/model/forward.h"

namespace vellicor {

/// One thing that is lost, in words for the user.
struct ScriptLoss {
    std::string object;  ///< "column orders.id"
    std::string what;    ///< "the default value"
    std::string why;     ///< "the server takes none for this type"
};

/// The losses of one export, in the order of the script. It keeps no object alive.
class ScriptLosses {
public:
    void add(const SQLObject& object, std::string_view what, std::string_view why);
    [[nodiscard]] const std::vector<ScriptLoss>& list() const { return _list; }
    [[nodiscard]] bool empty() const { return _list.empty(); }

private:
    std::vector<ScriptLoss> _list;
};

}  // namespace vellicor
