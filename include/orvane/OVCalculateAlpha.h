// The width of an asinh axis: from the spread of the data near zero, or from where a value is to be shown.
#pragma once

#include <vector>

#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Alpha is a width in data units: a value v stands at asinh(v / alpha).
class ORVANE_API OVCalculateAlpha {
public:
    /// The multiple of the robust SD that CalculateAlpha returns, 3.0 at first. Hosts may change it at run
    /// time; nothing synchronises that with calls on other threads.
    static float AlphaCoefficient;

    /// `AlphaCoefficient` times the robust SD of the values below `threshold`, multiplied in float. 1.0 when
    /// that spread is zero, there are no such values, or the pool has no room for a copy of them. The data
    /// are not disturbed, and nothing is thrown.
    double CalculateAlpha(std::vector<SignalSection*>& sections, float threshold) const;

    /// CalculateHorizontalAlpha or CalculateVerticalAlpha.
    double CalculateCustomAlpha(float p, float q, double value, bool horizontal) const;

    /// The alpha that puts `value` at asinh coordinate t = K * (2p / q) - K, K being asinh(1): `value /
    /// sinh(t)`. Not guarded: 2p = q, where t is zero, gives an infinity, or NaN for a value of zero.
    double CalculateHorizontalAlpha(float p, float q, double value) const;

    /// The same with t = K / ((p - q) / 2p) - K, the quotient being formed in float. Deliberately not the
    /// mirror image of the horizontal form.
    double CalculateVerticalAlpha(float p, float q, double value) const;
};

}  // namespace Orvane
