// Kernels over single columns of signal values. A count below 1 is an empty range.
#pragma once

namespace Orvane {

/// `sum`, which must not be negative, plus the absolute ratios area[i] / height[i], each formed in float,
/// added in order in double. A height of zero adds nothing; a NaN does.
double AddRatios(const float* area, const float* height, int count, double sum);

}  // namespace Orvane
