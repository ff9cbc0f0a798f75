// The pool's state behind MemoryManage: settings, counters, lists, and how each kind cuts a block.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <fstream>
#include <list>
#include <memory>
#include <vector>

#include <orvane/CriticalSection.h>
#include <orvane/MemoryPackets.h>
#include <orvane/OVMemoryAligned.h>
#include <orvane/QuickFindIndex.h>

namespace Orvane {

/// MemoryBlock::Type.
enum BlockType : int { FreeBlock = 0, FloatBlock = 1, ShortBlock = 2, IntBlock = 3, BitBlock = 4 };

/// The mask in which the `count` low bits are set.
constexpr std::uint32_t FullMask(int count) {
    return static_cast<std::uint32_t>((std::uint64_t{1} << count) - 1);
}

constexpr std::uint32_t BitOf(int index) {
    return std::uint32_t{1} << index;
}

inline bool IsFull(const MemoryBlock& block) {
    return block.UsedMask == FullMask(block.PacketCount);
}

inline bool IsFull(const MemorySegment& segment) {
    return segment.UsedMask == FullMask(segment.BlockCount);
}

/// The one list node of a segment or block, made together with it. The pool's lists change by moving such
/// nodes, which takes no memory and therefore cannot fail half-way, and needs no search. An item is in one
/// list at most; its node leaves that list when the seat is destroyed.
template <class Item>
class ListSeat {
public:
    using List = std::list<Item*>;

    explicit ListSeat(Item* item = nullptr) : parked_(1, item), node_(parked_.begin()) {}
    ListSeat(const ListSeat&) = delete;
    ListSeat& operator=(const ListSeat&) = delete;
    ~ListSeat() { Leave(); }

    void Hold(Item* item) { *node_ = item; }
    void MoveToEndOf(List& list) {
        list.splice(list.end(), *place_, node_);
        place_ = &list;
    }
    void Leave() { MoveToEndOf(parked_); }
    bool IsIn(const List& list) const { return place_ == &list; }

private:
    List parked_;  // holds the node while the item is in no list
    List* place_ = &parked_;
    typename List::iterator node_;
};

/// A segment record with the list nodes of the segment and its blocks. Every MemorySegment of the pool is
/// one.
struct PooledSegment : MemorySegment {
    /// Lays `blockCount` blocks over the `size` bytes at `address`.
    PooledSegment(unsigned char* address, int size, int blockCount);

    ListSeat<MemorySegment> Seat{this};
    std::array<ListSeat<MemoryBlock>, MaxPoolParts> BlockSeats;
    /// The type for which the packet records of each block stand; they outlive the packets.
    std::array<int, MaxPoolParts> CutFor{};
};

inline PooledSegment& PooledOf(MemorySegment& segment) {
    return static_cast<PooledSegment&>(segment);
}

inline ListSeat<MemorySegment>& SeatOf(MemorySegment& segment) {
    return PooledOf(segment).Seat;
}

inline ListSeat<MemoryBlock>& SeatOf(MemoryBlock& block) {
    return PooledOf(*block.Segment).BlockSeats[static_cast<std::size_t>(block.Index)];
}

/// Forgets everything handed out of the segment and takes its blocks off their lists.
void ClearSegment(MemorySegment& segment);

struct PoolSettings {
    int SegmentSize = 8 << 20;
    int BlockCount = 32;
    int InitCount = 0;
    int Capacity = 65536;
    int CapacityInt = 2048;

    int BlockSize() const { return SegmentSize / BlockCount; }
};

/// One kind of packet: how it cuts a block, what a packet counts for, and where the next one comes from.
struct PacketKind {
    int Type;
    int PacketCount;                           ///< packets per block
    int ElementCount;                          ///< elements per packet
    int PacketBytes;                           ///< bytes from one packet to the next
    int UsedBytes;                             ///< what one packet adds to the bytes handed out
    std::list<MemorySegment*> NoFullSegments;  ///< segments of this kind with a free block
    /// Blocks of this kind with a free packet. Always empty for float, whose blocks hold one packet.
    std::list<MemoryBlock*> NoFullBlocks;
};

/// Everything MemoryManage keeps. Lock guards all of it except as the public operations say.
struct Pool {
    Pool();

    void Configure(const PoolSettings& settings);
    PacketKind& KindOf(int type) { return Kinds[static_cast<std::size_t>(type - FloatBlock)]; }

    CriticalSection Lock;
    PoolSettings Settings;
    std::int64_t UpperSize = std::int64_t{6} << 30;
    // Written under the lock only, read by anybody.
    std::atomic<std::int64_t> NewSize{0};
    std::atomic<std::int64_t> UseSize{0};

    std::vector<MemorySegment*> Segments;  ///< in order of creation, owned
    QuickFindIndex AddressIndex;
    std::list<MemorySegment*> FreeSegments;  ///< nothing in them is handed out
    std::array<PacketKind, 4> Kinds{};       ///< by type: float, short, int, bit

    OVMemoryAligned DefaultAllocator;
    OVMemoryAligned* Allocator = &DefaultAllocator;
    bool (*OutOfMemoryHandler)() = nullptr;
    std::unique_ptr<std::ofstream> Log;  ///< null until the first line
};

/// The pool of the process. It exists from its first use on, also for static constructors, and is never
/// destroyed, so that static destructors may still return storage. Deliberately not inline: on Windows every
/// module that calls it would have a pool of its own.
Pool& ThePool();

/// Adds to a counter while the pool's lock is held.
inline void Add(std::atomic<std::int64_t>& counter, std::int64_t bytes) {
    counter.store(counter.load(std::memory_order_relaxed) + bytes, std::memory_order_relaxed);
}

}  // namespace Orvane
