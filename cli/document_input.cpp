// cli/document_input.cpp — loading, and what its failures mean for the exit status.
#include "cli/document_input.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <vector>

#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/progress.h"
#include "vellicor/fileformat/document_file.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

std::string standardInput() {
    std::string bytes(std::istreambuf_iterator<char>(std::cin), {});
    if (std::cin.bad()) throw Failure(kNoInput, "standard input cannot be read; give the path of a file instead");
    return bytes;
}

/// ": a; b; c; and 4 more"; empty without changes.
std::string listed(const std::vector<std::string>& changes) {
    constexpr std::size_t kMost = 5;
    if (changes.empty()) return {};
    std::vector<std::string> shown(changes.begin(),
                                   changes.begin() + static_cast<std::ptrdiff_t>(std::min(changes.size(), kMost)));
    if (changes.size() > kMost) shown.push_back(text("and %lu more", changes.size() - kMost));
    return ": " + joined(shown, "; ");
}

LoadedDocument load(const Document& document) {
    try {
        return document.file ? loadDocument(*document.file) : loadDocumentData(standardInput(), document.name);
    } catch (const DocumentFileError& error) {
        if (error.kind() == DocumentFileError::Kind::CannotRead)
            throw Failure(kNoInput,
                          text("%@; give the path of a design document, or - for standard input", error.reason()));
        throw Failure(kUnreadable, error.reason());
    } catch (const SQLException& error) {
        throw Failure(kUnreadable, text("%@ cannot be read as a design document: %@", document.name, error.reason()));
    }
}

}  // namespace

Document readDocument(const std::string& argument, Messages& messages, const SourceOptions& options) {
    if (isDatabaseSource(argument)) return readDatabaseSource(argument, options, messages);
    Document document;
    if (argument == "-") {
        document.name = "standard input";
        document.stem = "document";
    } else {
        document.file = document.name = argument;
        document.stem = document.file->stem().string();
    }
    const Progress progress(messages, "reading " + document.name);
    messages.setDropsRepeats(true);
    LoadedDocument loaded = load(document);
    document.container = std::move(loaded.container);
    document.recovered = loaded.recovered;
    messages.setDropsRepeats(false);
    for (const std::string& element : loaded.unknownElements) messages.warning(element);
    if (loaded.recovered)
        messages.warning(text("%@ is damaged (%@) and was repaired while reading%@; check that nothing is missing",
                              document.name, loaded.damage, listed(loaded.changes)));
    return document;
}

}  // namespace vellicor::cli
