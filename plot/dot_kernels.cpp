#include "plot/dot_kernels.h"

#include <algorithm>

#include "foundation/instruction_set.h"

namespace Orvane {
namespace {

struct SetTo {
    int Value;

    ORVANE_KERNEL_INLINE void operator()(int& cell, int /*event*/) const { cell = Value; }
};

struct RaiseTo {
    const unsigned short* Numbers;

    ORVANE_KERNEL_INLINE void operator()(int& cell, int event) const {
        cell = std::max<int>(cell, Numbers[event]);
    }
};

struct AddFlag {
    int Flag;

    ORVANE_KERNEL_INLINE void operator()(int& cell, int /*event*/) const { cell |= Flag; }
};

ORVANE_KERNEL_INLINE void MarkCellsBody(const OVBitmapData& raster, const Pixels& pixels, int v) {
    ChangeCells(raster, pixels, SetTo{v});
}

ORVANE_KERNEL_INLINE void RaiseCellsBody(const OVBitmapData& raster, const Pixels& pixels,
                                         const unsigned short* numbers) {
    ChangeCells(raster, pixels, RaiseTo{numbers});
}

ORVANE_KERNEL_INLINE void FlagCellsBody(const OVBitmapData& raster, const Pixels& pixels, int flag) {
    ChangeCells(raster, pixels, AddFlag{flag});
}

}  // namespace

ORVANE_MULTIVERSION(void, MarkCells, (const OVBitmapData& raster, const Pixels& pixels, int v),
                    (raster, pixels, v))

ORVANE_MULTIVERSION(void, RaiseCells,
                    (const OVBitmapData& raster, const Pixels& pixels, const unsigned short* numbers),
                    (raster, pixels, numbers))

ORVANE_MULTIVERSION(void, FlagCells, (const OVBitmapData& raster, const Pixels& pixels, int flag),
                    (raster, pixels, flag))

}  // namespace Orvane
