// cli/document_input.h — the document that a command works on.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "cli/database_source.h"
#include "vellicor/model/forward.h"

namespace vellicor::cli {

class Messages;

struct Document {
    std::shared_ptr<SQLContainer> container;    ///< never null
    std::string name;                           ///< for messages: the path as it was given, or "standard input"
    std::string stem;                           ///< what files made from the document are called
    std::optional<std::filesystem::path> file;  ///< null for standard input and for servers
    bool recovered = false;                     ///< it was damaged and has been repaired while reading
};

/// Reads a file, standard input for "-", a database by its URL, or a file of SQL. A repair becomes a warning, and so
/// does what a document cannot hold; whatever cannot be read is a `Failure`.
[[nodiscard]] Document readDocument(const std::string& argument, Messages& messages, const SourceOptions& options = {});

}  // namespace vellicor::cli
