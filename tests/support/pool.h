// The pool under test conditions: small sizes, failing allocators, exact accounting.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include <orvane/Exceptions.h>
#include <orvane/MemoryManage.h>

#include "memory/pool_checker.h"

namespace Orvane::Testing {

/// Empties the pool and gives it small sizes, so that section and segment borders come close. At the end of
/// the scope nothing may be held; the default sizes return. Scopes do not nest.
class SmallPool {
public:
    /// Packets of `capacity` events; int packets of 4 entries unless the capacity asks for more.
    explicit SmallPool(int capacity = 64, int blocksPerSegment = 4, int initCount = 0) {
        const int words = (capacity + 31) / 32;
        const int blockSize = words * 32 * 4;
        const int capacityInt = std::max(std::min(capacity, 4), words);
        MemoryManage::ReleaseAll();
        MemoryManage::InitMemoryManage(blockSize * blocksPerSegment, blocksPerSegment, initCount, capacity,
                                       capacityInt);
    }
    SmallPool(const SmallPool&) = delete;
    SmallPool& operator=(const SmallPool&) = delete;
    ~SmallPool() {
        EXPECT_EQ(FindPoolFault(), "");
        EXPECT_EQ(CountBytesHandedOut(), 0);
        EXPECT_EQ(MemoryManage::GetUseSize(), 0);
        MemoryManage::ReleaseAll();
        MemoryManage::InitMemoryManage(8 << 20, 32, 0, 65536, 2048);
    }
};

/// Replaces the pool's allocator until the end of the scope by one that has no memory at `failures` calls
/// from call `firstFailing` (counted from 1) on; from there on for good unless said otherwise.
class FailingAllocator : public OVMemoryAligned {
public:
    explicit FailingAllocator(int firstFailing, int failures = std::numeric_limits<int>::max())
        : firstFailing_(firstFailing), failures_(failures), previous_(MemoryManage::SetMemoryForTest(this)) {}
    FailingAllocator(const FailingAllocator&) = delete;
    FailingAllocator& operator=(const FailingAllocator&) = delete;
    ~FailingAllocator() { MemoryManage::SetMemoryForTest(previous_); }

    void* Malloc(int size, int alignment) override {
        ++calls_;
        const bool fails = calls_ >= firstFailing_ && calls_ - firstFailing_ < failures_;
        if (!fails) return OVMemoryAligned::Malloc(size, alignment);
        hasFailed_ = true;
        return nullptr;
    }

    int Calls() const { return calls_; }
    bool HasFailed() const { return hasFailed_; }

private:
    int firstFailing_;
    int failures_;
    OVMemoryAligned* previous_;
    int calls_ = 0;
    bool hasFailed_ = false;
};

/// Runs `operation` with an allocator that fails at its first call, then at its second, and so on until a run
/// needs no further call. Each run starts with an empty pool of the given capacity in which every block needs
/// a call. The operation makes its input itself, lets OutOfMemoryException* pass and releases what it holds
/// on every path; after each run the pool must be as if nothing had happened.
template <class Operation>
void ForEachFailingAllocation(Operation operation, int capacity = 64) {
    constexpr int EnoughCalls = 10000;
    for (int failing = 1; failing < EnoughCalls; ++failing) {
        SCOPED_TRACE(::testing::Message() << "allocator fails at call " << failing);
        const SmallPool pool(capacity, 1);
        const FailingAllocator allocator(failing);
        try {
            operation();
        } catch (OutOfMemoryException* error) {
            EXPECT_TRUE(allocator.HasFailed());
            delete error;
        }
        if (!allocator.HasFailed()) return;
    }
    FAIL() << "the operation takes storage without end";
}

}  // namespace Orvane::Testing
