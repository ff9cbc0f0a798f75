// Positions on an asinh axis to within a proven error, in float and without branches.
#pragma once

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "foundation/instruction_set.h"

namespace Orvane {

/// log2(1 + z) for 0 <= z < 1: the polynomial of degree 6 without constant term whose largest error is least.
ORVANE_KERNEL_INLINE float Log2OfOnePlus(float z) {
    float sum = -0.026457449681162152F;
    sum = sum * z + 0.12345148770142735F;
    sum = sum * z - 0.27953813908137687F;
    sum = sum * z + 0.4582708062333756F;
    sum = sum * z - 0.7182819189226658F;
    sum = sum * z + 1.4425531450094364F;
    return sum * z;
}

/// Two float positions around the double one, asinh(v * factor) * scale + constant.
///
/// Let u = 2^-24, so that a float operation is right to a factor within 1 +- u, and let asinh be formed as
/// ln(s), s = a + sqrt(a * a + 1), a = |v * factor|. Up to terms in u * u:
///
/// - a is off by a factor within 1 +- 2u (the factor's own rounding and the product's), or by less than
///   2^-149; since a * asinh'(a) = a / sqrt(a * a + 1) < 1, asinh moves by no more than 2u.
/// - a * a + 1 is right to 2u, its root to u + u, and the sum s to 3u, so ln(s) moves by no more than 3u.
/// - Together that is 5u in ln(s) and 5u / ln(2) < 7.22u in log2(s) = e + log2(1 + z), where e and z are the
///   exponent and the mantissa of s. Log2OfOnePlus is off by less than Log2Error, which a test finds out by
///   trying every z.
/// - a < Limit = 2^32 keeps log2(s) below 33.01. The sum of e and the polynomial, the rounding of scale *
///   ln(2), the product with it and the final sum each add up to u times that, in units of |scale * ln(2)|,
///   and the rounding of the constant and the final sum u * |constant| each.
///
/// So the position is off by less than Margin = |scale * ln(2)| * (Log2Error + 139.3u) + |constant| * 2u. One
/// per cent is added for the terms in u * u and for the roundings of the double formula, which are some 2^-27
/// of these.
class AsinhBracket {
public:
    static constexpr float Unit = FLT_EPSILON / 2;
    static constexpr float Log2Error = 40 * Unit;
    static constexpr float Limit = 4294967296.0F;

    AsinhBracket(double factor, double scale, double constant)
        : factor_(static_cast<float>(factor)), scale_(static_cast<float>(scale * std::numbers::ln2)) {
        const double units = Log2Error + 139.3 * Unit;
        margin_ = 1.01 * (std::fabs(scale) * std::numbers::ln2 * units + std::fabs(constant) * 2 * Unit);
        lowest_ = static_cast<float>(constant - margin_);
        highest_ = static_cast<float>(constant + margin_);
    }

    /// Whether the bound holds and is of use. Then positions also fit 32-bit integers. False for an axis
    /// that is not finite, has a scale or factor of zero, or is finer than floats.
    bool IsProven() const { return std::isnormal(factor_) && std::isnormal(scale_) && margin_ < 0.25; }

    double Margin() const { return margin_; }

    /// Whether v is near enough to zero: At has nothing to say about others, nor about NaN.
    ORVANE_KERNEL_INLINE bool Covers(float v) const { return std::fabs(v * factor_) < Limit; }

    /// What the two positions have in common. 0 where v is not covered.
    ORVANE_KERNEL_INLINE float At(float v) const {
        const float x = v * factor_;
        const float a = Covers(v) ? std::fabs(x) : 0.0F;
        const float s = a + std::sqrt(a * a + 1.0F);
        const auto bits = std::bit_cast<std::int32_t>(s);
        const std::int32_t one = std::bit_cast<std::int32_t>(1.0F);
        const float z = std::bit_cast<float>((bits & 0x7FFFFF) | one) - 1.0F;
        const float log2 = static_cast<float>((bits - one) >> 23) + Log2OfOnePlus(z);
        return std::copysign(log2, x) * scale_;
    }
    ORVANE_KERNEL_INLINE float Lower(float at) const { return at + lowest_; }
    ORVANE_KERNEL_INLINE float Upper(float at) const { return at + highest_; }

private:
    float factor_;
    float scale_;
    double margin_;
    float lowest_;
    float highest_;
};

}  // namespace Orvane
