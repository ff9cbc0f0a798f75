#include <orvane/Exceptions.h>
#include <orvane/OVCalculateAlpha.h>
#include <orvane/OVConvertLinearAndLog.h>
#include <orvane/OVStatisticsSignalSection.h>

#include <cmath>
#include <new>

namespace Orvane {
namespace {

/// asinh(1).
double UnitWidth() {
    return std::log(std::sqrt(2.0) + 1.0);
}

/// The alpha that puts `value` at asinh coordinate `t`. Deliberately without a guard for zero.
double AlphaAt(double t, double value) {
    return value / OVConvertLinearAndLog().sinh(t);
}

/// The robust SD of the values below `threshold`; 0 when it cannot be had.
float SpreadBelow(std::vector<SignalSection*>& sections, float threshold) {
    float sd = 0.0F;
    try {
        OVStatisticsSignalSection().RobustSD_LessMinValue(sections, threshold, sd);
    } catch (OutOfMemoryException* error) {
        delete error;
        return 0.0F;
    } catch (const std::bad_alloc&) {
        return 0.0F;
    }
    return sd;
}

}  // namespace

float OVCalculateAlpha::AlphaCoefficient = 3.0F;

double OVCalculateAlpha::CalculateAlpha(std::vector<SignalSection*>& sections, float threshold) const {
    const float sd = SpreadBelow(sections, threshold);
    return sd == 0.0F ? 1.0 : static_cast<double>(AlphaCoefficient * sd);
}

double OVCalculateAlpha::CalculateCustomAlpha(float p, float q, double value, bool horizontal) const {
    return horizontal ? CalculateHorizontalAlpha(p, q, value) : CalculateVerticalAlpha(p, q, value);
}

double OVCalculateAlpha::CalculateHorizontalAlpha(float p, float q, double value) const {
    const double start = -UnitWidth();
    const double doubled = p * 2.0F;
    // Left to right, the product over q may miss zero by a rounding where 2p = q.
    if (doubled == q) return AlphaAt(0.0, value);
    return AlphaAt((0.0 - start) * doubled / q + start, value);
}

double OVCalculateAlpha::CalculateVerticalAlpha(float p, float q, double value) const {
    const double start = -UnitWidth();
    const double share = (p - q) / (p * 2.0F);
    return AlphaAt((0.0 - start) / share + start, value);
}

}  // namespace Orvane
