// Histograms of one sample and of several, against counting event by event.
#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "plot/histogram_counting.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/plots.h"
#include "tests/support/pool.h"

namespace Orvane {
namespace {

using namespace Testing;

struct Case {
    int Capacity, Events;
    Shown Form;
    int ShownEvents;
    const char* Gates;  ///< one letter each
    /// 40 of an asinh axis or 65536 of a linear one, which keep all events, or of a linear one off which some
    /// lie.
    int Bins = 40;
};

constexpr int Prime = 2477;  // spreads the events of a population

// Around the limit of smoothing in every form; sections that end within a word, virtual ones that end within
// the events of a real one; more gates and bins than are counted at once; events off the screen, and in
// the last bin there can be.
const Case Cases[] = {
    {480, 4999, Shown::Everything, 4999, "b"},
    {480, 5000, Shown::Everything, 5000, "b"},
    {480, 4999, Shown::EmptyPopulation, 4999, "43b08n"},
    {480, 5000, Shown::EmptyPopulation, 5000, "43b08n"},
    {480, 7000, Shown::Population, 4999, "n43072b"},
    {480, 7000, Shown::Population, 5000, "n43072b"},
    {480, 7000, Shown::PopulationFilters, 4999, "b6"},
    {480, 7000, Shown::PopulationFilters, 5000, "b6"},
    {480, 7000, Shown::PopulationFilters, 0, "b6"},
    {480, 0, Shown::Everything, 0, "b4"},
    {2048, 5000, Shown::Everything, 5000, "12345b", 3000},
    {2048, 7000, Shown::Population, 6000, "2b", 3000},
    {2048, 3000, Shown::PopulationFilters, 1000, "b2", 3000},
    {2048, 5000, Shown::Everything, 5000, "n4b", 65536},
    {2048, 7000, Shown::Population, 6000, "n4b", 65536},
};

/// Count sections with a guard behind the counters, which must stay.
struct CountVector {
    CountVector(std::size_t number, int bins)
        : Storage(number, Cells(static_cast<std::size_t>(bins) + 1)), Records(number) {
        for (std::size_t i = 0; i < number; ++i) {
            Records[i].Count = Records[i].Capacity = bins;
            Records[i].Counts = Storage[i].data();
            Records[i].TotalCount = -1;
            Sections.push_back(&Records[i]);
        }
    }
    std::vector<Cells> Storage;
    std::vector<CountSection> Records;
    std::vector<CountSection*> Sections;
};

struct Scene : Subject {
    explicit Scene(const Case& row)
        : Subject(row.Form, 3, row.Events), Row(row), Screen(row.Bins, 1, row.Bins == 40, row.Bins != 3000) {
        int event = 0;
        for (FilterSection* section : Members.Sections) {
            for (int i = 0; i < section->Count; ++i, ++event)
                section->SetFlag(i, event * Prime % row.Events < row.ShownEvents);
            section->CalcTrueCount();
        }
        if (row.ShownEvents == 0) OVFilterSection().ReleaseVectorSection(Members.Sections);
        AddGates(row.Gates);
        // The bits decide, not what was counted once.
        for (const auto& gate : OwnGates)
            for (FilterSection* section : gate->Sections)
                section->TrueCount = 0;
    }

    /// What is counted for every gate when it is done `times` times, event by event.
    std::vector<Cells> Expected(int times) {
        OwnedSignals expanded;
        auto offsets = SmoothingOffsets;
        OVStatisticsSignalSection().GenerateVirtualVectorSignalSection(Xs.Sections, offsets.data(), 63,
                                                                       expanded.Sections);
        const bool isSmoothed = Row.ShownEvents < 5000;
        const auto pixels = PixelsOf(*Screen.X, isSmoothed ? expanded.Sections : Xs.Sections);
        auto isShown = ShownEvents();
        isShown.resize(static_cast<std::size_t>(Row.Events));
        std::vector<Cells> counts;
        for (std::size_t g = 0; g < OwnGates.size(); ++g) {
            const bool isEvery = Row.Gates[g] == 'b' || Row.Gates[g] == 'n';
            const auto isMember = OwnGates[g]->Events();
            Cells& cells = counts.emplace_back(static_cast<std::size_t>(Row.Bins) + 1);
            for (std::size_t i = 0; i < pixels.size(); ++i) {
                const std::size_t event = isSmoothed ? i / 64 : i;
                const bool isIn = isShown[event] && (isEvery || isMember[event]);
                if (isIn && pixels[i] < Row.Bins) cells[static_cast<std::size_t>(pixels[i])] += times;
            }
        }
        return counts;
    }

    void Count(CountVector& counts) {
        OVPlotViewHistogram().ConvertSignalToCount(*this, counts.Sections, Screen.X.get());
    }

    Case Row;
    Axes Screen;
};

TEST(Histogram, AddsWhatCountingOneByOneCounts) {
    for (const Case& row : Cases) {
        const SmallPool pool(row.Capacity);
        Scene scene(row);
        const auto expected = scene.Expected(2);
        const auto background =
            std::string(row.Gates).find_first_of(row.Form < Shown::Population ? "bn" : "b");
        EXPECT_EQ(scene.FindBackgroundIndex(), static_cast<int>(background));
        for (const InstructionSet set : AvailableInstructionSets()) {
            SCOPED_TRACE(::testing::PrintToString(set) + ": " + row.Gates + " of " +
                         std::to_string(row.ShownEvents) + " among " + std::to_string(row.Events));
            const ScopedInstructionSet scope(set);
            CountVector counts(expected.size(), row.Bins), several(2, row.Bins);
            scene.Count(counts);
            scene.Count(counts);
            EXPECT_EQ(counts.Storage, expected);
            for (std::size_t g = 0; g < expected.size(); ++g)
                EXPECT_EQ(counts.Records[g].TotalCount,
                          std::accumulate(expected[g].begin(), expected[g].end(), 0));

            OVPlotData nothing;
            std::vector<OVPlotData*> samples{&scene, &nothing, &scene};
            several.Sections.push_back(&several.Records[0]);
            OVPlotViewHistogram_MultiSample().ConvertSignalToCount(samples, several.Sections,
                                                                   scene.Screen.X.get());
            EXPECT_EQ(several.Storage[0], expected[background]);
            EXPECT_EQ(several.Storage[1], Cells(expected[0].size()));
            EXPECT_EQ(several.Records[0].TotalCount, -1);
        }
    }
}

TEST(Histogram, LeavesNothingBehindWhenThePoolIsExhausted) {
    for (const Case& row : {Case{64, 100, Shown::Everything, 100, "b4"},
                            {64, 100, Shown::Population, 60, "b4"},
                            {2048, 5000, Shown::Everything, 5000, "b4"},
                            {2048, 6000, Shown::Population, 5000, "b4"}}) {
        ForEachFailingAllocation(
            [&] {
                Scene scene(row);
                CountVector counts(2, row.Bins);
                scene.Count(counts);
            },
            row.Capacity);
    }
}

}  // namespace
}  // namespace Orvane
