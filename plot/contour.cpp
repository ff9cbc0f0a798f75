// Contour plots: the counts that lines are traced from, and the first event of every pixel.
#include <limits>

#include <orvane/OVPlotViewContour.h>

#include "plot/count_walk.h"
#include "plot/population.h"

namespace Orvane {
namespace {

/// Calls `draw(k, pixels, number)` for every section k, where `number` is the global number of its first
/// event. Every event is mapped, because those outside a population have numbers too.
template <class Draw>
void WalkNumberedPixels(const OVPlotData& data, IOVCoordinateTransformerX& x, IOVCoordinateTransformerY& y,
                        const Draw& draw) {
    int number = 0;
    WalkPixels(*data.XSections, *data.YSections, x, y, EveryEvent{},
               [&](std::size_t k, const Pixels& pixels) {
                   draw(k, pixels, number);
                   number += pixels.Count;
               });
}

}  // namespace

void OVPlotViewContour::RenderPlot(OVPlotData& data, OVBitmapData& counts, IOVCoordinateTransformerX* x,
                                   IOVCoordinateTransformerY* y) {
    counts.SetAllDataZero();
    if (auto* population = PopulationOf(data); population != nullptr) {
        RenderPlot_Part(data, counts, x, y, *population);
    } else {
        RenderPlot_All(data, counts, x, y);
    }
    counts.SetEdgeDataZero();
}

void OVPlotViewContour::RenderPlot_All(OVPlotData& data, OVBitmapData& counts, IOVCoordinateTransformerX* x,
                                       IOVCoordinateTransformerY* y) const {
    CountPixels(data, counts, *x, *y, EveryEvent{});
}

void OVPlotViewContour::RenderPlot_Part(OVPlotData& data, OVBitmapData& counts, IOVCoordinateTransformerX* x,
                                        IOVCoordinateTransformerY* y,
                                        std::vector<FilterSection*>& population) const {
    CountPixels(data, counts, *x, *y, PopulationEvents{population});
}

void OVPlotViewContour::RenderPlot(OVPlotData& data, OVBitmapData& counts, OVBitmapData& firstEvent,
                                   IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y) {
    counts.SetAllDataZero();
    firstEvent.SetAllData(std::numeric_limits<int>::max());
    if (auto* population = PopulationOf(data); population != nullptr) {
        RenderPlot_Part(data, counts, firstEvent, x, y, *population);
    } else {
        RenderPlot_All(data, counts, firstEvent, x, y);
    }
    // Deliberate: only counts are dropped, so that events on the border become dots.
    counts.SetEdgeDataZero();
}

void OVPlotViewContour::RenderPlot_All(OVPlotData& data, OVBitmapData& counts, OVBitmapData& firstEvent,
                                       IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y) const {
    WalkNumberedPixels(data, *x, *y, [&](std::size_t /*k*/, const Pixels& pixels, int number) {
        CountCells(counts, pixels);
        KeepFirstEvents(firstEvent, pixels, number);
    });
}

void OVPlotViewContour::RenderPlot_Part(OVPlotData& data, OVBitmapData& counts, OVBitmapData& firstEvent,
                                        IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y,
                                        std::vector<FilterSection*>& population) const {
    WalkNumberedPixels(data, *x, *y, [&](std::size_t k, const Pixels& pixels, int number) {
        const std::uint32_t* select = population[k]->Flags;
        CountSelectedCells(counts, pixels, select);
        KeepFirstSelectedEvents(firstEvent, pixels, select, number);
    });
}

}  // namespace Orvane
