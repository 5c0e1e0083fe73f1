// vellicor/migration/type_change.h — what a change of a column's type does to the values that are there.
#pragma once

#include <string>
#include <string_view>

namespace vellicor {

struct TypeChange {
    enum class Effect { None, Widens, MayFail, LosesData };
    Effect effect = Effect::None;
    std::string reason;  ///< empty for `None` and `Widens`
};

/// By the families of types that dialects share; a pair that is not known may fail.
[[nodiscard]] TypeChange typeChange(std::string_view before, std::string_view after);

}  // namespace vellicor
