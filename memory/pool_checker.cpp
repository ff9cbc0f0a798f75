#include "memory/pool_checker.h"

#include <algorithm>
#include <bit>

#include "memory/pool.h"

namespace Orvane {
namespace {

/// Collects the first fault.
class Verdict {
public:
    void Require(bool holds, const char* rule) {
        if (!holds && fault_.empty()) fault_ = rule;
    }
    const std::string& Fault() const { return fault_; }

private:
    std::string fault_;
};

template <class Item>
std::ptrdiff_t Occurrences(const std::list<Item*>& list, const Item* item) {
    return std::count(list.begin(), list.end(), item);
}

bool IsHandedOutWhole(const MemorySegment& segment) {
    return segment.UsedMask != 0 && !IsCutIntoPackets(segment);
}

template <class Packet>
void CheckPackets(const Packet* packets, const MemoryBlock& block, const PacketKind& kind, Verdict& verdict) {
    for (int i = 0; i < block.PacketCount; ++i) {
        const auto* start = reinterpret_cast<const unsigned char*>(packets[i].Address);
        verdict.Require(start == block.Address + static_cast<std::ptrdiff_t>(i) * kind.PacketBytes,
                        "a packet lies where its index says");
        verdict.Require(
            packets[i].Block == &block && packets[i].Index == i && packets[i].Count == kind.ElementCount,
            "a packet record names its block, position and length");
    }
}

void CheckPackets(const MemoryBlock& block, const PacketKind& kind, Verdict& verdict) {
    switch (block.Type) {
        case FloatBlock:
            return CheckPackets(block.Packets.Floats, block, kind, verdict);
        case ShortBlock:
            return CheckPackets(block.Packets.Shorts, block, kind, verdict);
        case IntBlock:
            return CheckPackets(block.Packets.Ints, block, kind, verdict);
        default:
            return CheckPackets(block.Packets.Bits, block, kind, verdict);
    }
}

void CheckBlock(const MemoryBlock& block, Pool& pool, Verdict& verdict) {
    verdict.Require((block.Type == FreeBlock) == (block.UsedMask == 0), "a block has a type while in use");
    for (const PacketKind& kind : pool.Kinds) {
        const bool belongs =
            block.Type == kind.Type && block.UsedMask != FullMask(block.PacketCount) && block.UsedMask != 0;
        verdict.Require(Occurrences(kind.NoFullBlocks, &block) == (belongs ? 1 : 0),
                        "a partly used block is once on its kind's list, any other on none");
    }
    if (block.Type == FreeBlock) return;
    const PacketKind& kind = pool.KindOf(block.Type);
    verdict.Require(block.PacketCount == kind.PacketCount, "a block is cut as its kind says");
    verdict.Require((block.UsedMask & ~FullMask(block.PacketCount)) == 0, "only packets are marked used");
    CheckPackets(block, kind, verdict);
}

void CheckBlocks(const MemorySegment& segment, Pool& pool, Verdict& verdict) {
    const int blockSize = segment.Size / segment.BlockCount;
    std::uint32_t used = 0;
    for (int i = 0; i < segment.BlockCount; ++i) {
        const MemoryBlock& block = segment.Blocks[i];
        verdict.Require(block.Address == segment.Address + static_cast<std::ptrdiff_t>(i) * blockSize &&
                            block.Segment == &segment && block.Size == blockSize && block.Index == i,
                        "a block knows its place");
        if (block.UsedMask != 0) used |= BitOf(i);
        CheckBlock(block, pool, verdict);
    }
    const bool isWhole = used == 0 && IsFull(segment);
    verdict.Require(isWhole || segment.UsedMask == used, "a segment's mask shows its used blocks");
}

/// A segment is on the free list or on the list of the kind of its packets, and on none when it is full. One
/// that is on a kind's list before its first packet (the handler returned others meanwhile) is no fault.
void CheckListsOf(const MemorySegment& segment, Pool& pool, Verdict& verdict) {
    std::ptrdiff_t onKindLists = 0;
    for (const PacketKind& kind : pool.Kinds) {
        const std::ptrdiff_t here = Occurrences(kind.NoFullSegments, &segment);
        onKindLists += here;
        for (int i = 0; i < segment.BlockCount; ++i) {
            const int type = segment.Blocks[i].Type;
            verdict.Require(here == 0 || type == FreeBlock || type == kind.Type,
                            "a segment serves the kind whose list it is on");
        }
    }
    const std::ptrdiff_t onFreeList = Occurrences(pool.FreeSegments, &segment);
    verdict.Require(onFreeList == 0 || segment.UsedMask == 0, "nothing is handed out of a free segment");
    verdict.Require(onFreeList + onKindLists == (IsFull(segment) ? 0 : 1),
                    "a segment is on one list, a full one on none");
}

void CheckAddressIndex(Pool& pool, Verdict& verdict) {
    const std::vector<AddressInfo*>& items = pool.AddressIndex.Items;
    verdict.Require(items.size() == pool.Segments.size(), "every segment is in the address index, once");
    verdict.Require(std::is_sorted(items.begin(), items.end(),
                                   [](const auto* a, const auto* b) { return a->IsLess(b->Start); }),
                    "the address index is sorted");
    verdict.Require(pool.AddressIndex.MinAddress == (items.empty() ? 0 : items.front()->Start) &&
                        pool.AddressIndex.MaxAddress == (items.empty() ? 0 : items.back()->End),
                    "the address index knows its bounds");
    for (std::size_t i = 0; i < pool.Segments.size(); ++i) {
        const MemorySegment& segment = *pool.Segments[i];
        for (unsigned char* address : {segment.Address, segment.Address + segment.Size - 1}) {
            verdict.Require(pool.AddressIndex.FindIndex(address) == static_cast<int>(i),
                            "the address index finds a segment from its first to its last byte");
        }
    }
}

template <class Item>
std::size_t TotalLength(const std::array<PacketKind, 4>& kinds, std::list<Item*> PacketKind::*list) {
    std::size_t length = 0;
    for (const PacketKind& kind : kinds)
        length += (kind.*list).size();
    return length;
}

}  // namespace

bool IsCutIntoPackets(const MemorySegment& segment) {
    return std::any_of(segment.Blocks, segment.Blocks + segment.BlockCount,
                       [](const MemoryBlock& block) { return block.UsedMask != 0; });
}

std::string FindPoolFault() {
    Pool& pool = ThePool();
    Verdict verdict;
    std::size_t listed = 0;
    std::size_t partlyUsedBlocks = 0;
    for (const MemorySegment* segment : pool.Segments) {
        CheckBlocks(*segment, pool, verdict);
        CheckListsOf(*segment, pool, verdict);
        listed += IsFull(*segment) ? 0 : 1;
        for (int i = 0; i < segment->BlockCount; ++i) {
            const MemoryBlock& block = segment->Blocks[i];
            partlyUsedBlocks += block.UsedMask != 0 && !IsFull(block) ? 1 : 0;
        }
    }
    verdict.Require(pool.FreeSegments.size() + TotalLength(pool.Kinds, &PacketKind::NoFullSegments) == listed,
                    "the lists name segments of the pool only");
    verdict.Require(TotalLength(pool.Kinds, &PacketKind::NoFullBlocks) == partlyUsedBlocks,
                    "the block lists name blocks of the pool only");
    CheckAddressIndex(pool, verdict);
    return verdict.Fault();
}

std::int64_t CountBytesHandedOut() {
    Pool& pool = ThePool();
    std::int64_t bytes = 0;
    for (const MemorySegment* segment : pool.Segments) {
        if (IsHandedOutWhole(*segment)) bytes += segment->Size;
        for (int i = 0; i < segment->BlockCount; ++i) {
            const MemoryBlock& block = segment->Blocks[i];
            if (block.Type == FreeBlock) continue;
            bytes += std::int64_t{std::popcount(block.UsedMask)} * pool.KindOf(block.Type).UsedBytes;
        }
    }
    return bytes;
}

}  // namespace Orvane
