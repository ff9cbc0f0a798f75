// Pixels of events, and the kernel frame that visits their cells of a raster. What happens to a cell is a
// policy of the kernel.
#pragma once

#include <cstddef>

#include <orvane/OVBitmapData.h>

#include "foundation/instruction_set.h"

namespace Orvane {

/// The pixels of `Count` events: event i lies at (Columns[i], Rows[i]).
struct Pixels {
    const unsigned short* Columns;
    const unsigned short* Rows;
    int Count;
};

/// Calls `change(cell, i)` for every event i, in order. Every pixel must lie in the raster.
template <class Change>
ORVANE_KERNEL_INLINE void ChangeCells(const OVBitmapData& raster, const Pixels& pixels,
                                      const Change& change) {
    auto* bytes = reinterpret_cast<unsigned char*>(raster.Bits);
    const auto stride = static_cast<std::size_t>(raster.Stride);
    for (int i = 0; i < pixels.Count; ++i) {
        unsigned char* row = bytes + stride * pixels.Rows[i];
        change(reinterpret_cast<int*>(row)[pixels.Columns[i]], i);
    }
}

}  // namespace Orvane
