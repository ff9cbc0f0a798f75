// Registering one piece of work as a group of benchmarks: the plain form, then the library's own form under
// every instruction set that this machine offers. The reporter in main.cpp shows each as a multiple of the
// plain one.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>

#include "foundation/instruction_set.h"

namespace Orvane::Bench {

/// Whether two columns hold the same bits, as a kernel's result must before it is timed.
inline bool HaveSameBits(const float* a, const float* b, int count) {
    return std::equal(a, a + count, b, [](float left, float right) {
        return std::bit_cast<std::uint32_t>(left) == std::bit_cast<std::uint32_t>(right);
    });
}

/// The plain form, or any other competitor: "<group>/<name>". The name "plain" is what the others are
/// compared to.
template <class Work>
void Register(const std::string& group, const std::string& name, Work work) {
    benchmark::RegisterBenchmark((group + "/" + name).c_str(), work);
}

/// "<group>/baseline", "<group>/avx2", "<group>/avx512", as far as offered.
template <class Work>
void RegisterForEachInstructionSet(const std::string& group, Work work) {
    static constexpr const char* Names[] = {"baseline", "avx2", "avx512"};
    for (int set = 0; set <= static_cast<int>(BestInstructionSet()); ++set) {
        Register(group, Names[set], [set, work](benchmark::State& state) {
            SetActiveInstructionSet(static_cast<InstructionSet>(set));
            work(state);
            SetActiveInstructionSet(BestInstructionSet());
        });
    }
}

}  // namespace Orvane::Bench
