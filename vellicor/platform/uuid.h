// vellicor/platform/uuid.h — random identifiers in canonical upper-case text.
#pragma once

#include <string>

namespace vellicor {

/// A fresh random (version 4) UUID: 36 characters, upper-case hexadecimal in groups 8-4-4-4-12. Any thread may call it.
[[nodiscard]] std::string newUuidText();

}  // namespace vellicor
