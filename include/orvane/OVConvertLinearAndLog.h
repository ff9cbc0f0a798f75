// Conversions of single values between the linear scale and the non-linear scales of plots.
#pragma once

#include <orvane/Platform.h>

namespace Orvane {

/// Two non-linear scales: the inverse hyperbolic sine with a width factor, which is what every `Log` of the
/// library's axes means, and a signed decimal logarithm.
///
/// The inverse hyperbolic sine and its inverse are this class's own formulas, whose bits pixels depend on;
/// the C library's `asinh` and `sinh` differ from them in the last places. Infinities and NaN propagate;
/// nothing is thrown.
class ORVANE_API OVConvertLinearAndLog {
public:
    /// `ln(sqrt(a * a + 1) + a)` for a = |x|, with the sign of x. A zero is returned as it is.
    double asinh(double x) const;

    /// `(e - 1 / e) * 0.5` for e = exp(|x|), with the sign of x. A zero is returned as it is.
    double sinh(double x) const;

    /// `asinh(value * factor)`. An axis of width alpha passes 1 / alpha.
    double LinearConvertToAsinh(double value, double factor) const;

    /// `sinh(value) / factor`, the way back.
    double AsinhConvertToLinear(double value, double factor) const;

    /// The decimal logarithm of |value| with the sign of `value`; 0.0 from -1 to 1, both included.
    double LinearConvertToLog10(double value) const;

    /// 10 to the power of |value| with the sign of `value`. 0.0 for zero (not 1), the image of the whole
    /// band from -1 to 1.
    double Log10ConvertToLinear(double value) const;
};

}  // namespace Orvane
