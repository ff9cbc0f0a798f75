// Kernels over the columns of events. A section's columns share cache sets, so those that visit several of
// them work in tiles of TileEvents events. A count below 1 is an empty range.
#pragma once

#include <cstdint>

namespace Orvane {

/// Four cache lines of a column: loops over a tile are long enough to be vectorised instead of unrolled.
constexpr int TileEvents = 64;

/// Whether the values are equal one by one; a NaN is equal to nothing.
bool EqualColumns(const float* a, const float* b, int count);

/// target[i] = numerator[i] / denominator[i] * scale in float, 1.0 where the denominator is zero. `target`
/// may be one of the others.
void DivideColumns(const float* numerator, const float* denominator, float* target, int count, float scale);

/// Copies the values of the events `begin` to `end - 1` whose bit in `select` is set to `out`, one behind the
/// other. Event i is bit i % 32 of word i / 32. Nothing is written behind the last of them.
void CopySelected(const std::uint32_t* select, const float* values, int begin, int end, float* out);

/// Multiplies every event, a row of `signals` values, by a matrix of `signals` rows and at least as many
/// columns, stored row by row, `stride` values each: dest[j][i] is the sum of source[k][i] * matrix[k][j], k
/// ascending from zero, in double, narrowed. `tile` is scratch for `signals * TileEvents` doubles.
void MultiplyEvents(const float* const* source, float* const* dest, int signals, int count,
                    const double* matrix, int stride, double* tile);

}  // namespace Orvane
