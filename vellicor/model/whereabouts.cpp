// vellicor/model/whereabouts.cpp — saying which object of a document is meant.
#include "vellicor/model/whereabouts.h"

#include <algorithm>
#include <iterator>

#include "vellicor/model/object.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::pair<std::string_view, std::string_view> kObjectWords[] = {
    {"SQLTable", "table"},
    {"SQLView", "view"},
    {"SQLViewEntry", "row"},
    {"SQLField", "column"},
    {"SQLIndex", "index"},
    {"SQLConstraint", "constraint"},
    {"SQLForeignKey", "foreign key"},
    {"SQLForeignKeyEntry", "pair of columns"},
    {"SQLIndexEntry", "column of an index"},
    {"SQLComment", "comment"},
    {"SQLCanvasArea", "canvas area"},
    {"SQLObjectLabel", "label"},
    {"SQLSchema", "schema"},
    {"SQLContainer", "document"},
    {"SQLDocumentInfo", "document info"},
};

std::string wordAndName(const SQLObject& object) {
    const std::string_view type = object.classInfo().name;
    const auto* known = std::ranges::find(kObjectWords, type, &std::pair<std::string_view, std::string_view>::first);
    const std::string_view word = known == std::end(kObjectWords) ? type : known->second;
    const std::string name = object.getName();
    return name.empty() ? std::string(word) : text("%@ %@", word, name);
}

}  // namespace

std::string whereabouts(const SQLObject& object) {
    std::string where = wordAndName(object);
    if (const SQLObject* holder = object.container(); holder && as<const SQLTable>(holder))
        where += text(" of %@", wordAndName(*holder));
    if (object.sourceLine() > 0) where += text(", line %d", object.sourceLine());
    return where;
}

}  // namespace vellicor
