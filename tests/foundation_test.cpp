// Locks, processor features, instruction-set switching, aligned allocation, conversions.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <thread>
#include <vector>

#include <orvane/orvane.h>

#include "foundation/convert.h"

namespace Orvane {
namespace {

TEST(Locks, AnotherThreadWaitsUntilEveryEntryWasLeftEvenByAnException) {
    CriticalSection section;
    int guarded = 0;
    std::thread other;
    try {
        const AutoLock outer(section.GetCriticalSection());
        const AutoLock again(section.GetCriticalSection());
        other = std::thread([&] {
            const AutoLock lock(section.GetCriticalSection());
            guarded *= 2;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        guarded = 21;
        throw 1;
    } catch (int) {
    }
    other.join();
    EXPECT_EQ(guarded, 42);
}

TEST(ProcessorFeatures, LevelIsStableAndAtLeastWhatTheBuildNeeds) {
    const OVInstructType level = CPUSupportInstruct::GetType();
    EXPECT_EQ(CPUSupportInstruct::GetType(), level);
#if defined(__x86_64__)
    EXPECT_GE(level, InstructSSE2);
#endif
}

TEST(InstructionSets, ASetThatIsNotOfferedGivesTheBestBelowIt) {
    SetActiveInstructionSet(InstructionSet::Baseline);
    EXPECT_EQ(ActiveInstructionSet(), InstructionSet::Baseline);
    SetActiveInstructionSet(InstructionSet::Avx512);
    EXPECT_EQ(ActiveInstructionSet(), BestInstructionSet());
}

TEST(AlignedMemory, HonoursAlignmentForSmallAndLargeRequests) {
    OVMemoryAligned allocator;
    for (const int size : {1, 1024, 8 << 20}) {
        void* p = allocator.Malloc(size, 64);
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(p) % 64, 0U);
        static_cast<char*>(p)[size - 1] = 1;
        allocator.Free(p);
    }
    allocator.Free(nullptr);
}

TEST(VectorToArrayOfInt, CopiesInOrderAndIsNeverNull) {
    std::vector<int> empty;
    EXPECT_NE(VectorToArray<int>(empty).GetArray(), nullptr);
    std::vector<int> values{3, 1, 2};
    VectorToArray<int> array(values);
    values.assign(3, 0);
    EXPECT_EQ(std::vector<int>(array.GetArray(), array.GetArray() + 3), (std::vector<int>{3, 1, 2}));
}

TEST(Conversion, TruncatesTowardZeroAndIsDefinedForEveryValue) {
    constexpr std::int64_t Smallest = std::numeric_limits<std::int64_t>::min();
    constexpr double TwoTo63 = 9223372036854775808.0;
    EXPECT_EQ(TruncateToInt64(-70000.9), -70000);
    EXPECT_EQ(TruncateToInt64(std::nextafter(TwoTo63, 0.0)), 9223372036854774784);
    for (const double value : {-TwoTo63, TwoTo63, -2 * TwoTo63, std::nan(""), HUGE_VAL, -HUGE_VAL})
        EXPECT_EQ(TruncateToInt64(value), Smallest) << value;
}

}  // namespace
}  // namespace Orvane
