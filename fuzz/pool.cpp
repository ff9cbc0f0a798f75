// The pool against a plain list that knows what it should know: bytes are takes, returns, wrong returns,
// shortage and shrinking; it is recounted after each.
#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

#include <orvane/Exceptions.h>

#include "fuzz/input.h"
#include "fuzz/target.h"
#include "memory/pool.h"
#include "tests/support/exceptions.h"
#include "tests/support/pool.h"
#include "tests/support/pool_kinds.h"

namespace Orvane {
namespace {

using namespace Testing;
using Info = MemoryStatisticsInfo;

/// Expects `Exception*` of a return of `p` that leaves the pool alone.
template <class Exception>
void ExpectRefusal(const Storage& kind, void* p) {
    const Info before = Statistics();
    const bool isRepeat = std::is_same_v<Exception, RepeatFreeException>;
    EXPECT_EQ(MessageOf<Exception>([&] { kind.Return(p); }),
              isRepeat ? "Repeat free memory." : "It is a invaild memory.");
    const Info after = Statistics();
    EXPECT_EQ(std::memcmp(&before, &after, sizeof before), 0);
    EXPECT_EQ(FindPoolFault(), "");
}

/// Takes and returns at random and keeps, as a plain list, what the pool should know.
class Traffic {
public:
    explicit Traffic(Fuzz::Input& input) : input_(input) {}

    void Step() {
        const int draw = input_.Below(100);
        if (draw < 51) Take();
        if (draw == 51) TakeWithoutMemory();
        if (draw >= 52 && draw < 98 && !held_.empty()) Return();
        if (draw == 98) ExpectRefusal<InvalidMemoryException>(Kinds[input_.Below(5)], this);
        if (draw == 99) Shrink();
    }

    void ExpectAgreement() {
        EXPECT_EQ(FindPoolFault(), "");
        const Info info = Statistics();
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
        const Storage& kind = Kinds[input_.Below(40) == 0 ? 4 : input_.Below(4)];
        std::vector<unsigned char> filled(static_cast<std::size_t>(kind.Bytes()),
                                          static_cast<unsigned char>(input_.Below(256)));
        const bool copies = kind.TakeCopy != nullptr && input_.Below(2) == 0;
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
        std::swap(held_[static_cast<std::size_t>(input_.Below(static_cast<int>(held_.size())))],
                  held_.back());
        const auto [kind, start, filling] = held_.back();
        held_.pop_back();
        EXPECT_EQ(std::count(start, start + kind->Bytes(), filling), kind->Bytes());
        void* inside = start + input_.Below(kind->Bytes());
        kind->Return(inside);
        useSize_ -= kind->Bytes();
        ExpectRefusal<RepeatFreeException>(*kind, inside);
    }

    /// The counter falls by the segments that went. What lay in a kept segment counts as returned, the rest
    /// as foreign.
    void Shrink() {
        const int before = Statistics().SegmentCount;
        MemoryManage::ReleaseToInit();
        const Info info = Statistics();
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

    Fuzz::Input& input_;
    std::vector<Held> held_;
    std::int64_t useSize_ = 0;
    FailingAllocator allocator_{std::numeric_limits<int>::max()};
};

}  // namespace
}  // namespace Orvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Orvane;
    constexpr int Capacities[] = {32, 64, 128, 4096};
    Fuzz::Input input(data, size);
    const int capacity = Capacities[input.Below(4)];
    const int blocks = 1 + input.Below(32);
    const int initCount = input.Below(4);
    const SmallPool pool(capacity, blocks);
    const Info sizes = Statistics();
    Traffic traffic(input);
    MemoryManage::InitMemoryManage(sizes.SegmentSize, blocks, initCount, capacity, sizes.CapacityInt);
    while (!input.IsEmpty()) {
        traffic.Step();
        traffic.ExpectAgreement();
    }
    MemoryManage::ReleaseAll();
    return 0;
}
