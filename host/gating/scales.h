// The transformations of Gating-ML 2.0: columns of values onto the scales that gates are drawn on. They are
// computed in double and narrowed to float once.
#pragma once

#include <optional>

namespace Host {

/// One value in, one value out. Where the formula is not defined the result is no number, and inside no gate.
struct Scale {
    enum class Kind {
        Linear,  ///< flin: (x + a) / (t + a)
        Log,     ///< flog: log10(x / t) / m + 1
        Asinh,   ///< fasinh: (asinh(x sinh(m ln 10) / t) + a ln 10) / ((m + a) ln 10)
    };

    Kind kind = Kind::Linear;
    double t = 1;
    double m = 1;
    double a = 0;
    std::optional<double> boundMin;  ///< results below become this
    std::optional<double> boundMax;  ///< results above become this
};

/// Two values in: a (x - b) / (y - c). A divisor of 0 gives an infinity or no number.
struct RatioScale {
    double a = 1;
    double b = 0;
    double c = 0;
    std::optional<double> boundMin;
    std::optional<double> boundMax;
};

/// `dest` receives the scaled values of `source`; they may be the same column.
void ApplyScale(const Scale& scale, const float* source, float* dest, int count);
void ApplyRatio(const RatioScale& ratio, const float* x, const float* y, float* dest, int count);

}  // namespace Host
