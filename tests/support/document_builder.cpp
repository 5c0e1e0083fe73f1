// tests/support/document_builder.cpp — a document from one line of text.
#include "tests/support/document_builder.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"

namespace vellicor::testing {

namespace {

std::vector<std::string> split(std::string_view text, std::string_view separator) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        if (const auto part = trimmed(text.substr(start, end - start)); !part.empty()) parts.emplace_back(part);
        start = end + separator.size();
    }
    return parts;
}

std::string plain(std::string_view text) { return replacingAll(text, "~", " "); }

/// "name(inner)" as its two halves; the inner half is empty without parentheses.
std::pair<std::string, std::string> called(std::string_view text) {
    const std::size_t open = text.find('(');
    if (open == std::string_view::npos) return {std::string(trimmed(text)), ""};
    return {std::string(trimmed(text.substr(0, open))), std::string(text.substr(open + 1, text.rfind(')') - open - 1))};
}

std::string valueOf(const std::string& word) { return plain(word.substr(word.find('=') + 1)); }

struct Link {
    std::function<void(SQLContainer&)> make;  // run once all tables exist
};

void addColumn(SQLTable& table, const std::string& part, std::vector<Link>& links) {
    const std::vector<std::string> words = split(part, " ");
    auto column = SQLField::fieldWithName(plain(words.at(0)), plain(words.at(1)));
    for (std::size_t i = 2; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "pk") column->setPrimaryKey(true);
        else if (word == "auto") column->setAutoIncrement(true);
        else if (word == "notnull") column->setNotNull(true);
        else if (word == "unique") column->setUnique(true);
        else if (word == "indexed") column->setPropertyAsBoolean(keys::indexed, true);
        else if (word.starts_with("default=")) column->setDefaultValue(valueOf(word));
        else if (word.starts_with("expression=")) column->setDefaultValueFromParsedString(valueOf(word));
        else if (word.starts_with("check=")) column->setProperty(keys::checkConstraint, valueOf(word));
        else if (word.starts_with("comment=")) column->setComment(valueOf(word));
        else if (word.starts_with("delete=")) column->setDeleteAction(std::stoul(valueOf(word)));
        else if (word.starts_with("update=")) column->setUpdateAction(std::stoul(valueOf(word)));
        else if (word == "->") {
            const std::string target = plain(words.at(++i));
            const std::size_t dot = target.rfind('.');
            links.push_back(
                {[source = column.get(), tableName = target.substr(0, dot), columnName = target.substr(dot + 1)](
                     SQLContainer& container) { source->setFkField(field(container, tableName, columnName)); }});
        } else throw std::invalid_argument("unknown word in a column: " + word);
    }
    table.add(column);
}

void fillIndex(SQLTable& table, SQLIndex& index, const std::string& columns) {
    for (const std::string& entry : split(columns, ",")) {
        const auto [name, size] = called(entry);
        SQLField* column = table.getFieldByName(plain(name));
        if (!column) throw std::invalid_argument("no column " + name);
        index.addIndexField(*column);
        if (!size.empty()) index.setSizeForIndexEntry(*column, size);
    }
}

void addIndex(SQLTable& table, const std::string& part) {
    const auto [head, columns] = called(part);
    const std::vector<std::string> words = split(head, " ");
    auto index = SQLIndex::indexWithName(plain(words.at(1)));
    if (words.size() > 2) index->setIndexType(words[2]);
    fillIndex(table, *index, columns);
    table.add(index);
}

void addConstraint(SQLTable& table, const std::string& part) {
    const std::vector<std::string> words = split(part, " ");
    auto constraint = SQLConstraint::constraint();
    constraint->setName(plain(words.at(1)));
    if (words.at(2) == "CHECK") {
        const std::size_t open = part.find('[');
        constraint->setCheckConstraintExpression(part.substr(open + 1, part.rfind(']') - open - 1));
    } else {
        constraint->setConstraintType(words[2]);
        fillIndex(table, *constraint, called(part).second);
    }
    table.add(constraint);
}

void addKey(SQLTable& table, const std::string& part, std::vector<Link>& links) {
    const std::size_t arrow = part.find("->");
    const auto [head, sources] = called(std::string_view(part).substr(0, arrow));
    const std::string rest(trimmed(std::string_view(part).substr(arrow + 2)));
    const std::size_t close = rest.find(')');
    const auto [targetName, targets] = called(rest.substr(0, close + 1));
    auto key = SQLForeignKey::initWithName(plain(split(head, " ").at(1)));
    for (const std::string& word : split(rest.substr(close + 1), " ")) {
        if (word.starts_with("delete=")) key->setDeleteAction(std::stoul(valueOf(word)));
        else if (word.starts_with("update=")) key->setUpdateAction(std::stoul(valueOf(word)));
        else if (word == "deferrable") key->setDeferrable(true);
        else if (word == "deferred") key->setInitiallyDeferred(true);
        else throw std::invalid_argument("unknown word in a key: " + word);
    }
    table.add(key);
    links.push_back({[key = key.get(), owner = &table, target = plain(targetName), sources = split(sources, ","),
                      targets = split(targets, ",")](SQLContainer& container) {
        SQLTable* targetTable = testing::table(container, target);
        key->setTargetTable(targetTable);
        for (std::size_t i = 0; i < sources.size(); ++i)
            key->addFieldPair(owner->getFieldByName(plain(sources[i])),
                              targetTable->getFieldByName(plain(targets.at(i))));
    }});
}

}  // namespace

std::shared_ptr<SQLContainer> document(std::string_view text) {
    auto container = SQLContainer::newContainer();
    std::vector<Link> links;
    for (const std::string& description : split(text, ";;")) {
        const auto [name, parts] = called(description);
        auto made = SQLTable::tableWithName(plain(name));
        container->add(made);
        for (const std::string& part : split(parts, ";")) {
            if (part.starts_with("index ")) addIndex(*made, part);
            else if (part.starts_with("constraint ")) addConstraint(*made, part);
            else if (part.starts_with("key ")) addKey(*made, part, links);
            else addColumn(*made, part, links);
        }
    }
    for (const Link& link : links) link.make(*container);
    return container;
}

SQLTable* table(SQLContainer& container, std::string_view name) {
    return as<SQLTable>(container.getObjectByName(std::string(name), false));
}

SQLField* field(SQLContainer& container, std::string_view tableName, std::string_view name) {
    SQLTable* owner = table(container, tableName);
    return owner ? owner->getFieldByName(name) : nullptr;
}

}  // namespace vellicor::testing
