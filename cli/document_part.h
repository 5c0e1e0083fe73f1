// cli/document_part.h — a document reduced to some of its tables and views.
#pragma once

#include "cli/session.h"
#include "vellicor/model/forward.h"

namespace vellicor::cli {

/// Removes the tables and views that do not match. Foreign keys to them go, too, each with a warning; columns keep the
/// types that such a key forced on them. What else names a table that is gone, a view's query or the document's own
/// SQL, stays as it is and becomes a warning. Patterns that nothing matches are a `Failure`.
void keepPart(SQLContainer& document, const PartOptions& options, Messages& messages);

}  // namespace vellicor::cli
