// cli/messages.cpp — collecting and showing lines.
#include "cli/messages.h"

#include <algorithm>
#include <iostream>

#include "cli/terminal.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

constexpr std::string_view kRed = "\033[1;31m";
constexpr std::string_view kYellow = "\033[1;33m";
constexpr std::string_view kPlain = "\033[0m";

}  // namespace

Messages::Messages() {
    _steps.setIncrement(1);
    _previousSink = setLogSink([this](std::string_view line) {
        const std::string subject = LogSubject::current();
        add(levelOfLogLine(line), subject.empty() ? std::string(line) : text("%@ (%@)", trimmed(line), subject));
    });
}

Messages::~Messages() { setLogSink(std::move(_previousSink)); }

void Messages::add(Level level, std::string_view text) {
    const std::string line = singleLine(text);
    const auto event = QVStatusEvent::statusEventWithSummary(line, std::nullopt);
    event->setIsWarning(level == Level::Warning);
    std::scoped_lock lock(_mutex);
    if (_said && !_said->insert(line).second) return;
    _log->addEvent(event);
}

void Messages::setDropsRepeats(bool flag) {
    std::scoped_lock lock(_mutex);
    _said.reset();
    if (flag) _said.emplace();
}

std::size_t Messages::warningCount() const {
    std::scoped_lock lock(_mutex);
    return static_cast<std::size_t>(std::ranges::count_if(_log->events(), &QVStatusEvent::isWarning));
}

Value::List Messages::events() const {
    std::scoped_lock lock(_mutex);
    Value::List list;
    for (const auto& event : _log->events())
        list.push_back(Value::Map{{"level", event->isWarning() ? "warning" : "note"}, {"text", *event->summary()}});
    return list;
}

void Messages::show() {
    std::scoped_lock lock(_mutex);
    const QVStatusLog::Events events = _log->events();
    for (; _shown < events.size(); ++_shown) {
        const QVStatusEvent& event = *events[_shown];
        if (_quiet) continue;
        if (event.isWarning())
            write(kYellow, "warning", *event.summary());
        else if (_verbose)
            write({}, "note", *event.summary());
    }
}

void Messages::showError(std::string_view text) {
    if (_verbose) show();
    write(kRed, "error", singleLine(text));
}

void Messages::write(std::string_view colour, std::string_view kind, std::string_view text) {
    const bool coloured = !colour.empty() && errorsTakeColour();
    std::cerr << "vellicor: " << (coloured ? colour : "") << kind << ":" << (coloured ? kPlain : "") << ' ' << text
              << '\n';
}

}  // namespace vellicor::cli
