// vellicor/platform/log.h — the process log: one line a call, written to a sink that can be replaced.
#pragma once

#include <functional>
#include <string_view>

namespace vellicor {

/// Receives each line of the log, without a line break at its end. Called under the log's lock.
using LogSink = std::function<void(std::string_view line)>;

/// Writes one line to the current sink. Any thread may call it.
void log(std::string_view line);

/// Replaces the sink and answers the one it replaces. An empty sink restores the default, which writes to stderr.
LogSink setLogSink(LogSink sink);

}  // namespace vellicor
