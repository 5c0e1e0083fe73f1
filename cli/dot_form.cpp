// cli/dot_form.cpp — the diagram in Graphviz's language.
#include "cli/diagram.h"
#include "cli/forms.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

/// Text inside a label that is written as markup. An empty one would be an error there.
std::string markup(std::string_view raw) {
    std::string all;
    for (const char c : raw) {
        switch (c) {
            case '&': all += "&amp;"; break;
            case '<': all += "&lt;"; break;
            case '>': all += "&gt;"; break;
            case '"': all += "&quot;"; break;
            case '\n': all += "<BR/>"; break;
            default: all += c;
        }
    }
    return all.empty() ? "&#160;" : all;
}

/// A quoted text in which neither backslashes nor entities mean anything.
std::string quotedText(std::string_view raw) {
    std::string all = "\"";
    for (const char c : raw) {
        switch (c) {
            case '"': all += "\\\""; break;
            case '\\': all += "\\\\"; break;
            case '&': all += "&amp;"; break;
            case '\n': all += "\\n"; break;
            default: all += c;
        }
    }
    return all + '"';
}

std::string node(const DiagramTable& table, std::size_t index) {
    std::string rows;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        const DiagramColumn& entry = table.columns[column];
        const std::string name = markup(entry.name);
        rows += text(R"(<TR><TD PORT="c%lu" ALIGN="LEFT">%@ %@</TD></TR>)", column,
                     entry.primaryKey ? text("<U>%@</U>", name) : name, markup(entry.type));
    }
    static constexpr const char* kTable = R"(<TABLE BORDER="0" CELLBORDER="1" CELLSPACING="0">)";
    return text("    t%lu [label=<%@<TR><TD BGCOLOR=\"lightgrey\"><B>%@</B></TD></TR>%@</TABLE>>];\n", index, kTable,
                markup(table.name), rows);
}

/// At the column when there is one, at the table when there are several or none.
std::string end(std::size_t table, const std::vector<std::size_t>& columns) {
    return columns.size() == 1 ? text("t%lu:c%lu", table, columns.front()) : text("t%lu", table);
}

}  // namespace

std::string dotForm(const Diagram& diagram, std::string_view title) {
    std::string all = text("digraph %@ {\n    graph [rankdir=LR];\n    node [shape=plain];\n", quotedText(title));
    for (std::size_t index = 0; index < diagram.tables.size(); ++index) all += node(diagram.tables[index], index);
    for (const DiagramArrow& arrow : diagram.arrows)
        all += text("    %@ -> %@ [label=%@];\n", end(arrow.from, arrow.fromColumns), end(arrow.to, arrow.toColumns),
                    quotedText(arrow.name));
    return all + "}\n";
}

}  // namespace vellicor::cli
