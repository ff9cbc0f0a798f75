// An axis-aligned rectangle, closed on all sides.
#pragma once

#include <orvane/OVPoint.h>
#include <orvane/Platform.h>

namespace Orvane {

struct ORVANE_API OVRect {
    float MinX;
    float MaxX;
    float MinY;
    float MaxY;

    /// All four bounds 0.
    OVRect();
    /// Deliberately not the order of the fields: callers name a corner, then the opposite one.
    OVRect(float minX, float minY, float maxX, float maxY);

    /// Whether `MinX <= x <= MaxX` and `MinY <= y <= MaxY`. NaN is outside.
    bool InRect(float x, float y) const;
    bool InRect(const OVPoint& point) const;
};

}  // namespace Orvane
