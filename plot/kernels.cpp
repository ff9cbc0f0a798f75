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

int LevelOf(int cell, int max, double factor, double levels) {
    const double level = cell == max ? levels : std::ceil(cell * factor);
    return static_cast<int>(TruncateToInt64(level));
}

ORVANE_KERNEL_INLINE void ConvertToLevelsBody(int* cells, std::ptrdiff_t count, int max, double levels) {
    const double factor = levels / max;
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        cells[i] = LevelOf(cells[i], max, factor, levels);
    }
}

ORVANE_KERNEL_INLINE void LookUpBody(int* cells, std::ptrdiff_t count, const int* table) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        cells[i] = table[cells[i]];
    }
}

}  // namespace

ORVANE_MULTIVERSION(int, LargestCell, (const int* cells, std::ptrdiff_t count), (cells, count))

ORVANE_MULTIVERSION(void, ConvertToLevels, (int* cells, std::ptrdiff_t count, int max, double levels),
                    (cells, count, max, levels))

ORVANE_MULTIVERSION(void, LookUp, (int* cells, std::ptrdiff_t count, const int* table), (cells, count, table))

}  // namespace Orvane
