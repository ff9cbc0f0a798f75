// Signal columns and the histogram path behind them: bin numbers, and their counts with and without gates.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include <orvane/orvane.h>

#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"
#include "tests/support/population.h"

namespace Orvane {
namespace {

using namespace Testing;

OVSignalSection signals;
OVModelSection models;

/// Signal sections with packets of their own, `count` values each.
struct Column {
    Column(const std::vector<float>& values, int count) {
        SignalSection* section = nullptr;
        for (const float value : values) {
            if (section == nullptr || section->Count == count)
                section = signals.GetNextSection(Sections, section);
            section->Values[section->Count++] = value;
        }
    }
    Column(const Column&) = delete;
    Column& operator=(const Column&) = delete;
    ~Column() { signals.ReleaseVectorSection(Sections); }

    std::vector<SignalSection*> Sections;
};

TEST(SignalVectors, OnlyTheLastSectionIsAskedForTheLastValueAndNothingHasNoRange) {
    const SmallPool pool;
    Column column({-0.5F, -7.0F, -2.0F, -3.0F}, 3);
    float max = 1.0F;
    float min = 1.0F;
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
    std::vector<SignalSection*> none;
    EXPECT_TRUE(std::isnan(signals.CalcAreaHeightRatio(none, none)));
    std::vector<float> areas;
    std::vector<float> heights;
    std::mt19937 random(3);
    double sum = 0.0;
    for (int i = 0; i < 20 * 61; ++i) {
        areas.push_back(static_cast<float>(random() % 1000) - 300.0F);
        heights.push_back(static_cast<float>(random() % 50) - 10.0F);
        const bool counts = i < 16 * 61 && heights.back() != 0.0F;
        if (counts) sum += std::fabs(static_cast<double>(areas.back() / heights.back()));
    }
    for (const InstructionSet set : AvailableInstructionSets()) {
        const ScopedInstructionSet forced(set);
        const SmallPool pool;
        Column area(areas, 61);
        Column height(heights, 61);
        EXPECT_EQ(signals.CalcAreaHeightRatio(area.Sections, height.Sections), sum / (16 * 61));
        height.Sections[15]->Values[60] = std::nanf("");
        EXPECT_TRUE(std::isnan(signals.CalcAreaHeightRatio(area.Sections, height.Sections)));
    }
}

std::vector<int> CountersOf(CountSection& counts) {
    return {counts.Counts, counts.Counts + counts.Count};
}

TEST(ModelVectors, HistogramsAddUpTheTruncatedValuesOfTheSelectedEventsBelowTheCapacity) {
    const SmallPool pool;  // gives four counters
    std::mt19937 random(5);
    std::vector<float> values(150);
    std::vector<int> all(4), selected(4);
    for (float& value : values)
        value = static_cast<float>(random() % 24) / 4.0F - 0.75F;
    Column column(values, 64);
    Gate gate(column.Sections);
    for (const float value : values)
        if (value < 4.0F) all[static_cast<std::size_t>(value < 0.0F ? 0.0F : value)] += 2;
    for (const float value : gate.Passing(values))
        if (value < 4.0F) selected[static_cast<std::size_t>(value < 0.0F ? 0.0F : value)] += 1;
    std::vector<ModelSection*> bins;
    CountSection gated;
    CountSection counts;
    models.ConvertSignalToModel(bins, column.Sections, 24.0F, 20.0F);
    models.StatisticsCountSection(bins, counts);
    models.StatisticsCountSection(bins, gate.Sections, gated);  // takes the packet behind
    models.StatisticsCountSection(bins, counts);
    EXPECT_EQ(CountersOf(gated), selected);
    EXPECT_EQ(CountersOf(counts), all);
    gated.Release();
    counts.Release();
    models.ReleaseVectorSection(bins);
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
    EXPECT_EQ(CountersOf(counts), (std::vector{1, 1, 0, 3}));
    counts.Release();
}

TEST(CountVectors, AreMadeAnewAndLeaveTheRecordsTheyHeldToTheHost) {
    const SmallPool pool;
    std::vector<CountSection*> counts;
    OVCountSection().NewVectorSection(counts, 2);
    std::vector<CountSection*> held = counts;
    OVCountSection().NewVectorSection(counts, 1);
    EXPECT_EQ(counts.size(), 1U);
    EXPECT_EQ(MemoryManage::GetUseSize(), 3 * 4 * MemoryManage::GetCapacityInt()) << "nothing was returned";
    OVCountSection().ReleaseVectorSection(counts);
    OVCountSection().ReleaseVectorSection(held);
}

TEST(ModelVectors, AFailingPoolLosesNothing) {
    struct Kept {
        ~Kept() {
            signals.ReleaseVectorSection(Copies);
            models.ReleaseVectorSection(Models);
            OVCountSection().ReleaseVectorSection(Counts);
            OVSegmentSection().ReleaseVectorSection(Segments);
        }
        std::vector<SignalSection*> Copies;
        std::vector<ModelSection*> Models;
        std::vector<CountSection*> Counts;
        std::vector<SegmentSection*> Segments;
    };
    ForEachFailingAllocation([] {
        Kept kept;
        OVCountSection().NewVectorSection(kept.Counts, 70);
        OVSegmentSection().NewVectorSection(kept.Segments, 2);
        signals.GetNextSection(kept.Copies, nullptr);
        std::vector<SignalSection*> column(4, kept.Copies[0]);
        signals.NewCopyVectorSignalSection(kept.Copies, column);
        models.SynchronousVectorSection(kept.Models, column);
        column.resize(2);
        models.SynchronousVectorSection(kept.Models, column);
        EXPECT_EQ(kept.Models.size(), 2U);
    });
}

}  // namespace
}  // namespace Orvane
