// vellicor/export/runnable/script_losses.cpp — what a document says and its script does not carry.
#include "vellicor/export/runnable/script_losses.h"

#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::string_view kindOfLost(const SQLObject& object) {
    if (as<const SQLView>(&object)) return "view";
    if (as<const SQLTable>(&object)) return "table";
    if (as<const SQLField>(&object)) return "column";
    if (as<const SQLForeignKey>(&object)) return "foreign key";
    if (as<const SQLConstraint>(&object)) return "constraint";
    return as<const SQLIndex>(&object) ? "index" : "object";
}

}  // namespace

void ScriptLosses::add(const SQLObject& object, std::string_view what, std::string_view why) {
    const auto* component = as<const SQLTableComponent>(&object);
    const SQLTable* table = component ? component->parentTable() : nullptr;
    const std::string place = table ? table->getName() + "." : std::string();
    _list.push_back(
        {text("%@ %@%@", kindOfLost(object), place, object.getName()), std::string(what), std::string(why)});
}

}  // namespace vellicor
