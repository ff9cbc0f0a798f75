// The borders of gates as lines in data values, so that a plot on any axes can show them.
#pragma once

#include <functional>
#include <vector>

#include "gating/gating_strategy.h"
#include "picture/figure.h"

namespace Host {

/// The data value that a scale maps to `scaled`. Where a bound of the scale has replaced the values, it is
/// infinite.
double InvertScale(const Scale& scale, double scaled);

/// Tells whether two dimensions have the same values before any scale.
using SameValues = std::function<bool(const Dimension&, const Dimension&)>;

/// The closed line around a gate over an x and a y axis that show the values of two dimensions without their
/// scale. Rectangles and quadrants have infinite values on open sides. Polygons have points along their
/// edges, as what is straight on the gate's scale need not be so on that of the plot. A range of one
/// dimension is open along the other axis; `y` is null for histograms. Empty when the gate has other
/// dimensions or no border of its own.
std::vector<DataPoint> FindOutline(const Strategy& strategy, const Gate& gate, const Dimension& x,
                                   const Dimension* y, const SameValues& same);

}  // namespace Host
