// What a picture shows inside its plot area: the raster, contour lines, dots, curves.
#pragma once

#include "figure.h"
#include "figure_canvas.h"
#include "figure_layout.h"

namespace Host {

void DrawData(Canvas& canvas, const Layout& layout, const Figure& figure);

}  // namespace Host
