// vellicor/database/catalog_reader.cpp — which reader serves an engine.
#include "vellicor/database/catalog_reader.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "vellicor/database/connection.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

template <class List>
void sortByName(List& list) {
    std::ranges::stable_sort(list, {}, [](const auto& item) -> const std::string& { return item.name; });
}
template <class List>
void sortByQualifiedName(List& list) {
    std::ranges::stable_sort(list, {}, [](const auto& item) { return std::tie(item.schema, item.name); });
}

}  // namespace

Catalog readCatalog(DatabaseConnection& connection) {
    switch (connection.url().engine) {
        case DatabaseEngine::SQLite: return readSQLiteCatalog(connection);
        case DatabaseEngine::PostgreSQL: return readPostgreSQLCatalog(connection);
        case DatabaseEngine::MySQL: return readMySQLCatalog(connection);
    }
    return {};
}

void sortCatalog(Catalog& catalog) {
    sortByQualifiedName(catalog.tables);
    sortByQualifiedName(catalog.views);
    for (CatalogTable& table : catalog.tables) {
        sortByName(table.uniques);
        sortByName(table.checks);
        sortByName(table.foreignKeys);
        sortByName(table.indexes);
    }
}

CatalogDefault catalogDefaultOf(std::string content, std::string_view literal) {
    // What exporters might take for something else than a text stays a literal.
    static constexpr std::array<std::string_view, 10> kWords{
        "null",      "true",           "false",  "now", "current_date", "current_time", "current_timestamp",
        "localtime", "localtimestamp", "curdate"};
    static constexpr std::string_view kMarks = " _.,:;/@+-";
    const auto isPlain = [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte >= 0x80 || ((byte | 0x20) >= 'a' && (byte | 0x20) <= 'z') || isDigit(c) ||
               kMarks.find(c) != kMarks.npos;
    };
    const bool isValue = !content.empty() && trimmed(content) == content && std::ranges::all_of(content, isPlain) &&
                         std::ranges::find(kWords, lowercased(content)) == kWords.end();
    if (isValue) return {std::move(content), false};
    return {std::string(trimmed(literal)), true};
}

}  // namespace vellicor
