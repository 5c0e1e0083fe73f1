// cli/markdown_form.cpp — the data dictionary, in GitHub's flavour of Markdown.
#include <algorithm>

#include "cli/diagram.h"
#include "cli/forms.h"
#include "vellicor/model/comment.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

bool isWordCharacter(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Whether the underscores around `position` stand inside a word, where they mean themselves.
bool isInsideWord(std::string_view text, std::size_t position) {
    const auto before = text.find_last_not_of('_', position);
    const auto behind = text.find_first_not_of('_', position);
    return before != text.npos && behind != text.npos && isWordCharacter(text[before]) && isWordCharacter(text[behind]);
}

/// The text so that no character of it means anything to Markdown, on one line.
std::string escaped(std::string_view raw) {
    const std::string_view text = trimmed(raw);
    std::string all;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        if (c == '\n' || c == '\r') {
            all += "<br>";
            continue;
        }
        const bool startsBlock = i == 0 && (c == '+' || c == '-' || c == '=');
        const bool endsNumber = (c == '.' || c == ')') && i > 0 && text.find_first_not_of("0123456789") == i;
        if (std::string_view("\\`*[]<>|~&#$!").find(c) != std::string_view::npos ||
            (c == '_' && !isInsideWord(text, i)) || startsBlock || endsNumber)
            all += '\\';
        all += c;
    }
    return all;
}

std::string row(const std::vector<std::string>& cells) { return "| " + joined(cells, " | ") + " |\n"; }

std::vector<std::string> namesOf(const DiagramTable& table, const std::vector<std::size_t>& columns) {
    std::vector<std::string> names;
    for (const std::size_t column : columns) names.push_back(table.columns[column].name);
    return names;
}

class Dictionary {
public:
    explicit Dictionary(const Diagram& diagram) : _diagram(diagram), _arrows(diagram.tables.size()) {
        for (const DiagramArrow& arrow : diagram.arrows) _arrows[arrow.from].push_back(&arrow);
    }

    std::string write(std::string_view title) {
        _text = text("# %@\n", escaped(title));
        if (!_diagram.tables.empty()) _text += "\n## Tables\n";
        for (std::size_t index = 0; index < _diagram.tables.size(); ++index) writeTable(index);
        if (!_diagram.views.empty()) _text += "\n## Views\n";
        for (const SQLView* view : _diagram.views) writeView(*view);
        if (!_diagram.remarks.empty()) _text += "\n## Remarks\n";
        for (const SQLComment* remark : _diagram.remarks) {
            if (!trimmed(remark->displayName()).empty()) _text += text("\n### %@\n", escaped(remark->displayName()));
            writeParagraph(remark->comment());
        }
        return std::move(_text);
    }

private:
    void writeParagraph(std::string_view words) {
        if (!trimmed(words).empty()) _text += text("\n%@\n", escaped(words));
    }

    void writeTable(std::size_t index) {
        const DiagramTable& table = _diagram.tables[index];
        _text += text("\n### %@\n", escaped(table.name));
        writeParagraph(table.table->getComment());
        if (!table.columns.empty()) {
            _text += "\n" + row({"Column", "Type", "Null", "Key", "Default", "Comment"}) +
                     row(std::vector<std::string>(6, "---"));
            for (const DiagramColumn& column : table.columns) writeColumn(column);
        }
        writeReferences(table, _arrows[index]);
        writeIndexes(table);
    }

    void writeColumn(const DiagramColumn& column) {
        std::vector<std::string> keys;
        if (column.primaryKey) keys.emplace_back("primary");
        if (column.foreignKey) keys.emplace_back("foreign");
        if (column.unique && !column.primaryKey) keys.emplace_back("unique");
        if (column.field->getAutoIncrement()) keys.emplace_back("auto-increment");
        _text += row({escaped(column.name), escaped(column.type), column.notNull ? "no" : "yes", joined(keys, ", "),
                      escaped(column.field->getDefaultValue()), escaped(column.field->getComment())});
    }

    void writeReferences(const DiagramTable& table, const std::vector<const DiagramArrow*>& arrows) {
        if (arrows.empty()) return;
        _text += "\nForeign keys:\n\n";
        for (const DiagramArrow* arrow : arrows) {
            const DiagramTable& target = _diagram.tables[arrow->to];
            _text += text("- %@(%@) references %@(%@)%@\n",
                          arrow->name.empty() ? std::string() : escaped(arrow->name) + ": ",
                          escaped(joined(namesOf(table, arrow->fromColumns), ", ")), escaped(target.name),
                          escaped(joined(namesOf(target, arrow->toColumns), ", ")),
                          arrow->actions.empty() ? std::string() : " " + arrow->actions);
        }
    }

    void writeIndexes(const DiagramTable& table) {
        std::string lines;
        table.table->forEachComponent<SQLIndex>([&](SQLIndex& index) {
            const auto* constraint = as<SQLConstraint>(&index);
            const std::string content = index.isCheckConstraint() && constraint
                                            ? constraint->checkConstraintExpression()
                                            : joined(index.getFieldNameListWithPrefixes(true), ", ");
            lines += text("- %@: %@ (%@)\n", escaped(index.getName()),
                          escaped(index.getIndexType().empty() ? "INDEX" : index.getIndexType()), escaped(content));
        });
        if (!lines.empty()) _text += "\nIndexes and constraints:\n\n" + lines;
    }

    void writeView(const SQLView& view) {
        _text += text("\n### %@\n", escaped(view.getName()));
        writeParagraph(view.getComment());
        const std::string query = view.queryString();
        if (trimmed(query).empty()) return;
        std::string fence = "```";
        while (query.find(fence) != std::string::npos) fence += '`';
        _text += text("\n%@sql\n%@\n%@\n", fence, trimmed(query), fence);
    }

    const Diagram& _diagram;
    std::vector<std::vector<const DiagramArrow*>> _arrows;  // by the table they start at
    std::string _text;
};

}  // namespace

std::string markdownForm(const Diagram& diagram, std::string_view title) { return Dictionary(diagram).write(title); }

}  // namespace vellicor::cli
