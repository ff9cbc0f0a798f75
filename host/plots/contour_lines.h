// Lines of equal height through a grid of densities.
#pragma once

#include <cstddef>
#include <vector>

#include "picture/figure.h"

namespace Host {

/// Densities at the centers of pixels, row by row from the top.
struct DensityGrid {
    int width;
    int height;
    std::vector<float> cells;

    std::size_t Place(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

/// `grid` smoothed by a Gaussian of standard deviation `sigma` pixels. Beyond the border everything is 0.
DensityGrid Smooth(const DensityGrid& grid, double sigma);

/// The same for one row.
std::vector<float> Smooth(const std::vector<float>& row, double sigma);

/// For each of `shares` (0 to 1) the density above which that share of the grid's total lies; 0 where there
/// is nothing.
std::vector<float> LevelsEnclosing(const DensityGrid& grid, const std::vector<double>& shares);

/// The lines along which the grid, interpolated between centers, has the height `level` > 0, each as long as
/// it goes. Beyond its border the grid is taken as 0, so every line is closed. Points are in pixels from the
/// upper left corner of the grid.
std::vector<ContourLine> TraceContour(const DensityGrid& grid, float level, Color color);

}  // namespace Host
