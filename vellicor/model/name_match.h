// vellicor/model/name_match.h — is a name taken, and which is the next free one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "vellicor/model/name_scope.h"
#include "vellicor/platform/text.h"

namespace vellicor {

/// A name cut for numbering: `orders_fk_2` is `orders`, `2` and `fk`.
struct IncrementingNameParts {
    std::string namePart;
    OptionalText numberPart;  // null when the name carries no number
    OptionalText suffixPart;  // "fk" or null
    bool operator==(const IncrementingNameParts&) const = default;
};

/// Unique names by numbering. The two ways of finding a free name differ on purpose; see each.
class SQLNameMatch {
public:
    /// A free name for an object among its siblings (itself left out). Numbers are looked for behind a last underscore.
    /// With `canAddSchema` names are compared qualified by the object's schema; without it a name that differs from a
    /// taken one only in case counts as free.
    [[nodiscard]] static std::string getValidNameForObject(const SQLObject& object, const OptionalText& originalName,
                                                           const NameScope& container, bool canAddSchema);
    /// A free name among all elements. Splits at any last underscore: a taken `my_table` becomes `my_0`.
    [[nodiscard]] static std::string getValidName(const OptionalText& name, const NameScope& container);
    [[nodiscard]] static bool isObjectNamePresent(std::string_view name, const NameScope& container);
    /// The same with one object left out.
    [[nodiscard]] static bool isObjectNamePresent(std::string_view name, const NameScope& container,
                                                  const SQLObject* curObject);
    /// The lower-case key by which a name is compared, with the object's schema in front where that applies.
    [[nodiscard]] static std::string compNameWithSchema(std::string_view name, const SQLObject& object);
    [[nodiscard]] static IncrementingNameParts namePartsForIncrementing(std::string_view name);
};

}  // namespace vellicor
