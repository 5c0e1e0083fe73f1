// vellicor/types/type_sizes.h — which types must carry a size, as a dialect knows it.
#pragma once

#include <memory>
#include <string_view>

#include "vellicor/platform/text.h"

namespace vellicor {

/// What types ask of a dialect. Every exporter answers it.
class TypeSizes {
public:
    virtual ~TypeSizes() = default;
    /// The size that a type must carry; null when it needs none.
    [[nodiscard]] virtual OptionalText requiredSizeForType(std::string_view /*type*/) { return std::nullopt; }
};

/// The dialect of that name (any case), the generic one when none has it; defined beside the registry of dialects.
[[nodiscard]] std::shared_ptr<TypeSizes> typeSizesOfDialect(std::string_view dialect);

}  // namespace vellicor
