#include <orvane/OVConvertLinearAndLog.h>

#include <cmath>

namespace Orvane {

double OVConvertLinearAndLog::asinh(double x) const {
    if (x == 0.0) return x;
    const double a = std::fabs(x);
    const double result = std::log(std::sqrt(a * a + 1.0) + a);
    return x < 0.0 ? -result : result;
}

double OVConvertLinearAndLog::sinh(double x) const {
    if (x == 0.0) return x;
    const double e = std::exp(std::fabs(x));
    return (e - 1.0 / e) * (x < 0.0 ? -0.5 : 0.5);
}

double OVConvertLinearAndLog::LinearConvertToAsinh(double value, double factor) const {
    return asinh(value * factor);
}

double OVConvertLinearAndLog::AsinhConvertToLinear(double value, double factor) const {
    return sinh(value) / factor;
}

double OVConvertLinearAndLog::LinearConvertToLog10(double value) const {
    if (value < -1.0) return -std::log10(-value);
    if (value <= 1.0) return 0.0;
    return std::log10(value);
}

double OVConvertLinearAndLog::Log10ConvertToLinear(double value) const {
    if (value < 0.0) return -std::pow(10.0, -value);
    // Deliberately not 1: zero is the image of the whole band from -1 to 1.
    if (value == 0.0) return 0.0;
    return std::pow(10.0, value);
}

}  // namespace Orvane
