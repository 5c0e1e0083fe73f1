// vellicor/migration/document_shape.h — what a document's create script makes in a dialect.
#pragma once

#include <string>

#include "vellicor/migration/database_shape.h"
#include "vellicor/migration/migration_dialect.h"

namespace vellicor {

/// Exports the document with the dialect's exporter, the preferences as they are, and reads the script. Columns and
/// tables know their objects. The user's own statements are not read; their order of objects is the script's.
[[nodiscard]] DatabaseShape shapeOfDocument(SQLContainer& document, const MigrationDialect& dialect);

}  // namespace vellicor
