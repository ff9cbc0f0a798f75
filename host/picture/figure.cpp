#include "picture/figure.h"

#include "picture/figure_canvas.h"
#include "picture/figure_data.h"
#include "picture/figure_frame.h"
#include "picture/figure_labels.h"
#include "picture/figure_layout.h"
#include "picture/figure_outlines.h"

namespace Host {
namespace {

/// What has its place by its values, cut off at the edge of the plot area.
std::vector<Box> DrawContent(Canvas& canvas, const Layout& layout, const Figure& figure) {
    const Box area = layout.AreaBox();
    cairo_save(canvas.Context());
    cairo_rectangle(canvas.Context(), area.left, area.top, area.width, area.height);
    cairo_clip(canvas.Context());
    DrawData(canvas, layout, figure);
    std::vector<Box> outlines = DrawOutlines(canvas, layout, figure);
    cairo_restore(canvas.Context());
    return outlines;
}

}  // namespace

std::string DrawPng(const Figure& figure) {
    const Layout layout(figure.size);
    Canvas canvas(layout.width, layout.height);
    const std::vector<Box> outlines = DrawContent(canvas, layout, figure);
    DrawLabels(canvas, layout, figure, outlines);
    DrawFrame(canvas, layout, figure);
    return canvas.Png();
}

}  // namespace Host
