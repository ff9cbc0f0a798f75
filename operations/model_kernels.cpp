#include "operations/model_kernels.h"

#include <bit>
#include <cstddef>

#include "foundation/instruction_set.h"

namespace Orvane {
namespace {

ORVANE_KERNEL_INLINE void CountOne(unsigned short number, Counters counters) {
    if (number < counters.Capacity) ++counters.Counts[number];
}

/// Calls `act(i)` for every set bit i among the first `count`, in order.
template <class Act>
ORVANE_KERNEL_INLINE void ForEachSelected(const std::uint32_t* select, int count, Act act) {
    for (int first = 0; first < count; first += 32) {
        std::uint32_t bits = select[first / 32];
        if (count - first < 32) bits &= ~(0xFFFFFFFFU << (count - first));
        for (; bits != 0; bits &= bits - 1) {
            act(first + std::countr_zero(bits));
        }
    }
}

}  // namespace

void CountNumbers(const unsigned short* numbers, int count, Counters counters) {
    for (int i = 0; i < count; ++i) {
        CountOne(numbers[i], counters);
    }
}

void CountSelected(const unsigned short* numbers, const std::uint32_t* select, int count, Counters counters) {
    ForEachSelected(select, count, [=](int i) { CountOne(numbers[i], counters); });
}

void CountSelectedGroups(const unsigned short* numbers, const std::uint32_t* select, int groups, int group,
                         Counters counters) {
    ForEachSelected(select, groups,
                    [=](int g) { CountNumbers(numbers + std::ptrdiff_t{g} * group, group, counters); });
}

}  // namespace Orvane
