// vellicor/export/generic_exporter_appender.h — the user's own blocks of SQL in a script, cut into statements.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vellicor/model/forward.h"

namespace vellicor {

class GenericSQLExporterAppender {
public:
    /// The statements of a block of SQL, in order, cut behind each semicolon that stands outside quotes. A statement
    /// keeps its semicolon and the white space before it; only the block as a whole is trimmed. An empty block is one
    /// empty statement. A block of 65,536 or more 16-bit code units stays whole, with a line in the log.
    [[nodiscard]] static std::vector<std::string> SQLBlockArrayFromString(std::string_view text);
    /// The same; what `SQLBlockArrayFromString` calls.
    [[nodiscard]] static std::vector<std::string> splitSQLInstructions(std::string_view text);
    /// What the document info asks to be put before and behind the script, cut into statements; none without it.
    [[nodiscard]] static std::vector<std::string> prologueSQLBlockForContainer(SQLContainer& container);
    [[nodiscard]] static std::vector<std::string> postAppendSQLBlockForContainer(SQLContainer& container);
};

}  // namespace vellicor
