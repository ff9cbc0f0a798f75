// How the pool grows and shrinks, and how whole segments are handed out.
#include <orvane/MemoryManage.h>

#include <cassert>

#include "foundation/throw.h"
#include "memory/pool.h"
#include "memory/pool_checker.h"

namespace Orvane {

void MemoryManage::InitMemoryManage(int segmentSize, int blockCount, int initCount, int capacity,
                                    int capacityInt) {
    Pool& pool = ThePool();
    assert(pool.Segments.empty() && initCount >= 0);
    assert(blockCount >= 1 && blockCount <= MaxPoolParts);
    assert(segmentSize % (blockCount * 128) == 0 && "all packets, also those of bits, are whole words");
    assert(segmentSize / blockCount / 4 >= capacity);
    assert(capacityInt >= 1 && capacity / capacityInt >= 1 && capacity / capacityInt <= MaxPoolParts);
    pool.Configure({segmentSize, blockCount, initCount, capacity, capacityInt});

    const AutoLock lock(pool.Lock.GetCriticalSection());
    for (int i = 0; i < initCount; ++i) {
        if (MemorySegment* segment = MallocMemorySection()) AddFreeMemorySection(segment);
    }
    assert(FindPoolFault().empty());
}

void MemoryManage::ReleaseToInit() {
    Pool& pool = ThePool();
    const AutoLock lock(pool.Lock.GetCriticalSection());
    while (static_cast<int>(pool.Segments.size()) > pool.Settings.InitCount) {
        FreeMemorySection(pool.Segments.back());
        pool.Segments.pop_back();
    }
    for (MemorySegment* segment : pool.Segments) {
        ClearSegment(*segment);
        SeatOf(*segment).MoveToEndOf(pool.FreeSegments);
    }
    assert(FindPoolFault().empty());
}

void MemoryManage::ReleaseAll() {
    Pool& pool = ThePool();
    const AutoLock lock(pool.Lock.GetCriticalSection());
    for (MemorySegment* segment : pool.Segments)
        FreeMemorySection(segment);
    pool.Segments.clear();
    pool.Settings.InitCount = 0;
    pool.NewSize = 0;
    pool.UseSize = 0;
    assert(FindPoolFault().empty());
}

void* MemoryManage::NewSegment() {
    Pool& pool = ThePool();
    const AutoLock lock(pool.Lock.GetCriticalSection());
    if (pool.FreeSegments.empty()) {
        MemorySegment* obtained = MallocMemorySection();
        if (obtained == nullptr) ThrowOutOfMemory("Out of memory.");
        AddFreeMemorySection(obtained);
    }
    MemorySegment& segment = *pool.FreeSegments.front();
    RemoveMemorySection(pool.FreeSegments, &segment);
    segment.UsedMask = FullMask(segment.BlockCount);
    Add(pool.UseSize, pool.Settings.SegmentSize);
    return segment.Address;
}

void MemoryManage::FreeSegment(void* p) {
    Pool& pool = ThePool();
    const AutoLock lock(pool.Lock.GetCriticalSection());
    MemorySegment& segment = *FindFreeMemorySegment(p);
    if (segment.UsedMask == 0) ThrowRepeatFree("Repeat free memory.");
    assert(!IsCutIntoPackets(segment));
    segment.UsedMask = 0;
    SeatOf(segment).MoveToEndOf(pool.FreeSegments);
    Add(pool.UseSize, -std::int64_t{pool.Settings.SegmentSize});
}

MemorySegment* MemoryManage::MallocMemorySectionCallback() {
    Pool& pool = ThePool();
    const bool isLarge = pool.NewSize >= pool.UpperSize / 2;
    const bool mayRetry = isLarge && pool.OutOfMemoryHandler != nullptr && pool.OutOfMemoryHandler();
    if (mayRetry && !pool.FreeSegments.empty()) return nullptr;
    return MallocMemorySection();
}

MemorySegment* MemoryManage::MallocMemorySection() {
    constexpr int Alignment = 16;
    Pool& pool = ThePool();
    const int size = pool.Settings.SegmentSize;
    void* memory = pool.Allocator->Malloc(size, Alignment);
    if (memory == nullptr) {
        if (pool.OutOfMemoryHandler != nullptr && pool.OutOfMemoryHandler()) return nullptr;
        ThrowOutOfMemory("Out of memory!");
    }
    try {
        auto* segment =
            new PooledSegment(static_cast<unsigned char*>(memory), size, pool.Settings.BlockCount);
        Add(pool.NewSize, size);
        return segment;
    } catch (...) {
        pool.Allocator->Free(memory);
        throw;
    }
}

void MemoryManage::AddFreeMemorySection(MemorySegment* segment) {
    Pool& pool = ThePool();
    try {
        pool.Segments.reserve(pool.Segments.size() + 1);
        pool.AddressIndex.AddItem(segment->Address, segment->Size, static_cast<int>(pool.Segments.size()));
    } catch (...) {  // no room for the bookkeeping: as if the segment had not been obtained
        Add(pool.NewSize, -std::int64_t{segment->Size});
        pool.Allocator->Free(segment->Address);
        delete &PooledOf(*segment);
        throw;
    }
    pool.Segments.push_back(segment);
    SeatOf(*segment).MoveToEndOf(pool.FreeSegments);
}

// Deliberate: the whole segment is subtracted from the bytes handed out, whatever of it was.
void MemoryManage::FreeMemorySection(MemorySegment* segment) {
    Pool& pool = ThePool();
    pool.AddressIndex.RemoveItem(segment->Address);
    pool.Allocator->Free(segment->Address);
    Add(pool.UseSize, -std::int64_t{pool.Settings.SegmentSize});
    delete &PooledOf(*segment);
}

}  // namespace Orvane
