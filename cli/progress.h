// cli/progress.h — a sign of life during long steps.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace vellicor::cli {

/// While it lives, one line on standard error tells what is being done and for how long; only on a terminal, and only
/// after a second. The line is gone when this is gone.
class Progress {
public:
    /// `shown` false does nothing at all.
    Progress(std::string what, bool shown);
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
