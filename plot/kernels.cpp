#include "plot/kernels.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "foundation/convert.h"
#include "foundation/instruction_set.h"

namespace Orvane {
namespace {

ORVANE_KERNEL_INLINE int LargestCellBody(const int* cells, std::ptrdiff_t count) {
    int largest = std::numeric_limits<int>::min();
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        largest = std::max(largest, cells[i]);
    }
    return largest;
}

/// What the levels of a raster have in common.
struct Levels {
    Levels(int max, double levels)
        : Max(max),
          TopCell(static_cast<int>(TruncateToInt64(levels))),
          Factor(levels / max),
          Reach(ReachOf(Factor)) {}

    /// The stated formula.
    int Of(int cell) const {
        return cell == Max ? TopCell : static_cast<int>(TruncateToInt64(std::ceil(cell * Factor)));
    }

    int Max;
    int TopCell;
    double Factor;
    /// The products of the cells up to this, on either side of zero, fit 32-bit integers; 0 when there may be
    /// no such cells.
    int Reach;

private:
    static int ReachOf(double factor) {
        constexpr int Largest = std::numeric_limits<int>::max();
        const double reach = 1073741824.0 / std::fabs(factor);
        if (reach >= Largest) return Largest;
        return reach >= 1.0 ? static_cast<int>(reach) : 0;
    }
};

constexpr int BlockSize = 64;

/// Cells within reach are rounded up by conversions to 32 bits and back, which every processor does side by
/// side.
ORVANE_KERNEL_INLINE void ConvertBlock(const Levels levels, int* cells) {
    const auto reach = static_cast<unsigned>(levels.Reach);
    int anyBeyond = levels.Reach == 0 ? 1 : 0;
    for (int i = 0; i < BlockSize; ++i) {
        anyBeyond |= static_cast<unsigned>(cells[i]) + reach > 2 * reach ? 1 : 0;
    }
    if (anyBeyond != 0) {
        std::transform(cells, cells + BlockSize, cells, [&](int cell) { return levels.Of(cell); });
        return;
    }
    for (int i = 0; i < BlockSize; ++i) {
        const double product = cells[i] * levels.Factor;
        const double whole = static_cast<int>(product);
        const double level = whole < product ? whole + 1.0 : whole;
        cells[i] = cells[i] == levels.Max ? levels.TopCell : static_cast<int>(level);
    }
}

ORVANE_KERNEL_INLINE void ConvertToLevelsBody(const Levels& levels, int* cells, std::ptrdiff_t count) {
    std::ptrdiff_t i = 0;
    for (; count - i >= BlockSize; i += BlockSize) {
        ConvertBlock(levels, cells + i);
    }
    for (; i < count; ++i) {
        cells[i] = levels.Of(cells[i]);
    }
}

ORVANE_MULTIVERSION(void, ConvertToLevels, (const Levels& levels, int* cells, std::ptrdiff_t count),
                    (levels, cells, count))

}  // namespace

ORVANE_MULTIVERSION(int, LargestCell, (const int* cells, std::ptrdiff_t count), (cells, count))

void ConvertToLevels(int* cells, std::ptrdiff_t count, int max, double levels) {
    ConvertToLevels(Levels(max, levels), cells, count);
}

// One cell after the other: gathering eight or sixteen entries at once takes nearly twice as long.
void LookUp(int* cells, std::ptrdiff_t count, const int* table) {
#pragma GCC unroll 8
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        cells[i] = table[cells[i]];
    }
}

}  // namespace Orvane
