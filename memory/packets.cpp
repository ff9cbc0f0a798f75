// How packets are handed out and taken back. The four kinds share one implementation: they differ in their
// row of the pool's table and in the type of their packet records.
#include <orvane/MemoryManage.h>

#include <bit>
#include <cassert>
#include <cstring>
#include <type_traits>

#include "foundation/throw.h"
#include "memory/pool.h"

namespace Orvane {
namespace {

template <class Packet>
using ElementOf = std::remove_pointer_t<decltype(Packet::Address)>;

template <class Packet>
constexpr BlockType TypeOf = std::is_same_v<Packet, FloatPacket>   ? FloatBlock
                             : std::is_same_v<Packet, ShortPacket> ? ShortBlock
                             : std::is_same_v<Packet, IntPacket>   ? IntBlock
                                                                   : BitBlock;

template <class Packet>
Packet* PacketsOf(MemoryBlock& block) {
    if constexpr (TypeOf<Packet> == FloatBlock) return block.Packets.Floats;
    if constexpr (TypeOf<Packet> == ShortBlock) return block.Packets.Shorts;
    if constexpr (TypeOf<Packet> == IntBlock) return block.Packets.Ints;
    if constexpr (TypeOf<Packet> == BitBlock) return block.Packets.Bits;
}

template <class Packet>
void CutBlock(MemoryBlock& block, const PacketKind& kind) {
    for (int i = 0; i < kind.PacketCount; ++i) {
        unsigned char* address = block.Address + static_cast<std::ptrdiff_t>(i) * kind.PacketBytes;
        PacketsOf<Packet>(block)[i] = {reinterpret_cast<ElementOf<Packet>*>(address), &block,
                                       kind.ElementCount, i};
    }
}

/// Gives a free block to the kind. Its packet records are written anew only when they stand for another kind.
template <class Packet>
void AssignBlock(MemoryBlock& block, const PacketKind& kind) {
    int& cutFor = PooledOf(*block.Segment).CutFor[static_cast<std::size_t>(block.Index)];
    if (cutFor != kind.Type) CutBlock<Packet>(block, kind);
    cutFor = kind.Type;
    block.Type = kind.Type;
    block.PacketCount = kind.PacketCount;
}

/// The lowest free packet of a block that is not full.
template <class Packet>
ElementOf<Packet>* TakePacket(MemoryBlock& block) {
    const int index = std::countr_one(block.UsedMask);
    block.UsedMask |= BitOf(index);
    return PacketsOf<Packet>(block)[index].Address;
}

/// A packet of the first block in which one is left, or null.
template <class Packet>
ElementOf<Packet>* TakeFromNoFullBlocks(PacketKind& kind) {
    if (kind.NoFullBlocks.empty()) return nullptr;
    MemoryBlock& block = *kind.NoFullBlocks.front();
    ElementOf<Packet>* packet = TakePacket<Packet>(block);
    if (IsFull(block)) SeatOf(block).Leave();
    return packet;
}

/// The first packet of the lowest free block of the kind's first segment, or null when that has none.
template <class Packet>
ElementOf<Packet>* TakeFromNoFullSegments() {
    PacketKind& kind = ThePool().KindOf(TypeOf<Packet>);
    MemorySegment& segment = *kind.NoFullSegments.front();
    const int index = std::countr_one(segment.UsedMask);
    if (index >= segment.BlockCount) return nullptr;

    MemoryBlock& block = segment.Blocks[index];
    AssignBlock<Packet>(block, kind);
    ElementOf<Packet>* packet = TakePacket<Packet>(block);
    if (!IsFull(block)) SeatOf(block).MoveToEndOf(kind.NoFullBlocks);
    segment.UsedMask |= BitOf(index);
    if (IsFull(segment)) SeatOf(segment).Leave();
    return packet;
}

/// The distance of `p` from the start of the segment or block that it lies in.
template <class Part>
int OffsetIn(const Part& part, const void* p) {
    return static_cast<int>(static_cast<const unsigned char*>(p) - part.Address);
}

template <class Element>
Element* CopyInto(Element* packet, const Element* source, int bytes) {
    std::memcpy(packet, source, static_cast<std::size_t>(bytes));
    return packet;
}

}  // namespace

void MemoryManage::RemoveMemoryFromFreeToNoFull(std::list<MemorySegment*>& noFull) {
    SeatOf(*ThePool().FreeSegments.front()).MoveToEndOf(noFull);
}

void MemoryManage::RemoveMemorySection(std::list<MemorySegment*>& segments, MemorySegment* segment) {
    if (SeatOf(*segment).IsIn(segments)) SeatOf(*segment).Leave();
}

/// Has a segment with a free block put on the kind's list. False when it is worth looking everywhere again.
bool MemoryManage::ProvideNoFullMemory(std::list<MemorySegment*>& noFull) {
    if (!noFull.empty()) return true;
    if (ThePool().FreeSegments.empty()) {
        MemorySegment* segment = MallocMemorySectionCallback();
        if (segment == nullptr) return false;
        AddFreeMemorySection(segment);
    }
    RemoveMemoryFromFreeToNoFull(noFull);
    return true;
}

template <class Packet>
decltype(Packet::Address) MemoryManage::NewArray(decltype(Packet::Address) (*fromNoFullMemory)()) {
    Pool& pool = ThePool();
    const AutoLock lock(pool.Lock.GetCriticalSection());
    PacketKind& kind = pool.KindOf(TypeOf<Packet>);
    constexpr int Attempts = 2;
    for (int attempt = 1; attempt <= Attempts; ++attempt) {
        auto* packet = TakeFromNoFullBlocks<Packet>(kind);
        if (packet == nullptr) {
            if (!ProvideNoFullMemory(kind.NoFullSegments)) continue;
            packet = fromNoFullMemory();
        }
        if (packet == nullptr) break;
        Add(pool.UseSize, kind.UsedBytes);
        return packet;
    }
    ThrowOutOfMemory("Out of memory.");
}

float* MemoryManage::NewFloatArray_FromNoFullMemory() {
    return TakeFromNoFullSegments<FloatPacket>();
}
short* MemoryManage::NewShortArray_FromNoFullMemory() {
    return TakeFromNoFullSegments<ShortPacket>();
}
int* MemoryManage::NewIntArray_FromNoFullMemory() {
    return TakeFromNoFullSegments<IntPacket>();
}
int* MemoryManage::NewBitArray_FromNoFullMemory() {
    return TakeFromNoFullSegments<BitPacket>();
}

float* MemoryManage::NewFloatArray() {
    return NewArray<FloatPacket>(NewFloatArray_FromNoFullMemory);
}
short* MemoryManage::NewShortArray() {
    return NewArray<ShortPacket>(NewShortArray_FromNoFullMemory);
}
int* MemoryManage::NewIntArray() {
    return NewArray<IntPacket>(NewIntArray_FromNoFullMemory);
}
int* MemoryManage::NewBitArray() {
    return NewArray<BitPacket>(NewBitArray_FromNoFullMemory);
}

float* MemoryManage::NewFloatArrayValue(float* src) {
    return CopyInto(NewFloatArray(), src, GetCapacity() * 4);
}
int* MemoryManage::NewIntArrayValue(int* src) {
    return CopyInto(NewIntArray(), src, GetCapacityInt() * 4);
}
short* MemoryManage::NewShortArrayValue(short* src) {
    return CopyInto(NewShortArray(), src, GetCapacity() * 2);
}
int* MemoryManage::NewBitArrayValue(int* src) {
    return CopyInto(NewBitArray(), src, GetCapacity() / 8);
}

MemorySegment* MemoryManage::FindFreeMemorySegment(void* p) {
    Pool& pool = ThePool();
    const int index = pool.AddressIndex.FindIndex(p);
    if (index < 0) ThrowInvalidMemory("It is a invaild memory.");
    return pool.Segments[static_cast<std::size_t>(index)];
}

MemoryBlock* MemoryManage::FindFreeMemoryBlock(void* p) {
    MemorySegment& segment = *FindFreeMemorySegment(p);
    return &segment.Blocks[OffsetIn(segment, p) / segment.Blocks[0].Size];
}

void MemoryManage::RemoveBlockSection(std::list<MemoryBlock*>& blocks, MemoryBlock* block) {
    if (SeatOf(*block).IsIn(blocks)) SeatOf(*block).Leave();
}

template <class Packet>
void MemoryManage::FreeArray(void* p, std::list<MemoryBlock*>& blocks, std::list<MemorySegment*>& segments) {
    Pool& pool = ThePool();
    MemoryBlock& block = *FindFreeMemoryBlock(p);
    MemorySegment& segment = *block.Segment;
    const int index = OffsetIn(block, p) / pool.KindOf(TypeOf<Packet>).PacketBytes;
    if (index >= block.PacketCount || (block.UsedMask & BitOf(index)) == 0) {
        ThrowRepeatFree("Repeat free memory.");
    }
    assert(block.Type == TypeOf<Packet>);

    const bool blockWasFull = IsFull(block);
    const bool segmentWasFull = IsFull(segment);
    block.UsedMask &= ~BitOf(index);
    if (block.UsedMask == 0) {
        block.Type = FreeBlock;
        segment.UsedMask &= ~BitOf(block.Index);
        if (!blockWasFull) RemoveBlockSection(blocks, &block);
    } else if (blockWasFull) {
        SeatOf(block).MoveToEndOf(blocks);
    }

    if (segment.UsedMask == 0) {
        SeatOf(segment).MoveToEndOf(pool.FreeSegments);
    } else if (segmentWasFull && !IsFull(segment)) {
        SeatOf(segment).MoveToEndOf(segments);
    }
}

template <class Packet>
void MemoryManage::FreeArrayOfKind(void* p) {
    Pool& pool = ThePool();
    const AutoLock lock(pool.Lock.GetCriticalSection());
    PacketKind& kind = pool.KindOf(TypeOf<Packet>);
    FreeArray<Packet>(p, kind.NoFullBlocks, kind.NoFullSegments);
    Add(pool.UseSize, -std::int64_t{kind.UsedBytes});
}

void MemoryManage::FreeFloatArray(float* p) {
    FreeArrayOfKind<FloatPacket>(p);
}
void MemoryManage::FreeIntArray(int* p) {
    FreeArrayOfKind<IntPacket>(p);
}
void MemoryManage::FreeShortArray(short* p) {
    FreeArrayOfKind<ShortPacket>(p);
}
void MemoryManage::FreeBitArray(int* p) {
    FreeArrayOfKind<BitPacket>(p);
}

}  // namespace Orvane
