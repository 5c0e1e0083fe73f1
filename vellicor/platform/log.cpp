// vellicor/platform/log.cpp — the sink of the process log.
#include "vellicor/platform/log.h"

#include <cstdio>
#include <string>
#include <utility>

#include "vellicor/platform/guarded.h"

namespace vellicor {

namespace {

/// Never destroyed, since destructors of other statics may still log.
Guarded<LogSink>& currentSink() {
    static auto& sink = *new Guarded<LogSink>;
    return sink;
}

thread_local const LogSubject* innermostSubject = nullptr;

}  // namespace

void log(std::string_view line) {
    auto sink = currentSink().lock();
    if (*sink) {
        (*sink)(line);
        return;
    }
    std::string whole(line);
    whole += '\n';
    std::fwrite(whole.data(), 1, whole.size(), stderr);
}

LogSink setLogSink(LogSink sink) {
    auto current = currentSink().lock();
    return std::exchange(*current, std::move(sink));
}

LogSubject::LogSubject() : _outer(std::exchange(innermostSubject, this)) {}

LogSubject::~LogSubject() { innermostSubject = _outer; }

std::string LogSubject::current() { return innermostSubject ? innermostSubject->description() : std::string(); }

}  // namespace vellicor
