// cli/log_lines.h — what the library's log lines mean to somebody who runs the tool.
#pragma once

#include <string>
#include <string_view>

namespace vellicor::cli {

enum class Level { Note, Warning };

/// A line is a warning unless it says itself that it is a note, or only tells how the library goes about its work.
[[nodiscard]] Level levelOfLogLine(std::string_view line);

/// The text on one line: line breaks and other control characters become blanks, runs of them a single one.
[[nodiscard]] std::string singleLine(std::string_view text);

}  // namespace vellicor::cli
