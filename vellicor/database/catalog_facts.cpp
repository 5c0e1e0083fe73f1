// vellicor/database/catalog_facts.cpp — catalogs as lines.
#include "vellicor/database/catalog_facts.h"

#include <algorithm>
#include <map>

#include "vellicor/database/sql_scanner.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// Collects words, each with its label, unless they are empty.
class FactLine {
public:
    explicit FactLine(std::string start) : _line(std::move(start)) {}
    FactLine& add(std::string_view label, std::string_view value) {
        if (!value.empty()) _line += text(" %@%@", label, value);
        return *this;
    }
    FactLine& add(std::string_view words, bool holds) {
        if (holds) _line += text(" %@", words);
        return *this;
    }
    FactLine& add(const std::vector<std::string>& names) {
        _line += text(" (%@)", joined(names, ", "));
        return *this;
    }
    [[nodiscard]] std::string words() const { return _line; }

private:
    std::string _line;
};

std::string factLineOf(const CatalogColumn& column) {
    FactLine line(text("column %@ %@", column.name, lowercased(column.type)));
    line.add("not null", column.notNull).add("counts", column.autoIncrement).add("identity ", column.identity);
    if (column.defaultValue)
        line.add(column.defaultValue->isExpression ? "default " : "default value ", column.defaultValue->text);
    line.add("generated ", column.generated).add("", column.generatedKind);
    line.add("character set ", column.characterSet).add("collation ", column.collation);
    line.add("on update ", column.onUpdate).add("comment ", column.comment);
    return line.words();
}

FactLine& addDeferral(FactLine& line, bool deferrable, bool initiallyDeferred) {
    return line.add("deferrable", deferrable).add("initially deferred", initiallyDeferred);
}

std::string factLineOf(std::string_view kind, const CatalogKey& key) {
    FactLine line{std::string(kind)};
    line.add("", key.name).add(key.columns).add("nulls not distinct", key.nullsNotDistinct);
    if (!key.included.empty()) line.add("include", true).add(key.included);
    addDeferral(line, key.deferrable, key.initiallyDeferred).add("comment ", key.comment);
    return line.words();
}

std::string factLineOf(const CatalogForeignKey& key) {
    FactLine line("foreign key");
    line.add("", key.name).add(key.columns);
    line.add("references ", key.targetSchema.empty() ? key.targetTable : key.targetSchema + "." + key.targetTable);
    line.add(key.targetColumns);
    line.add("on delete ", key.deleteAction ? std::to_string(key.deleteAction) : std::string());
    line.add("on update ", key.updateAction ? std::to_string(key.updateAction) : std::string());
    line.add("match ", key.match);
    addDeferral(line, key.deferrable, key.initiallyDeferred).add("comment ", key.comment);
    return line.words();
}

std::string factLineOf(const CatalogIndex& index) {
    FactLine line("index");
    line.add("", index.name).add("", index.type).add("using ", index.method);
    std::vector<std::string> parts;
    for (const CatalogIndexPart& part : index.parts) {
        FactLine one(part.column.empty() ? text("(%@)", singleLineSql(part.expression)) : part.column);
        if (!part.size.empty()) one.add("", text("(%@)", part.size));
        parts.push_back(one.add("", part.options).words());
    }
    line.add(parts);
    if (!index.included.empty()) line.add("include", true).add(index.included);
    line.add("where ", index.condition)
        .add("nulls not distinct", index.nullsNotDistinct)
        .add("comment ", index.comment);
    return line.words();
}

template <class Object>
void compareObjects(const std::vector<Object>& expected, const std::vector<Object>& actual, std::string_view kind,
                    std::vector<std::string>& lines) {
    const auto nameOf = [&](const Object& object) {
        return text("%@ %@", kind, object.schema.empty() ? object.name : object.schema + "." + object.name);
    };
    std::map<std::string, const Object*> rest;
    for (const Object& object : actual) rest.emplace(nameOf(object), &object);
    for (const Object& object : expected) {
        const std::string name = nameOf(object);
        const auto found = rest.find(name);
        if (found == rest.end()) {
            lines.push_back(name + " is missing");
            continue;
        }
        std::vector<std::string> wanted = factsOf(object);
        std::vector<std::string> there = factsOf(*found->second);
        rest.erase(found);
        if (wanted == there) continue;
        for (const std::string& fact : wanted)
            if (std::ranges::find(there, fact) == there.end()) lines.push_back(text("%@: %@ is missing", name, fact));
        for (const std::string& fact : there)
            if (std::ranges::find(wanted, fact) == wanted.end())
                lines.push_back(text("%@: %@ is not expected", name, fact));
    }
    for (const auto& [name, object] : rest) lines.push_back(name + " is not expected");
}

}  // namespace

std::vector<std::string> factsOf(const CatalogTable& table) {
    std::vector<std::string> facts;
    FactLine own("table");
    own.add("engine ", table.engine).add("character set ", table.characterSet).add("collation ", table.collation);
    own.add("tablespace ", table.tablespace).add("options ", table.options).add("comment ", table.comment);
    facts.push_back(own.words());
    for (const CatalogColumn& column : table.columns) facts.push_back(factLineOf(column));
    if (table.primaryKey) facts.push_back(factLineOf("primary key", *table.primaryKey));
    const std::size_t behindColumns = facts.size();
    for (const CatalogKey& key : table.uniques) facts.push_back(factLineOf("unique", key));
    for (const CatalogCheck& check : table.checks)
        facts.push_back(FactLine("check")
                            .add("", check.name)
                            .add("", text("(%@)", check.expression))
                            .add("comment ", check.comment)
                            .words());
    for (const CatalogForeignKey& key : table.foreignKeys) facts.push_back(factLineOf(key));
    for (const CatalogIndex& index : table.indexes) facts.push_back(factLineOf(index));
    std::sort(facts.begin() + static_cast<std::ptrdiff_t>(behindColumns), facts.end());
    return facts;
}

std::vector<std::string> factsOf(const CatalogView& view) {
    FactLine line(view.isMaterialized ? "materialized view" : "view");
    if (view.listsColumns) line.add(view.columns);
    return {line.add("comment ", view.comment).add("as ", singleLineSql(view.query)).words()};
}

std::vector<std::string> differences(const Catalog& expected, const Catalog& actual) {
    std::vector<std::string> lines;
    compareObjects(expected.tables, actual.tables, "table", lines);
    compareObjects(expected.views, actual.views, "view", lines);
    return lines;
}

}  // namespace vellicor
