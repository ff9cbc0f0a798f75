#include "plots/contour_lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numeric>
#include <utility>

namespace Host {
namespace {

std::vector<float> Gaussian(double sigma) {
    const int reach = static_cast<int>(std::ceil(3 * sigma));
    std::vector<float> weights;
    for (int i = -reach; i <= reach; ++i)
        weights.push_back(static_cast<float>(std::exp(-0.5 * i * i / (sigma * sigma))));
    const float sum = std::accumulate(weights.begin(), weights.end(), 0.0F);
    for (float& weight : weights)
        weight /= sum;
    return weights;
}

/// Smooths the rows and turns rows into columns: twice, and both directions are smooth. Most cells of most
/// grids are 0 and cost nothing.
DensityGrid SmoothRowsTransposed(const DensityGrid& grid, const std::vector<float>& weights) {
    const auto reach = static_cast<std::ptrdiff_t>(weights.size() / 2);
    DensityGrid result{grid.height, grid.width, {}};
    result.cells.resize(grid.cells.size());
    std::vector<float> row(static_cast<std::size_t>(grid.width) + weights.size() - 1);
    for (int y = 0; y < grid.height; ++y) {
        std::fill(row.begin(), row.end(), 0.0F);
        for (int x = 0; x < grid.width; ++x) {
            const float cell = grid.cells[grid.Place(x, y)];
            if (cell == 0) continue;
            std::transform(weights.begin(), weights.end(), row.begin() + x, row.begin() + x,
                           [cell](float weight, float sum) { return sum + weight * cell; });
        }
        for (int x = 0; x < grid.width; ++x)
            result.cells[result.Place(y, x)] = row[static_cast<std::size_t>(x + reach)];
    }
    return result;
}

/// Follows one height through the squares between the centers of neighbouring cells, the grid having a border
/// of zeros. A line crosses edges of squares; every edge that is crossed is where the line leaves one square,
/// whose higher corner comes first in clockwise order, and enters another.
class Tracer {
public:
    Tracer(const DensityGrid& grid, float level)
        : grid_(grid),
          level_(level),
          columns_(grid.width + 2),
          next_(2 * static_cast<std::size_t>(columns_) * static_cast<std::size_t>(grid.height + 2), NoEdge) {}

    std::vector<ContourLine> Trace(Color color) {
        for (int y = 0; y <= grid_.height; ++y) {
            for (int x = 0; x <= grid_.width; ++x)
                Cross(x, y);
        }
        std::vector<ContourLine> lines;
        for (std::size_t edge = 0; edge < next_.size(); ++edge) {
            if (next_[edge] != NoEdge) lines.push_back({Follow(static_cast<int>(edge)), color});
        }
        return lines;
    }

private:
    static constexpr int NoEdge = -1;

    /// Of the node in column x and row y of the grid with its border.
    float Height(int x, int y) const {
        if (x == 0 || y == 0 || x > grid_.width || y > grid_.height) return 0;
        return grid_.cells[grid_.Place(x - 1, y - 1)];
    }

    /// The edge from a node to the one on its right, or to the one below.
    int EdgeRight(int x, int y) const { return 2 * (y * columns_ + x); }
    int EdgeDown(int x, int y) const { return EdgeRight(x, y) + 1; }

    /// Notes how lines cross the square right of and below a node.
    void Cross(int x, int y) {
        const std::array<float, 4> heights{Height(x, y), Height(x + 1, y), Height(x + 1, y + 1),
                                           Height(x, y + 1)};
        const std::array<int, 4> edges{EdgeRight(x, y), EdgeDown(x + 1, y), EdgeRight(x, y + 1),
                                       EdgeDown(x, y)};
        const auto isHigh = [&](unsigned corner) { return heights[corner % 4] >= level_; };
        const auto leaves = [&](unsigned edge) { return isHigh(edge) && !isHigh(edge + 1); };
        const auto enters = [&](unsigned edge) { return !isHigh(edge) && isHigh(edge + 1); };
        const float middle = 0.25F * (heights[0] + heights[1] + heights[2] + heights[3]);
        // Where all four edges are crossed, the line goes around the corners that differ from the middle.
        const unsigned step = middle >= level_ ? 1 : 3;
        for (unsigned edge = 0; edge < 4; ++edge) {
            if (!leaves(edge)) continue;
            unsigned other = edge + step;
            while (!enters(other % 4))
                other += step;
            next_[static_cast<std::size_t>(edges[edge])] = edges[other % 4];
        }
    }

    std::vector<AreaPoint> Follow(int first) {
        std::vector<AreaPoint> points;
        for (int edge = first; next_[static_cast<std::size_t>(edge)] != NoEdge;) {
            points.push_back(PointOn(edge));
            edge = std::exchange(next_[static_cast<std::size_t>(edge)], NoEdge);
        }
        return points;
    }

    AreaPoint PointOn(int edge) const {
        const int x = edge / 2 % columns_;
        const int y = edge / 2 / columns_;
        const bool down = edge % 2 != 0;
        const float from = Height(x, y);
        const float to = Height(x + (down ? 0 : 1), y + (down ? 1 : 0));
        const float part = (level_ - from) / (to - from);
        const float left = static_cast<float>(x) + (down ? 0 : part) - 0.5F;
        const float top = static_cast<float>(y) + (down ? part : 0) - 0.5F;
        return {std::clamp(left, 0.0F, static_cast<float>(grid_.width)),
                std::clamp(top, 0.0F, static_cast<float>(grid_.height))};
    }

    const DensityGrid& grid_;
    float level_;
    int columns_;
    std::vector<int> next_;  ///< for each edge that a line leaves a square by, the one that it came in by
};

}  // namespace

DensityGrid Smooth(const DensityGrid& grid, double sigma) {
    const std::vector<float> weights = Gaussian(sigma);
    return SmoothRowsTransposed(SmoothRowsTransposed(grid, weights), weights);
}

std::vector<float> Smooth(const std::vector<float>& row, double sigma) {
    const int width = static_cast<int>(row.size());
    return SmoothRowsTransposed({width, 1, row}, Gaussian(sigma)).cells;
}

std::vector<float> LevelsEnclosing(const DensityGrid& grid, const std::vector<double>& shares) {
    std::vector<float> heights = grid.cells;
    std::sort(heights.begin(), heights.end(), std::greater<>());
    const double total = std::accumulate(heights.begin(), heights.end(), 0.0);
    std::vector<float> levels;
    for (const double share : shares) {
        double above = 0;
        float level = 0;
        for (std::size_t i = 0; i < heights.size() && above < share * total; ++i) {
            level = heights[i];
            above += level;
        }
        levels.push_back(level);
    }
    return levels;
}

std::vector<ContourLine> TraceContour(const DensityGrid& grid, float level, Color color) {
    return Tracer(grid, level).Trace(color);
}

}  // namespace Host
