// What the pool tells about itself: settings, counters, the snapshot, the log.
#include <orvane/MemoryManage.h>

#include <bit>
#include <cstdio>
#include <utility>

#include "foundation/platform.h"
#include "memory/pool.h"

namespace Orvane {
namespace {

// The name is used as it stands on every system.
constexpr const char* LogFileName = "c:\\UnitTest\\logForMemory.txt";
constexpr const char* LogHeader =
    "No.\tTime\tNew size(M)\tUse size(M)\tSegment Count\tFree Count\t NoFull float\tshort\tint\tbitarray\n";

int UsedPackets(const Pool& pool, BlockType type) {
    int used = 0;
    for (const MemorySegment* segment : pool.Segments) {
        for (int i = 0; i < segment->BlockCount; ++i) {
            const MemoryBlock& block = segment->Blocks[i];
            if (block.Type == type) used += std::popcount(block.UsedMask);
        }
    }
    return used;
}

int InMebibytes(std::int64_t bytes) {
    return static_cast<int>(bytes >> 20);
}

}  // namespace

void MemoryManage::GetStatisticsInfo(MemoryStatisticsInfo& info) {
    Pool& pool = ThePool();
    const PacketKind& floats = pool.KindOf(FloatBlock);
    const PacketKind& shorts = pool.KindOf(ShortBlock);
    const PacketKind& ints = pool.KindOf(IntBlock);
    const PacketKind& bits = pool.KindOf(BitBlock);

    info.SegmentSize = pool.Settings.SegmentSize;
    info.BlockCount = pool.Settings.BlockCount;
    info.Capacity = pool.Settings.Capacity;
    info.CapacityInt = pool.Settings.CapacityInt;
    info.InitCount = pool.Settings.InitCount;
    info.SegmentCount = static_cast<int>(pool.Segments.size());
    info.FreeCount = static_cast<int>(pool.FreeSegments.size());
    info.NoFullFloatCount = static_cast<int>(floats.NoFullSegments.size());
    info.NoFullIntCount = static_cast<int>(ints.NoFullSegments.size());
    info.NoFullShortCount = static_cast<int>(shorts.NoFullSegments.size());
    info.NoFullBitCount = static_cast<int>(bits.NoFullSegments.size());
    info.NoFullIntBlockCount = static_cast<int>(ints.NoFullBlocks.size());
    info.NoFullShortBlockCount = static_cast<int>(shorts.NoFullBlocks.size());
    info.NoFullBitBlockCount = static_cast<int>(bits.NoFullBlocks.size());
    info.UsedFloatCount = UsedPackets(pool, FloatBlock);
    info.UsedShortCount = UsedPackets(pool, ShortBlock);
    info.UsedIntCount = UsedPackets(pool, IntBlock);
    info.UsedBitCount = UsedPackets(pool, BitBlock);
    info.UseSize = GetUseSize();
    info.NewSize = GetNewSize();
}

void MemoryManage::SetUpperSize(std::int64_t size) {
    ThePool().UpperSize = size;
}
std::int64_t MemoryManage::GetUpperSize() {
    return ThePool().UpperSize;
}
std::int64_t MemoryManage::GetUseSize() {
    return ThePool().UseSize.load(std::memory_order_relaxed);
}
std::int64_t MemoryManage::GetNewSize() {
    return ThePool().NewSize.load(std::memory_order_relaxed);
}
int MemoryManage::GetSegmentSize() {
    return ThePool().Settings.SegmentSize;
}
int MemoryManage::GetCapacity() {
    return ThePool().Settings.Capacity;
}
int MemoryManage::GetCapacityInt() {
    return ThePool().Settings.CapacityInt;
}

void MemoryManage::SetCallOutOfMemory(bool (*handler)()) {
    ThePool().OutOfMemoryHandler = handler;
}

OVMemoryAligned* MemoryManage::SetMemoryForTest(OVMemoryAligned* allocator) {
    if (allocator == nullptr) return nullptr;
    return std::exchange(ThePool().Allocator, allocator);
}

void MemoryManage::Writelog() {
    Pool& pool = ThePool();
    if (pool.Log == nullptr) {
        constexpr auto Mode = std::ios::out | std::ios::trunc | std::ios::binary;
        pool.Log = std::make_unique<std::ofstream>(LogFileName, Mode);
        *pool.Log << LogHeader;
    }
    MemoryStatisticsInfo info;
    GetStatisticsInfo(info);
    const LocalTime now = ReadLocalTime();
    char time[64];
    std::snprintf(time, sizeof time, "(%d-%02d-%02d %02d:%02d:%02d)", now.Year, now.Month, now.Day, now.Hour,
                  now.Minute, now.Second);
    // Deliberate: "No." is the number of segments, the "int" column repeats short, "bitarray" shows int.
    char line[256];
    std::snprintf(line, sizeof line, "%d\t%s\t%d\t%d\t%d\t%d\t%d\t%d\t%d\t%d\n", info.SegmentCount, time,
                  InMebibytes(info.NewSize), InMebibytes(info.UseSize), info.SegmentCount, info.FreeCount,
                  info.NoFullFloatCount, info.NoFullShortCount, info.NoFullShortCount, info.NoFullIntCount);
    *pool.Log << line << std::flush;
}

void MemoryManage::Closelog() {
    ThePool().Log.reset();
}

}  // namespace Orvane
