// Running a test once per instruction set that this machine offers.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

#include "foundation/instruction_set.h"
#include "tests/support/pool.h"

namespace Orvane {

/// For the names and messages of parameterised tests.
inline void PrintTo(InstructionSet set, std::ostream* out) {
    static constexpr const char* Names[] = {"baseline", "avx2", "avx512"};
    *out << Names[static_cast<int>(set)];
}

}  // namespace Orvane

namespace Orvane::Testing {

/// Baseline and everything wider that this machine offers.
inline std::vector<InstructionSet> AvailableInstructionSets() {
    std::vector sets{InstructionSet::Baseline, InstructionSet::Avx2, InstructionSet::Avx512};
    sets.resize(static_cast<std::size_t>(BestInstructionSet()) + 1);
    return sets;
}

/// Forces an instruction set until the end of the scope.
class ScopedInstructionSet {
public:
    explicit ScopedInstructionSet(InstructionSet set) { SetActiveInstructionSet(set); }
    ScopedInstructionSet(const ScopedInstructionSet&) = delete;
    ScopedInstructionSet& operator=(const ScopedInstructionSet&) = delete;
    ~ScopedInstructionSet() { SetActiveInstructionSet(BestInstructionSet()); }
};

/// The base of fixtures whose tests run once per instruction set.
class EverySet : public ::testing::TestWithParam<InstructionSet> {
    ScopedInstructionSet set_{GetParam()};
};

/// The same over a pool of small packets.
template <int Capacity = 64>
class OnEverySet : public EverySet {
    SmallPool pool_{Capacity};
};

}  // namespace Orvane::Testing
