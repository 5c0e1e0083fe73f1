// cli/progress.h — a sign of life during long steps.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace vellicor::cli {

class Messages;

/// The next step of a run. While it lives, one line on standard error tells what is being done, which of the run's
/// steps that is, and for how long; only on a terminal, and only after a second. The line is gone when this is gone.
class Progress {
public:
    /// Nothing is shown when the messages are quiet.
    Progress(Messages& messages, std::string_view what);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    void run();

    std::string _what;
    std::mutex _mutex;
    std::condition_variable _wake;
    bool _over = false;
    std::thread _thread;
};

}  // namespace vellicor::cli
