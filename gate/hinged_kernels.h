// Kernels of the hinged gate: how far events lie from its arms on the screen, where that is certain.
//
// The gate is stated in data values: x > ArmX(y), where ArmX takes y to the screen, along the arm and back,
// which is dear on an asinh axis. Both axes rise, so that the same holds of positions on the screen: with p
// the position of x and q that of y, p > Slope * q + Intercept. Kernels compute that in float, which is good
// enough for all events but those very near an arm. With u = 2^-24, the largest relative error of a float
// operation, and P, Q the exact positions:
//
// - p is off by at most e(p) = Fixed + 4u|p|, and likewise q (see ScreenScale);
// - the stated formula rounds the position on the screen to float twice (2u(|Q| + r), where r stands for the
//   bounds of that axis), the product and the sum (u|Slope Q| each, u|Intercept|), and the difference
//   from the screen's end on the way back (u(|P| + r)). Its operations in double are right to 2^-52 of the
//   same terms and of those in Fixed;
// - the kernel rounds its own product, sum and difference: another 3u|Slope q| + 2u|Intercept| + u|p|.
//
// All this is less than e(p) + |Slope| e(q) + 16u(|p| + |Slope q| + |Slope| r + |Intercept| + r + 1), where
// the factors of u, at most 13 in one term, leave room for what is off by u squared.
#pragma once

#include <limits>

#include "gate/hinged_graph.h"
#include "transform/asinh_bracket.h"

namespace Orvane {

/// Positions on a screen axis, a(v) * scale + constant, where a(v) is v, or asinh(v * factor) on a log axis.
///
/// A linear one is formed as it stands: its product is right to 2u, because the scale is rounded too, the
/// constant to u and the sum to u, so that it is off by less than 4u(|p| + |constant|). One on an asinh axis
/// is the lower end of its bracket.
class ScreenScale {
public:
    ScreenScale(bool isLog, double factor, double scale, double constant);

    /// Whether the bound holds, is of use, and the axis rises: the scale has the sign `direction`.
    bool IsProven(double direction) const;
    double Fixed() const { return fixed_; }
    bool IsLog() const { return isLog_; }

    /// NaN where nothing is known.
    ORVANE_KERNEL_INLINE float LogPosition(float v) const {
        const float position = asinh_.Lower(asinh_.At(v));
        return asinh_.Covers(v) ? position : std::numeric_limits<float>::quiet_NaN();
    }
    ORVANE_KERNEL_INLINE float LinearPosition(float v) const { return v * scale_ + constant_; }

private:
    bool isLog_;
    bool factorRises_;
    AsinhBracket asinh_;
    float scale_;
    float constant_;
    double fixed_;
};

/// An axis and the two arms that cross it. Distances are positive for events with greater data values than
/// the arm; they are certain if greater than Fixed + PerPosition * |p| + PerOther * |q|.
struct ArmPair {
    HingedArm UpToCentre;  ///< for events at or below the centre on the other axis
    HingedArm Beyond;
    float Direction = 1.0F;  ///< -1 for an axis whose positions fall as data values rise
    float Fixed = 0.0F;
    float PerPosition = 0.0F;
    float PerOther = 0.0F;
};

void FindPositions(const ScreenScale& scale, const float* values, int count, float* positions);

/// The distances of events at `positions` on the arms' axis and at `others` on the other one, where they have
/// the data values `otherValues` and the gate its `centre`. NaN where the distance is not certain.
void FindDistances(const ArmPair& arms, const float* positions, const float* others, const float* otherValues,
                   float centre, int count, float* distances);

}  // namespace Orvane
