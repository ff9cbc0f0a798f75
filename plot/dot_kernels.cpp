#include "plot/dot_kernels.h"

#include <algorithm>

namespace Orvane {

void MarkCells(const OVBitmapData& raster, const Pixels& pixels, int v) {
    ChangeCells(raster, pixels, [v](int& cell, int /*event*/) { cell = v; });
}

void RaiseCells(const OVBitmapData& raster, const Pixels& pixels, const unsigned short* numbers) {
    ChangeCells(raster, pixels,
                [numbers](int& cell, int event) { cell = std::max<int>(cell, numbers[event]); });
}

void FlagCells(const OVBitmapData& raster, const Pixels& pixels, int flag) {
    ChangeCells(raster, pixels, [flag](int& cell, int /*event*/) { cell |= flag; });
}

}  // namespace Orvane
