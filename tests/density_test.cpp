// Density plots, contour plots and bins against models that look at one event after another.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "tests/support/awkward.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/plots.h"
#include "tests/support/pool.h"

namespace Orvane::Testing {
namespace {

constexpr int Width = 23;
constexpr int Height = 17;
constexpr int NoEvent = std::numeric_limits<int>::max();

/// Two parameters with many events per pixel and on the border, and a gate.
struct Events {
    Floats XValues = RandomFloats(700, 1);
    Floats YValues = RandomFloats(700, 2);
    Sample X{XValues};
    Sample Y{YValues};
    Gate Population{X.Sections};

    std::vector<bool> Shown(bool isFiltered) const {
        return isFiltered ? Population.Events() : std::vector<bool>(XValues.size(), true);
    }
};

int PackedPosition(const Axes& axes, float x, float y) {
    const auto truncated = [](float screen) { return std::isnan(screen) ? 0 : static_cast<int>(screen); };
    float column = 0.0F, row = 0.0F;
    axes.X->GetScreenValue(x, column);
    axes.Y->GetScreenValue(y, row);
    return truncated(row) * 65536 + truncated(column);
}

class CountingPlots : public ::testing::TestWithParam<InstructionSet> {
protected:
    SmallPool pool{128};
    ScopedInstructionSet set{GetParam()};
    Events events;
    Signals& xs = events.X.Sections;
    Signals& ys = events.Y.Sections;
    Filters& filters = events.Population.Sections;
};
INSTANTIATE_TEST_SUITE_P(InstructionSets, CountingPlots, ::testing::ValuesIn(AvailableInstructionSets()));

TEST_P(CountingPlots, CountTheShownEventsAndTurnTheFirstOfSparsePixelsIntoDots) {
    struct Row {
        Filters* PopulationFilters;
        OVPlotData_GateInfo* Population;
        bool IsFiltered, IsLog;
        float Level;
    };
    for (const Row& row :
         {Row{nullptr, nullptr, false, false, 0.0F}, Row{nullptr, Plot::Info(nullptr), false, true, 0.1F},
          Row{nullptr, Plot::Info(&filters), true, true, 0.55F},
          Row{&filters, Plot::Info(nullptr), true, false, 1.0F}}) {
        const Axes axes(Width, Height, row.IsLog);
        const auto columns = PixelsOf(*axes.X, xs), rows = PixelsOf(*axes.Y, ys);
        const std::vector<bool> isShown = events.Shown(row.IsFiltered);
        Raster expected(Width, Height, 3, 0), first(Width, Height, 3, NoEvent);
        for (std::size_t i = 0; i < isShown.size(); ++i) {
            const bool isInX = columns[i] > 0 && columns[i] < Width - 1;
            const bool isInY = rows[i] > 0 && rows[i] < Height - 1;
            expected.AddData(columns[i], rows[i], static_cast<int>(isShown[i] && isInX && isInY));
            if (isShown[i]) first.SetDataLess(columns[i], rows[i], static_cast<int>(i));
        }

        Plot plot(xs, ys);
        plot.PopulationFilters = row.PopulationFilters;
        plot.Population = row.Population;
        Raster density(Width, Height), contour(Width, Height), counts(Width, Height), dots(Width, Height);
        OVPlotViewDensity().RenderPlot(plot, density, axes.X.get(), axes.Y.get());
        OVPlotViewContour view;
        view.RenderPlot(plot, contour, axes.X.get(), axes.Y.get());
        view.RenderPlot(plot, counts, dots, axes.X.get(), axes.Y.get());
        EXPECT_EQ(density.Storage, expected.Storage);
        EXPECT_EQ(contour.Storage, expected.Storage);
        EXPECT_EQ(counts.Storage, expected.Storage);
        EXPECT_EQ(dots.Storage, first.Storage);

        const auto threshold = static_cast<int>(static_cast<float>(counts.GetDataMax()) * row.Level);
        for (std::size_t cell = 0; cell < first.Storage.size(); ++cell) {
            int& dot = first.Storage[cell];
            const auto event = static_cast<std::size_t>(dot);
            const bool isDot = dot != NoEvent && counts.Storage[cell] < threshold;
            dot = isDot ? PackedPosition(axes, events.XValues[event], events.YValues[event]) : NoEvent;
        }
        view.RenderZeroLevelPos(plot, counts, dots, row.Level, axes.X.get(), axes.Y.get());
        EXPECT_EQ(dots.Storage, first.Storage) << row.Level;
    }
}

TEST(ContourDots, TakeMissingValuesForZero) {
    float column[2] = {900.0F, 500.0F};
    SignalSection section;
    section.Values = column + 1;
    section.Count = 1;
    Signals one{&section}, none;
    Plot plot(one, none);
    const Axes axes(Width, Height);
    Raster counts(4, 1, 0, 0), dots(4, 1, 0);
    counts.SetData(3, 0, 9);
    std::copy_n(Cells{0, 1, -1, 0}.begin(), 4, dots.Bits);
    OVPlotViewContour().RenderZeroLevelPos(plot, counts, dots, 0.2F, axes.X.get(), axes.Y.get());
    const int zero = PackedPosition(axes, 0.0F, 0.0F);
    EXPECT_EQ(dots.Storage, (Cells{PackedPosition(axes, 500.0F, 0.0F), zero, zero, NoEvent}));
}

TEST_P(CountingPlots, ColorByTheShareOfTheLargestCount) {
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

TEST_P(CountingPlots, BinsHoldTheEventsInsideTheAxes) {
    OVBinConstructor bins;
    for (const std::size_t n : {1U, 2U, 3U, 90U}) {
        const int size = static_cast<int>(n);
        const Axes axes(size, size);
        IOVCoordinateTransformerX* x = axes.X.get();
        IOVCoordinateTransformerY* y = axes.Y.get();
        const auto columns = PixelsOf(*x, xs), rows = PixelsOf(*y, ys);
        for (const bool isFiltered : {false, true}) {
            const std::vector<bool> isCounted = events.Shown(isFiltered);
            Cells line(n), grid(n * n);
            for (std::size_t i = 0; i < isCounted.size(); ++i) {
                const auto column = static_cast<std::size_t>(columns[i]);
                const auto row = static_cast<std::size_t>(rows[i]);
                const bool isInX = isCounted[i] && column > 0 && column < n - 1;
                line[column] += static_cast<int>(isInX);
                grid[column * n + row] += static_cast<int>(isInX && row > 0 && row < n - 1);
            }
            const auto total = static_cast<int>(std::ranges::count(isCounted, true));
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

TEST(CountingPlotsShortOfMemory, ReturnWhatTheyTook) {
    const auto draw = [](int view) {
        Sample x(Floats(100, 1.0F)), y(Floats(100, 2.0F));
        Gate gate(x.Sections);
        Plot plot(x.Sections, y.Sections);
        plot.PopulationFilters = &gate.Sections;
        const Axes axes(8, 8);
        Raster counts(8, 8), first(8, 8);
        int max = 0, total = 0;
        if (view == 0) return OVPlotViewDensity().RenderPlot(plot, counts, axes.X.get(), axes.Y.get());
        if (view == 1) return OVPlotViewContour().RenderPlot(plot, counts, first, axes.X.get(), axes.Y.get());
        OVBinConstructor().ConstructBin_2D(counts.Bits, 8, x.Sections, y.Sections, axes.X.get(), axes.Y.get(),
                                           max, total);
    };
    for (const int view : {0, 1, 2})
        ForEachFailingAllocation([&] { draw(view); });
}

}  // namespace
}  // namespace Orvane::Testing
