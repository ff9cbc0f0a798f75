// The one conversion of a floating-point value to an integer whose result is defined for every value.
#pragma once

#include <cstdint>
#include <limits>

#include "foundation/instruction_set.h"

namespace Orvane {

/// Truncates toward zero. NaN, infinities and everything outside the 64-bit range give the smallest 64-bit
/// integer, whose low 16 and 32 bits are 0, on every processor.
ORVANE_KERNEL_INLINE std::int64_t TruncateToInt64(double value) {
    constexpr double Limit = 9223372036854775808.0;
    if (value >= -Limit && value < Limit) return static_cast<std::int64_t>(value);
    return std::numeric_limits<std::int64_t>::min();
}

}  // namespace Orvane
