// Section records: who returns which column, moves of events, counters; the section utility.
#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include <orvane/SectionUtility.h>
#include <orvane/Sections.h>

#include "foundation/convert.h"
#include "sections/kernels.h"
#include "tests/support/awkward.h"
#include "tests/support/exceptions.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool_kinds.h"

namespace Orvane::Testing {
namespace {

/// An event section of full columns, with numbers that differ between columns and events.
struct FullEvents : EventSection {
    explicit FullEvents(int signalCount) {
        Initial(signalCount);
        for (int s = 0; s < signalCount; ++s)
            std::iota(Signals[s], Signals[s] + Capacity, 1000.0F * static_cast<float>(s));
    }
    FullEvents(const FullEvents&) = delete;
    FullEvents& operator=(const FullEvents&) = delete;
    ~FullEvents() { Release(); }
};

TEST(EventSections, EveryFormOfSharingReturnsEachColumnExactlyOnce) {
    const SmallPool pool;
    std::vector<bool> flags{true, false, true};
    std::vector<int> map{2, -1, 0};
    for (int form = 0; form < 4; ++form) {
        FullEvents raw(3);
        EventSection section;
        const auto share = [&] {
            if (form < 2) section.Initial(raw, flags);
            if (form == 2) section.Initial(raw, map);
            if (form == 3) section.CopyShareSignal(raw);
        };
        share();
        EXPECT_EQ(section[2], form == 2 ? raw[0] : raw[2]);
        for (int time = 0; time < 2; ++time) {
            if (form == 0) section.Release(flags);
            if (form == 1) section.Release(raw);
            if (form == 2) section.Release(map);
            if (form == 3) section.Release_Share();
            EXPECT_EQ(Statistics().UsedFloatCount, 3);
            EXPECT_EQ(section.Signals, nullptr);
        }
        // The wrong form returns shared columns twice. The pool says so, and releasing again goes on.
        share();
        raw.Release();
        EXPECT_EQ(MessageOf<RepeatFreeException>([&] { section.Release(); }), "Repeat free memory.");
        while (MessageOf<RepeatFreeException>([&] { section.Release(); }) != "nothing thrown") {
        }
        EXPECT_EQ(Statistics().UsedFloatCount, 0);
    }
}

TEST(EventSections, TablesAreKeptAndRemadeAsStated) {
    const SmallPool pool;
    FullEvents raw(3);
    EventSection section;
    section.Count = 7;
    section.Initial_Share(3);
    float** const table = section.Signals;
    std::vector<int> shorter{1, -1};
    section.Initial(raw, shorter);
    EXPECT_EQ(section.Signals, table) << "kept whatever its length";
    EXPECT_EQ(section.SignalCount, 2);
    EXPECT_EQ(section.Count, 7) << "Initial leaves the count alone";
    MemoryManage::FreeFloatArray(section[1]);
    section.CopyData(raw, 0, 60, 57);
    EXPECT_EQ(section.Count, 64) << "where the events go plays no part";
    EXPECT_EQ(section.SignalCount, 3);
    EXPECT_EQ(section[1], nullptr) << "a remade table has no columns, and they are left out";
    section.Release();
}

TEST(EventSections, ClonesAreWholeAndViewsAreShared) {
    const SmallPool pool;
    FullEvents raw(2);
    raw.Count = 5;
    EventSection clone;
    clone.Clone(raw);
    const std::unique_ptr<SignalSection> view(raw.GetSignalSection(1));
    view->Values[0] = -1.0F;
    raw.AddValue(1, 0.5F);
    EXPECT_EQ(raw[1][0], -0.5F);
    EXPECT_EQ(clone[1][0], 1000.0F);
    SignalSection copy;
    copy.Clone(*view);
    EXPECT_EQ(copy.Count, 5);
    EXPECT_EQ(copy.Values[63], clone[1][63]) << "whole columns, not just the first Count values";
    copy.Release();
    clone.Release();
}

TEST(EventSections, CopiesAndRemovalsAgreeWithAModel) {
    const SmallPool pool;
    std::mt19937 random(4);
    FullEvents source(3);
    for (int form = 0; form < 3; ++form) {
        FullEvents raw(3);
        EventSection section;
        std::vector<bool> flags{false, form > 0, false};
        const auto copy = [&](int start, int count) {
            if (form == 0) section.CopyData(source, start, section.Count, count);
            if (form == 1) section.CopyData(source, start, section.Count, count, flags);
            if (form == 2) section.CopyData(source, start, section.Count, count, raw);
        };
        const auto remove = [&](int start, int count) {
            if (form == 0) section.RemoveData(start, count);
            if (form == 1) section.RemoveData(start, count, flags);
            if (form == 2) section.RemoveData(start, count, raw);
        };
        section.Initial(raw, flags);
        std::vector<std::vector<float>> model(3);
        for (int step = 0; step < 500; ++step) {
            const int held = section.Count;
            const bool adds = random() % 2 == 0;
            const int start = static_cast<int>(random()) & 31;
            const int count = std::min(static_cast<int>(random() % 24), adds ? 64 - held : held - start);
            if (count < 0) continue;
            adds ? copy(start, count) : remove(start, count);
            for (int s = 0; s < 3; ++s) {
                std::vector<float>& column = model[s];
                if (adds) column.insert(column.end(), source[s] + start, source[s] + start + count);
                if (!adds) column.erase(column.begin() + start, column.begin() + start + count);
                if (flags[s]) column.assign(source[s], source[s] + column.size());
                ASSERT_EQ(std::vector<float>(section[s], section[s] + section.Count), column);
            }
        }
        const int held = section.Count;
        EXPECT_EQ(MessageOf<InvalidMemoryException>([&] { copy(0, 65 - held); }),
                  "CopyData out of array capacity.");
        EXPECT_EQ(MessageOf<InvalidMemoryException>([&] { remove(0, held + 1); }),
                  "Remove data count less then event section count.");
        EXPECT_EQ(section.Count, held);
        section.Release(flags);
    }
}

TEST(EventSections, SignalsAreInsertedAndRemovedInPlace) {
    const SmallPool pool;
    FullEvents other(2);
    EventSection section;
    section.InsertSignal(0);
    float* const own = section[0];
    section.InsertSignalRef(0, 1, other);
    section.InsertSignalRef(2, 0, other);
    const std::vector<float*> table(section.Signals, section.Signals + section.SignalCount);
    EXPECT_EQ(table, (std::vector<float*>{other[1], own, other[0]}));
    section.RemoveSignalRef(0);
    section.RemoveSignal(0);
    EXPECT_EQ(section[0], other[0]);
    EXPECT_EQ(section.SignalCount, 1);
    section.Release_Share();
}

TEST(Sections, OnlyCountersAreCountedWhenTheyAreInitialised) {
    const auto check = []<class Section>(Section section, int capacity, int count) {
        ForEachFailingAllocation([&] {
            section.Count = 3;
            EXPECT_TRUE(section.Initial());
            EXPECT_EQ(section.Capacity, capacity);
            EXPECT_EQ(section.Count, count);
            section.Release();
            section.Release();
            EXPECT_EQ(section.Capacity, 0);
        });
    };
    check(SignalSection(), 64, 3);
    check(ModelSection(), 64, 3);
    check(FilterSection(), 64, 3);
    check(CountSection(), 4, 4);
    check(SegmentSection(), 256, 3);
}

TEST(CountSections, AreScaledWithHalvesGoingUp) {
    std::vector<int> counters{1, 2, 3, -1, -2, -3, 7};
    CountSection section{{7}, counters.data()};
    section.DivValue(2);
    EXPECT_EQ(counters, (std::vector<int>{1, 1, 2, 0, 0, -1, 4}));
    section[1] = INT_MAX;
    section.CalcTotalCount();
    EXPECT_EQ(section.TotalCount, INT_MIN + 5) << "in 32-bit arithmetic";
    section.DivValue(0);
    EXPECT_EQ(counters, std::vector<int>(7, 0));
}

using EveryInstructionSet = OnEverySet<>;
INSTANTIATE_TEST_SUITE_P(Sections, EveryInstructionSet, ::testing::ValuesIn(AvailableInstructionSets()));

TEST_P(EveryInstructionSet, ExtremesHaveTheBitsOfTheOneByOneLoop) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        std::vector<float> values = RandomFloats(static_cast<int>(seed), seed);
        // One column in two is made of zeros of both signs and of values on one side of them.
        const float other = seed % 4 == 0 ? 1.0F : -1.0F;
        for (float& value : values)
            if (seed % 2 == 0) value = std::fabs(value) < 100.0F ? std::copysign(0.0F, value) : other;
        for (const float start : {0.0F, -0.0F, -5.0F, 5.0F, NAN, HUGE_VALF, -HUGE_VALF}) {
            float max = start, min = start, expectedMax = start, expectedMin = start;
            for (const float value : values) {
                if (value > expectedMax) expectedMax = value;
                if (value < expectedMin) expectedMin = value;
            }
            FindMaxAndMin(values.data(), static_cast<int>(values.size()), max, min);
            ASSERT_EQ(std::bit_cast<int>(max), std::bit_cast<int>(expectedMax)) << max << ", " << expectedMax;
            ASSERT_EQ(std::bit_cast<int>(min), std::bit_cast<int>(expectedMin)) << min << ", " << expectedMin;
        }
    }
}

/// A section over the caller's values.
SignalSection Over(std::vector<float>& values) {
    const auto count = static_cast<int>(values.size());
    return {{count, count}, values.data()};
}

TEST_P(EveryInstructionSet, ConversionKeepsTheLow16BitsOfTheTruncatedValue) {
    std::vector<float> known{0.9F, 65535.5F, 65536, -1.5F, NAN, 1e10F, 1e30F, -HUGE_VALF};
    std::vector<float> values = RandomFloats(1000, 10);
    std::fill_n(values.begin(), 64, 1e10F);  // a block beyond 32 bits, but not beyond 64
    std::vector<unsigned short> results(1000);
    SignalSection few = Over(known), many = Over(values);
    ModelSection model;
    SectionUtility utility;
    utility.ConvertSection(&few, &model, 8.0F, 0.0F);
    EXPECT_EQ(model.Count, 8) << "without storage only the header";
    model.Values = results.data();
    utility.ConvertSection(&few, &model, 8.0F, 0.0F);
    EXPECT_EQ(std::vector<int>(results.begin(), results.begin() + 8),
              (std::vector<int>{0, 65535, 0, 65535, 0, 0xE400, 0, 0}));
    std::vector<SignalSection*> signals{&many};
    std::vector<ModelSection*> models{&model};
    utility.SectionArrayConvertModelSection(signals, models, 7.0F, 3.0F, 3);
    for (int i = 0; i < 1000; ++i) {
        const double scaled = static_cast<double>((values[i] - 3.0F) * (4.0F / 3.0F));
        ASSERT_EQ(model[i], static_cast<unsigned short>(TruncateToInt64(scaled))) << values[i];
    }
}

TEST(SectionUtilities, StatisticsOverSections) {
    struct FromTen : SectionUtility {
        void FillSection(SignalSection* section) override {
            SectionUtility::FillSection(section);
            AddToColumn(section->Values, section->Count, 10.0F);
        }
    } utility;
    std::vector<float> values{1, 3}, single{1};
    SignalSection section = Over(values), lone = Over(single), withoutStorage;
    std::vector<SignalSection*> none, one{&section}, two{&section, &section}, tooFew{&lone};
    EXPECT_EQ(utility.SectionArrayStatisticsSD(one, 2.0F), std::sqrt(2.0F));
    EXPECT_EQ(utility.SectionArrayStatisticsSD(two, 2.0F), std::sqrt(2.0F)) << "the running sum is not reset";
    EXPECT_EQ(utility.SectionArrayStatisticsSD(tooFew, 2.0F), 0.0F);
    EXPECT_EQ(utility.SectionArrayStatisticsMean(two), 2.0F);
    EXPECT_EQ(utility.SectionArrayStatisticsMean(none), 0.0F);
    float max = 0.0F, min = 0.0F;
    withoutStorage.Count = 1;
    two.push_back(&withoutStorage);
    utility.FindSectionMaxAndMin(two, max, min);
    EXPECT_EQ(max - min, 3.0F);
    utility.FillSectionArray(one);
    EXPECT_EQ(values, (std::vector<float>{10, 11})) << "array forms call the overridden single form";
}

}  // namespace
}  // namespace Orvane::Testing
