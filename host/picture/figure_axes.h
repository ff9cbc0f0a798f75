// Where the values of an axis lie, which of them get ticks, and how their labels read.
#pragma once

#include <orvane/OVCoordinateTransformerX.h>

#include <memory>
#include <string>
#include <vector>

#include "picture/figure.h"

namespace Host {

/// An axis over so many pixels of the plot area, as the rasters map it.
class AxisScale {
public:
    AxisScale(const Axis& axis, int pixels);

    /// Pixels from the end of the axis where its least value lies, also beyond both ends. Infinite for
    /// infinite values.
    double Position(double value) const;

private:
    std::unique_ptr<Orvane::IOVCoordinateTransformerX> transformer_;
    bool asinh_;
};

struct Tick {
    double position;
    std::string label;
};

struct Ticks {
    std::vector<Tick> labelled;  ///< the most important first: where labels collide, the later one goes
    std::vector<double> minor;
};

/// The ticks of an axis over so many pixels, linear ones at least `spacing` pixels apart: 1, 2 or 5 times a
/// power of ten. Asinh axes have powers of ten and zero; where fewer than three of those are in the range, 2
/// and 5 times powers of ten as well; and where these are too few, round values. At least two are labelled
/// unless the range is empty or not finite.
Ticks FindTicks(const Axis& axis, int pixels, double spacing);

}  // namespace Host
