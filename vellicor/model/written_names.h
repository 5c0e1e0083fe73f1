// vellicor/model/written_names.h — how names stand in documents.
#pragma once

#include <string>
#include <string_view>

#include "vellicor/model/forward.h"

namespace vellicor {

/// The preference "losslessDocuments".
[[nodiscard]] bool writesLosslessDocuments();

// The names below are written plainly; in lossless documents those are quoted that the reader would unquote or split
// otherwise.

/// Of a component, or of a schema.
[[nodiscard]] std::string writtenName(const std::string& name);
/// A table's base name, in its own element.
[[nodiscard]] std::string writtenBaseName(const std::string& name);
/// A table's name with its schema, in references to it.
[[nodiscard]] std::string writtenQualifiedName(const SQLTable& table);

}  // namespace vellicor
