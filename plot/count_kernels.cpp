#include "plot/count_kernels.h"

#include <algorithm>

#include "foundation/instruction_set.h"

namespace Orvane {
namespace {

struct AddOne {
    ORVANE_KERNEL_INLINE void operator()(int& cell, int /*event*/) const {
        cell = static_cast<int>(static_cast<unsigned>(cell) + 1U);
    }
};

struct KeepFirst {
    int Number;  ///< of event 0

    /// Written so that it compiles without a branch, which could not be predicted while the raster fills.
    /// Cells and numbers are not negative.
    ORVANE_KERNEL_INLINE void operator()(int& cell, int event) const {
        cell += std::min(Number + event - cell, 0);
    }
};

ORVANE_KERNEL_INLINE void CountCellsBody(const OVBitmapData& raster, const Pixels& pixels) {
    ChangeCells(raster, pixels, AddOne{});
}

ORVANE_KERNEL_INLINE void KeepFirstEventsBody(const OVBitmapData& raster, const Pixels& pixels, int number) {
    ChangeCells(raster, pixels, KeepFirst{number});
}

}  // namespace

ORVANE_MULTIVERSION(void, CountCells, (const OVBitmapData& raster, const Pixels& pixels), (raster, pixels))

ORVANE_MULTIVERSION(void, KeepFirstEvents, (const OVBitmapData& raster, const Pixels& pixels, int number),
                    (raster, pixels, number))

void CountSelectedCells(const OVBitmapData& raster, const Pixels& pixels, const std::uint32_t* select) {
    ChangeSelectedCells(raster, pixels, select, AddOne{});
}

void KeepFirstSelectedEvents(const OVBitmapData& raster, const Pixels& pixels, const std::uint32_t* select,
                             int number) {
    ChangeSelectedCells(raster, pixels, select, KeepFirst{number});
}

}  // namespace Orvane
