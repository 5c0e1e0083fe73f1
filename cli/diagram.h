// cli/diagram.h — a document as tables, columns and arrows: what every drawn or printed form of it shows.
#pragma once

#include <string>
#include <vector>

#include "vellicor/model/forward.h"

namespace vellicor::cli {

struct DiagramColumn {
    const SQLField* field;
    std::string name;
    std::string type;
    bool primaryKey;
    bool foreignKey;  ///< some arrow starts here
    bool notNull;     ///< a primary key is, too
    bool unique;      ///< alone
};

struct DiagramTable {
    const SQLTable* table;
    std::string name;  ///< with its schema
    std::vector<DiagramColumn> columns;
};

/// A foreign key whose target is known. Tables and columns are positions in the lists.
struct DiagramArrow {
    std::string name;
    std::size_t from;
    std::vector<std::size_t> fromColumns;
    std::size_t to;
    std::vector<std::size_t> toColumns;
    bool optional;        ///< a column of it may be null
    bool single;          ///< at most one row references the same target
    std::string actions;  ///< "on delete cascade, on update restrict"; empty without any
};

struct Diagram {
    std::vector<DiagramTable> tables;  ///< views are none; by name
    std::vector<DiagramArrow> arrows;
    std::vector<const SQLView*> views;       ///< by name
    std::vector<const SQLComment*> remarks;  ///< notes on the canvas, without framed areas
};

/// Points into the document.
[[nodiscard]] Diagram diagramOf(const SQLContainer& document);

}  // namespace vellicor::cli
