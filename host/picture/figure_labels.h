// The legend and the labels of gates: text in the plot area, placed where it hides least.
#pragma once

#include <vector>

#include "picture/figure.h"
#include "picture/figure_canvas.h"
#include "picture/figure_layout.h"

namespace Host {

/// `outlines` are the boxes from DrawOutlines; everything else in the plot area is drawn already.
void DrawLabels(Canvas& canvas, const Layout& layout, const Figure& figure, const std::vector<Box>& outlines);

}  // namespace Host
