// Density and contour plots.
#include <orvane/OVPlotViewContour.h>
#include <orvane/OVPlotViewDensity.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "contour_lines.h"
#include "drawn_events.h"
#include "plot_canvas.h"

namespace Host {
namespace {

constexpr int DensityLevels = 256;
constexpr int ContourLevels = 10;
/// The largest cell of a raster that stands for densities.
constexpr int LargestCell = 1 << 20;

/// The counts in the canvas, smoothed so far that the dots of single events run together where events are
/// frequent: the width shrinks with the sixth root of their number, as that of kernels for densities in a
/// plane does.
DensityGrid SmoothCounts(const PlotCanvas& canvas, std::uint64_t events) {
    constexpr double Share = 0.055;
    const double size = std::sqrt(static_cast<double>(canvas.Width()) * canvas.Height());
    const double sigma = std::max(1.0, Share * size * std::pow(static_cast<double>(events) + 1, -1.0 / 6));
    const std::vector<int> cells = canvas.Cells();
    return Smooth({canvas.Width(), canvas.Height(), {cells.begin(), cells.end()}}, sigma);
}

float Largest(const DensityGrid& grid) {
    return *std::max_element(grid.cells.begin(), grid.cells.end());
}

/// The densities as cells, `largest` as LargestCell.
std::vector<int> ToCells(const DensityGrid& grid, float largest) {
    std::vector<int> cells;
    cells.reserve(grid.cells.size());
    for (const float density : grid.cells)
        cells.push_back(static_cast<int>(density / largest * LargestCell));
    return cells;
}

/// Dots for the first events of the pixels whose density in the canvas is below `level` cells.
std::vector<AreaPoint> FindOutliers(PlotCanvas& canvas, Orvane::OVPlotData& data,
                                    Orvane::OVBitmapData& firstEvents, int level) {
    // The library truncates the product; half a cell more keeps rounding from making it the level below.
    const float share = (static_cast<float>(level) + 0.5F) / LargestCell;
    Orvane::OVPlotViewContour().RenderZeroLevelPos(data, canvas.Bitmap(), firstEvents, share, canvas.X(),
                                                   canvas.Y());
    std::vector<AreaPoint> dots;
    for (int i = 0; i < firstEvents.Width * firstEvents.Height; ++i) {
        const int place = firstEvents.Bits[i];
        if (place == std::numeric_limits<int>::max()) continue;
        const float x = static_cast<float>(place & 0xFFFF) - CanvasShift;
        const float y = static_cast<float>(place >> 16) - CanvasShift;
        dots.push_back({std::clamp(x, 0.5F, static_cast<float>(canvas.Width()) - 0.5F),
                        std::clamp(y, 0.5F, static_cast<float>(canvas.Height()) - 0.5F)});
    }
    return dots;
}

Color Unpack(std::uint32_t cell) {
    return {static_cast<unsigned char>(cell >> 16), static_cast<unsigned char>(cell >> 8),
            static_cast<unsigned char>(cell)};
}

/// The density below which outliers begin, and above it one line after the other.
std::vector<float> FindLevels(const DensityGrid& grid) {
    std::vector<double> shares;
    for (int line = 0; line < ContourLevels; ++line)
        shares.push_back(1 - (line + 0.5) / ContourLevels);
    return LevelsEnclosing(grid, shares);
}

}  // namespace

Figure DensityFigure(const PlotFrame& frame, const PlotEvents& events) {
    DrawnEvents drawn(events);
    Figure figure = BeginFigure(frame, {&drawn, 1});
    PlotCanvas canvas(FindPlotArea(frame.size), frame.x, frame.y);
    Orvane::OVPlotViewDensity view;
    view.RenderPlot(*drawn.Describe({}), canvas.Bitmap(), canvas.X(), canvas.Y());
    DensityGrid grid = SmoothCounts(canvas, drawn.Count());
    for (float& density : grid.cells)
        density = std::sqrt(density);
    canvas.Spread(DotWidth(frame.size, drawn.Count()), [](int a, int b) { return std::max(a, b); });
    const std::vector<int> counts = canvas.Cells();
    std::vector<int> cells = ToCells(grid, std::max(Largest(grid), std::numeric_limits<float>::min()));
    for (std::size_t i = 0; i < cells.size(); ++i)
        cells[i] = counts[i] > 0 ? std::max(cells[i], 1) : 0;
    canvas.SetCells(cells);
    const std::vector<std::uint32_t> table = DensityColors(DensityLevels);
    std::vector<int> colors(table.begin(), table.end());
    view.SetBitmapColor(canvas.Bitmap(), 1.0F / DensityLevels, colors.data(),
                        static_cast<int>(colors.size()));
    figure.cells = canvas.Colors();
    return figure;
}

Figure ContourFigure(const PlotFrame& frame, const PlotEvents& events) {
    DrawnEvents drawn(events);
    Figure figure = BeginFigure(frame, {&drawn, 1});
    PlotCanvas canvas(FindPlotArea(frame.size), frame.x, frame.y);
    PlotCanvas firstEvents(FindPlotArea(frame.size), frame.x, frame.y);
    const auto data = drawn.Describe({});
    Orvane::OVPlotViewContour view;
    view.RenderPlot(*data, canvas.Bitmap(), firstEvents.Bitmap(), canvas.X(), canvas.Y());
    const DensityGrid grid = SmoothCounts(canvas, drawn.Count());
    const float largest = Largest(grid);
    if (largest == 0) return figure;
    const std::vector<float> levels = FindLevels(grid);
    const std::vector<std::uint32_t> colors = DensityColors(ContourLevels);
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const std::vector<ContourLine> lines =
            TraceContour(grid, levels[i], TextColor(Unpack(colors[i + 1])));
        figure.lines.insert(figure.lines.end(), lines.begin(), lines.end());
    }
    canvas.SetCells(ToCells(grid, largest));
    figure.dots = FindOutliers(canvas, *data, firstEvents.Bitmap(),
                               static_cast<int>(levels[0] / largest * LargestCell));
    return figure;
}

}  // namespace Host
