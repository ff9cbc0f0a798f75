// A point of a plot, in the units of its two signals.
#pragma once

#include <orvane/Platform.h>

namespace Orvane {

/// A point of a plot. NaN and infinities are kept as they are.
struct ORVANE_API OVPoint {
    float x;  ///< value of the signal on the horizontal axis
    float y;  ///< value of the signal on the vertical axis

    /// The origin.
    OVPoint();
    /// A point with these coordinates.
    OVPoint(float x, float y);
    OVPoint(const OVPoint& other);
    void operator=(const OVPoint& other);

    /// Replaces both coordinates.
    void SetValue(float x, float y);
    void SetValue(const OVPoint& other);

    /// Whether both coordinates are equal; NaN equals nothing.
    bool IsEqual(float x, float y) const;
    bool IsEqual(const OVPoint& other) const;

    /// Whether both coordinates differ by at most `tolerance`, the differences taken in float; NaN differs
    /// from everything.
    bool IsEqual(float x, float y, float tolerance) const;
    bool IsEqual(const OVPoint& other, float tolerance) const;
};

}  // namespace Orvane
