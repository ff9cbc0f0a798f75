// The borders of gates as lines in data values, so that a plot on any axes can show them.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "figure.h"
#include "gating_strategy.h"

namespace Host {

/// The data value that a scale maps to `scaled`. Beyond a bound of the scale it is infinite: there all values
/// have become the bound.
double InvertScale(const Scale& scale, double scaled);

/// Tells whether two dimensions have the same values before any scale.
using SameValues = std::function<bool(const Dimension&, const Dimension&)>;

/// Where the gate lies over an x and a y axis that show the values of two dimensions without their scale:
/// rectangles and quadrants with infinite values on open sides, polygons with points along their edges, as an
/// edge that is straight on the gate's scale need not be so on another. A range of one dimension is open
/// along the other axis; `y` is null for histograms. None when the gate has other dimensions or is no region.
std::optional<Outline> FindOutline(const Strategy& strategy, const Gate& gate, const Dimension& x,
                                   const Dimension* y, const SameValues& same);

}  // namespace Host
