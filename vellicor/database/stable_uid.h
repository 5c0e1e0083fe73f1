// vellicor/database/stable_uid.h — identifiers that are made from names.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace vellicor {

/// The same names in the same order give the same identifier, everywhere and always; its form is a UUID's.
[[nodiscard]] std::string stableUid(std::initializer_list<std::string_view> names);

}  // namespace vellicor
