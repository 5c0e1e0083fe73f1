// cli/document_input.h — the document that a command works on.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "vellicor/model/forward.h"

namespace vellicor::cli {

class Messages;

struct Document {
    std::shared_ptr<SQLContainer> container;    ///< never null
    std::string name;                           ///< for messages: the path as it was given, or "standard input"
    std::string stem;                           ///< what files made from the document are called
    std::optional<std::filesystem::path> file;  ///< null for standard input
    bool recovered = false;                     ///< it was damaged and has been repaired while reading
};

/// Reads a file, or standard input for "-". A repair becomes a warning; whatever cannot be read is a `Failure`.
[[nodiscard]] Document readDocument(const std::string& argument, Messages& messages);

}  // namespace vellicor::cli
