// vellicor/database/placement.h — places on the canvas for objects that have none.
#pragma once

#include <cstddef>
#include <vector>

#include "vellicor/util/rectangle.h"

namespace vellicor {

struct PlacedNode {
    Size size;
    std::vector<std::size_t> references;  ///< nodes that this one references
    Point location;                       ///< the result
};

/// What references each other stands in columns side by side, the referenced to the left; groups without references
/// between them follow in rows, single nodes last. Nothing overlaps, and the same nodes get the same places. The first
/// place is `origin`.
void placeNodes(std::vector<PlacedNode>& nodes, Point origin = {});

}  // namespace vellicor
