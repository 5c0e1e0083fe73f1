// cli/document_facts.cpp — counting.
#include "cli/document_facts.h"

#include "vellicor/model/container.h"
#include "vellicor/model/table.h"

namespace vellicor::cli {

std::map<std::string, std::int64_t> countsByClass(const SQLContainer& document) {
    std::map<std::string, std::int64_t> counts;
    for (const auto& object : document.objectList()) {
        ++counts[std::string(object->getClassType())];
        const auto* table = as<SQLTable>(object.get());
        if (!table) continue;
        for (const auto& component : *table->lockedFields()) ++counts[std::string(component->getClassType())];
    }
    return counts;
}

Value::Map jsonCounts(const std::map<std::string, std::int64_t>& counts) {
    Value::Map map;
    for (const auto& [name, count] : counts) map.emplace(name, Value::integer(count));
    return map;
}

}  // namespace vellicor::cli
