// cli/log_lines.cpp — telling notes from warnings.
#include "cli/log_lines.h"

#include <algorithm>

#include "vellicor/platform/text.h"

namespace vellicor::cli {

namespace {

/// How lines begin that report progress or the state of a comparison. Everything that is not here concerns the user.
constexpr std::string_view kInformation[] = {
    "[NOTE]",
    "Note:",
    "NOTE:",
    // alter scripts and their comparisons
    "alter index called",
    "altering ",
    "[FOREIGN KEY MATCH]",
    "[FOREIGN KEY MISMATCH]",
    "|| DROPPING indexed property",
    "[INDEXED FIELD]",
    "dropIndexName = ",
    "canDropIndex = ",
    "C1 - DropIndexInstruction",
    "Adding fk Index",
    "type types are synonymous",
    "newField type = ",
    // references while a document is read, and their graph
    "referenceList = ",
    "source = ",
    "no subgraphs",
    "Root [type:",
    "updating foreign key",
    "need to rebuild:",
    // exports, repairs and plug-ins that went well
    "Exporting to ",
    "SQLContainer debug",
    "FIX: ",
    "Error occurred during parsing :",
    "recovery mode: ",
    "Plugin Type: ",
    "Loaded Plugins:",
    // what is drawn on the canvas has neither SQL nor a name in any dialect
    "No method available: exportSQLComment:",
    "No method available: getCanonicalNameSQLComment:",
    "No method available: getCanonicalNameSQLCanvasArea:",
};

/// What such lines hold between the two things that they compare.
constexpr std::string_view kComparisons[] = {" != ", " <-|-> "};

}  // namespace

Level levelOfLogLine(std::string_view line) {
    const std::string_view text = trimmed(line);
    const auto begins = [text](std::string_view start) { return text.starts_with(start); };
    const auto holds = [text](std::string_view part) { return text.find(part) != text.npos; };
    return std::ranges::any_of(kInformation, begins) || std::ranges::any_of(kComparisons, holds) ? Level::Note
                                                                                                 : Level::Warning;
}

std::string singleLine(std::string_view text) {
    std::string line;
    bool gap = false;
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            gap = !line.empty();
            continue;
        }
        if (gap && line.back() != ' ' && c != ' ') line += ' ';
        gap = false;
        line += c;
    }
    return std::string(trimmed(line));
}

}  // namespace vellicor::cli
