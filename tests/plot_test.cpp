// Rasters and dot plots against naive models.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <utility>

#include <orvane/orvane.h>

#include "tests/support/awkward.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/plots.h"
#include "tests/support/pool.h"

namespace Orvane::Testing {
namespace {

constexpr int Smallest = std::numeric_limits<int>::min();
constexpr int Largest = std::numeric_limits<int>::max();

class Plots : public ::testing::TestWithParam<InstructionSet> {
    ScopedInstructionSet set_{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(, Plots, ::testing::ValuesIn(AvailableInstructionSets()),
                         ::testing::PrintToStringParamName());

/// A raster by its description: rows of `Length` cells, of which the first `Width` are shown.
struct Grid {
    int Width, Height, Length;
    Cells All = Cells(static_cast<std::size_t>(Length * Height), 77);

    int& At(int x, int y) {
        return All[static_cast<std::size_t>(y) * static_cast<std::size_t>(Length) +
                   static_cast<std::size_t>(x)];
    }

    void SetEdgeDataZero() {
        for (int y = 0; y < Height; ++y)
            for (int x = 0; x < Length; ++x)
                if (y == 0 || y == Height - 1 || x == 0 || x == Width - 1) At(x, y) = 0;
    }
    template <class Move>
    void Fold(Move move) {
        for (int x = 0; x < Width; ++x) {
            move(At(x, 0), At(x, 1));
            move(At(x, Height - 1), At(x, Height - 2));
        }
        for (int y = 1; y <= Height - 2; ++y) {
            move(At(0, y), At(1, y));
            move(At(Width - 1, y), At(Width - 2, y));
        }
    }
};

/// Does an operation to both.
void Apply(int operation, int x, int y, int v, Raster& raster, Grid& grid) {
    int& cell = grid.At(x, y);
    if (operation == 0) raster.SetAllData(v), grid.All.assign(grid.All.size(), v);
    if (operation == 1) raster.SetEdgeDataZero(), grid.SetEdgeDataZero();
    if (operation == 2) raster.SetDataGreater(x, y, v), cell = std::max(cell, v);
    if (operation == 3) raster.SetDataLess(x, y, v), cell = std::min(cell, v);
    if (operation == 4) raster.SetDataFlag(x, y, v & 7), cell |= v & 7;
    if (operation > 8) raster.AddData(x, y, v), cell += v;
    if (operation == 5) {
        raster.MoveEdgeData();
        grid.Fold([](int& from, int& to) { to += std::exchange(from, 0); });
    }
    if (operation == 6) {
        raster.MoveEdgeDataGreater();
        grid.Fold([](int& from, int& to) { to = std::max(to, std::exchange(from, 0)); });
    }
    if (operation == 7) {
        raster.MoveEdgeDataFlag(v);
        grid.Fold([v](int& from, int& to) { to |= from == v ? std::exchange(from, 0) : 0; });
    }
}

TEST_P(Plots, RasterFollowsItsDescription) {
    std::mt19937 random(1);
    const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (const auto& [width, height] : {std::pair{2, 2}, {3, 2}, {5, 4}, {20, 13}}) {
        Raster raster(width, height);
        Grid grid{width, height, width + 3};
        for (int step = 0; step < 2000; ++step) {
            const int operation = below(40);
            Apply(operation, below(width), below(height), below(9) - 4, raster, grid);
            ASSERT_EQ(raster.Storage, grid.All) << "after operation " << operation;
            ASSERT_EQ(raster.GetDataMax(), *std::max_element(grid.All.begin(), grid.All.end()));
        }
    }
    EXPECT_EQ(Raster(5, 0).GetDataMax(), Smallest);
}

/// The stated formula, with the promise that the maximum gets exactly the number of levels.
int NaiveLevel(int cell, int max, float level) {
    const double levels = std::ceil(1.0 / static_cast<double>(level));
    const double value = cell == max ? levels : std::ceil(cell * (levels / max));
    // What no 64-bit integer holds becomes a number whose low 32 bits are 0.
    return std::fabs(value) < 9e18 ? static_cast<int>(static_cast<std::int64_t>(value)) : 0;
}

TEST_P(Plots, LevelsAndColors) {
    // Of 25, 147 and 187, rounding would make 7, 10 and 3 levels one more.
    for (const float level : {0.1F, 0.15F, 0.34F, 1.0F, 2.5F, 1e-3F, 1e-9F, 1e-30F, 0.0F, -0.1F}) {
        for (const int max : {1, 3, 25, 100, 147, 187, 200, 4999, Largest, -7}) {
            Raster raster(199, 1, 0, 0);
            for (int i = 64; i < raster.Width; ++i)
                raster.SetData(i, 0, i < 190 ? i * 7 % 201 - 9 : max - (198 - i));
            raster.SetData(70, 0, max);
            raster.SetData(100, 0, max % 2 == 0 ? Smallest : Largest);
            const Cells cells = raster.Storage;
            raster.SetDataIndexByMaxAndLevel(max, level);
            for (std::size_t i = 0; i < cells.size(); ++i)
                ASSERT_EQ(raster.Storage[i], NaiveLevel(cells[i], max, level)) << cells[i] << " of " << max;
        }
    }
    Cells colors{5, -4, 3};
    Raster raster(9, 3, 2, 1);
    raster.Storage[30] = 2;
    OVPlotViewDot().SetBitmapColor(raster, colors.data(), 0);
    Cells expected(raster.Storage.size(), -4);
    expected[30] = 3;
    EXPECT_EQ(raster.Storage, expected);
}

/// A sample of two parameters and its plot. Many events lie outside the axes.
struct Subject {
    explicit Subject(Shown shown, unsigned seed, int events = 200)
        : Way(shown),
          Xs(RandomFloats(events, seed)),
          Ys(RandomFloats(events, seed + 1)),
          Population(Xs.Sections, seed + 2, 1 + seed % 7) {
        Description.Show(shown, Population, Gates[0]);
    }

    /// Adds one of the three gates to the description, or EveryEvent.
    void AddGate(int gate) { Description.AddGate(gate == EveryEvent ? nullptr : &Gates[gate].Sections); }
    static constexpr int EveryEvent = 3;

    /// Calls `draw(x, y, event)` for the events that are shown.
    template <class Draw>
    void DrawEach(const Axes& axes, Draw draw) const {
        const std::vector<bool> isShown = ShownEvents(Way, Population);
        const std::vector<int> columns = PixelsOf(*axes.X, Xs.Sections);
        const std::vector<int> rows = PixelsOf(*axes.Y, Ys.Sections);
        for (std::size_t event = 0; event < columns.size(); ++event)
            if (isShown[event]) draw(columns[event], rows[event], static_cast<int>(event));
    }

    Shown Way;
    Sample Xs, Ys;
    Gate Population;
    Gate Gates[3] = {Gate(Xs.Sections, 7, 3), Gate(Xs.Sections, 8, 2), Gate(Xs.Sections, 9, 1)};
    Plot Description{Xs.Sections, Ys.Sections};
};

/// The number of the last gate that holds the event; a single gate counts as held. A population stands in for
/// the first gate.
int NaiveNumber(const Subject& subject, int event) {
    const auto& gates = *subject.Description.Gates;
    const bool hasPopulation = subject.Way == Shown::Population || subject.Way == Shown::PopulationFilters;
    int number = hasPopulation || gates.size() == 1 ? 1 : 0;
    for (std::size_t i = hasPopulation ? 1 : 0; i < gates.size(); ++i) {
        auto* filters = gates[i]->Filters;
        if (filters == nullptr || OVFilterSection().GetValue(*filters, event))
            number = static_cast<int>(i) + 1;
    }
    return number;
}

TEST_P(Plots, DotsShowTheLastGateOfAPixel) {
    const SmallPool pool;
    unsigned seed = 0;
    for (const Shown shown : WaysToShow) {
        for (const std::vector<int>& gates :
             {Counts{0}, {3}, {1, 2}, {3, 1, 2}, {0, 1, 3, 2}, {2, 1, 0, 3}}) {
            SCOPED_TRACE(::testing::Message() << "way " << static_cast<int>(shown) << ", seed " << ++seed);
            Subject subject(shown, seed);
            for (const int gate : gates)
                subject.AddGate(gate);
            const Axes axes(17, 12, seed % 2 == 0);
            Raster drawn(17, 12);
            Raster expected(17, 12, 3, 0);
            OVPlotViewDot().RenderPlot(subject.Description, drawn, axes.X.get(), axes.Y.get());
            subject.DrawEach(axes, [&](int x, int y, int event) {
                expected.SetDataGreater(x, y, NaiveNumber(subject, event));
            });
            expected.MoveEdgeDataGreater();
            ASSERT_EQ(drawn.Storage, expected.Storage);
        }
    }
}

TEST_P(Plots, SamplesShareARaster) {
    const SmallPool pool;
    const Axes axes(17, 12, true);
    Raster drawn(17, 12);
    Raster expected(17, 12, 3, 0);
    std::vector<OVPlotData*> plots;
    OVPlotViewDot_MultiSample().RenderPlot(plots, drawn, axes.X.get(), axes.Y.get());
    EXPECT_EQ(drawn.Storage, expected.Storage);

    OVPlotData absent;
    plots.push_back(&absent);
    std::vector<std::unique_ptr<Subject>> subjects;
    for (const Shown shown : WaysToShow) {
        const auto index = static_cast<unsigned>(subjects.size());
        Subject& subject = *subjects.emplace_back(std::make_unique<Subject>(shown, index, 40 * (index + 1)));
        plots.push_back(&subject.Description);
        subject.Description.SampleIndex = std::array{0, 33, 31, 66}[index];
        const int flag = 1 << subject.Description.SampleIndex % 32;
        subject.DrawEach(axes, [&](int x, int y, int /*event*/) { expected.SetDataFlag(x, y, flag); });
        expected.MoveEdgeDataFlag(flag);
    }
    OVPlotViewDot_MultiSample().RenderPlot(plots, drawn, axes.X.get(), axes.Y.get());
    EXPECT_EQ(drawn.Storage, expected.Storage);
}

TEST(DotPlots, ReturnTheirColumnsWhenThePoolRunsDry) {
    for (const Shown shown : {Shown::Everything, Shown::Population}) {
        ForEachFailingAllocation([shown] {
            Subject subject(shown, 1);
            subject.AddGate(0);
            subject.AddGate(Subject::EveryEvent);
            const Axes axes(17, 12);
            Raster raster(17, 12);
            OVPlotViewDot().RenderPlot(subject.Description, raster, axes.X.get(), axes.Y.get());
            std::vector<OVPlotData*> plots{&subject.Description};
            OVPlotViewDot_MultiSample().RenderPlot(plots, raster, axes.X.get(), axes.Y.get());
        });
    }
}

}  // namespace
}  // namespace Orvane::Testing
