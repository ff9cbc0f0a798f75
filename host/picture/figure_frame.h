// What surrounds the plot area: titles, the frame with its ticks and labels, counts of what lies off scale.
#pragma once

#include "picture/figure.h"
#include "picture/figure_canvas.h"
#include "picture/figure_layout.h"

namespace Host {

void DrawFrame(Canvas& canvas, const Layout& layout, const Figure& figure);

}  // namespace Host
