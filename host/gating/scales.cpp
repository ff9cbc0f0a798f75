#include "gating/scales.h"

#include <cmath>
#include <numbers>

namespace Host {
namespace {

/// A value that is no number stays so.
float Bounded(double value, const std::optional<double>& min, const std::optional<double>& max) {
    if (min && value < *min) value = *min;
    if (max && value > *max) value = *max;
    return static_cast<float>(value);
}

template <class Formula>
void Apply(const Scale& scale, const float* source, float* dest, int count, Formula formula) {
    for (int e = 0; e < count; ++e)
        dest[e] = Bounded(formula(static_cast<double>(source[e])), scale.boundMin, scale.boundMax);
}

}  // namespace

void ApplyScale(const Scale& scale, const float* source, float* dest, int count) {
    const auto [kind, t, m, a, boundMin, boundMax] = scale;
    switch (kind) {
        case Scale::Kind::Linear:
            Apply(scale, source, dest, count, [t = t, a = a](double x) { return (x + a) / (t + a); });
            break;
        case Scale::Kind::Log:
            Apply(scale, source, dest, count, [t = t, m = m](double x) { return std::log10(x / t) / m + 1; });
            break;
        case Scale::Kind::Asinh:
            const double steepness = std::sinh(m * std::numbers::ln10) / t;
            const double shift = a * std::numbers::ln10;
            const double decades = (m + a) * std::numbers::ln10;
            Apply(scale, source, dest, count,
                  [=](double x) { return (std::asinh(x * steepness) + shift) / decades; });
            break;
    }
}

void ApplyRatio(const RatioScale& ratio, const float* x, const float* y, float* dest, int count) {
    for (int e = 0; e < count; ++e) {
        const double value = ratio.a * (x[e] - ratio.b) / (y[e] - ratio.c);
        dest[e] = Bounded(value, ratio.boundMin, ratio.boundMax);
    }
}

}  // namespace Host
