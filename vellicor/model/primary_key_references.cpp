// vellicor/model/primary_key_references.cpp — gathering the references of a document by the columns they end at.
#include "vellicor/model/primary_key_references.h"

#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/table.h"

namespace vellicor {

PrimaryKeyReferences::PrimaryKeyReferences(const SQLContainer& container) {
    for (const auto& object : container.objectList()) {
        auto* table = as<SQLTable>(object.get());
        if (!table) continue;
        table->forEachComponent<SQLTableComponent>([&](SQLTableComponent& component) {
            if (auto* field = as<SQLField>(&component)) {
                if (SQLField* target = field->getFkField()) _byFirstTarget[target].push_back(field);
            } else if (auto* key = as<SQLForeignKey>(&component)) {
                const auto targets = key->targetFieldObjectList();
                if (!targets.empty()) _byFirstTarget[targets.front()].push_back(key);
            }
        });
    }
}

std::vector<SQLConnectable*> PrimaryKeyReferences::referencing(const SQLTable& table) const {
    const SQLTable::Fields primaryKey = table.primaryKeyObjectList();
    std::vector<SQLConnectable*> references;
    if (primaryKey.empty()) return references;
    auto found = _byFirstTarget.find(primaryKey.front());
    if (found == _byFirstTarget.end()) return references;
    for (SQLConnectable* reference : found->second) {
        auto* key = as<SQLForeignKey>(reference);
        if (key ? key->targetFieldObjectList() == primaryKey : primaryKey.size() == 1) references.push_back(reference);
    }
    return references;
}

}  // namespace vellicor
