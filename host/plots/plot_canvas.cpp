#include "plots/plot_canvas.h"

#include <algorithm>
#include <cmath>

#include <orvane/OVConvertLinearAndLog.h>

namespace Host {
namespace {

/// Pixels begin so much below their edges that rounding leaves no value on an edge, and the least one of an
/// axis least of all, on the pixel below.
constexpr double Nudge = 1.0 / 64;

struct World {
    double min;
    double max;
};

/// The values at `first` and at `last` pixels from the beginning of an axis over `pixels`.
World Extend(const Axis& axis, int pixels, double first, double last) {
    const auto at = [&](double low, double high, double position) {
        return low + position * (high - low) / pixels;
    };
    if (axis.alpha == 0) return {at(axis.min, axis.max, first), at(axis.min, axis.max, last)};
    const Orvane::OVConvertLinearAndLog scale;
    const double low = scale.LinearConvertToAsinh(axis.min, 1 / axis.alpha);
    const double high = scale.LinearConvertToAsinh(axis.max, 1 / axis.alpha);
    return {scale.AsinhConvertToLinear(at(low, high, first), 1 / axis.alpha),
            scale.AsinhConvertToLinear(at(low, high, last), 1 / axis.alpha)};
}

}  // namespace

std::unique_ptr<Orvane::IOVCoordinateTransformerX> MakeTransformerX(const Axis& axis, int pixels) {
    // Clamping transformers round: half a pixel on makes it the pixel's left edge that counts.
    const double first = -0.5 - Nudge;
    const World world = Extend(axis, pixels, first, first + pixels + 2 * CanvasBorder);
    return std::unique_ptr<Orvane::IOVCoordinateTransformerX>(
        Orvane::OVCoordinateTransformerXFactory::CreateTransformer(
            0, static_cast<float>(pixels + 2 * CanvasBorder), world.min, world.max, axis.alpha,
            axis.alpha > 0, true));
}

std::unique_ptr<Orvane::IOVCoordinateTransformerY> MakeTransformerY(const Axis& axis, int pixels) {
    // Rows count down, and rounding goes down with them.
    const double first = -CanvasBorder - 0.5 - Nudge;
    const World world = Extend(axis, pixels, first, first + pixels + 2 * CanvasBorder);
    return std::unique_ptr<Orvane::IOVCoordinateTransformerY>(
        Orvane::OVCoordinateTransformerYFactory::CreateTransformer(
            0, static_cast<float>(pixels + 2 * CanvasBorder), world.min, world.max, axis.alpha,
            axis.alpha > 0, true));
}

PlotCanvas::PlotCanvas(const PlotArea& area, const Axis& x, const Axis& y)
    : width_(area.width),
      height_(area.height),
      bits_(static_cast<std::size_t>(width_ + 2 * CanvasBorder) *
            static_cast<std::size_t>(height_ + 2 * CanvasBorder)),
      x_(MakeTransformerX(x, width_)),
      y_(MakeTransformerY(y, height_)) {
    bitmap_.Width = width_ + 2 * CanvasBorder;
    bitmap_.Height = height_ + 2 * CanvasBorder;
    bitmap_.Stride = bitmap_.Width * static_cast<int>(sizeof(int));
    bitmap_.Bits = bits_.data();
}

std::ptrdiff_t PlotCanvas::RowStart(int y) const {
    return static_cast<std::ptrdiff_t>(y + CanvasBorder) * bitmap_.Width + CanvasBorder;
}

std::vector<int> PlotCanvas::Cells() const {
    std::vector<int> cells;
    cells.reserve(bits_.size());
    for (int y = 0; y < height_; ++y) {
        const auto row = bits_.begin() + RowStart(y);
        cells.insert(cells.end(), row, row + width_);
    }
    return cells;
}

void PlotCanvas::SetCells(const std::vector<int>& cells) {
    for (int y = 0; y < height_; ++y)
        std::copy_n(cells.begin() + static_cast<std::ptrdiff_t>(y) * width_, width_,
                    bits_.begin() + RowStart(y));
}

std::vector<std::uint32_t> PlotCanvas::Colors() const {
    const std::vector<int> cells = Cells();
    return {cells.begin(), cells.end()};
}

void PlotCanvas::Spread(int width, int (*merge)(int, int)) {
    std::vector<int> cells = Cells();
    const auto columns = static_cast<std::size_t>(width_);
    for (int step = 1; step < width; ++step) {
        for (auto row = cells.begin(); row != cells.end(); row += width_) {
            for (int x = width_ - 1; x > 0; --x)
                row[x] = merge(row[x], row[x - 1]);
        }
        for (std::size_t i = cells.size(); i-- > columns;)
            cells[i] = merge(cells[i], cells[i - columns]);
    }
    SetCells(cells);
}

}  // namespace Host
