// cli/progress.cpp — the thread that writes the line.
#include "cli/progress.h"

#include <chrono>
#include <iostream>

#include "cli/messages.h"
#include "cli/terminal.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

Progress::Progress(Messages& messages, std::string_view what) : _what(singleLine(what)) {
    ProgressWatcher& steps = messages.steps();
    steps.incrementPosition();
    if (steps.getCount() > 1)
        _what += text(", step %ld of %ld", static_cast<std::int64_t>(steps.getPosition()),
                      static_cast<std::int64_t>(steps.getCount()));
    if (!messages.quiet() && errorsGoToTerminal()) _thread = std::thread([this] { run(); });
}

Progress::~Progress() {
    if (!_thread.joinable()) return;
    {
        std::scoped_lock lock(_mutex);
        _over = true;
    }
    _wake.notify_one();
    _thread.join();
}

void Progress::run() {
    using namespace std::chrono_literals;
    constexpr std::string_view kClearLine = "\r\033[K";
    std::unique_lock lock(_mutex);
    int seconds = 0;
    while (!_wake.wait_for(lock, 1s, [this] { return _over; }))
        std::cerr << kClearLine << "vellicor: " << _what << ", " << ++seconds << " s" << std::flush;
    if (seconds > 0) std::cerr << kClearLine << std::flush;
}

}  // namespace vellicor::cli
