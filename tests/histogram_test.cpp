// Histograms of one sample and of several, against counting event by event.
#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <vector>

#include <orvane/orvane.h>

#include "plot/histogram_counting.h"
#include "tests/support/awkward.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/plots.h"
#include "tests/support/pool.h"
#include "tests/support/population.h"

namespace Orvane {
namespace {

using namespace Testing;

enum class Shown { Everything, NullFilters, Population, PopulationFilters };

struct Case {
    int Capacity, Events;
    Shown Form;
    int ShownEvents;
    /// One letter per gate: b background, n null filters, a digit the number of 8 events that it has.
    const char* Gates;
    int Bins = 40;
    bool InScreen = true;
};

// Around the limit of smoothing in every form; sections that end within a word, virtual ones that end within
// the events of a real one; more gates and bins than are counted at once; events off the screen.
const Case Cases[] = {
    {96, 4999, Shown::Everything, 4999, "b"},
    {96, 5000, Shown::Everything, 5000, "b"},
    {96, 4999, Shown::NullFilters, 4999, "43b08n"},
    {96, 5000, Shown::NullFilters, 5000, "43b08n"},
    {96, 7000, Shown::Population, 4999, "n43072b"},
    {96, 7000, Shown::Population, 5000, "n43072b"},
    {96, 7000, Shown::PopulationFilters, 4999, "b6"},
    {96, 7000, Shown::PopulationFilters, 5000, "b6"},
    {96, 7000, Shown::PopulationFilters, 0, "b6"},
    {96, 0, Shown::Everything, 0, "b4"},
    {2048, 5000, Shown::Everything, 5000, "12345b", 3000},
    {2048, 7000, Shown::Population, 6000, "2b", 3000, false},
    {2048, 3000, Shown::PopulationFilters, 1000, "b2", 3000, false},
};

void SetTotal(Gate& gate, int wanted) {
    int total = static_cast<int>(OVFilterSection().GetTrueTotalCount(gate.Sections));
    for (FilterSection* section : gate.Sections) {
        for (int i = 0; i < section->Count && total != wanted; ++i) {
            if (section->GetFlag(i) == (total < wanted)) continue;
            section->SetFlag(i, total < wanted);
            total += total < wanted ? 1 : -1;
        }
        section->CalcTrueCount();
    }
}

/// Counters with a guard behind them, which must stay.
struct Bins : CountSection {
    explicit Bins(int count) : Storage(static_cast<std::size_t>(count) + 1, 0) {
        Count = Capacity = count;
        Counts = Storage.data();
        TotalCount = -1;
    }
    Cells Storage;
};

struct Scene {
    explicit Scene(const Case& row)
        : Row(row),
          Events(RandomFloats(row.Events, 3)),
          Drawn(Events.Sections, Events.Sections),
          Population(Events.Sections),
          X(OVCoordinateTransformerXFactory::CreateTransformer(0.0F, static_cast<float>(row.Bins), -1000.0,
                                                               1000.0, 50.0, row.Bins == 40, row.InScreen)) {
        SetTotal(Population, row.ShownEvents);
        Filters* background = nullptr;
        if (row.Form == Shown::Population) background = &Population.Sections;
        if (row.Form == Shown::PopulationFilters) {
            Drawn.PopulationFilters = &Population.Sections;
            background = &Unread;
        }
        if (row.Form != Shown::Everything) Drawn.Population = Plot::Info(background);
        for (const char* gate = row.Gates; *gate != 0; ++gate) {
            const auto density = static_cast<unsigned>(*gate - '0');  // any for a letter
            Gates.push_back(std::make_unique<Gate>(Events.Sections, Gates.size() + 2U, density));
            Filters* members = *gate == 'n' ? nullptr : &Gates.back()->Sections;
            Drawn.AddGate(*gate == 'b' ? background : members);
            // The bits decide, not what was counted once.
            for (FilterSection* section : Gates.back()->Sections)
                section->TrueCount = 0;
        }
    }

    /// Counts of every gate, event by event.
    std::vector<Cells> Counted() {
        OwnedSignals expanded;
        auto offsets = SmoothingOffsets;
        OVStatisticsSignalSection statistics;
        const bool isSmoothed = Row.ShownEvents < 5000;
        if (isSmoothed)
            statistics.GenerateVirtualVectorSignalSection(Events.Sections, offsets.data(), 63,
                                                          expanded.Sections);
        const auto pixels = PixelsOf(*X, isSmoothed ? expanded.Sections : Events.Sections);
        const bool isPart = Row.Form == Shown::Population || Row.Form == Shown::PopulationFilters;
        const auto isShown = Population.Events();
        std::vector<Cells> counts;
        for (std::size_t g = 0; g < Gates.size(); ++g) {
            const bool isEvery = Row.Gates[g] == 'b' || Row.Gates[g] == 'n';
            const auto isMember = Gates[g]->Events();
            Cells& cells = counts.emplace_back(static_cast<std::size_t>(Row.Bins) + 1);
            for (std::size_t i = 0; i < pixels.size(); ++i) {
                const std::size_t event = isSmoothed ? i / 64 : i;
                const bool isIn = (!isPart || isShown[event]) && (isEvery || isMember[event]);
                if (isIn && pixels[i] < Row.Bins) ++cells[static_cast<std::size_t>(pixels[i])];
            }
        }
        return counts;
    }

    Case Row;
    Sample Events;
    Plot Drawn;
    Gate Population;
    Filters Unread;  ///< of a population that gives way to `PopulationFilters`
    std::vector<std::unique_ptr<Gate>> Gates;
    std::unique_ptr<IOVCoordinateTransformerX> X;
};

struct BinVector {
    BinVector(std::size_t number, int bins) {
        for (std::size_t i = 0; i < number; ++i)
            Sections.push_back(Owned.emplace_back(std::make_unique<Bins>(bins)).get());
    }
    std::vector<std::unique_ptr<Bins>> Owned;
    std::vector<CountSection*> Sections;
};

Cells Doubled(Cells cells) {
    for (int& cell : cells)
        cell *= 2;
    return cells;
}

class Histograms : public ::testing::TestWithParam<InstructionSet> {
protected:
    ScopedInstructionSet set{GetParam()};
};

TEST_P(Histograms, CountWhatCountingOneByOneCounts) {
    for (const Case& row : Cases) {
        SCOPED_TRACE(::testing::Message() << row.ShownEvents << " of " << row.Events << ", form "
                                          << static_cast<int>(row.Form) << ", gates " << row.Gates);
        const SmallPool pool(row.Capacity);
        Scene scene(row);
        const std::vector<Cells> expected = scene.Counted();
        BinVector counters(expected.size(), row.Bins);
        OVPlotViewHistogram().ConvertSignalToCount(scene.Drawn, counters.Sections, scene.X.get());
        for (std::size_t g = 0; g < expected.size(); ++g) {
            EXPECT_EQ(counters.Owned[g]->Storage, expected[g]) << "gate " << g;
            EXPECT_EQ(counters.Sections[g]->TotalCount,
                      std::accumulate(expected[g].begin(), expected[g].end(), 0));
        }
        OVPlotViewHistogram().ConvertSignalToCount(scene.Drawn, counters.Sections, scene.X.get());
        EXPECT_EQ(counters.Owned.back()->Storage, Doubled(expected.back())) << "counted twice";

        OVPlotData nothing;
        std::vector<OVPlotData*> samples{&scene.Drawn, &nothing, &scene.Drawn};
        BinVector several(samples.size(), row.Bins);
        OVPlotViewHistogram_MultiSample().ConvertSignalToCount(samples, several.Sections, scene.X.get());
        const Cells& all = expected[static_cast<std::size_t>(scene.Drawn.FindBackgroundIndex())];
        EXPECT_EQ(several.Owned[0]->Storage, all);
        EXPECT_EQ(several.Owned[1]->Storage, Cells(all.size()));
        EXPECT_EQ(several.Owned[2]->Storage, all);
        EXPECT_EQ(several.Sections[0]->TotalCount, -1);
    }
}
INSTANTIATE_TEST_SUITE_P(Sets, Histograms, ::testing::ValuesIn(AvailableInstructionSets()),
                         ::testing::PrintToStringParamName());

TEST(Histogram, OfAnEmptyPopulationFiltersCountsNothing) {
    const SmallPool pool;
    Scene scene({64, 100, Shown::Everything, 100, "b4"});
    Filters none;
    scene.Drawn.PopulationFilters = &none;
    BinVector counters(2, 40);
    OVPlotViewHistogram().ConvertSignalToCount(scene.Drawn, counters.Sections, scene.X.get());
    EXPECT_EQ(counters.Sections[0]->TotalCount + counters.Sections[1]->TotalCount, 0);
}

TEST(Histogram, LeavesNothingBehindWhenThePoolIsExhausted) {
    const Case rows[] = {{64, 100, Shown::Everything, 100, "b4"},
                         {64, 100, Shown::Population, 60, "b4"},
                         {2048, 5000, Shown::Everything, 5000, "b4"},
                         {2048, 6000, Shown::Population, 5000, "b4"}};
    for (const Case& row : rows) {
        const auto count = [&] {
            Scene scene(row);
            BinVector counters(2, row.Bins);
            OVPlotViewHistogram().ConvertSignalToCount(scene.Drawn, counters.Sections, scene.X.get());
            EXPECT_EQ(counters.Owned[0]->Storage, scene.Counted()[0]);
        };
        ForEachFailingAllocation(count, row.Capacity);
    }
}

}  // namespace
}  // namespace Orvane
