// cli/messages.cpp — collecting and showing lines.
#include "cli/messages.h"

#include <algorithm>
#include <iostream>

#include "cli/terminal.h"

namespace vellicor::cli {

namespace {

constexpr std::string_view kRed = "\033[1;31m";
constexpr std::string_view kYellow = "\033[1;33m";
constexpr std::string_view kPlain = "\033[0m";

}  // namespace

Messages::Messages() {
    _previousSink = setLogSink([this](std::string_view line) { add(levelOfLogLine(line), line); });
}

Messages::~Messages() { setLogSink(std::move(_previousSink)); }

void Messages::add(Level level, std::string_view text) {
    std::scoped_lock lock(_mutex);
    _lines.push_back({level, singleLine(text)});
}

std::size_t Messages::warningCount() const {
    std::scoped_lock lock(_mutex);
    return static_cast<std::size_t>(std::ranges::count(_lines, Level::Warning, &Line::level));
}

Value::List Messages::events() const {
    std::scoped_lock lock(_mutex);
    Value::List list;
    for (const Line& line : _lines)
        list.push_back(Value::Map{{"level", line.level == Level::Warning ? "warning" : "note"}, {"text", line.text}});
    return list;
}

void Messages::show() {
    std::scoped_lock lock(_mutex);
    for (; _shown < _lines.size(); ++_shown) {
        const Line& line = _lines[_shown];
        if (_quiet) continue;
        if (line.level == Level::Warning)
            write(kYellow, "warning", line.text);
        else if (_verbose)
            write({}, "note", line.text);
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
