// The process-wide pool from which every section takes its storage.
#pragma once

#include <cstdint>
#include <list>

#include <orvane/MemoryPackets.h>
#include <orvane/OVMemoryAligned.h>
#include <orvane/Platform.h>

namespace Orvane {

/// A snapshot of the pool: settings, lengths of its lists, packets handed out, byte counters.
struct MemoryStatisticsInfo {
    int SegmentSize;            ///< bytes of a segment
    int BlockCount;             ///< blocks of a segment
    int Capacity;               ///< entries of a float, short or bit packet
    int CapacityInt;            ///< entries of an int packet
    int InitCount;              ///< segments that ReleaseToInit keeps
    int SegmentCount;           ///< segments the pool has
    int FreeCount;              ///< segments of which nothing is handed out
    int NoFullFloatCount;       ///< segments with a block left for float packets
    int NoFullIntCount;         ///< the same for int packets
    int NoFullShortCount;       ///< the same for short packets
    int NoFullBitCount;         ///< the same for bit packets
    int NoFullIntBlockCount;    ///< blocks with an int packet left
    int NoFullShortBlockCount;  ///< blocks with a short packet left
    int NoFullBitBlockCount;    ///< blocks with a bit packet left
    int UsedFloatCount;         ///< float packets handed out
    int UsedShortCount;         ///< short packets handed out
    int UsedIntCount;           ///< int packets handed out
    int UsedBitCount;           ///< bit packets handed out
    std::int64_t UseSize;       ///< bytes handed out
    std::int64_t NewSize;       ///< bytes obtained from the allocator
};

/// Obtains large segments from a replaceable allocator, cuts them into packets of four kinds, hands those and
/// whole segments out and takes them back. Returning storage never shrinks the pool; ReleaseToInit and
/// ReleaseAll do.
///
/// Any thread may take and return storage: one critical section guards the pool. The settings, setters and
/// GetStatisticsInfo do not enter it; set up the pool before threads use it. Before InitMemoryManage the
/// defaults apply and the pool is empty.
///
/// Taking storage throws OutOfMemoryException*, after which the pool is as it was before the request:
/// "Out of memory!" when the allocator has no memory and no handler says to try again, "Out of memory." when
/// trying again did not help either. Returning throws InvalidMemoryException* "It is a invaild memory." for
/// an address outside the pool and RepeatFreeException* "Repeat free memory." for storage that is not handed
/// out, and then changes nothing.
class ORVANE_API MemoryManage {
public:
    /// Sets the sizes and obtains `initCount` segments, which ReleaseToInit keeps. For an empty pool only.
    /// Throws OutOfMemoryException* like a request for storage; what was obtained by then stays in the pool.
    ///
    /// @param segmentSize  bytes per segment (8388608 unless set), a multiple of `blockCount` * 128
    /// @param blockCount   blocks per segment, 1 to 32 (32); a block holds at least `capacity` floats
    /// @param initCount    segments to obtain now (0)
    /// @param capacity     elements per float, short and bit packet (65536)
    /// @param capacityInt  ints per int packet (2048); `capacity / capacityInt` lies in 1 to 32
    static void InitMemoryManage(int segmentSize, int blockCount, int initCount, int capacity,
                                 int capacityInt);

    /// Gives every segment beyond the first InitCount back to the allocator; nothing in the kept ones is
    /// handed out afterwards. GetUseSize falls by the size of each segment given back and by nothing else.
    static void ReleaseToInit();

    /// Gives every segment back to the allocator and sets InitCount and both byte counters to 0.
    static void ReleaseAll();

    /// A whole segment, GetSegmentSize() bytes. The upper size is not consulted, and the handler only when
    /// the allocator has no memory; there is no second attempt.
    static void* NewSegment();

    /// One packet: GetCapacity() floats, shorts or bits, GetCapacityInt() ints. The contents are not cleared.
    static float* NewFloatArray();
    static short* NewShortArray();
    static int* NewIntArray();
    static int* NewBitArray();

    /// One packet that starts as a copy of `src`, which holds a packet's worth of elements.
    static float* NewFloatArrayValue(float* src);
    static int* NewIntArrayValue(int* src);
    static short* NewShortArrayValue(short* src);
    static int* NewBitArrayValue(int* src);

    /// Returns a segment from NewSegment; any address inside it will do.
    static void FreeSegment(void* p);

    /// Returns a packet of the kind; any address inside it will do.
    static void FreeFloatArray(float* p);
    static void FreeIntArray(int* p);
    static void FreeShortArray(short* p);
    static void FreeBitArray(int* p);

    /// Fills `info`. No other thread may take or return storage meanwhile.
    static void GetStatisticsInfo(MemoryStatisticsInfo& info);

    /// In bytes (6 GiB unless set). From half of it on the handler is asked before the pool grows.
    static void SetUpperSize(std::int64_t size);
    static std::int64_t GetUpperSize();

    /// Bytes handed out: the capacity's worth of each packet, the whole of each raw segment.
    static std::int64_t GetUseSize();

    /// Bytes obtained from the allocator since the last ReleaseAll, those given back meanwhile included.
    static std::int64_t GetNewSize();

    /// The settings of InitMemoryManage: bytes of a segment, entries of a packet and of an int packet.
    static int GetSegmentSize();
    static int GetCapacity();
    static int GetCapacityInt();

    /// Installs the handler that is asked to return storage when the pool is about to grow beyond half of the
    /// upper size, or when the allocator has no memory. It returns whether it is worth trying again. It runs
    /// with the pool's lock held: it may return storage itself, but must not wait for another thread that
    /// does. Null removes it.
    static void SetCallOutOfMemory(bool (*handler)());

    /// Installs `allocator`, which the caller keeps, and returns the one installed before. It also frees what
    /// earlier ones gave. Null changes nothing and returns null.
    static OVMemoryAligned* SetMemoryForTest(OVMemoryAligned* allocator);

private:
    friend class PoolAccess;

    static MemoryBlock* FindFreeMemoryBlock(void* p);
    static MemorySegment* FindFreeMemorySegment(void* p);
    static void RemoveBlockSection(std::list<MemoryBlock*>& blocks, MemoryBlock* block);
    static void RemoveMemorySection(std::list<MemorySegment*>& segments, MemorySegment* segment);
    static void RemoveMemoryFromFreeToNoFull(std::list<MemorySegment*>& noFull);

    template <class Packet>
    static decltype(Packet::Address) NewArray(decltype(Packet::Address) (*fromNoFullMemory)());
    static bool ProvideNoFullMemory(std::list<MemorySegment*>& noFull);
    static float* NewFloatArray_FromNoFullMemory();
    static int* NewIntArray_FromNoFullMemory();
    static short* NewShortArray_FromNoFullMemory();
    static int* NewBitArray_FromNoFullMemory();
    template <class Packet>
    static void FreeArrayOfKind(void* p);
    template <class Packet>
    static void FreeArray(void* p, std::list<MemoryBlock*>& blocks, std::list<MemorySegment*>& segments);

    static void AddFreeMemorySection(MemorySegment* segment);
    static MemorySegment* MallocMemorySection();
    static MemorySegment* MallocMemorySectionCallback();
    static void FreeMemorySection(MemorySegment* segment);

    static void Writelog();
    static void Closelog();
};

}  // namespace Orvane
