// An axis-aligned rectangle, closed on all sides.
#pragma once

#include <orvane/OVPoint.h>
#include <orvane/Platform.h>

namespace Orvane {

/// A rectangle of a plot and its bounds, which belong to it, in data values. With a lower bound above the
/// upper one it contains no point.
struct ORVANE_API OVRect {
    float MinX;  ///< left bound
    float MaxX;  ///< right bound
    float MinY;  ///< bottom bound
    float MaxY;  ///< top bound

    /// All four bounds 0.
    OVRect();
    /// Deliberately not the order of the fields: callers name a corner, then the opposite one.
    OVRect(float minX, float minY, float maxX, float maxY);

    /// Whether `MinX <= x <= MaxX` and `MinY <= y <= MaxY`. NaN is outside.
    bool InRect(float x, float y) const;
    bool InRect(const OVPoint& point) const;
};

}  // namespace Orvane
