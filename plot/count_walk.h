// Counting the events of a plot into its raster, whichever they are.
#pragma once

#include <orvane/OVPlotData.h>

#include "plot/count_kernels.h"
#include "plot/walk.h"

namespace Orvane {

/// Adds every event that `events` lets through to its cell.
template <class Events>
void CountPixels(const OVPlotData& data, const OVBitmapData& counts, IOVCoordinateTransformerX& x,
                 IOVCoordinateTransformerY& y, const Events& events) {
    WalkPixels(*data.XSections, *data.YSections, x, y, events,
               [&](std::size_t /*k*/, const Pixels& pixels) { CountCells(counts, pixels); });
}

}  // namespace Orvane
