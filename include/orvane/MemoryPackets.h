// The records of the pool: segments of memory, the equal blocks that a segment consists of, and the packets
// that a block is cut into. A packet is what a section receives as its storage. The pool owns every record; a
// host meets them only by name.
#pragma once

#include <cstdint>

#include <orvane/Platform.h>

namespace Orvane {

struct MemoryBlock;
struct MemorySegment;

/// The largest number of blocks in a segment and of packets in a block: one bit each in a 32-bit mask.
constexpr int MaxPoolParts = 32;

/// A column of floats. A float packet takes a whole block.
struct FloatPacket {
    float* Address;      ///< first element
    MemoryBlock* Block;  ///< the block that the packet lies in
    int Count;           ///< number of elements
    int Index;           ///< position within the block, from 0
};

/// A column of 16-bit values. Two share a block.
struct ShortPacket {
    short* Address;      ///< first element
    MemoryBlock* Block;  ///< the block that the packet lies in
    int Count;           ///< number of elements
    int Index;           ///< position within the block, from 0
};

/// An array of int counters. Capacity / CapacityInt of them share a block.
struct IntPacket {
    int* Address;        ///< first element
    MemoryBlock* Block;  ///< the block that the packet lies in
    int Count;           ///< number of elements
    int Index;           ///< position within the block, from 0
};

/// An array of bits, one per event. 32 share a block.
struct BitPacket {
    int* Address;        ///< first word
    MemoryBlock* Block;  ///< the block that the packet lies in
    int Count;           ///< number of bits
    int Index;           ///< position within the block, from 0
};

/// The packets of a block; the member that matches the block's type is in use.
union UsePacket {
    /// In index order; the first `PacketCount` of the block are used.
    FloatPacket Floats[MaxPoolParts];
    ShortPacket Shorts[MaxPoolParts];
    IntPacket Ints[MaxPoolParts];
    BitPacket Bits[MaxPoolParts];
};

/// One of the equal parts of a segment. Its first use gives it a type and cuts it into packets of that type.
///
/// Invariants: only the low PacketCount bits of UsedMask can be set; Type is 0 exactly while UsedMask is 0.
struct MemoryBlock {
    unsigned char* Address;  ///< first byte, inside the segment
    MemorySegment* Segment;  ///< the segment that the block lies in
    int Size;                ///< bytes
    int Index;               ///< position within the segment, from 0
    int PacketCount;         ///< packets the block is, or was last, cut into
    std::uint32_t UsedMask;  ///< bit i: packet i is handed out
    int Type;                ///< 0 free, 1 float, 2 short, 3 int, 4 bit
    UsePacket Packets;       ///< of the type `Type`
};

/// One piece of memory from the allocator.
///
/// Invariant: bit b of UsedMask is set exactly while block b holds a handed-out packet, except that a segment
/// handed out whole has all its BlockCount bits set and no block in use.
struct MemorySegment {
    unsigned char* Address;            ///< first byte, at a multiple of 16
    int Size;                          ///< bytes
    int BlockCount;                    ///< blocks in use of the array below
    std::uint32_t UsedMask;            ///< bit b: block b is in use
    MemoryBlock Blocks[MaxPoolParts];  ///< the first BlockCount are used
};

}  // namespace Orvane
