// vellicor/database/catalog_document.h — a document made of what a database holds.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vellicor/database/catalog.h"
#include "vellicor/model/forward.h"
#include "vellicor/util/rectangle.h"

namespace vellicor {

struct CatalogDocument {
    std::shared_ptr<SQLContainer> container;  ///< never null
    std::vector<std::string> omissions;       ///< a line for each thing that the document does not hold
};

/// Uids are made from qualified names, places from references: the same catalog gives the same document, byte for byte.
[[nodiscard]] CatalogDocument documentOf(const Catalog& catalog);

/// The size of a table or view on the canvas, by what it holds.
[[nodiscard]] Size canvasSizeOf(const SQLTable& table);

/// A name from outside as the model's setters take it: they take off quotes.
[[nodiscard]] std::string modelName(std::string_view name);

}  // namespace vellicor
