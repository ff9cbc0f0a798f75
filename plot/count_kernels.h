// What density and contour plots do with the cells of their events: count them, and remember the first one.
#pragma once

#include <cstdint>

#include <orvane/OVBitmapData.h>

#include "plot/pixels.h"

namespace Orvane {

/// Adds 1 to the cell of every event, in 32-bit arithmetic that wraps.
void CountCells(const OVBitmapData& raster, const Pixels& pixels);

/// The same for the events whose bit in `select` is set; bit i % 32 of word i / 32 belongs to event i.
void CountSelectedCells(const OVBitmapData& raster, const Pixels& pixels, const std::uint32_t* select);

/// Lowers the cell of every event i to `number` + i where it is larger. Cells and numbers are not negative.
void KeepFirstEvents(const OVBitmapData& raster, const Pixels& pixels, int number);

/// The same for the events whose bit in `select` is set.
void KeepFirstSelectedEvents(const OVBitmapData& raster, const Pixels& pixels, const std::uint32_t* select,
                             int number);

}  // namespace Orvane
