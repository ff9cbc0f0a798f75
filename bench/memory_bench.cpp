// The pool beside what its work cannot avoid: two turns at its lock, and the system's first touch of memory.
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#if defined(__linux__)
#include <sys/mman.h>
#endif

#include <orvane/CriticalSection.h>
#include <orvane/OVMemoryAligned.h>
#include <orvane/QuickFindIndex.h>

#include "bench/support.h"
#include "memory/pooled.h"

namespace Orvane::Bench {
namespace {

constexpr int BlockBytes = 256 << 10;
constexpr int BlocksPerSegment = 32;
constexpr int HeldPackets = 320;

void TwoLockPairs(benchmark::State& state) {
    CriticalSection section;
    for (auto _ : state) {
        for (int i = 0; i < 2; ++i) {
            const AutoLock lock(section.GetCriticalSection());
            benchmark::ClobberMemory();
        }
    }
}

/// A block of malloc of which every page is touched, as its user will.
void MallocAndTouch(benchmark::State& state) {
    constexpr int PageBytes = 4096;
    for (auto _ : state) {
        auto* memory = static_cast<char*>(std::malloc(BlockBytes));
        for (int i = 0; i < BlockBytes; i += PageBytes)
            memory[i] = 1;
        benchmark::DoNotOptimize(memory);
        std::free(memory);
    }
}

/// One packet taken and returned while others are held.
template <class Owner>
void TakeAndReturn(benchmark::State& state) {
    const std::vector<Owner> held(HeldPackets);
    for (auto _ : state) {
        const Owner packet;
        benchmark::DoNotOptimize(packet.Get());
    }
}

/// Time per block of touching fresh memory throughout.
template <class TakeSegment, class GiveBack>
void FirstTouch(benchmark::State& state, TakeSegment take, GiveBack giveBack) {
    for (auto _ : state) {
        void* segment = take();
        std::memset(segment, 1, static_cast<std::size_t>(BlockBytes) * BlocksPerSegment);
        benchmark::DoNotOptimize(segment);
        state.PauseTiming();
        giveBack(segment);
        state.ResumeTiming();
    }
    state.counters["per_block"] = benchmark::Counter(
        BlocksPerSegment, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

#if defined(__linux__)
/// Fresh pages of the system's usual size. (malloc would hand out again what it was given back.)
void FirstTouchOfPages(benchmark::State& state) {
    constexpr std::size_t Bytes = static_cast<std::size_t>(BlockBytes) * BlocksPerSegment;
    constexpr int Flags = MAP_PRIVATE | MAP_ANONYMOUS;
    FirstTouch(
        state, [] { return mmap(nullptr, Bytes, PROT_READ | PROT_WRITE, Flags, -1, 0); },
        [](void* pages) { munmap(pages, Bytes); });
}
#endif

/// What the pool's allocator gives. Many segments are given back at once, which makes the C library give them
/// back to the system.
void FirstTouchOfSegment(benchmark::State& state) {
    constexpr std::size_t Enough = 8;
    OVMemoryAligned allocator;
    std::vector<void*> given;
    const auto giveBack = [&](std::size_t enough) {
        if (given.size() < enough) return;
        for (void* segment : given)
            allocator.Free(segment);
        given.clear();
    };
    FirstTouch(
        state, [&] { return given.emplace_back(allocator.Malloc(BlockBytes * BlocksPerSegment, 16)); },
        [&](void*) { giveBack(Enough); });
    giveBack(1);
}

/// Addresses of 100 segments that lie side by side, or in two regions far apart; then one look-up per step.
template <class Find>
void LookUp(benchmark::State& state, bool apart, Find find) {
    constexpr std::uintptr_t SegmentBytes = 8 << 20;
    QuickFindIndex index;
    std::vector<void*> addresses;
    for (int i = 0; i < 100; ++i) {
        const std::uintptr_t region = std::uintptr_t{1} << (apart && i >= 50 ? 46 : 40);
        const std::uintptr_t address = region + static_cast<std::uintptr_t>(i) * SegmentBytes;
        addresses.push_back(reinterpret_cast<void*>(address));  // NOLINT(performance-no-int-to-ptr)
        index.AddItem(addresses.back(), static_cast<int>(SegmentBytes), i);
    }
    std::size_t step = 0;
    for (auto _ : state) {
        step = (step + 37) % addresses.size();
        benchmark::DoNotOptimize(find(index, addresses[step]));
    }
}

int FindLinearly(QuickFindIndex& index, void* address) {
    for (const AddressInfo* item : index.Items) {
        if (item->IsInRange(reinterpret_cast<std::intptr_t>(address))) return item->Index;
    }
    return -1;
}

int FindByIndex(QuickFindIndex& index, void* address) {
    return index.FindIndex(address);
}

}  // namespace
}  // namespace Orvane::Bench

namespace {
using namespace Orvane;
using namespace Orvane::Bench;

const bool registered = [] {
    // A host has threads. In a process that never had one the C library's locks leave out their atomic steps.
    std::thread([] {}).join();
    Register("PoolPacket", "plain: two lock pairs", TwoLockPairs);
    Register("PoolPacket", "malloc and touch", MallocAndTouch);
    Register("PoolPacket", "float", TakeAndReturn<PooledColumn>);
    Register("PoolPacket", "short", TakeAndReturn<PooledShorts>);
    Register("PoolPacket", "int", TakeAndReturn<PooledInts>);
    Register("PoolPacket", "bits", TakeAndReturn<PooledBits>);
#if defined(__linux__)
    Register("PoolFirstTouch", "plain: pages", FirstTouchOfPages);
#endif
    Register("PoolFirstTouch", "segment", FirstTouchOfSegment);
    Register("AddressIndex", "plain: linear search", [](auto& state) { LookUp(state, false, FindLinearly); });
    Register("AddressIndex", "side by side", [](auto& state) { LookUp(state, false, FindByIndex); });
    Register("AddressIndex", "two regions", [](auto& state) { LookUp(state, true, FindByIndex); });
    return true;
}();
}  // namespace
