// cli/result.h — handing over what a command made.
#pragma once

#include <string_view>

#include "cli/session.h"
#include "vellicor/platform/value.h"

namespace vellicor::cli {

class Output;
struct Document;

/// Under --strict, a `Failure` when there is any warning; the warnings are shown before it.
void requireClean(Messages& messages, const ReportOptions& report);

/// Writes `text` to its place. With --json the facts, the document, the output and all lines of the run go to standard
/// output as a map, in which "text" holds the text when it has no file of its own.
void deliver(Messages& messages, const ReportOptions& report, const Document& document, const Output& output,
             std::string_view text, Value::Map facts);

/// The map as indented JSON on standard output.
void writeJson(Value::Map map);

}  // namespace vellicor::cli
