// Sums, means and ranges of a population, gated or not: what the operations with and without filters share.
#pragma once

#include "operations/statistics_population.h"

namespace Orvane {

struct Total {
    double Sum;
    int Count;
};

/// The sum of the values. It is formed section by section; gated values are summed as if they lay packed in
/// sections.
Total SumOf(const Population& population);

/// The sum of the squared differences from `mean`, formed likewise.
Total SumOfSquares(const Population& population, float mean);

/// The mean of a sum; NaN for nothing.
float MeanOf(Total total);

/// The sample standard deviation of a sum of squares: 0.0 for one value, -0.0 for none.
float DeviationOf(Total squares);

/// Lowers `min` and raises `max` to every value outside; NaN is passed over.
void WidenTo(const Population& population, float& min, float& max);

/// The range of the values; false, with zeros, when there is no number.
bool FindRange(const Population& population, float& min, float& max);

}  // namespace Orvane
