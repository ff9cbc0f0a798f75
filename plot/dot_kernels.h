// What a dot plot does with the cells of its events.
#pragma once

#include <orvane/OVBitmapData.h>

#include "plot/pixels.h"

namespace Orvane {

/// Sets the cell of every event to `v`.
void MarkCells(const OVBitmapData& raster, const Pixels& pixels, int v);

/// Raises the cell of every event i to numbers[i] where it is smaller, compared signed.
void RaiseCells(const OVBitmapData& raster, const Pixels& pixels, const unsigned short* numbers);

/// Sets the bits of `flag` in the cell of every event.
void FlagCells(const OVBitmapData& raster, const Pixels& pixels, int flag);

}  // namespace Orvane
