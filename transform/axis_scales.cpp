#include "transform/axis_scales.h"

#include <orvane/OVConvertLinearAndLog.h>

#include "foundation/convert.h"

namespace Orvane {

AxisScales::AxisScales(float screenRange, float clampOffset, double worldMin, double worldMax, double alpha) {
    const double span = static_cast<int>(TruncateToInt64(static_cast<double>(screenRange)));
    const double offset = clampOffset;
    PixelsPerWorld = span / (worldMax - worldMin);
    WorldPerPixel = (worldMax - worldMin) / span;
    WorldClamp = offset * WorldPerPixel + worldMin;
    if (alpha == 0.0) return;

    const OVConvertLinearAndLog convert;
    const double factor = 1.0 / alpha;
    AsinhMin = convert.LinearConvertToAsinh(worldMin, factor);
    AsinhMax = convert.LinearConvertToAsinh(worldMax, factor);
    PixelsPerAsinh = span / (AsinhMax - AsinhMin);
    AsinhPerPixel = (AsinhMax - AsinhMin) / span;
    WorldClamp = convert.AsinhConvertToLinear(offset * AsinhPerPixel + AsinhMin, factor);
}

}  // namespace Orvane
