// Bins on the pixel grid: of one axis, or of two, where the bins are a raster whose rows are the x axis.
#include <orvane/OVBinConstructor.h>
#include <orvane/OVBitmapData.h>

#include "plot/count_kernels.h"
#include "plot/histogram_kernels.h"
#include "plot/walk.h"

namespace Orvane {
namespace {

/// Adds in 32-bit arithmetic that wraps.
void AddTo(int& total, int count) {
    total = static_cast<int>(static_cast<unsigned>(total) + static_cast<unsigned>(count));
}

OVBitmapData RasterOf(int* bins, int width, int height) {
    OVBitmapData raster;
    raster.Height = height;
    raster.Width = width;
    raster.Stride = 4 * width;
    raster.Bits = bins;
    return raster;
}

template <class Events>
void Construct1D(int* bins, int n, const std::vector<SignalSection*>& sections, IOVCoordinateTransformerX& x,
                 const Events& events, int& maxBin, int& total) {
    WalkBins(sections, x, events, [&](std::size_t /*k*/, const unsigned short* columns, int count) {
        CountByGate(columns, count, nullptr, {bins, n}, {});
        AddTo(total, count);
    });
    if (n > 0) bins[0] = bins[n - 1] = 0;
    maxBin = RasterOf(bins, n, 1).GetDataMax();
}

template <class Events>
void Construct2D(int* bins, int n, const std::vector<SignalSection*>& xSections,
                 const std::vector<SignalSection*>& ySections, IOVCoordinateTransformerX& x,
                 IOVCoordinateTransformerY& y, const Events& events, int& maxBin, int& total) {
    OVBitmapData grid = RasterOf(bins, n, n);
    WalkPixels(xSections, ySections, x, y, events, [&](std::size_t /*k*/, const Pixels& pixels) {
        CountCells(grid, {pixels.Rows, pixels.Columns, pixels.Count});
        AddTo(total, pixels.Count);
    });
    if (n == 1) bins[0] = 0;
    if (n > 1) grid.SetEdgeDataZero();
    maxBin = grid.GetDataMax();
}

}  // namespace

void OVBinConstructor::ConstructBin_1D(int* bins, int n, std::vector<SignalSection*>& sections,
                                       IOVCoordinateTransformerX* x, int& maxBin, int& total) {
    Construct1D(bins, n, sections, *x, EveryEvent{}, maxBin, total);
}

void OVBinConstructor::ConstructBin_1D(int* bins, int n, std::vector<SignalSection*>& sections,
                                       std::vector<FilterSection*>& filters, IOVCoordinateTransformerX* x,
                                       int& maxBin, int& total) {
    Construct1D(bins, n, sections, *x, PopulationEvents{filters}, maxBin, total);
}

void OVBinConstructor::ConstructBin_2D(int* bins, int n, std::vector<SignalSection*>& xSections,
                                       std::vector<SignalSection*>& ySections, IOVCoordinateTransformerX* x,
                                       IOVCoordinateTransformerY* y, int& maxBin, int& total) {
    Construct2D(bins, n, xSections, ySections, *x, *y, EveryEvent{}, maxBin, total);
}

void OVBinConstructor::ConstructBin_2D(int* bins, int n, std::vector<SignalSection*>& xSections,
                                       std::vector<SignalSection*>& ySections,
                                       std::vector<FilterSection*>& filters, IOVCoordinateTransformerX* x,
                                       IOVCoordinateTransformerY* y, int& maxBin, int& total) {
    Construct2D(bins, n, xSections, ySections, *x, *y, PopulationEvents{filters}, maxBin, total);
}

}  // namespace Orvane
