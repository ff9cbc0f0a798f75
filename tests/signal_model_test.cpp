// Signal columns and the histogram path behind them: bin numbers, and their counts with and without gates.
#include <gtest/gtest.h>

#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"
#include "tests/support/population.h"

namespace Orvane::Testing {
namespace {

OVSignalSection signals;
OVModelSection models;

TEST(SignalVectors, OnlyTheLastSectionIsAskedForTheLastValueAndNothingHasNoRange) {
    const SmallPool pool;
    Sample column({-0.5F, -7.0F, -2.0F, -3.0F});
    float max = 1.0F, min = 1.0F;
    signals.GetValueMaxAndMin(column.Sections, max, min);
    EXPECT_EQ(std::pair(max, min), std::pair(-0.5F, -7.0F));
    EXPECT_EQ(signals.GetValue(column.Sections, 3), -3.0F);
    EXPECT_EQ(signals.GetValue(column.Sections, 4), 0.0F);
    EXPECT_EQ(signals.GetLastValue(column.Sections), -3.0F);
    signals.GetNextSection(column.Sections, column.Sections[0]);
    EXPECT_EQ(signals.GetLastValue(column.Sections), 0.0F);
    column.Sections[0]->Index = 7;
    EXPECT_EQ(signals.GetNextSection(column.Sections, nullptr)->Index, 0);
    signals.GetValueMaxAndMin(column.Sections, max, min);
    EXPECT_EQ(std::pair(max, min), std::pair(0.0F, 0.0F));
}

TEST(SignalVectors, RatioIsTheMeanOverSixteenSectionsWithTheBitsOfTheOrderedSum) {
    Signals none;
    EXPECT_TRUE(std::isnan(signals.CalcAreaHeightRatio(none, none)));
    Floats areas, heights;
    std::mt19937 random(3);
    double sum = 0.0;
    constexpr int Used = 1 + 31 + 32 + 33 + 0 + 11 * 64;
    for (int i = 0; i < Used + 400; ++i) {
        const float mantissa = static_cast<float>(random() % 1000) - 300.0F;
        areas.push_back(std::ldexp(mantissa, static_cast<int>(random() % 30)));
        heights.push_back(static_cast<float>(random() % 50) - 10.0F);
        const bool counts = i < Used && heights.back() != 0.0F;
        if (counts) sum += std::fabs(static_cast<double>(areas.back() / heights.back()));
    }
    for (const InstructionSet set : AvailableInstructionSets()) {
        const ScopedInstructionSet forced(set);
        const SmallPool pool;
        Sample area(areas), height(heights);
        EXPECT_EQ(signals.CalcAreaHeightRatio(area.Sections, height.Sections), sum / Used);
        height.Sections[15]->Values[63] = std::nanf("");
        EXPECT_TRUE(std::isnan(signals.CalcAreaHeightRatio(area.Sections, height.Sections)));
    }
}

Counts CountersOf(CountSection& counts) {
    return {counts.Counts, counts.Counts + counts.Count};
}

TEST(ModelVectors, HistogramsAddUpTheTruncatedValuesOfTheSelectedEventsBelowTheCapacity) {
    const SmallPool pool;  // gives four counters
    std::mt19937 random(5);
    Floats values(150);
    Counts all(4), selected(4);
    for (float& value : values)
        value = static_cast<float>(random() % 24) / 4.0F - 0.75F;
    Sample column(values);
    Gate gate(column.Sections);
    for (const float value : values)
        if (value < 4.0F) all[static_cast<std::size_t>(value < 0.0F ? 0.0F : value)] += 2;
    for (const float value : gate.Passing(values))
        if (value < 4.0F) selected[static_cast<std::size_t>(value < 0.0F ? 0.0F : value)] += 1;
    OwnedModels bins;
    CountSection gated, counts;
    models.ConvertSignalToModel(bins.Sections, column.Sections, 24.0F, 20.0F);
    models.StatisticsCountSection(bins.Sections, counts);
    models.StatisticsCountSection(bins.Sections, gate.Sections, gated);  // takes the packet behind
    models.StatisticsCountSection(bins.Sections, counts);
    EXPECT_EQ(CountersOf(gated), selected);
    EXPECT_EQ(CountersOf(counts), all);
    gated.Release();
    counts.Release();
}

TEST(ModelVectors, OneBitStandsForAGroupFromTheStartingWordOn) {
    const SmallPool pool;
    unsigned short numbers[] = {0, 1, 9, 1, 1, 2, 3, 3, 3, 2, 2};
    std::uint32_t flags[] = {~0U, 0xFFFFFFFDU};
    ModelSection model;
    model.Values = numbers;
    model.Count = 11;
    FilterSection filter;
    filter.Flags = flags;
    CountSection counts;
    counts.Initial();
    models.StatisticsCountSection_Virtual(&model, &filter, 40, 3, counts);
    EXPECT_EQ(counts[0], 0);
    filter.TrueCount = 1;
    models.StatisticsCountSection_Virtual(&model, &filter, 40, 3, counts);
    EXPECT_EQ(CountersOf(counts), (Counts{1, 1, 0, 3}));
    counts.Release();
}

TEST(CountVectors, AreMadeAnewAndLeaveTheRecordsTheyHeldToTheHost) {
    const SmallPool pool;
    OwnedCounts counts, held;
    OVCountSection().NewVectorSection(counts.Sections, 2);
    held.Sections = counts.Sections;
    OVCountSection().NewVectorSection(counts.Sections, 1);
    EXPECT_EQ(counts.Sections.size(), 1U);
    EXPECT_EQ(MemoryManage::GetUseSize(), 3 * 4 * MemoryManage::GetCapacityInt()) << "nothing was returned";
}

TEST(ModelVectors, AFailingPoolLosesNothing) {
    ForEachFailingAllocation([] {
        OwnedSignals copies;
        OwnedModels made;
        OwnedCounts counts;
        Owned<OVSegmentSection, SegmentSection> segments;
        OVCountSection().NewVectorSection(counts.Sections, 70);
        OVSegmentSection().NewVectorSection(segments.Sections, 2);
        signals.GetNextSection(copies.Sections, nullptr);
        Signals column(4, copies.Sections[0]);
        signals.NewCopyVectorSignalSection(copies.Sections, column);
        models.SynchronousVectorSection(made.Sections, column);
        column.resize(2);
        models.SynchronousVectorSection(made.Sections, column);
        EXPECT_EQ(made.Sections.size(), 2U);
    });
}

}  // namespace
}  // namespace Orvane::Testing
