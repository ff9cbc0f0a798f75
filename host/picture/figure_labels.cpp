#include "picture/figure_labels.h"

#include <algorithm>
#include <string>

#include "picture/figure_text.h"

namespace Host {
namespace {

// In multiples of the layout's em, lines in multiples of the font's size.
constexpr double LabelSize = 0.92;
constexpr double LegendSize = 0.88;
constexpr double LineHeight = 1.2;
constexpr double Gap = 0.35;

constexpr int LegendSteps = 16;  ///< places tried for the legend on either axis

// The costs of a place for text. To cover nothing but data costs 1.
constexpr double OverlapCost = 20;      ///< to lie on other text
constexpr double ForeignGateCost = 2;   ///< to lie in another gate
constexpr double LabelRankCost = 0.01;  ///< not to be the place before in the list of candidates
constexpr double LegendRankCost = 1e-4;

struct TextBlock {
    std::vector<std::string> lines;
    double width = 0;
};

TextBlock Measure(Canvas& canvas, const std::string& text, const TextStyle& style, double widest) {
    TextBlock block;
    for (const std::string& line : TextLines(text)) {
        block.lines.push_back(Ellipsised(canvas, line, style, widest));
        block.width = std::max(block.width, TextWidth(canvas, block.lines.back(), style));
    }
    return block;
}

/// A place for a box of some size in the plot area.
class Placing {
public:
    Placing(Canvas& canvas, const Layout& layout) : canvas_(canvas), gap_(Gap * layout.em) {
        const Box area = layout.AreaBox();
        bounds_ = {area.left + gap_, area.top + gap_, area.width - 2 * gap_, area.height - 2 * gap_};
    }

    /// The cheapest candidate, moved into the plot area; each costs `rankCost` more than the one before.
    /// `foreign` boxes are best avoided.
    Box Place(std::vector<Box> candidates, const std::vector<Box>& foreign, double rankCost) {
        std::vector<double> costs;
        for (Box& candidate : candidates) {
            candidate = MovedInside(candidate, bounds_);
            costs.push_back(Cost(candidate, foreign) + rankCost * static_cast<double>(costs.size()));
        }
        const auto best = std::min_element(costs.begin(), costs.end()) - costs.begin();
        placed_.push_back(candidates[static_cast<std::size_t>(best)]);
        return placed_.back();
    }

    double Spacing() const { return gap_; }
    const Box& Bounds() const { return bounds_; }

private:
    double Cost(const Box& box, const std::vector<Box>& foreign) const {
        const double size = box.width * box.height;
        double cost = canvas_.Ink(box);
        for (const Box& other : placed_)
            cost += OverlapCost * SharedArea(box, other) / size;
        for (const Box& other : foreign)
            cost += ForeignGateCost * SharedArea(box, other) / size;
        return cost;
    }

    Canvas& canvas_;
    double gap_;
    Box bounds_{};
    std::vector<Box> placed_;
};

/// Boxes of a size at the middles and ends of the sides of `frame`: 0 is its start, 1 its end, on both axes.
Box Anchored(const Box& frame, double width, double height, double x, double y) {
    return {frame.left + x * (frame.width - width), frame.top + y * (frame.height - height), width, height};
}

/// Whether an outline goes on beyond two sides of the plot area or more, as quadrants do. What lies beside it
/// would be taken for its neighbor's.
bool IsOpen(const Box& outline, const Box& area) {
    const int open = (outline.left <= area.left ? 1 : 0) + (outline.top <= area.top ? 1 : 0) +
                     (outline.Right() >= area.Right() ? 1 : 0) + (outline.Bottom() >= area.Bottom() ? 1 : 0);
    return open >= 2;
}

/// The best first: inside at the top, above, then the rest of the inside and the other sides.
std::vector<Box> LabelCandidates(const Box& outline, const Box& area, double width, double height,
                                 double gap) {
    const Box inner{outline.left + gap, outline.top + gap, outline.width - 2 * gap, outline.height - 2 * gap};
    const Box outer{outline.left - width - gap, outline.top - height - gap, outline.width + 2 * (width + gap),
                    outline.height + 2 * (height + gap)};
    const auto Inside = [&](double x, double y) { return Anchored(inner, width, height, x, y); };
    const auto Outside = [&](double x, double y) { return Anchored(outer, width, height, x, y); };
    const bool fits = width <= inner.width && height <= inner.height;
    if (fits && IsOpen(outline, area)) {
        return {Inside(0.5, 0), Inside(0.5, 1), Inside(0, 0),   Inside(1, 0),    Inside(0, 1),
                Inside(1, 1),   Inside(0, 0.5), Inside(1, 0.5), Inside(0.5, 0.5)};
    }
    return {Inside(0.5, 0),   Outside(0.5, 0), Inside(0.5, 1), Inside(0, 0),  Inside(1, 0),   Outside(0.5, 1),
            Outside(1, 0.5),  Outside(0, 0.5), Inside(0, 1),   Inside(1, 1),  Inside(0, 0.5), Inside(1, 0.5),
            Inside(0.5, 0.5), Outside(0, 0),   Outside(1, 0),  Outside(0, 1), Outside(1, 1)};
}

/// The outlines other than the one at `own` and those around it.
std::vector<Box> Foreign(const std::vector<Box>& outlines, std::size_t own) {
    std::vector<Box> foreign;
    const Box& box = outlines[own];
    for (std::size_t i = 0; i < outlines.size(); ++i) {
        if (i == own || outlines[i].width < 0) continue;
        const bool around = SharedArea(outlines[i], box) >= 0.99 * box.width * box.height;
        if (!around) foreign.push_back(outlines[i]);
    }
    return foreign;
}

class LabelDrawing {
public:
    LabelDrawing(Canvas& canvas, const Layout& layout)
        : canvas_(canvas), layout_(layout), placing_(canvas, layout) {}

    void DrawLegend(const std::vector<LegendEntry>& entries) {
        if (entries.empty()) return;
        const TextStyle style{LegendSize * layout_.em, DarkInk};
        const std::vector<LegendEntry> shown = FittingEntries(entries, style.size * LineHeight);
        std::vector<std::string> texts;
        double width = 0;
        for (const LegendEntry& entry : shown) {
            texts.push_back(Ellipsised(canvas_, TextLine(entry.label), style, 0.42 * layout_.area.width));
            width = std::max(width, TextWidth(canvas_, texts.back(), style));
        }
        const double padding = 0.5 * style.size;
        const double swatch = style.size;
        const Box box =
            PlaceLegend(width + swatch + 2.6 * padding,
                        static_cast<double>(texts.size()) * style.size * LineHeight + 1.2 * padding);
        FillBox(canvas_, box, White, 0.85);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const double top = box.top + 0.6 * padding + static_cast<double>(i) * style.size * LineHeight;
            FillBox(canvas_, {box.left + padding, top + 0.22 * style.size, swatch, 0.75 * style.size},
                    shown[i].color);
            DrawText(canvas_, texts[i], style, {box.left + 1.6 * padding + swatch, top + 0.95 * style.size});
        }
    }

    void DrawLabel(const Outline& outline, const std::vector<Box>& outlines, std::size_t index) {
        const Box& frame = outlines[index];
        if (frame.width < 0 || outline.label.empty()) return;
        const TextStyle style{LabelSize * layout_.em, TextColor(outline.color), true, true};
        const TextBlock block = Measure(canvas_, outline.label, style, 0.6 * layout_.area.width);
        const double height = static_cast<double>(block.lines.size()) * style.size * LineHeight;
        const Box box =
            placing_.Place(LabelCandidates(frame, layout_.AreaBox(), block.width, height, placing_.Spacing()),
                           Foreign(outlines, index), LabelRankCost);
        double baseline = box.top + 0.95 * style.size;
        for (const std::string& line : block.lines) {
            DrawText(canvas_, line, style, {box.left + box.width / 2, baseline}, Align::Center);
            baseline += style.size * LineHeight;
        }
    }

private:
    /// At most what fits into two thirds of the plot area, the last of them saying how many are missing.
    std::vector<LegendEntry> FittingEntries(std::vector<LegendEntry> entries, double lineHeight) const {
        const auto room = static_cast<std::size_t>(std::max(1.0, 0.66 * layout_.area.height / lineHeight));
        if (entries.size() <= room) return entries;
        const std::size_t missing = entries.size() - room + 1;
        entries.resize(room);
        entries.back() = {std::string("and ").append(std::to_string(missing)).append(" more"), White};
        return entries;
    }

    /// Corners first, then anywhere.
    Box PlaceLegend(double width, double height) {
        std::vector<Box> candidates;
        const auto Add = [&](double x, double y) {
            candidates.push_back(Anchored(placing_.Bounds(), width, height, x, y));
        };
        for (const Point& corner : {Point{1, 0}, Point{0, 0}, Point{1, 1}, Point{0, 1}})
            Add(corner.x, corner.y);
        for (int row = 0; row <= LegendSteps; ++row) {
            for (int column = LegendSteps; column >= 0; --column)
                Add(static_cast<double>(column) / LegendSteps, static_cast<double>(row) / LegendSteps);
        }
        return placing_.Place(std::move(candidates), {}, LegendRankCost);
    }

    Canvas& canvas_;
    const Layout& layout_;
    Placing placing_;
};

}  // namespace

void DrawLabels(Canvas& canvas, const Layout& layout, const Figure& figure,
                const std::vector<Box>& outlines) {
    LabelDrawing drawing(canvas, layout);
    drawing.DrawLegend(figure.legend);
    for (std::size_t i = 0; i < outlines.size(); ++i)
        drawing.DrawLabel(figure.outlines[i], outlines, i);
}

}  // namespace Host
