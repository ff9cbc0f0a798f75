// Density and contour plots.
#include <orvane/OVPlotViewContour.h>
#include <orvane/OVPlotViewDensity.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "plots/contour_lines.h"
#include "plots/drawn_events.h"
#include "plots/plot_canvas.h"

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
    constexpr double Share = 0.08;
    const double size = std::sqrt(static_cast<double>(canvas.Width()) * canvas.Height());
    const double sigma = std::max(1.0, Share * size * std::pow(static_cast<double>(events) + 1, -1.0 / 6));
    const std::vector<int> cells = canvas.Cells();
    return Smooth({canvas.Width(), canvas.Height(), {cells.begin(), cells.end()}}, sigma);
}

/// The cell of every pixel with events: the share of the events that lie where it is less dense, so that
/// sparse populations have their colors, too. 0 for the others.
std::vector<int> RankCells(const DensityGrid& grid, const std::vector<int>& counts) {
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] > 0) order.push_back(i);
    }
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return grid.cells[a] < grid.cells[b]; });
    double total = 0;
    for (const std::size_t i : order)
        total += counts[i];
    std::vector<int> cells(counts.size());
    double below = 0;
    for (const std::size_t i : order) {
        below += counts[i];
        cells[i] = std::max(1, static_cast<int>(below / total * LargestCell));
    }
    return cells;
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

/// Dots on the pixels with events whose density in the canvas is below `level` cells. The library marks
/// them with the place of their first event before rounding; the dot goes where the raster has it.
std::vector<AreaPoint> FindOutliers(PlotCanvas& canvas, Orvane::OVPlotData& data,
                                    Orvane::OVBitmapData& firstEvents, int level) {
    // The library truncates the product; half a cell more keeps rounding from making it the level below.
    const float share = (static_cast<float>(level) + 0.5F) / LargestCell;
    Orvane::OVPlotViewContour().RenderZeroLevelPos(data, canvas.Bitmap(), firstEvents, share, canvas.X(),
                                                   canvas.Y());
    std::vector<AreaPoint> dots;
    for (int i = 0; i < firstEvents.Width * firstEvents.Height; ++i) {
        if (firstEvents.Bits[i] == std::numeric_limits<int>::max()) continue;
        const int x = std::clamp(i % firstEvents.Width - CanvasBorder, 0, canvas.Width() - 1);
        const int y = std::clamp(i / firstEvents.Width - CanvasBorder, 0, canvas.Height() - 1);
        dots.push_back({static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F});
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
    shares.reserve(ContourLevels);
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
    const DensityGrid grid = SmoothCounts(canvas, drawn.Count());
    canvas.SetCells(RankCells(grid, canvas.Cells()));
    canvas.Spread(DotWidth(frame.size, drawn.Count()), [](int a, int b) { return std::max(a, b); });
    const std::vector<std::uint32_t> table = DensityColors(DensityLevels + 1);
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
    const std::vector<std::uint32_t> colors = DensityColors(ContourLevels + ContourLevels / 2);
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const std::vector<ContourLine> lines = TraceContour(grid, levels[i], Unpack(colors[i + 1]));
        figure.lines.insert(figure.lines.end(), lines.begin(), lines.end());
    }
    canvas.SetCells(ToCells(grid, largest));
    figure.dots = FindOutliers(canvas, *data, firstEvents.Bitmap(),
                               static_cast<int>(levels[0] / largest * LargestCell));
    return figure;
}

}  // namespace Host
