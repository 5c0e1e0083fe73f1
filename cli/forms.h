// cli/forms.h — a document in the forms that other programs read.
#pragma once

#include <string>
#include <string_view>

namespace vellicor::cli {

struct Diagram;

/// A data dictionary: tables with their columns, keys, indexes and comments; views; remarks.
[[nodiscard]] std::string markdownForm(const Diagram& diagram, std::string_view title);
/// An entity-relationship diagram: tables, columns, and a line for each foreign key.
[[nodiscard]] std::string mermaidForm(const Diagram& diagram);
/// A directed graph: a node for each table with a row for each column, an edge for each foreign key.
[[nodiscard]] std::string dotForm(const Diagram& diagram, std::string_view title);

}  // namespace vellicor::cli
