// vellicor/dialects/type_replacer.cpp — renaming a column type across a whole document.
#include "vellicor/dialects/type_replacer.h"

#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/table.h"

namespace vellicor {

void SQLTypeReplacer::replaceType(std::string_view oldType, std::string_view newType, SQLContainer& container) {
    replaceContainerTypes(container, {{std::string(oldType), std::string(newType)}});
}

void SQLTypeReplacer::replaceContainerTypes(SQLContainer& container, const ReplacementMap& replacements) {
    for (const auto& object : container.objectList()) {
        const auto* table = as<SQLTable>(object.get());
        if (!table) continue;
        for (const auto& component : table->fields()) {
            auto* field = as<SQLField>(component.get());
            if (!field) continue;
            auto found = replacements.find(field->getType());
            if (found != replacements.end()) field->setType(found->second);
        }
    }
}

}  // namespace vellicor
