// Kernels over the cells of a raster, as one contiguous column.
#pragma once

#include <cstddef>

namespace Orvane {

/// The largest cell; the smallest int when there are none.
int LargestCell(const int* cells, std::ptrdiff_t count);

/// Cell c becomes ceil(c * (levels / max)) in double, truncated through 64 bits to 32; `max` itself becomes
/// `levels`, whatever rounding does.
void ConvertToLevels(int* cells, std::ptrdiff_t count, int max, double levels);

/// Cell c becomes table[c]. The table does not overlap the cells.
void LookUp(int* cells, std::ptrdiff_t count, const int* table);

}  // namespace Orvane
