// Rasters, dot, density and contour plots, and bins, against models that look at one event after another.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <utility>

#include "tests/support/instruction_sets.h"
#include "tests/support/plots.h"
#include "tests/support/pool.h"

namespace Orvane::Testing {
namespace {

constexpr int Smallest = std::numeric_limits<int>::min();
constexpr int Largest = std::numeric_limits<int>::max();

using Plots = OnEverySet<>;
INSTANTIATE_TEST_SUITE_P(, Plots, ::testing::ValuesIn(AvailableInstructionSets()),
                         ::testing::PrintToStringParamName());

/// A raster by its description.
struct Grid : Raster {
    using Raster::Raster;

    int& At(int x, int y) { return Bits[y * Stride / 4 + x]; }

    void SetEdgeDataZero() {
        for (int y = 0; y < Height; ++y)
            for (int x = 0; x < Stride / 4; ++x)
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
    if (operation == 0) raster.SetAllData(v), grid.Storage.assign(grid.Storage.size(), v);
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
        Grid grid(width, height);
        for (int step = 0; step < 2000; ++step) {
            const int operation = below(40);
            Apply(operation, below(width), below(height), below(9) - 4, raster, grid);
            ASSERT_EQ(raster.Storage, grid.Storage) << "after operation " << operation;
            ASSERT_EQ(raster.GetDataMax(), *std::ranges::max_element(grid.Storage));
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

/// The number of the last gate that holds the event; a single gate counts as held. A population stands in for
/// the first gate.
int NaiveNumber(const Subject& subject, int event) {
    const auto& gates = *subject.Gates;
    const bool hasPopulation = subject.Way >= Shown::Population;
    int number = hasPopulation || gates.size() == 1 ? 1 : 0;
    for (std::size_t i = hasPopulation ? 1 : 0; i < gates.size(); ++i) {
        auto* filters = gates[i]->Filters;
        if (filters == nullptr || OVFilterSection().GetValue(*filters, event))
            number = static_cast<int>(i) + 1;
    }
    return number;
}

TEST_P(Plots, DotsShowTheLastGateOfAPixel) {
    unsigned seed = 0;
    std::vector<FilterSection*> unread;
    for (const Shown shown : WaysToShow) {
        for (const char* gates : {"3", "n", "21", "n21", "32n1", "123n"}) {
            SCOPED_TRACE(::testing::Message() << "way " << static_cast<int>(shown) << ", seed " << ++seed);
            Subject subject(shown, seed);
            subject.AddGates(gates);
            if (shown >= Shown::Population) subject.Gates->front()->Filters = &unread;
            const Axes axes(17, 12, seed % 2 == 0);
            Raster drawn(17, 12);
            Raster expected(17, 12, 3, 0);
            OVPlotViewDot().RenderPlot(subject, drawn, axes.X.get(), axes.Y.get());
            subject.DrawEach(axes, [&](int x, int y, int event) {
                expected.SetDataGreater(x, y, NaiveNumber(subject, event));
            });
            expected.MoveEdgeDataGreater();
            ASSERT_EQ(drawn.Storage, expected.Storage);
        }
    }
}

TEST_P(Plots, SamplesShareARaster) {
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
        plots.push_back(&subject);
        subject.SampleIndex = std::array{0, 33, 31, 66}[index];
        const int flag = 1 << subject.SampleIndex % 32;
        subject.DrawEach(axes, [&](int x, int y, int /*event*/) { expected.SetDataFlag(x, y, flag); });
        expected.MoveEdgeDataFlag(flag);
    }
    OVPlotViewDot_MultiSample().RenderPlot(plots, drawn, axes.X.get(), axes.Y.get());
    EXPECT_EQ(drawn.Storage, expected.Storage);
}

int PackedPosition(const Axes& axes, float x, float y) {
    const auto truncated = [](float screen) { return std::isnan(screen) ? 0 : static_cast<int>(screen); };
    float column = 0.0F, row = 0.0F;
    axes.X->GetScreenValue(x, column);
    axes.Y->GetScreenValue(y, row);
    return truncated(row) * 65536 + truncated(column);
}

TEST_P(Plots, CountTheShownEventsAndTurnTheFirstOfSparsePixelsIntoDots) {
    constexpr int Width = 23, Height = 17;
    for (const Shown shown : WaysToShow) {
        const auto way = static_cast<unsigned>(shown);
        Subject subject(shown, way, 700);
        const Axes axes(Width, Height, way % 2 == 1);
        Raster expected(Width, Height, 3, 0), first(Width, Height, 3, Largest);
        subject.DrawEach(axes, [&](int x, int y, int event) {
            if (x > 0 && x < Width - 1 && y > 0 && y < Height - 1) expected.AddData(x, y, 1);
            first.SetDataLess(x, y, event);
        });
        Raster density(Width, Height), contour(Width, Height), counts(Width, Height), dots(Width, Height);
        OVPlotViewDensity().RenderPlot(subject, density, axes.X.get(), axes.Y.get());
        OVPlotViewContour view;
        view.RenderPlot(subject, contour, axes.X.get(), axes.Y.get());
        view.RenderPlot(subject, counts, dots, axes.X.get(), axes.Y.get());
        EXPECT_EQ(density.Storage, expected.Storage);
        EXPECT_EQ(contour.Storage, expected.Storage);
        EXPECT_EQ(counts.Storage, expected.Storage);
        EXPECT_EQ(dots.Storage, first.Storage);

        const float level = std::array{0.0F, 0.1F, 0.55F, 1.0F}[way];
        const auto threshold = static_cast<int>(static_cast<float>(counts.GetDataMax()) * level);
        const Floats xs = subject.Xs.Values(), ys = subject.Ys.Values();
        for (std::size_t cell = 0; cell < first.Storage.size(); ++cell) {
            int& dot = first.Storage[cell];
            const auto event = static_cast<std::size_t>(dot);
            const bool isDot = dot != Largest && counts.Storage[cell] < threshold;
            dot = isDot ? PackedPosition(axes, xs[event], ys[event]) : Largest;
        }
        view.RenderZeroLevelPos(subject, counts, dots, level, axes.X.get(), axes.Y.get());
        EXPECT_EQ(dots.Storage, first.Storage) << level;
    }
}

TEST(ContourDots, TakeMissingValuesForZero) {
    float column[2] = {900.0F, 500.0F};
    SignalSection section;
    section.Values = column + 1;
    section.Count = 1;
    Signals one{&section}, none;
    OVPlotData plot;
    plot.XSections = &one;
    plot.YSections = &none;
    const Axes axes(23, 17);
    Raster counts(4, 1, 0, 0), dots(4, 1, 0);
    counts.SetData(3, 0, 9);
    std::copy_n(Cells{0, 1, -1, 0}.begin(), 4, dots.Bits);
    OVPlotViewContour().RenderZeroLevelPos(plot, counts, dots, 0.2F, axes.X.get(), axes.Y.get());
    const int zero = PackedPosition(axes, 0.0F, 0.0F);
    EXPECT_EQ(dots.Storage, (Cells{PackedPosition(axes, 500.0F, 0.0F), zero, zero, Largest}));
}

TEST_P(Plots, ColorByTheShareOfTheLargestCount) {
    struct Row {
        float Level;
        Cells Counts, Colors;
    };
    Cells colors{-1, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20};
    for (const Row& row : {Row{0.1F, {0, 1, 100, 101, 200, 0}, {-1, 11, 15, 16, 20, -1}},
                           Row{0.3F, {7, 0, 1, 2, 4, 6}, {14, -1, 11, 12, 13, 14}},
                           Row{0.1F, {0, 0, 0, 0, 0, 0}, {-1, -1, -1, -1, -1, -1}}}) {
        Raster raster(2, 2, 1);
        std::copy(row.Counts.begin(), row.Counts.end(), raster.Bits);
        OVPlotViewDensity().SetBitmapColor(raster, row.Level, colors.data(), 11);
        EXPECT_EQ(raster.Storage, row.Colors);
    }
}

/// Expects two runs of `construct(bins, maxBin, total)` to add `expected` and `total` twice, and to write
/// nowhere else.
template <class Construct>
void ExpectBins(const Cells& expected, int total, Construct construct) {
    constexpr int Guard = 77;
    Cells bins(expected.size() + 2), twice{Guard};
    bins.front() = bins.back() = Guard;
    int max = 0, sum = 1000;
    for (int run = 0; run < 2; ++run)
        construct(bins.data() + 1, max, sum);
    int largest = std::numeric_limits<int>::min();
    for (const int bin : expected) {
        twice.push_back(2 * bin);
        largest = std::max(largest, 2 * bin);
    }
    twice.push_back(Guard);
    EXPECT_EQ(bins, twice);
    EXPECT_EQ(max, largest);
    EXPECT_EQ(sum, 1000 + 2 * total);
}

TEST_P(Plots, BinsHoldTheEventsInsideTheAxes) {
    OVBinConstructor bins;
    for (const std::size_t n : {1U, 2U, 3U, 90U}) {
        const int size = static_cast<int>(n);
        const Axes axes(size, size);
        IOVCoordinateTransformerX* x = axes.X.get();
        IOVCoordinateTransformerY* y = axes.Y.get();
        for (const bool isFiltered : {false, true}) {
            Subject subject(isFiltered ? Shown::Population : Shown::Everything, 1, 700);
            Signals &xs = subject.Xs.Sections, &ys = subject.Ys.Sections;
            Filters& filters = subject.Members.Sections;
            Cells line(n), grid(n * n);
            int total = 0;
            subject.DrawEach(axes, [&](std::size_t column, std::size_t row, int /*event*/) {
                const bool isInX = column > 0 && column < n - 1;
                line[column] += static_cast<int>(isInX);
                grid[column * n + row] += static_cast<int>(isInX && row > 0 && row < n - 1);
                ++total;
            });
            ExpectBins(line, total, [&](int* out, int& max, int& sum) {
                if (isFiltered) return bins.ConstructBin_1D(out, size, xs, filters, x, max, sum);
                bins.ConstructBin_1D(out, size, xs, x, max, sum);
            });
            ExpectBins(grid, total, [&](int* out, int& max, int& sum) {
                if (isFiltered) return bins.ConstructBin_2D(out, size, xs, ys, filters, x, y, max, sum);
                bins.ConstructBin_2D(out, size, xs, ys, x, y, max, sum);
            });
        }
    }
    ExpectBins({}, 0, [&](int* out, int& max, int& sum) {
        Signals none;
        bins.ConstructBin_1D(out, 0, none, Axes(1, 1).X.get(), max, sum);
    });
}

TEST(PlotsShortOfMemory, ReturnWhatTheyTook) {
    const auto draw = [](int view, Shown shown) {
        Subject subject(shown, 1);
        subject.AddGates("3n");
        std::vector<OVPlotData*> samples{&subject};
        const Axes axes(17, 12);
        IOVCoordinateTransformerX* x = axes.X.get();
        IOVCoordinateTransformerY* y = axes.Y.get();
        Raster raster(17, 12), first(17, 12);
        int max = 0, total = 0;
        if (view == 0) OVPlotViewDot().RenderPlot(subject, raster, x, y);
        if (view == 1) OVPlotViewDot_MultiSample().RenderPlot(samples, raster, x, y);
        if (view == 2) OVPlotViewDensity().RenderPlot(subject, raster, x, y);
        if (view == 3) OVPlotViewContour().RenderPlot(subject, raster, first, x, y);
        if (view == 4)
            OVBinConstructor().ConstructBin_2D(raster.Bits, 12, subject.Xs.Sections, subject.Ys.Sections, x,
                                               y, max, total);
    };
    for (const int view : {0, 1, 2, 3, 4})
        for (const Shown shown : {Shown::Everything, Shown::Population})
            ForEachFailingAllocation([&] { draw(view, shown); });
}

}  // namespace
}  // namespace Orvane::Testing
