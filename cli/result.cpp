// cli/result.cpp — the last step of commands that make a text.
#include "cli/result.h"

#include "cli/document_input.h"
#include "cli/failure.h"
#include "cli/output.h"
#include "vellicor/platform/json.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

void requireClean(Messages& messages, const ReportOptions& report) {
    const std::size_t count = messages.warningCount();
    if (!report.strict || count == 0) return;
    messages.show();
    throw Failure(kFailed,
                  text("%lu %@ under --strict; nothing was written", count, count == 1 ? "warning" : "warnings"));
}

void deliver(Messages& messages, const ReportOptions& report, const Document& document, const Output& output,
             std::string_view text, Value::Map facts) {
    requireClean(messages, report);
    if (output.file() || !report.json) output.write(text);
    if (!report.json) return;
    facts["document"] = document.name;
    facts["recovered"] = Value::boolean(document.recovered);
    facts["output"] = output.file() ? Value(output.file()->string()) : Value();
    if (!output.file()) facts["text"] = text;
    facts["events"] = messages.events();
    writeJson(std::move(facts));
}

void writeJson(Value::Map map) { Output::standard().write(prettyJsonText(std::move(map)) + "\n"); }

}  // namespace vellicor::cli
