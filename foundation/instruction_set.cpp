#include "foundation/instruction_set.h"

#include <algorithm>
#include <atomic>

namespace Orvane {
namespace {

InstructionSet DetectInstructionSet() {
#if ORVANE_WIDE_KERNELS
    const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                      __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
    const bool avx512 = avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                        __builtin_cpu_supports("avx512cd") && __builtin_cpu_supports("avx512dq") &&
                        __builtin_cpu_supports("avx512vl");
    if (avx512) return InstructionSet::Avx512;
    if (avx2) return InstructionSet::Avx2;
#endif
    return InstructionSet::Baseline;
}

std::atomic<InstructionSet>& Active() {
    static std::atomic<InstructionSet> active{BestInstructionSet()};
    return active;
}

}  // namespace

InstructionSet BestInstructionSet() {
    static const InstructionSet best = DetectInstructionSet();
    return best;
}

InstructionSet ActiveInstructionSet() {
    return Active().load(std::memory_order_relaxed);
}

void SetActiveInstructionSet(InstructionSet set) {
    Active().store(std::min(set, BestInstructionSet()), std::memory_order_relaxed);
}

}  // namespace Orvane
