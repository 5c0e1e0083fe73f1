// cli/document_facts.h — what a document holds, in numbers.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "vellicor/model/forward.h"
#include "vellicor/platform/value.h"

namespace vellicor::cli {

/// Objects by the name of their class, components of tables included.
[[nodiscard]] std::map<std::string, std::int64_t> countsByClass(const SQLContainer& document);
[[nodiscard]] Value::Map jsonCounts(const std::map<std::string, std::int64_t>& counts);

}  // namespace vellicor::cli
