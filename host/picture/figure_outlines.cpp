#include "picture/figure_outlines.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "picture/figure_axes.h"

namespace Host {
namespace {

// In multiples of the layout's em.
constexpr double LineWidth = 0.125;
constexpr double CasingWidth = 0.26;
constexpr double Surplus = 1;  ///< how far beyond the plot area lines are cut off

struct Segment {
    Point from;
    Point to;
};

Point At(const Segment& segment, double share) {
    return {std::lerp(segment.from.x, segment.to.x, share), std::lerp(segment.from.y, segment.to.y, share)};
}

/// The part of a segment inside a box (Liang and Barsky, 1984). Coordinates that Cairo cannot hold do not
/// survive this.
std::optional<Segment> Clipped(const Segment& segment, const Box& box) {
    const double dx = segment.to.x - segment.from.x;
    const double dy = segment.to.y - segment.from.y;
    const double steps[] = {-dx, dx, -dy, dy};
    const double rooms[] = {segment.from.x - box.left, box.Right() - segment.from.x, segment.from.y - box.top,
                            box.Bottom() - segment.from.y};
    double first = 0;
    double last = 1;
    for (int side = 0; side < 4; ++side) {
        if (steps[side] == 0 && rooms[side] < 0) return std::nullopt;
        const double share = rooms[side] / steps[side];
        if (steps[side] < 0) first = std::max(first, share);
        if (steps[side] > 0) last = std::min(last, share);
    }
    if (first > last) return std::nullopt;
    return Segment{At(segment, first), At(segment, last)};
}

class OutlineDrawing {
public:
    OutlineDrawing(Canvas& canvas, const Layout& layout, const Figure& figure)
        : context_(canvas.Context()),
          em_(layout.em),
          area_(layout.AreaBox()),
          bounds_{area_.left - Surplus * em_, area_.top - Surplus * em_, area_.width + 2 * Surplus * em_,
                  area_.height + 2 * Surplus * em_},
          x_(figure.x, layout.area.width),
          y_(figure.y, layout.area.height) {}

    void DrawCasing(const Outline& outline) {
        AddPath(outline);
        Stroke(White, 0.75, CasingWidth * em_);
    }

    void DrawLine(const Outline& outline) {
        AddPath(outline);
        Stroke(outline.color, 1, LineWidth * em_);
    }

    Box VisibleBox(const Outline& outline) const {
        const std::vector<Point> points = MapPoints(outline);
        if (points.empty()) return {0, 0, -1, -1};
        const Box box = Around(points);
        const double x = std::max(box.left, area_.left);
        const double y = std::max(box.top, area_.top);
        const double width = std::min(box.Right(), area_.Right()) - x;
        const double height = std::min(box.Bottom(), area_.Bottom()) - y;
        if (width < 0 || height < 0) return {0, 0, -1, -1};
        return {x, y, width, height};
    }

private:
    static Box Around(const std::vector<Point>& points) {
        const auto [left, right] = std::minmax_element(
            points.begin(), points.end(), [](const Point& a, const Point& b) { return a.x < b.x; });
        const auto [top, bottom] = std::minmax_element(
            points.begin(), points.end(), [](const Point& a, const Point& b) { return a.y < b.y; });
        return {left->x, top->y, right->x - left->x, bottom->y - top->y};
    }

    void AddPath(const Outline& outline) {
        std::vector<Point> points = MapPoints(outline);
        MoveInside(points);
        for (std::size_t i = 1; i < points.size(); ++i)
            AddSegment({points[i - 1], points[i]});
    }

    /// The line of a rectangle, which is what four points are, lies inside it, so that rectangles side by
    /// side both show theirs.
    void MoveInside(std::vector<Point>& points) const {
        constexpr std::size_t ClosedRectangle = 5;
        if (points.size() != ClosedRectangle) return;
        const Box box = Around(points);
        const double half = LineWidth * em_ / 2;
        if (std::min(box.width, box.height) < 4 * half) return;
        for (Point& point : points) {
            point.x += point.x < box.left + box.width / 2 ? half : -half;
            point.y += point.y < box.top + box.height / 2 ? half : -half;
        }
    }

    /// In pixels, infinite values just beyond the plot area; the last point is the first again.
    std::vector<Point> MapPoints(const Outline& outline) const {
        std::vector<Point> points;
        for (const DataPoint& point : outline.points) {
            const double x = area_.left + x_.Position(point.x);
            const double y = area_.Bottom() - y_.Position(point.y);
            if (std::isnan(x) || std::isnan(y)) continue;
            points.push_back({std::isinf(x) ? std::clamp(x, bounds_.left, bounds_.Right()) : x,
                              std::isinf(y) ? std::clamp(y, bounds_.top, bounds_.Bottom()) : y});
        }
        if (!points.empty()) points.push_back(points.front());
        return points;
    }

    void AddSegment(const Segment& segment) {
        const std::optional<Segment> part = Clipped(segment, bounds_);
        if (!part) return;
        Point end{};
        if (cairo_has_current_point(context_)) cairo_get_current_point(context_, &end.x, &end.y);
        const bool continues = cairo_has_current_point(context_) &&
                               std::hypot(end.x - part->from.x, end.y - part->from.y) < 0.01;
        if (!continues) cairo_move_to(context_, part->from.x, part->from.y);
        cairo_line_to(context_, part->to.x, part->to.y);
    }

    void Stroke(Color color, double opacity, double width) {
        SetColor(context_, color, opacity);
        cairo_set_line_width(context_, width);
        cairo_stroke(context_);
    }

    cairo_t* context_;
    double em_;
    Box area_;
    Box bounds_;
    AxisScale x_;
    AxisScale y_;
};

}  // namespace

std::vector<Box> DrawOutlines(Canvas& canvas, const Layout& layout, const Figure& figure) {
    cairo_t* context = canvas.Context();
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    OutlineDrawing drawing(canvas, layout, figure);
    // No casing hides the line of another gate.
    for (const Outline& outline : figure.outlines)
        drawing.DrawCasing(outline);
    std::vector<Box> boxes;
    for (const Outline& outline : figure.outlines) {
        drawing.DrawLine(outline);
        boxes.push_back(drawing.VisibleBox(outline));
    }
    return boxes;
}

}  // namespace Host
