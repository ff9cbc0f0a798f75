// A plot in terms of data values and of the pixels of its plot area, ready to be drawn.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "picture/colors.h"

namespace Host {

/// From `min` at the left or bottom edge of the plot area to `max` at the other.
struct Axis {
    std::string label;
    double min = 0;
    double max = 1;
    /// The width of the linear region of an asinh axis, in data units; 0 for a linear axis.
    double alpha = 0;
};

/// A whole picture in units of 1/96 inch, and how many pixels stand for a unit.
struct PictureSize {
    int width = 640;
    int height = 520;
    int scale = 1;
};

/// The pixels of the picture between the axes.
struct PlotArea {
    int left;
    int top;
    int width;
    int height;
};

/// The same for every picture of that size, so that a raster can be made before the picture.
PlotArea FindPlotArea(const PictureSize& size);

/// A point in pixels of the plot area, from its upper left corner.
struct AreaPoint {
    float x;
    float y;
};

/// A point in data values.
struct DataPoint {
    double x;
    double y;
};

/// The border of a gate, its last point joined to the first. Infinite values mean that the gate is open
/// there: up to the edge of the plot area.
struct Outline {
    std::string label;  ///< may have several lines: a name, a per cent
    std::vector<DataPoint> points;
    Color color;
};

/// Its last point is joined to the first.
struct ContourLine {
    std::vector<AreaPoint> points;
    Color color;
};

/// A histogram: a filled curve, its height in each pixel column of the plot area as a share of the area's
/// height.
struct Curve {
    std::vector<float> heights;
    Color color;
};

struct LegendEntry {
    std::string label;
    Color color;
};

/// How many of the shown population's events have values outside the axes.
struct OffScale {
    std::uint64_t left = 0;
    std::uint64_t right = 0;
    std::uint64_t below = 0;
    std::uint64_t above = 0;
};

struct Figure {
    PictureSize size;
    std::string title;
    std::string subtitle;  ///< which events and how many
    Axis x;
    Axis y;
    /// One color per pixel of the plot area, row by row: 0xFFRRGGBB, or 0 where nothing is drawn. May be
    /// empty.
    std::vector<std::uint32_t> cells;
    std::vector<ContourLine> lines;
    std::vector<AreaPoint> dots;
    std::vector<Curve> curves;
    std::vector<Outline> outlines;
    std::vector<LegendEntry> legend;
    OffScale offScale;
};

/// The picture as the bytes of a PNG file. Several threads may draw at a time. Throws std::runtime_error when
/// it cannot be drawn, for instance because it is too large.
std::string DrawPng(const Figure& figure);

}  // namespace Host
