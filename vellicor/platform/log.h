// vellicor/platform/log.h — the process log: one line a call, written to a sink that can be replaced.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace vellicor {

/// Receives each line of the log, without a line break at its end. Called under the log's lock.
using LogSink = std::function<void(std::string_view line)>;

/// Writes one line to the current sink. Any thread may call it.
void log(std::string_view line);

/// Replaces the sink and answers the one it replaces. An empty sink restores the default, which writes to stderr.
LogSink setLogSink(LogSink sink);

/// What the lines are about that a thread writes while a subject lives. The lines stay as they are; a sink may ask.
/// Subjects of one thread end in the opposite order of their beginnings.
class LogSubject {
public:
    LogSubject();
    virtual ~LogSubject();
    LogSubject(const LogSubject&) = delete;
    LogSubject& operator=(const LogSubject&) = delete;

    /// What the innermost subject of the calling thread says of itself; empty without one.
    [[nodiscard]] static std::string current();

private:
    [[nodiscard]] virtual std::string description() const = 0;

    const LogSubject* _outer;  // null for the outermost
};

}  // namespace vellicor
