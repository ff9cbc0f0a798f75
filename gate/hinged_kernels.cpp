#include "gate/hinged_kernels.h"

#include <cmath>

#include "foundation/instruction_set.h"

namespace Orvane {
namespace {

constexpr float Uncertain = std::numeric_limits<float>::quiet_NaN();

ORVANE_KERNEL_INLINE void FindPositionsBody(const ScreenScale& scale, const float* values, int count,
                                            float* positions) {
    const ScreenScale local = scale;
    if (local.IsLog()) {
        for (int i = 0; i < count; ++i)
            positions[i] = local.LogPosition(values[i]);
    } else {
        for (int i = 0; i < count; ++i)
            positions[i] = local.LinearPosition(values[i]);
    }
}

ORVANE_KERNEL_INLINE void FindDistancesBody(const ArmPair& arms, const float* positions, const float* others,
                                            const float* otherValues, float centre, int count,
                                            float* distances) {
    // Beyond this a sum may have overflowed.
    constexpr float Largest = 1e30F;
    const ArmPair local = arms;
    for (int i = 0; i < count; ++i) {
        const bool isBeyond = otherValues[i] > centre;
        const float slope = isBeyond ? local.Beyond.Slope : local.UpToCentre.Slope;
        const float intercept = isBeyond ? local.Beyond.Intercept : local.UpToCentre.Intercept;
        const float distance = (positions[i] - (slope * others[i] + intercept)) * local.Direction;
        const float margin =
            local.Fixed + local.PerPosition * std::fabs(positions[i]) + local.PerOther * std::fabs(others[i]);
        const float size = std::fabs(distance);
        const float certain = size > margin ? distance : Uncertain;
        distances[i] = size < Largest ? certain : Uncertain;
    }
}

}  // namespace

ScreenScale::ScreenScale(bool isLog, double factor, double scale, double constant)
    : isLog_(isLog),
      factorRises_(!isLog || factor > 0.0),
      asinh_(factor, scale, constant),
      scale_(static_cast<float>(scale)),
      constant_(static_cast<float>(constant)),
      fixed_(isLog ? 2.0 * asinh_.Margin() : 4.0 * AsinhBracket::Unit * std::fabs(constant)) {}

bool ScreenScale::IsProven(double direction) const {
    const bool bound = isLog_ ? asinh_.IsProven() : std::isnormal(scale_) && fixed_ < 0.25;
    return bound && factorRises_ && scale_ * direction > 0.0;
}

ORVANE_MULTIVERSION(void, FindPositions,
                    (const ScreenScale& scale, const float* values, int count, float* positions),
                    (scale, values, count, positions))

ORVANE_MULTIVERSION(void, FindDistances,
                    (const ArmPair& arms, const float* positions, const float* others,
                     const float* otherValues, float centre, int count, float* distances),
                    (arms, positions, others, otherValues, centre, count, distances))

}  // namespace Orvane
