#include "picture/figure_frame.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "picture/figure_axes.h"
#include "picture/figure_text.h"
#include "text/numbers.h"

namespace Host {
namespace {

// In multiples of the layout's em.
constexpr double TickLabelSize = 0.9;
constexpr double LeastTickLabelSize = 0.55;
constexpr double OffScaleSize = 0.82;
constexpr double MajorTickLength = 0.42;
constexpr double MinorTickLength = 0.22;
constexpr double TickLabelGap = 0.25;
constexpr double PageMargin = 0.5;
constexpr double TitleBaseline = 1.75;
constexpr double SubtitleBaseline = 3.1;
constexpr double NameBaselineX = 0.9;  ///< from the bottom of the picture
constexpr double NameBaselineY = 1.3;  ///< from its left side
constexpr double LeastLabelLeft = 1.75;
constexpr double LabelSpacingX = 5;
constexpr double LabelSpacingY = 3.2;

void DrawTitles(Canvas& canvas, const Layout& layout, const Figure& figure) {
    const TextStyle title{1.2 * layout.em, DarkInk, true};
    const TextStyle subtitle{0.95 * layout.em, QuietInk};
    const double left = layout.area.left;
    const double width = layout.width - PageMargin * layout.em - left;
    DrawText(canvas, Ellipsised(canvas, TextLine(figure.title), title, width), title,
             {left, TitleBaseline * layout.em});
    DrawText(canvas, Ellipsised(canvas, TextLine(figure.subtitle), subtitle, width), subtitle,
             {left, SubtitleBaseline * layout.em});
}

/// Whole pixels around the plot area, none of which hides a cell of the raster.
void DrawBorder(Canvas& canvas, const Layout& layout) {
    const Box area = layout.AreaBox();
    const double line = layout.line;
    const double height = area.height + 2 * line;
    FillBox(canvas, {area.left - line, area.top - line, line, height}, DarkInk);
    FillBox(canvas, {area.Right(), area.top - line, line, height}, DarkInk);
    FillBox(canvas, {area.left, area.top - line, area.width, line}, DarkInk);
    FillBox(canvas, {area.left, area.Bottom(), area.width, line}, DarkInk);
}

/// One axis of a picture, along which places are counted in pixels from the end with the least value.
class AxisDrawing {
public:
    AxisDrawing(Canvas& canvas, const Layout& layout, bool vertical)
        : canvas_(canvas), layout_(layout), area_(layout.AreaBox()), vertical_(vertical) {}

    void Draw(const Axis& axis) {
        const int pixels = vertical_ ? layout_.area.height : layout_.area.width;
        const Ticks ticks = FindTicks(axis, pixels, layout_.em * (vertical_ ? LabelSpacingY : LabelSpacingX));
        for (const double position : ticks.minor)
            DrawTick(position, MinorTickLength);
        for (const Tick& tick : ticks.labelled)
            DrawTick(tick.position, MajorTickLength);
        DrawLabels(ticks.labelled);
    }

private:
    void DrawTick(double position, double length) {
        const double start = std::floor(Along(position) - layout_.line / 2 + 0.5);
        const double pixels = std::round(length * layout_.em);
        const Box box = vertical_ ? Box{area_.left - layout_.line - pixels, start, pixels, layout_.line}
                                  : Box{start, area_.Bottom() + layout_.line, layout_.line, pixels};
        FillBox(canvas_, box, DarkInk);
    }

    /// Every label that does not collide with a more important one.
    void DrawLabels(const std::vector<Tick>& ticks) {
        const TextStyle style = LabelStyle(ticks);
        std::vector<Box> drawn;
        for (const Tick& tick : ticks) {
            const Box box = LabelBox(tick, style);
            const Box spaced{box.left - 0.4 * style.size, box.top, box.width + 0.8 * style.size, box.height};
            const bool collides = std::any_of(
                drawn.begin(), drawn.end(), [&](const Box& other) { return SharedArea(spaced, other) > 0; });
            if (collides) continue;
            drawn.push_back(box);
            DrawText(canvas_, tick.label, style, {box.left, box.Bottom() - 0.18 * style.size});
        }
    }

    /// Labels of the vertical axis get smaller where they would reach its name.
    TextStyle LabelStyle(const std::vector<Tick>& ticks) {
        TextStyle style{TickLabelSize * layout_.em, DarkInk};
        if (!vertical_) return style;
        double widest = 1;
        for (const Tick& tick : ticks)
            widest = std::max(widest, TextWidth(canvas_, tick.label, style));
        const double room = area_.left - LabelDistance() - LeastLabelLeft * layout_.em;
        style.size *= std::clamp(room / widest, LeastTickLabelSize, 1.0);
        return style;
    }

    Box LabelBox(const Tick& tick, const TextStyle& style) {
        const double width = TextWidth(canvas_, tick.label, style);
        const double place = Along(tick.position);
        const Box box =
            vertical_ ? Box{area_.left - LabelDistance() - width, place - 0.55 * style.size, width,
                            1.1 * style.size}
                      : Box{place - width / 2, area_.Bottom() + LabelDistance(), width, 1.1 * style.size};
        return MovedInside(box, {1, 1, layout_.width - 2.0, layout_.height - 2.0});
    }

    double Along(double position) const {
        return vertical_ ? area_.Bottom() - position : area_.left + position;
    }
    double LabelDistance() const {
        return layout_.line + std::round(MajorTickLength * layout_.em) + TickLabelGap * layout_.em;
    }

    Canvas& canvas_;
    const Layout& layout_;
    Box area_;
    bool vertical_;
};

/// An arrow and a count; nothing when there is nothing to count.
std::string OffScaleText(const char* arrow, std::uint64_t count) {
    return count == 0 ? std::string() : std::string(arrow).append(" ").append(Grouped(count));
}

/// Just outside the frame: at the ends and in the middle of its top, and at the right end of its bottom.
void DrawOffScale(Canvas& canvas, const Layout& layout, const OffScale& offScale) {
    const TextStyle style{OffScaleSize * layout.em, QuietInk};
    const Box area = layout.AreaBox();
    const double above = area.top - layout.line - 0.35 * layout.em;
    DrawText(canvas, OffScaleText("◂", offScale.left), style, {area.left, above});
    DrawText(canvas, OffScaleText("▴", offScale.above), style, {area.left + area.width / 2, above},
             Align::Center);
    if (offScale.right > 0)
        DrawText(canvas, Grouped(offScale.right).append(" ▸"), style, {area.Right(), above}, Align::Right);
    DrawText(canvas, OffScaleText("▾", offScale.below), style,
             {layout.width - PageMargin * layout.em, layout.height - NameBaselineX * layout.em},
             Align::Right);
}

/// Under the middle of the axis unless it would meet the count of what lies below.
void DrawNameX(Canvas& canvas, const Layout& layout, const Figure& figure) {
    const TextStyle style{layout.em, DarkInk};
    const TextStyle countStyle{OffScaleSize * layout.em, QuietInk};
    const double margin = PageMargin * layout.em;
    const double count = TextWidth(canvas, OffScaleText("▾", figure.offScale.below), countStyle);
    const double right = layout.width - margin - (count > 0 ? count + layout.em : 0);
    const std::string name = Ellipsised(canvas, TextLine(figure.x.label), style, right - margin);
    const double width = TextWidth(canvas, name, style);
    const double centered = layout.area.left + (layout.area.width - width) / 2;
    DrawText(
        canvas, name, style,
        {std::max(margin, std::min(centered, right - width)), layout.height - NameBaselineX * layout.em});
}

/// Beside the middle of the axis, or as far up as it must, but never below the axis.
void DrawNameY(Canvas& canvas, const Layout& layout, const Figure& figure) {
    const TextStyle style{layout.em, DarkInk};
    const double bottom = layout.AreaBox().Bottom();
    const std::string name =
        Ellipsised(canvas, TextLine(figure.y.label), style, bottom - PageMargin * layout.em);
    const double half = TextWidth(canvas, name, style) / 2;
    const double middle = layout.area.top + layout.area.height / 2.0;
    DrawTextUpward(canvas, name, style, {NameBaselineY * layout.em, std::min(middle, bottom - half)},
                   Align::Center);
}

}  // namespace

void DrawFrame(Canvas& canvas, const Layout& layout, const Figure& figure) {
    DrawTitles(canvas, layout, figure);
    DrawBorder(canvas, layout);
    AxisDrawing(canvas, layout, false).Draw(figure.x);
    AxisDrawing(canvas, layout, true).Draw(figure.y);
    DrawNameX(canvas, layout, figure);
    DrawNameY(canvas, layout, figure);
    DrawOffScale(canvas, layout, figure.offScale);
}

}  // namespace Host
