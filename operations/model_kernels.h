// Kernels that count bin numbers. A number at or above `capacity` is skipped. Event i of a filter is bit i %
// 32 of word i / 32. A count below 1 is an empty range.
#pragma once

#include <cstdint>

namespace Orvane {

/// The counters to add to.
struct Counters {
    int* Counts;
    int Capacity;
};

/// Adds 1 to the counter of every number.
void CountNumbers(const unsigned short* numbers, int count, Counters counters);

/// Adds 1 to the counter of every number whose bit in `select` is set.
void CountSelected(const unsigned short* numbers, const std::uint32_t* select, int count, Counters counters);

/// One bit of `select` stands for `group` consecutive numbers: those of the set bits among the first `groups`
/// are counted.
void CountSelectedGroups(const unsigned short* numbers, const std::uint32_t* select, int groups, int group,
                         Counters counters);

}  // namespace Orvane
