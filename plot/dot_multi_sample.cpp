// The dot plot of several samples: every event sets the bit of its sample.
#include <orvane/OVPlotViewDot_MultiSample.h>

#include "plot/dot_kernels.h"
#include "plot/population.h"
#include "plot/walk.h"

namespace Orvane {
namespace {

template <class Events>
void RenderEvents(const OVPlotData& data, const OVBitmapData& bitmap, int flag, IOVCoordinateTransformerX& x,
                  IOVCoordinateTransformerY& y, const Events& events) {
    WalkPixels(*data.XSections, *data.YSections, x, y, events,
               [&](std::size_t /*k*/, const Pixels& pixels) { FlagCells(bitmap, pixels, flag); });
}

int FlagOf(const OVPlotData& data) {
    return static_cast<int>(1U << (static_cast<unsigned>(data.SampleIndex) % 32));
}

}  // namespace

void OVPlotViewDot_MultiSample::RenderPlot(std::vector<OVPlotData*>& samples, OVBitmapData& bitmap,
                                           IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y) {
    bitmap.SetAllDataZero();
    for (OVPlotData* data : samples) {
        if (data->XSections == nullptr) continue;
        const int flag = FlagOf(*data);
        if (auto* population = PopulationOf(*data); population != nullptr) {
            RenderPlot_Part(*data, bitmap, flag, x, y, *population);
        } else {
            RenderPlot_All(*data, bitmap, flag, x, y);
        }
        bitmap.MoveEdgeDataFlag(flag);
    }
}

void OVPlotViewDot_MultiSample::RenderPlot_All(OVPlotData& data, OVBitmapData& bitmap, int flag,
                                               IOVCoordinateTransformerX* x,
                                               IOVCoordinateTransformerY* y) const {
    RenderEvents(data, bitmap, flag, *x, *y, EveryEvent{});
}

void OVPlotViewDot_MultiSample::RenderPlot_Part(OVPlotData& data, OVBitmapData& bitmap, int flag,
                                                IOVCoordinateTransformerX* x, IOVCoordinateTransformerY* y,
                                                std::vector<FilterSection*>& population) const {
    RenderEvents(data, bitmap, flag, *x, *y, PopulationEvents{population});
}

void OVPlotViewDot_MultiSample::SetBitmapColor(OVBitmapData& bitmap, int* colors, int count) {
    bitmap.SetPixelByIndex(colors, count);
}

}  // namespace Orvane
