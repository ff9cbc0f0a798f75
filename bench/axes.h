// Values for the axes of benchmarks, and the axes as plain loops map them: by the formula of the
// transformers, one value at a time.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <utility>

#include <orvane/OVConvertLinearAndLog.h>

namespace Orvane::Bench {

inline constexpr double WorldMin = -2000.0;
inline constexpr double WorldMax = 262144.0;
inline constexpr double Alpha = 150.0;

/// Values that spread over some decades around zero, a tenth of them exactly zero and some saturated.
inline void FillColumn(float* values, int count, std::mt19937& random) {
    std::lognormal_distribution<float> magnitude(6.0F, 2.5F);
    std::normal_distribution<float> noise(0.0F, 200.0F);
    std::generate_n(values, count, [&] {
        if (random() % 10 == 0) return 0.0F;
        return std::min(magnitude(random) + noise(random), 262143.0F);
    });
}

/// An axis as the plain loops see it: constant parts hoisted, everything decided before the loop.
struct PlainAxis {
    bool IsLog, IsClamped;
    double Factor, Scale, Constant, Low, High;
    unsigned short LowPixel, HighPixel;
};

template <bool IsLog, bool IsClamped>
unsigned short PlainPixel(const PlainAxis& axis, double v) {
    if (IsClamped) {
        if (axis.Low >= v) return axis.LowPixel;
        if (v >= axis.High) return axis.HighPixel;
    }
    if (IsLog) {
        const double x = v * axis.Factor;
        const double a = std::fabs(x);
        const double s = std::log(std::sqrt(a * a + 1.0) + a);
        v = x < 0.0 ? -s : s;
    }
    return static_cast<unsigned short>(static_cast<std::int64_t>(v * axis.Scale + axis.Constant));
}

inline PlainAxis HorizontalAxis(bool isLog, bool isClamped, float width) {
    const OVConvertLinearAndLog convert;
    const double factor = 1.0 / Alpha;
    const double low = isLog ? convert.LinearConvertToAsinh(WorldMin, factor) : WorldMin;
    const double high = isLog ? convert.LinearConvertToAsinh(WorldMax, factor) : WorldMax;
    const double scale = width / (high - low);
    const double perPixel = (high - low) / width;
    const double last = (width - 1.0) * perPixel + low;
    return {isLog,
            isClamped,
            factor,
            scale,
            0.0 - low * scale + (isClamped ? 0.5 : 0.0),
            WorldMin,
            isLog ? convert.AsinhConvertToLinear(last, factor) : last,
            0,
            static_cast<unsigned short>(width - 1.0F)};
}

inline PlainAxis VerticalAxis(bool isLog, bool isClamped, float height) {
    const OVConvertLinearAndLog convert;
    PlainAxis axis = HorizontalAxis(isLog, isClamped, height);
    const double low = isLog ? convert.LinearConvertToAsinh(WorldMin, axis.Factor) : WorldMin;
    const double high = isLog ? convert.LinearConvertToAsinh(WorldMax, axis.Factor) : WorldMax;
    const double onePixel = 1.0 * ((high - low) / height) + low;
    axis.Constant = height + low * axis.Scale + (isClamped ? 0.5 : 0.0);
    axis.Scale = -axis.Scale;
    axis.Low = isLog ? convert.AsinhConvertToLinear(onePixel, axis.Factor) : onePixel;
    axis.High = WorldMax;
    std::swap(axis.LowPixel, axis.HighPixel);
    return axis;
}

}  // namespace Orvane::Bench
