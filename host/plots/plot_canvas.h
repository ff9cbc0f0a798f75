// The raster of a plot area, and the transformers that put values on its pixels.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <orvane/OVBitmapData.h>
#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>

#include "picture/figure.h"

namespace Host {

/// The transformers below keep what is off scale in one more pixel on either side of the axis: the border of
/// the raster.
constexpr int CanvasBorder = 1;

/// Column 1 to column `pixels` hold the values of the axis, each from the left edge of its pixel to below the
/// right one; column 0 and the one behind them hold what is off scale.
std::unique_ptr<Orvane::IOVCoordinateTransformerX> MakeTransformerX(const Axis& axis, int pixels);

/// The same for rows, from the top down.
std::unique_ptr<Orvane::IOVCoordinateTransformerY> MakeTransformerY(const Axis& axis, int pixels);

/// What the library needs to draw a plot of two dimensions. The cells of the plot area are handed around
/// without the border, row by row.
class PlotCanvas {
public:
    PlotCanvas(const PlotArea& area, const Axis& x, const Axis& y);
    PlotCanvas(const PlotCanvas&) = delete;
    PlotCanvas& operator=(const PlotCanvas&) = delete;
    ~PlotCanvas() = default;

    int Width() const { return width_; }
    int Height() const { return height_; }
    Orvane::OVBitmapData& Bitmap() { return bitmap_; }
    Orvane::IOVCoordinateTransformerX* X() { return x_.get(); }
    Orvane::IOVCoordinateTransformerY* Y() { return y_.get(); }

    std::vector<int> Cells() const;
    void SetCells(const std::vector<int>& cells);
    std::vector<std::uint32_t> Colors() const;

    /// Lets every cell reach over `width` pixels to the right and down. Where cells meet, `merge` of the two
    /// stands there; it depends neither on their order nor on how often a cell comes.
    void Spread(int width, int (*merge)(int, int));

private:
    std::ptrdiff_t RowStart(int y) const;

    int width_;
    int height_;
    std::vector<int> bits_;
    Orvane::OVBitmapData bitmap_;
    std::unique_ptr<Orvane::IOVCoordinateTransformerX> x_;
    std::unique_ptr<Orvane::IOVCoordinateTransformerY> y_;
};

}  // namespace Host
