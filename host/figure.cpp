#include "figure.h"

#include "figure_canvas.h"
#include "figure_data.h"
#include "figure_frame.h"
#include "figure_labels.h"
#include "figure_layout.h"
#include "figure_outlines.h"

namespace Host {

std::string DrawPng(const Figure& figure) {
    const Layout layout(figure.size);
    Canvas canvas(layout.width, layout.height);
    DrawData(canvas, layout, figure);
    const std::vector<Box> outlines = DrawOutlines(canvas, layout, figure);
    DrawLabels(canvas, layout, figure, outlines);
    DrawFrame(canvas, layout, figure);
    return canvas.Png();
}

}  // namespace Host
