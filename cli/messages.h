// cli/messages.h — what a run has to say besides its data: the library's log and the tool's own warnings.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "cli/log_lines.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/value.h"
#include "vellicor/util/progress_watcher.h"
#include "vellicor/util/status_log.h"

namespace vellicor::cli {

/// Collects the events of a run in a status log from the moment it is made, the lines of the library's log included,
/// and writes them to standard error when the run is over: a run that fails says one thing only.
class Messages {
public:
    Messages();
    ~Messages();
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    void setQuiet(bool flag) { _quiet = flag; }
    [[nodiscard]] bool quiet() const { return _quiet; }
    /// Shows notes, too, and what came before a failure.
    void setVerbose(bool flag) { _verbose = flag; }

    void add(Level level, std::string_view text);
    /// While reading, a line that was said before is not said again: a damaged document is read twice.
    void setDropsRepeats(bool flag);
    void warning(std::string_view text) { add(Level::Warning, text); }
    [[nodiscard]] std::size_t warningCount() const;
    /// For machine-readable results: maps of "level" and "text", in order.
    [[nodiscard]] Value::List events() const;
    /// Counts the steps of the run; a command that has several says how many.
    [[nodiscard]] ProgressWatcher& steps() { return _steps; }

    /// "vellicor: warning: ..." for each event that was collected since the last call, unless quiet.
    void show();
    /// "vellicor: error: ...", with what was collected before it only when verbose.
    void showError(std::string_view text);

private:
    static void write(std::string_view colour, std::string_view kind, std::string_view text);

    mutable std::mutex _mutex;  // guards the log: the library may write lines from any thread
    std::shared_ptr<QVStatusLog> _log = std::make_shared<QVStatusLog>();
    std::optional<std::set<std::string, std::less<>>> _said;  // null while repeats count
    std::size_t _shown = 0;
    ProgressWatcher _steps;
    bool _quiet = false;
    bool _verbose = false;
    LogSink _previousSink;
};

}  // namespace vellicor::cli
