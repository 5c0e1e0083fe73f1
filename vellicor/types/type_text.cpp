// vellicor/types/type_text.cpp — names and arguments of types.
#include "vellicor/types/type_text.h"

#include <algorithm>
#include <charconv>

#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// The position behind the quoted text that starts at `position`.
std::size_t endOfLiteral(std::string_view text, std::size_t position) {
    for (std::size_t i = position + 1; i < text.size(); ++i) {
        if (text[i] == '\\') {
            ++i;
        } else if (text[i] == '\'') {
            if (i + 1 == text.size() || text[i + 1] != '\'') return i + 1;
            ++i;
        }
    }
    return text.size();
}

std::vector<std::string> words(std::string_view text) {
    std::vector<std::string> all;
    std::string word;
    for (const char c : uppercased(text) + " ") {
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r') {
            word += c;
        } else if (!word.empty()) {
            all.push_back(std::move(word));
            word.clear();
        }
    }
    return all;
}

/// Takes out "CHARACTER SET x" and its like, with what follows them.
void eraseAttributes(std::vector<std::string>& words) {
    const auto eraseAt = [&](std::size_t position, std::size_t count) {
        const auto first = words.begin() + static_cast<std::ptrdiff_t>(position);
        words.erase(first, first + static_cast<std::ptrdiff_t>(std::min(count, words.size() - position)));
    };
    for (std::size_t i = 1; i < words.size();) {
        if (words[i] == "CHARACTER" && i + 1 < words.size() && words[i + 1] == "SET")
            eraseAt(i, 3);
        else if (words[i] == "CHARSET" || words[i] == "COLLATE")
            eraseAt(i, 2);
        else if (words[i] == "SIGNED" || words[i] == "IDENTITY")
            eraseAt(i, 1);
        else
            ++i;
    }
    // A column filled with zeros shows no sign.
    if (words.size() > 1 && words.back() == "ZEROFILL") {
        words.pop_back();
        if (words.back() != "UNSIGNED") words.emplace_back("UNSIGNED");
    }
    for (std::string& word : words)
        if (word == "TIMEZONE") word = "TIME ZONE";
}

bool hasName(const TypeRow& row, std::string_view name) {
    for (std::size_t start = 0; start <= row.names.size();) {
        const std::size_t end = std::min(row.names.find('|', start), row.names.size());
        const std::string_view own = row.names.substr(start, end - start);
        const std::size_t mark = own.find('%');
        if (mark == std::string_view::npos ? own == name
                                           : name.size() + 1 == own.size() && name.starts_with(own.substr(0, mark)) &&
                                                 name.substr(mark) == own.substr(mark + 1))
            return true;
        start = end + 1;
    }
    return false;
}

}  // namespace

TypeText TypeText::parsed(std::string_view type) {
    TypeText made;
    std::string name;
    int depth = 0, group = 0;
    std::string argument;
    const auto endArgument = [&] {
        if (group == 1) made.arguments.emplace_back(trimmed(argument));
        argument.clear();
    };
    for (std::size_t i = 0; i < type.size();) {
        const char c = type[i];
        if (c == '\'' && depth > 0) {
            const std::size_t end = endOfLiteral(type, i);
            argument += type.substr(i, end - i);
            i = end;
            continue;
        }
        ++i;
        if (c == '(' && depth++ == 0) {
            ++group;
            name += ' ';
        } else if (c == ')' && depth > 0 && --depth == 0) {
            endArgument();
            name += ' ';
        } else if (depth == 1 && c == ',') {
            endArgument();
        } else {
            (depth > 0 ? argument : name) += c;
        }
    }
    std::string_view base = trimmed(name);
    while (base.ends_with(']') && base.find('[') != std::string_view::npos) {
        made.isArray = true;
        base = trimmed(base.substr(0, base.rfind('[')));
    }
    std::vector<std::string> all = words(base);
    if (all.size() > 1 && all.back() == "ARRAY") {
        made.isArray = true;
        all.pop_back();
    }
    eraseAttributes(all);
    made.name = joined(all, " ");
    if (made.arguments.size() == 1 && equalIgnoringCase(made.arguments.front(), "max")) {
        made.name += "(MAX)";
        made.arguments.clear();
    }
    return made;
}

std::optional<std::uint32_t> TypeText::number(std::size_t index) const {
    if (index >= arguments.size()) return std::nullopt;
    std::uint32_t value = 0;
    const std::string& digits = arguments[index];
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc() && end != digits.data() ? std::optional(value) : std::nullopt;
}

const TypeRow* findType(TypeDialect dialect, const TypeText& type) {
    const std::span<const TypeRow> rows = typesOf(dialect);
    const auto found = std::ranges::find_if(rows, [&](const TypeRow& row) { return hasName(row, type.name); });
    return found == rows.end() ? nullptr : &*found;
}

std::string sizedName(const TypeRow& row, std::string_view size) {
    const std::string brackets = size.empty() ? std::string() : text("(%@)", size);
    const std::string_view name = row.name();
    const std::size_t mark = name.find('%');
    if (mark == std::string_view::npos) return std::string(name) + brackets;
    return text("%@%@%@", name.substr(0, mark), brackets, name.substr(mark + 1));
}

std::string literalContent(std::string_view literal) {
    const bool isQuoted = literal.size() >= 2 && literal.starts_with('\'') && literal.ends_with('\'');
    return isQuoted ? replacingAll(literal.substr(1, literal.size() - 2), "''", "'") : std::string(literal);
}

}  // namespace vellicor
