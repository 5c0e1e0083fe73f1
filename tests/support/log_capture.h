// tests/support/log_capture.h — collects the log lines written while it lives.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "vellicor/platform/log.h"

namespace vellicor::testing {

class LogCapture {
public:
    LogCapture() {
        _previous = setLogSink([this](std::string_view line) {
            std::scoped_lock lock(_mutex);
            _lines.emplace_back(line);
        });
    }
    ~LogCapture() { setLogSink(std::move(_previous)); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<std::string> lines() const {
        std::scoped_lock lock(_mutex);
        return _lines;
    }

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _lines;
    LogSink _previous;
};

}  // namespace vellicor::testing
