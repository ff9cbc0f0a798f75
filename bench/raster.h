// A raster with cells of its own, for benchmarks that draw.
#pragma once

#include <cstddef>
#include <vector>

#include <orvane/OVBitmapData.h>

namespace Orvane::Bench {

/// A square of `size` by `size` cells, all 0.
struct Raster : OVBitmapData {
    explicit Raster(int size) : Cells(static_cast<std::size_t>(size) * static_cast<std::size_t>(size)) {
        Width = Height = size;
        Stride = 4 * size;
        Bits = Cells.data();
    }
    Raster(const Raster&) = delete;
    Raster& operator=(const Raster&) = delete;

    std::vector<int> Cells;
};

}  // namespace Orvane::Bench
