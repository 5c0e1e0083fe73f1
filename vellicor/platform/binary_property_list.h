// vellicor/platform/binary_property_list.h — a look at the shape of a binary property list before it is read.
#pragma once

#include <string_view>

namespace vellicor {

/// True when the bytes start as the binary form does.
[[nodiscard]] bool isBinaryPropertyList(std::string_view bytes);
/// False when references lead out of the file, when the nesting is deeper than `deepest` (a cycle is), or when shared
/// parts would multiply to a million values: reading such a list would end neither in time nor in memory.
[[nodiscard]] bool binaryPropertyListIsSound(std::string_view bytes, int deepest);

}  // namespace vellicor
