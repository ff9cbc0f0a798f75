// Rasters and dot plots against naive models.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
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

/// A raster by its description: rows of cells of which the first `Width` are shown.
struct Grid {
    int Width;
    std::vector<Cells> Rows;

    int& At(int x, int y) { return Rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)]; }

    void AddData(int x, int y, int v) { At(x, y) += v; }
    void SetData(int x, int y, int v) { At(x, y) = v; }
    void SetPixel(int x, int y, int v) { At(x, y) = v; }
    void SetDataGreater(int x, int y, int v) { At(x, y) = std::max(At(x, y), v); }
    void SetDataLess(int x, int y, int v) { At(x, y) = std::min(At(x, y), v); }
    void SetDataFlag(int x, int y, int v) { At(x, y) |= v; }
    int GetData(int x, int y) { return At(x, y); }
    int GetPixel(int x, int y) { return At(x, y); }
    void SetAllDataZero() { SetAllData(0); }
    void SetAllData(int v) {
        for (Cells& row : Rows)
            row.assign(row.size(), v);
    }
    int GetDataMax() {
        int max = Smallest;
        for (const Cells& row : Rows)
            max = std::max(max, *std::max_element(row.begin(), row.end()));
        return max;
    }
    void SetEdgeDataZero() {
        for (Cells& row : Rows)
            row[0] = row[static_cast<std::size_t>(Width) - 1] = 0;
        Rows.front().assign(Rows.front().size(), 0);
        Rows.back().assign(Rows.back().size(), 0);
    }
    template <class Move>
    void Fold(Move move) {
        const int height = static_cast<int>(Rows.size());
        for (int x = 0; x < Width; ++x) {
            move(At(x, 0), At(x, 1));
            move(At(x, height - 1), At(x, height - 2));
        }
        for (int y = 1; y <= height - 2; ++y) {
            move(At(0, y), At(1, y));
            move(At(Width - 1, y), At(Width - 2, y));
        }
    }
    void MoveEdgeData() {
        Fold([](int& from, int& to) { to += std::exchange(from, 0); });
    }
    void MoveEdgeDataGreater() {
        Fold([](int& from, int& to) { to = std::max(to, std::exchange(from, 0)); });
    }
    void MoveEdgeDataFlag(int flag) {
        Fold([flag](int& from, int& to) {
            if (from == flag) to |= std::exchange(from, 0);
        });
    }
};

/// One operation of a raster or of its model. Returns what it reads, if it does.
template <class Bitmap>
int Apply(Bitmap& bitmap, int operation, int x, int y, int v) {
    if (operation == 0) bitmap.SetAllDataZero();
    if (operation == 1) bitmap.SetAllData(v);
    if (operation == 2) bitmap.SetEdgeDataZero();
    if (operation == 3) bitmap.MoveEdgeData();
    if (operation == 4) bitmap.MoveEdgeDataGreater();
    if (operation == 5) bitmap.MoveEdgeDataFlag(v);
    if (operation == 6) bitmap.SetData(x, y, v);
    if (operation == 7) bitmap.SetPixel(x, y, v);
    if (operation == 8) bitmap.SetDataGreater(x, y, v);
    if (operation == 9) bitmap.SetDataLess(x, y, v);
    if (operation == 10) bitmap.SetDataFlag(x, y, 1 << (v + 4));
    if (operation == 11) return bitmap.GetDataMax();
    if (operation == 12) return bitmap.GetData(x, y) + bitmap.GetPixel(x, y);
    if (operation > 12) bitmap.AddData(x, y, v);
    return 0;
}

TEST_P(Plots, RasterFollowsItsDescription) {
    std::mt19937 random(1);
    const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (const auto& [width, height] : {std::pair{2, 2}, {3, 2}, {5, 4}, {20, 13}}) {
        Raster raster(width, height);
        Grid grid{width, std::vector<Cells>(static_cast<std::size_t>(height),
                                            Cells(static_cast<std::size_t>(width) + 3, 77))};
        for (int step = 0; step < 2000; ++step) {
            const int operation = below(40);
            const int x = below(width);
            const int y = below(height);
            const int v = below(9) - 4;
            ASSERT_EQ(Apply(raster, operation, x, y, v), Apply(grid, operation, x, y, v)) << operation;
            Cells expected;
            for (const Cells& row : grid.Rows)
                expected.insert(expected.end(), row.begin(), row.end());
            ASSERT_EQ(raster.Storage, expected) << "after operation " << operation;
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
    Cells colors(5000);
    std::iota(colors.begin(), colors.end(), -2500);
    for (const float level : {0.1F, 0.05F, 0.3F, 1.0F, 2.5F, 1e-3F, 1e-9F, 1e-30F, -0.1F}) {
        for (const int max : {1, 3, 7, 25, 49, 100, 103, 107, 161, 187, 196, 197, 200, 4999, Largest, -7}) {
            Raster raster(199, 1, 0);
            for (int i = 0; i < raster.Width; ++i)
                raster.SetData(i, 0, i < 190 ? i * 7 % 201 : max - (i - 194));
            const Cells cells = raster.Storage;
            raster.SetDataIndexByMaxAndLevel(max, level);
            for (std::size_t i = 0; i < cells.size(); ++i)
                ASSERT_EQ(raster.Storage[i], NaiveLevel(cells[i], max, level)) << cells[i] << " of " << max;
        }
    }
    Raster raster(199, 3, 2);
    for (std::size_t i = 0; i < raster.Storage.size(); ++i)
        raster.Storage[i] = static_cast<int>(i * 7 % 5000);
    OVPlotViewDot().SetBitmapColor(raster, colors.data(), 0);
    for (std::size_t i = 0; i < raster.Storage.size(); ++i)
        ASSERT_EQ(raster.Storage[i], static_cast<int>(i * 7 % 5000) - 2500);
}

/// Two parameters of a sample with gates. Many events lie outside the axes.
struct Subject {
    static constexpr std::size_t GateCount = 3;

    explicit Subject(unsigned seed, int events = 200)
        : Xs(RandomFloats(events, seed)),
          Ys(RandomFloats(events, seed + 1)),
          Population(Xs.Sections, seed + 2, 1 + seed % 7) {
        for (unsigned gate = 0; gate < GateCount; ++gate)
            Gates.push_back(std::make_unique<Gate>(Xs.Sections, seed + 3 + gate, 3 - gate));
    }

    Sample Xs, Ys;
    Gate Population;
    std::vector<std::unique_ptr<Gate>> Gates;
};

/// The gates of a plot: positions in `Subject::Gates`, EveryEvent for one with null filters.
using GateList = std::vector<std::size_t>;
constexpr std::size_t EveryEvent = 99;

/// One event after the other raises its cell to the number of the last gate that holds it.
void DrawNaively(const Subject& subject, Shown shown, const GateList& gates, const std::vector<int>& columns,
                 const std::vector<int>& rows, Raster& raster) {
    const bool hasPopulation = shown == Shown::Population || shown == Shown::PopulationFilters;
    const std::vector<bool> isShown = ShownEvents(shown, subject.Population);
    raster.SetAllDataZero();
    for (std::size_t event = 0; event < columns.size(); ++event) {
        if (!isShown[event]) continue;
        int number = hasPopulation || gates.size() == 1 ? 1 : 0;
        for (auto gate = static_cast<std::size_t>(number); gate < gates.size(); ++gate) {
            const bool isIn = gates[gate] == EveryEvent || subject.Gates[gates[gate]]->Events()[event];
            if (isIn) number = static_cast<int>(gate) + 1;
        }
        raster.SetDataGreater(columns[event], rows[event], number);
    }
    raster.MoveEdgeDataGreater();
}

TEST_P(Plots, DotsShowTheLastGateOfAPixel) {
    const SmallPool pool;
    unsigned seed = 0;
    for (const Shown shown : WaysToShow) {
        for (const GateList& gates : {GateList{0},
                                      {EveryEvent},
                                      {EveryEvent, 1, 2},
                                      {0, 1, EveryEvent, 2},
                                      {2, 1, 0, EveryEvent},
                                      {0, 1, 2}}) {
            SCOPED_TRACE(::testing::Message() << "way " << static_cast<int>(shown) << ", seed " << ++seed);
            Subject subject(seed);
            Plot plot(subject.Xs.Sections, subject.Ys.Sections);
            plot.Show(shown, subject.Population, *subject.Gates[0]);
            for (const std::size_t gate : gates)
                plot.AddGate(gate == EveryEvent ? nullptr : &subject.Gates[gate]->Sections);
            const Axes axes(17, 12, seed % 2 == 0);
            Raster drawn(17, 12);
            Raster expected(17, 12);
            OVPlotViewDot().RenderPlot(plot, drawn, axes.X.get(), axes.Y.get());
            DrawNaively(subject, shown, gates, PixelsOf(*axes.X, *plot.XSections),
                        PixelsOf(*axes.Y, *plot.YSections), expected);
            ASSERT_EQ(drawn.Storage, expected.Storage);
        }
    }
}

TEST_P(Plots, SamplesShareARaster) {
    const SmallPool pool;
    const Axes axes(17, 12, true);
    Raster drawn(17, 12);
    Raster expected(17, 12);
    expected.SetAllDataZero();
    std::vector<OVPlotData*> plots;
    OVPlotViewDot_MultiSample().RenderPlot(plots, drawn, axes.X.get(), axes.Y.get());
    EXPECT_EQ(drawn.Storage, expected.Storage);

    std::vector<std::unique_ptr<Subject>> subjects;
    std::vector<std::unique_ptr<Plot>> owner;
    for (const Shown shown : WaysToShow) {
        const auto index = static_cast<unsigned>(plots.size());
        Subject& subject = *subjects.emplace_back(std::make_unique<Subject>(index, 40 * (index + 1)));
        Plot& plot = *owner.emplace_back(std::make_unique<Plot>(subject.Xs.Sections, subject.Ys.Sections));
        plots.push_back(&plot);
        plot.Show(shown, subject.Population, *subject.Gates[0]);
        plot.SampleIndex = std::array{0, 33, 31, 66}[index];
        const int flag = 1 << plot.SampleIndex % 32;
        const std::vector<bool> isShown = ShownEvents(shown, subject.Population);
        const std::vector<int> columns = PixelsOf(*axes.X, subject.Xs.Sections);
        const std::vector<int> rows = PixelsOf(*axes.Y, subject.Ys.Sections);
        for (std::size_t event = 0; event < columns.size(); ++event)
            if (isShown[event]) expected.SetDataFlag(columns[event], rows[event], flag);
        expected.MoveEdgeDataFlag(flag);
    }
    OVPlotData absent;
    plots.insert(plots.begin() + 1, &absent);
    OVPlotViewDot_MultiSample().RenderPlot(plots, drawn, axes.X.get(), axes.Y.get());
    EXPECT_EQ(drawn.Storage, expected.Storage);
}

TEST(DotPlots, ReturnTheirColumnsWhenThePoolRunsDry) {
    for (const Shown shown : {Shown::Everything, Shown::Population}) {
        ForEachFailingAllocation([shown] {
            Subject subject(1);
            Plot plot(subject.Xs.Sections, subject.Ys.Sections);
            plot.Show(shown, subject.Population, *subject.Gates[0]);
            plot.AddGate(&subject.Gates[0]->Sections);
            plot.AddGate(nullptr);
            const Axes axes(17, 12);
            Raster raster(17, 12);
            OVPlotViewDot().RenderPlot(plot, raster, axes.X.get(), axes.Y.get());
            std::vector<OVPlotData*> plots{&plot};
            OVPlotViewDot_MultiSample().RenderPlot(plots, raster, axes.X.get(), axes.Y.get());
        });
    }
}

}  // namespace
}  // namespace Orvane::Testing
