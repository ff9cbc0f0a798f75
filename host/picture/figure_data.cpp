#include "picture/figure_data.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <vector>

namespace Host {
namespace {

constexpr Color DotColor{0x46, 0x46, 0x46};

// In multiples of the layout's em.
constexpr double ContourWidth = 0.095;
constexpr double CurveWidth = 0.12;
constexpr double DotSize = 0.1;

constexpr double CurveOpacity = 0.28;

/// Cell on pixel.
void DrawCells(Canvas& canvas, const PlotArea& area, std::vector<std::uint32_t> cells) {
    if (cells.empty()) return;
    assert(cells.size() == static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height));
    cairo_surface_t* raster = cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(cells.data()), CAIRO_FORMAT_ARGB32, area.width, area.height,
        area.width * static_cast<int>(sizeof cells[0]));
    cairo_set_source_surface(canvas.Context(), raster, area.left, area.top);
    cairo_pattern_set_filter(cairo_get_source(canvas.Context()), CAIRO_FILTER_NEAREST);
    cairo_paint(canvas.Context());
    SetColor(canvas.Context(), DotColor);
    cairo_surface_finish(raster);
    cairo_surface_destroy(raster);
}

void DrawLine(Canvas& canvas, const Layout& layout, const ContourLine& line) {
    cairo_t* context = canvas.Context();
    const Box area = layout.AreaBox();
    for (const AreaPoint& point : line.points)
        cairo_line_to(context, area.left + point.x, area.top + point.y);
    cairo_close_path(context);
    SetColor(context, line.color);
    cairo_set_line_width(context, ContourWidth * layout.em);
    cairo_stroke(context);
}

void DrawDots(Canvas& canvas, const Layout& layout, const std::vector<AreaPoint>& dots) {
    const Box area = layout.AreaBox();
    const double size = std::max(1.0, std::round(DotSize * layout.em));
    for (const AreaPoint& dot : dots)
        cairo_rectangle(canvas.Context(), area.left + std::floor(dot.x), area.top + std::floor(dot.y), size,
                        size);
    SetColor(canvas.Context(), DotColor);
    cairo_fill(canvas.Context());
}

void DrawCurve(Canvas& canvas, const Layout& layout, const Curve& curve) {
    if (curve.heights.empty()) return;
    cairo_t* context = canvas.Context();
    const Box area = layout.AreaBox();
    for (std::size_t column = 0; column < curve.heights.size(); ++column)
        cairo_line_to(context, area.left + static_cast<double>(column) + 0.5,
                      area.Bottom() - static_cast<double>(curve.heights[column]) * area.height);
    cairo_path_t* outline = cairo_copy_path(context);
    cairo_line_to(context, area.left + static_cast<double>(curve.heights.size()) - 0.5, area.Bottom());
    cairo_line_to(context, area.left + 0.5, area.Bottom());
    SetColor(context, curve.color, CurveOpacity);
    cairo_fill(context);
    cairo_append_path(context, outline);
    cairo_path_destroy(outline);
    SetColor(context, curve.color);
    cairo_set_line_width(context, CurveWidth * layout.em);
    cairo_stroke(context);
}

}  // namespace

void DrawData(Canvas& canvas, const Layout& layout, const Figure& figure) {
    cairo_set_line_join(canvas.Context(), CAIRO_LINE_JOIN_ROUND);
    DrawCells(canvas, layout.area, figure.cells);
    for (const ContourLine& line : figure.lines)
        DrawLine(canvas, layout, line);
    DrawDots(canvas, layout, figure.dots);
    for (const Curve& curve : figure.curves)
        DrawCurve(canvas, layout, curve);
}

}  // namespace Host
