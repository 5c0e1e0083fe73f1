// cli/exit_codes.h — what the tool's exit status says.
#pragma once

namespace vellicor::cli {

/// Part of the tool's interface: scripts rely on the numbers.
enum ExitCode {
    kDone = 0,
    kFailed = 1,        ///< failed while running
    kDifferences = 2,   ///< nothing failed, and there is something to report
    kRefused = 3,       ///< the script would lose data or cannot express a change
    kBadUse = 64,       ///< the command line is wrong
    kUnreadable = 65,   ///< no design document, or one that is damaged beyond recovery
    kNoInput = 66,      ///< no such file
    kCannotWrite = 73,  ///< the output cannot be written
};

}  // namespace vellicor::cli
