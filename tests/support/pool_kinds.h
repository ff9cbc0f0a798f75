// The kinds of storage that the pool hands out.
#pragma once

#include <algorithm>
#include <iterator>

#include <orvane/MemoryManage.h>

namespace Orvane::Testing {

/// A kind of storage; the last one is the raw segment.
struct Storage {
    char Letter;
    int (*Bytes)();
    int MemoryStatisticsInfo::*UsedCount;
    void* (*Take)();
    void* (*TakeCopy)(void*);
    void (*Return)(void*);
};

template <class Element, Element* (*Take)(), Element* (*TakeCopy)(Element*), void (*Return)(Element*)>
Storage Kind(char letter, int (*bytes)(), int MemoryStatisticsInfo::*usedCount) {
    return {letter,
            bytes,
            usedCount,
            [] { return static_cast<void*>(Take()); },
            [](void* p) { return static_cast<void*>(TakeCopy(static_cast<Element*>(p))); },
            [](void* p) { Return(static_cast<Element*>(p)); }};
}

inline const Storage Kinds[] = {
    Kind<float, MemoryManage::NewFloatArray, MemoryManage::NewFloatArrayValue, MemoryManage::FreeFloatArray>(
        'f', [] { return MemoryManage::GetCapacity() * 4; }, &MemoryStatisticsInfo::UsedFloatCount),
    Kind<short, MemoryManage::NewShortArray, MemoryManage::NewShortArrayValue, MemoryManage::FreeShortArray>(
        's', [] { return MemoryManage::GetCapacity() * 2; }, &MemoryStatisticsInfo::UsedShortCount),
    Kind<int, MemoryManage::NewIntArray, MemoryManage::NewIntArrayValue, MemoryManage::FreeIntArray>(
        'i', [] { return MemoryManage::GetCapacityInt() * 4; }, &MemoryStatisticsInfo::UsedIntCount),
    Kind<int, MemoryManage::NewBitArray, MemoryManage::NewBitArrayValue, MemoryManage::FreeBitArray>(
        'b', [] { return MemoryManage::GetCapacity() / 8; }, &MemoryStatisticsInfo::UsedBitCount),
    {'r', MemoryManage::GetSegmentSize, nullptr, MemoryManage::NewSegment, nullptr,
     MemoryManage::FreeSegment},
};

inline const Storage& KindOf(char letter) {
    return *std::find_if(Kinds, std::end(Kinds), [&](const Storage& kind) { return kind.Letter == letter; });
}

inline MemoryStatisticsInfo Statistics() {
    MemoryStatisticsInfo info{};
    MemoryManage::GetStatisticsInfo(info);
    return info;
}

}  // namespace Orvane::Testing
