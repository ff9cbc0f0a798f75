// Kernels of the sums and of the value-by-value rewriting behind the population statistics. The order of
// every sum is part of the result: speed comes from summing several columns side by side, never from
// splitting one.
#pragma once

#include <cstdint>
#include <span>

namespace Orvane {

/// sums[c] = the values of column c, added in order in double.
void SumColumns(std::span<const std::span<const float>> columns, double* sums);

/// sums[c] = the squares of `value - mean` over column c: the difference is formed in float, squared and
/// added in order in double.
void SumSquaresOfColumns(std::span<const std::span<const float>> columns, float mean, double* sums);

/// `sum` plus the values, added in order in double.
double AddValues(std::span<const float> values, double sum);

/// `sum` plus the squares of `value - mean`, formed and added as in SumSquaresOfColumns.
double AddSquares(std::span<const float> values, float mean, double sum);

/// Replaces every value by its absolute deviation from `centre`.
void ReplaceByDeviations(float* values, int count, float centre);

/// Every value stands for 1 + `offsetCount` virtual values: itself, then for each offset the float of
/// `sqrt(|value|) * offset + value`, the root in float, the rest in double. Writes `count` of the virtual
/// values of the sequence `values`, from virtual value `first` on.
void WriteVirtualValues(std::span<const float> values, const double* offsets, int offsetCount,
                        std::int64_t first, int count, float* out);

/// Picks a fixed number of values from a sequence, run by run, every set of that size being equally likely.
class RandomPicker {
public:
    /// Picks min(wanted, total) of `total` values.
    RandomPicker(int wanted, int total, unsigned seed) : wanted_(wanted), left_(total), state_(seed) {}

    /// Copies the picked ones among the next values of the sequence to `out` and returns their number.
    int Pick(std::span<const float> values, float* out);

private:
    std::uint64_t NextBelow(std::uint64_t bound);

    std::int64_t wanted_;
    std::int64_t left_;
    std::uint64_t state_;
};

}  // namespace Orvane
