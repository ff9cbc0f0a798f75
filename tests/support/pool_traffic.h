// Traffic on the pool under test: the kinds of storage, and a plain list that knows what the pool should
// know.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

#include <orvane/Exceptions.h>
#include <orvane/MemoryManage.h>

#include "memory/pool.h"
#include "tests/support/exceptions.h"
#include "tests/support/pool.h"

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

/// Expects `Exception*` of a return of `p` that leaves the pool alone.
template <class Exception>
void ExpectRefusal(const Storage& kind, void* p) {
    const MemoryStatisticsInfo before = Statistics();
    const bool isRepeat = std::is_same_v<Exception, RepeatFreeException>;
    EXPECT_EQ(MessageOf<Exception>([&] { kind.Return(p); }),
              isRepeat ? "Repeat free memory." : "It is a invaild memory.");
    const MemoryStatisticsInfo after = Statistics();
    EXPECT_EQ(std::memcmp(&before, &after, sizeof before), 0);
    EXPECT_EQ(FindPoolFault(), "");
}

/// Takes and returns at random and keeps, as a plain list, what the pool should know.
class Traffic {
public:
    /// `draw(below)` chooses what happens: a number from 0 to `below` - 1.
    explicit Traffic(std::function<int(int below)> draw) : draw_(std::move(draw)) {}
    Traffic(const Traffic&) = delete;
    Traffic& operator=(const Traffic&) = delete;
    ~Traffic() { MemoryManage::ReleaseAll(); }

    void Step() {
        const int draw = draw_(100);
        if (draw < 51) Take();
        if (draw == 51) TakeWithoutMemory();
        if (draw >= 52 && draw < 98 && !held_.empty()) Return();
        if (draw == 98) ExpectRefusal<InvalidMemoryException>(Kinds[draw_(5)], this);
        if (draw == 99) Shrink();
    }

    void ExpectAgreement() {
        EXPECT_EQ(FindPoolFault(), "");
        const MemoryStatisticsInfo info = Statistics();
        for (const Storage& kind : Kinds) {
            const auto isOfKind = [&](const Held& held) { return held.Kind == &kind; };
            if (kind.UsedCount == nullptr) continue;
            EXPECT_EQ(info.*kind.UsedCount, std::count_if(held_.begin(), held_.end(), isOfKind));
        }
        EXPECT_EQ(info.UseSize, useSize_);
        EXPECT_EQ(info.NewSize, std::int64_t{allocator_.Calls()} * info.SegmentSize);
    }

private:
    struct Held {
        const Storage* Kind;
        unsigned char* Start;
        unsigned char Filling;
    };

    void Take() {
        const Storage& kind = Kinds[draw_(40) == 0 ? 4 : draw_(4)];
        std::vector<unsigned char> filled(kind.Bytes(), static_cast<unsigned char>(draw_(256)));
        const bool copies = kind.TakeCopy != nullptr && draw_(2) == 0;
        void* start = copies ? kind.TakeCopy(filled.data()) : kind.Take();
        if (!copies) std::memcpy(start, filled.data(), filled.size());
        held_.push_back({&kind, static_cast<unsigned char*>(start), filled[0]});
        useSize_ += kind.Bytes();
    }

    /// Succeeds where the pool need not grow, and otherwise leaves it as it was.
    void TakeWithoutMemory() {
        const FailingAllocator allocator(1);
        try {
            Take();
        } catch (OutOfMemoryException* error) {
            delete error;
            EXPECT_TRUE(allocator.HasFailed());
        }
    }

    /// Through any address inside; its contents are untouched by other packets, a second return is refused.
    void Return() {
        std::swap(held_[static_cast<std::size_t>(draw_(static_cast<int>(held_.size())))], held_.back());
        const auto [kind, start, filling] = held_.back();
        held_.pop_back();
        EXPECT_EQ(std::count(start, start + kind->Bytes(), filling), kind->Bytes());
        void* inside = start + draw_(kind->Bytes());
        kind->Return(inside);
        useSize_ -= kind->Bytes();
        ExpectRefusal<RepeatFreeException>(*kind, inside);
    }

    /// The counter falls by the segments that went. What lay in a kept segment counts as returned, the rest
    /// as foreign.
    void Shrink() {
        const int before = Statistics().SegmentCount;
        MemoryManage::ReleaseToInit();
        const MemoryStatisticsInfo info = Statistics();
        EXPECT_EQ(info.SegmentCount, std::min(before, info.InitCount));
        EXPECT_EQ(info.FreeCount, info.SegmentCount);
        useSize_ -= std::int64_t{before - info.SegmentCount} * info.SegmentSize;
        for (const Held& held : held_) {
            const bool isKept = ThePool().AddressIndex.FindIndex(held.Start) >= 0;
            if (isKept) ExpectRefusal<RepeatFreeException>(*held.Kind, held.Start);
            if (!isKept) ExpectRefusal<InvalidMemoryException>(*held.Kind, held.Start);
        }
        held_.clear();
    }

    std::function<int(int below)> draw_;
    std::vector<Held> held_;
    std::int64_t useSize_ = 0;
    FailingAllocator allocator_{std::numeric_limits<int>::max()};
};

}  // namespace Orvane::Testing
