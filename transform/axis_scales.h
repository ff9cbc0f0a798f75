// The scale factors of an axis, as both families of transformers form them.
#pragma once

namespace Orvane {

/// Ranges below this are taken for empty.
constexpr double SmallestRange = 1e-5;

/// The span of an axis is the integer part of its screen range: a fractional range loses its fraction in
/// every factor. The asinh factors stay 0 for an alpha of 0.
struct AxisScales {
    /// `clampOffset` is the distance in pixels from `worldMin` at which `WorldClamp` is taken.
    AxisScales(float screenRange, float clampOffset, double worldMin, double worldMax, double alpha);

    double PixelsPerWorld;
    double WorldPerPixel;
    double AsinhMin = 0.0;
    double AsinhMax = 0.0;
    double PixelsPerAsinh = 0.0;
    double AsinhPerPixel = 0.0;
    double WorldClamp;
};

}  // namespace Orvane
