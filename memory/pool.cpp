#include "memory/pool.h"

namespace Orvane {

PooledSegment::PooledSegment(unsigned char* address, int size, int blockCount) : MemorySegment() {
    Address = address;
    Size = size;
    BlockCount = blockCount;
    const int blockSize = size / blockCount;
    for (int i = 0; i < blockCount; ++i) {
        MemoryBlock& block = Blocks[i];
        block.Address = address + static_cast<std::ptrdiff_t>(i) * blockSize;
        block.Segment = this;
        block.Size = blockSize;
        block.Index = i;
        SeatOf(block).Hold(&block);
    }
}

void ClearSegment(MemorySegment& segment) {
    segment.UsedMask = 0;
    PooledOf(segment).CutFor = {};
    for (int i = 0; i < segment.BlockCount; ++i) {
        MemoryBlock& block = segment.Blocks[i];
        block.Type = FreeBlock;
        block.UsedMask = 0;
        block.PacketCount = 0;
        SeatOf(block).Leave();
    }
}

Pool& ThePool() {
    static Pool& pool = *new Pool;
    return pool;
}

Pool::Pool() {
    Configure(PoolSettings());
}

void Pool::Configure(const PoolSettings& settings) {
    struct Row {
        int Type;
        int PacketCount;
        int Capacity;
        int ElementBits;
    };
    const Row rows[] = {
        {FloatBlock, 1, settings.Capacity, 32},
        {ShortBlock, 2, settings.Capacity, 16},
        {IntBlock, settings.Capacity / settings.CapacityInt, settings.CapacityInt, 32},
        {BitBlock, 32, settings.Capacity, 1},
    };
    Settings = settings;
    for (const Row& row : rows) {
        PacketKind& kind = KindOf(row.Type);
        const std::int64_t packetBits = std::int64_t{settings.BlockSize() / row.PacketCount} * 8;
        kind.Type = row.Type;
        kind.PacketCount = row.PacketCount;
        kind.ElementCount = static_cast<int>(packetBits / row.ElementBits);
        kind.PacketBytes = static_cast<int>(packetBits / row.ElementBits * row.ElementBits / 8);
        kind.UsedBytes = static_cast<int>(std::int64_t{row.Capacity} * row.ElementBits / 8);
    }
}

}  // namespace Orvane
