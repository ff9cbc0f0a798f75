// The borders of gates in a picture.
#pragma once

#include <vector>

#include "picture/figure.h"
#include "picture/figure_canvas.h"
#include "picture/figure_layout.h"

namespace Host {

/// Where every outline lies: the box around the part of it that the plot area shows; with a negative width
/// where that is nothing.
std::vector<Box> DrawOutlines(Canvas& canvas, const Layout& layout, const Figure& figure);

}  // namespace Host
