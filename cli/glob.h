// cli/glob.h — patterns for names.
#pragma once

#include <string_view>

namespace vellicor::cli {

/// `*` stands for any characters, `?` for one, `[a-z]` and `[!a-z]` for one of a set; a backslash takes away the
/// meaning of the character behind it. Letters compare without regard to case, and the whole name must match.
[[nodiscard]] bool globMatches(std::string_view pattern, std::string_view name);

}  // namespace vellicor::cli
