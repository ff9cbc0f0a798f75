// Density plots: counts per pixel, and their colors.
#include <orvane/OVPlotViewDensity.h>

#include "plot/count_walk.h"
#include "plot/population.h"

namespace Orvane {

void OVPlotViewDensity::RenderPlot(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                                   IOVCoordinateTransformerY* y) {
    bitmap.SetAllDataZero();
    if (auto* population = PopulationOf(data); population != nullptr) {
        RenderPlot_Part(data, bitmap, x, y, *population);
    } else {
        RenderPlot_All(data, bitmap, x, y);
    }
    // Deliberate: what lies on the border is dropped, not folded inward as in a dot plot.
    bitmap.SetEdgeDataZero();
}

void OVPlotViewDensity::RenderPlot_All(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                                       IOVCoordinateTransformerY* y) const {
    CountPixels(data, bitmap, *x, *y, EveryEvent{});
}

void OVPlotViewDensity::RenderPlot_Part(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                                        IOVCoordinateTransformerY* y,
                                        std::vector<FilterSection*>& population) const {
    CountPixels(data, bitmap, *x, *y, PopulationEvents{population});
}

void OVPlotViewDensity::SetBitmapColor(OVBitmapData& bitmap, float level, int* colors, int count) {
    const int max = bitmap.GetDataMax();
    if (max > 0) bitmap.SetDataIndexByMaxAndLevel(max, level);
    bitmap.SetPixelByIndex(colors, count);
}

}  // namespace Orvane
