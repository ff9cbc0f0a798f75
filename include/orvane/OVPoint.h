// A point of a plot, in the units of its two signals.
#pragma once

#include <orvane/Platform.h>

namespace Orvane {

struct ORVANE_API OVPoint {
    float x;
    float y;

    /// The origin.
    OVPoint();
    OVPoint(float x, float y);
    OVPoint(const OVPoint& other);
    void operator=(const OVPoint& other);

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
