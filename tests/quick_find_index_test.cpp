// The index from addresses to segments.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include <orvane/QuickFindIndex.h>

#include "tests/support/exceptions.h"

namespace Orvane::Testing {
namespace {

// The borders are where a look-up can go wrong, so they and their neighbours are compared with a walk.
TEST(AddressIndex, FindsWhatAWalkFindsWhileItGrowsAndShrinks) {
    using Starts = std::vector<std::intptr_t>;
    constexpr int Size = 4096;
    const auto at = [](std::intptr_t address) {
        return reinterpret_cast<void*>(address);  // NOLINT(performance-no-int-to-ptr)
    };
    for (const Starts& starts : {Starts{0x10000, 0x11000, 0x12000, 0x13000, 0x14000},
                                 Starts{0x90000, 0x80000, 0x50000, 0x40000, 0x10000},
                                 Starts{0x50000, 0x10000, 0x90000, 0x51000, 0x4f000, 0x11000, 0x70000},
                                 Starts{0x7f0000000000, 0x10000, 0x7f0000001000, 0x11000, 0x7f0000003000,
                                        0x12000, 0x550000000000}}) {
        QuickFindIndex index;
        Starts present;
        const auto expectLikeAWalk = [&] {
            for (const std::intptr_t start : starts) {
                for (const std::intptr_t address : {start - 1, start, start + Size - 1, start + Size}) {
                    int expected = -1;
                    for (const std::intptr_t s : present)
                        if (s <= address && address < s + Size) expected = static_cast<int>(s % 251);
                    EXPECT_EQ(index.FindIndex(at(address)), expected) << std::hex << address;
                }
            }
        };
        for (const std::intptr_t start : starts) {
            index.AddItem(at(start), Size, static_cast<int>(start % 251));
            present.push_back(start);
            expectLikeAWalk();
        }
        while (!present.empty()) {  // first, last and middle ones alike, through any address inside
            const auto victim = present.begin() + static_cast<std::ptrdiff_t>(present.size() * 2 / 3);
            index.RemoveItem(at(*victim + Size / 2));
            present.erase(victim);
            expectLikeAWalk();
        }
        EXPECT_EQ(MessageOf<const char>([&] { index.RemoveItem(at(starts[0])); }),
                  "No find address in itmes.");
    }
}

}  // namespace
}  // namespace Orvane::Testing
