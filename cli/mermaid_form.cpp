// cli/mermaid_form.cpp — the diagram as Mermaid's erDiagram.
#include <algorithm>
#include <unordered_set>

#include "cli/diagram.h"
#include "cli/forms.h"
#include "vellicor/model/field.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

using Words = std::unordered_set<std::string>;

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isNameCharacter(char c) { return isLetter(c) || (c >= '0' && c <= '9') || c == '_'; }

/// In double quotes; what is neither letter, digit nor harmless is written by its number.
std::string mermaidText(std::string_view raw) {
    std::string all = "\"";
    for (const char c : raw) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20)
            all += ' ';
        else if (byte >= 0x80 || isNameCharacter(c) || std::string_view(" .,:()/-+=").find(c) != std::string_view::npos)
            all += c;
        else
            all += text("#%d;", static_cast<int>(byte));
    }
    return all + '"';
}

/// One word of a column's line: a letter first, then letters, digits and underscores.
std::string word(std::string_view raw, std::string_view ifEmpty) {
    std::string all;
    for (const char c : raw) {
        if (isNameCharacter(c))
            all += c;
        else if (!all.empty() && all.back() != '_')
            all += '_';
    }
    if (all.empty()) return std::string(ifEmpty);
    if (!isLetter(all.front())) all.insert(0, "c");
    if (all == "PK" || all == "FK" || all == "UK") all += '_';
    return all;
}

/// `wanted`, with a number behind it when it is taken already.
std::string unique(const std::string& wanted, Words& taken) {
    std::string name = wanted;
    for (std::size_t number = 2; !taken.insert(name).second; ++number) name = text("%@_%lu", wanted, number);
    return name;
}

/// "DECIMAL(10-2)" for DECIMAL(10,2), "ENUM" for a list of texts: a type may hold neither commas nor quotes.
std::string typeWord(std::string_view type) {
    const auto open = type.find('(');
    const std::string_view size = open == type.npos ? std::string_view() : type.substr(open);
    const bool isNumeric = size.find_first_not_of("(), 0123456789") == size.npos;
    const std::string base = word(trimmed(type.substr(0, open)), "untyped");
    return base + (isNumeric ? replacingAll(removingCharacters(size, " "), ",", "-") : "");
}

/// Words that the grammar takes for something else where a table's name may stand.
bool isPlainName(std::string_view name) {
    static constexpr std::string_view kReserved[] = {
        "erdiagram", "title", "acctitle", "accdescr", "direction", "style",      "class", "classdef",
        "one",       "many",  "zero",     "only",     "to",        "optionally", "u",     "o"};
    return !name.empty() && isLetter(name.front()) && std::ranges::all_of(name, isNameCharacter) &&
           std::ranges::none_of(kReserved,
                                [name](std::string_view reserved) { return equalIgnoringCase(name, reserved); });
}

std::vector<std::string> entityNames(const Diagram& diagram) {
    Words taken;
    for (const DiagramTable& table : diagram.tables)
        if (isPlainName(table.name)) taken.insert(table.name);
    std::vector<std::string> names;
    for (const DiagramTable& table : diagram.tables) {
        const std::string made = word(table.name, "table");
        names.push_back(isPlainName(table.name) ? table.name
                                                : unique(isPlainName(made) ? made : "table_" + made, taken));
    }
    return names;
}

std::string columnLine(const DiagramColumn& column, Words& taken) {
    const std::string type = typeWord(column.type);
    const std::string name = unique(word(column.name, "column"), taken);
    std::vector<std::string> keys;
    if (column.primaryKey) keys.emplace_back("PK");
    if (column.foreignKey) keys.emplace_back("FK");
    if (column.unique && !column.primaryKey) keys.emplace_back("UK");
    std::vector<std::string> remarks;  // what the words could not say
    if (name != column.name) remarks.push_back(column.name);
    if (type != column.type && !column.type.empty()) remarks.push_back(column.type);
    const std::string comment = column.field->getComment();
    if (!trimmed(comment).empty()) remarks.emplace_back(trimmed(comment));
    std::string line = text("        %@ %@", type, name);
    if (!keys.empty()) line += " " + joined(keys, ", ");
    if (!remarks.empty()) line += " " + mermaidText(joined(remarks, ": "));
    return line + "\n";
}

}  // namespace

std::string mermaidForm(const Diagram& diagram) {
    const std::vector<std::string> names = entityNames(diagram);
    std::string all = "erDiagram\n";
    for (std::size_t index = 0; index < names.size(); ++index) {
        const DiagramTable& table = diagram.tables[index];
        all += "    " + names[index] + (names[index] == table.name ? "" : "[" + mermaidText(table.name) + "]") + " {\n";
        Words taken;
        for (const DiagramColumn& column : table.columns) all += columnLine(column, taken);
        all += "    }\n";
    }
    for (const DiagramArrow& arrow : diagram.arrows)
        all += text("    %@ %@--%@ %@ : %@\n", names[arrow.to], arrow.optional ? "|o" : "||",
                    arrow.single ? "o|" : "o{", names[arrow.from], mermaidText(arrow.name));
    return all;
}

}  // namespace vellicor::cli
