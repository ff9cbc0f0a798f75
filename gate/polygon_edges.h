// The edges of a polygon and its rectangle, as OVPloygon and the polygon gate form them.
#pragma once

#include <span>

#include <orvane/OVPloygon.h>

#include "foundation/instruction_set.h"

namespace Orvane {

/// Fills `edges`, one for each vertex, with the edges that end there, highest `MaxY` first.
void BuildEdges(std::span<const OVPoint> vertices, OVPloygonEigenValue* edges);

/// The rectangle around vertex 0, which must exist, and the others.
OVRect RectangleAround(const OVPoint* vertices, int count);

/// Whether the edge is crossed on the way from the point to the right.
ORVANE_KERNEL_INLINE bool IsCrossed(const OVPloygonEigenValue& edge, float x, float y) {
    return static_cast<bool>(
        static_cast<int>(y >= edge.MinY) & static_cast<int>(y < edge.MaxY) &
        static_cast<int>(static_cast<double>(y) * edge.Slope + edge.Intercept > static_cast<double>(x)));
}

}  // namespace Orvane
