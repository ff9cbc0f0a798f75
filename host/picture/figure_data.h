// What a picture shows inside its plot area: the raster, contour lines, dots, curves.
#pragma once

#include "picture/figure.h"
#include "picture/figure_canvas.h"
#include "picture/figure_layout.h"

namespace Host {

void DrawData(Canvas& canvas, const Layout& layout, const Figure& figure);

}  // namespace Host
