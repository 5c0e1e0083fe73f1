// tests/model/documents.h — documents filled and read by names, for tests of the container.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "vellicor/model/container.h"
#include "vellicor/model/table.h"

namespace vellicor::testing {

using Document = std::shared_ptr<SQLContainer>;

inline std::shared_ptr<SQLTable> addTable(const Document& document, std::string_view name) {
    auto added = SQLTable::tableWithName(std::string(name));
    document->add(added);
    return added;
}

inline std::string names(const SQLContainer::Objects& objects) {
    std::string names;
    for (const auto& object : objects) names += (names.empty() ? "" : " ") + object->getName();
    return names;
}

}  // namespace vellicor::testing
