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

/// Two parameters with many events per pixel and on the border.
struct Events {
    Floats XValues = RandomFloats(700, 1);
    Floats YValues = RandomFloats(700, 2);
    Sample X{XValues};
    Sample Y{YValues};
    Gate Population{X.Sections};
    std::vector<bool> All = std::vector<bool>(XValues.size(), true);
};

enum class Shown { All, NoFilters, Population, Filters };

void Show(Shown shown, Events& events, Plot& plot) {
    if (shown == Shown::All) return;
    plot.Population = Plot::Info(shown == Shown::Population ? &events.Population.Sections : nullptr);
    if (shown == Shown::Filters) plot.PopulationFilters = &events.Population.Sections;
}

std::vector<bool> EventsOf(Shown shown, const Events& events) {
    const bool hasFilters = shown == Shown::Population || shown == Shown::Filters;
    return hasFilters ? events.Population.Events() : events.All;
}

void ClearBorder(OVBitmapData& raster) {
    for (int y = 0; y < raster.Height; ++y) {
        for (int x = 0; x < raster.Width; ++x) {
            const bool isInner = x > 0 && y > 0 && x < raster.Width - 1 && y < raster.Height - 1;
            if (!isInner) raster.SetData(x, y, 0);
        }
    }
}

int Truncated(float screen) {
    return std::isnan(screen) ? 0 : static_cast<int>(screen);
}

int PackedPosition(const Axes& axes, float x, float y) {
    float column = 0.0F, row = 0.0F;
    axes.X->GetScreenValue(x, column);
    axes.Y->GetScreenValue(y, row);
    return Truncated(row) * 65536 + Truncated(column);
}

class CountingPlots : public ::testing::TestWithParam<InstructionSet> {
protected:
    SmallPool pool{128};
    ScopedInstructionSet set{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(InstructionSets, CountingPlots, ::testing::ValuesIn(AvailableInstructionSets()));

TEST_P(CountingPlots, CountTheShownEventsAndKeepTheFirstOfEachPixel) {
    Events events;
    for (const auto shown : {Shown::All, Shown::NoFilters, Shown::Population, Shown::Filters}) {
        for (const bool isLog : {false, true}) {
            const Axes axes(Width, Height, isLog);
            Raster counts(Width, Height, 3, 0), first(Width, Height, 3, NoEvent);
            const auto columns = PixelsOf(*axes.X, events.X.Sections);
            const auto rows = PixelsOf(*axes.Y, events.Y.Sections);
            const std::vector<bool> isShown = EventsOf(shown, events);
            for (std::size_t i = 0; i < isShown.size(); ++i) {
                if (!isShown[i]) continue;
                counts.AddData(columns[i], rows[i], 1);
                first.SetDataLess(columns[i], rows[i], static_cast<int>(i));
            }
            ClearBorder(counts);

            Plot plot(events.X.Sections, events.Y.Sections);
            Show(shown, events, plot);
            Raster density(Width, Height), contour(Width, Height), both(Width, Height), dots(Width, Height);
            OVPlotViewDensity().RenderPlot(plot, density, axes.X.get(), axes.Y.get());
            OVPlotViewContour().RenderPlot(plot, contour, axes.X.get(), axes.Y.get());
            OVPlotViewContour().RenderPlot(plot, both, dots, axes.X.get(), axes.Y.get());
            EXPECT_EQ(density.Storage, counts.Storage);
            EXPECT_EQ(contour.Storage, counts.Storage);
            EXPECT_EQ(both.Storage, counts.Storage);
            EXPECT_EQ(dots.Storage, first.Storage);
        }
    }
}

TEST_P(CountingPlots, TurnSparsePixelsIntoDots) {
    Events events;
    const Axes axes(Width, Height, true);
    Plot plot(events.X.Sections, events.Y.Sections);
    OVPlotViewContour view;
    for (const float level : {0.0F, 0.1F, 0.55F, 1.0F}) {
        Raster counts(Width, Height), dots(Width, Height);
        view.RenderPlot(plot, counts, dots, axes.X.get(), axes.Y.get());
        Raster expected(Width, Height, 3, NoEvent);
        const auto threshold = static_cast<int>(static_cast<float>(counts.GetDataMax()) * level);
        for (int y = 0; y < Height; ++y) {
            for (int x = 0; x < Width; ++x) {
                const int event = dots.GetData(x, y);
                if (event == NoEvent || counts.GetData(x, y) >= threshold) continue;
                const auto e = static_cast<std::size_t>(event);
                expected.SetData(x, y, PackedPosition(axes, events.XValues[e], events.YValues[e]));
            }
        }
        view.RenderZeroLevelPos(plot, counts, dots, level, axes.X.get(), axes.Y.get());
        EXPECT_EQ(dots.Storage, expected.Storage) << level;
    }
}

TEST_P(CountingPlots, TakeValuesThatAreMissingForZero) {
    Events events;
    Signals none;
    Plot plot(events.X.Sections, none);
    const Axes axes(Width, Height);
    Raster counts(4, 1, 0, 0), dots(4, 1, 0);
    counts.SetData(3, 0, 9);
    dots.Storage = {5, 700, -1, 5};
    OVPlotViewContour().RenderZeroLevelPos(plot, counts, dots, 0.2F, axes.X.get(), axes.Y.get());
    const int zero = PackedPosition(axes, 0.0F, 0.0F);
    EXPECT_EQ(dots.Storage, (Cells{PackedPosition(axes, events.XValues[5], 0.0F), zero, zero, NoEvent}));
}

TEST_P(CountingPlots, ColorByTheShareOfTheLargestCount) {
    struct Row {
        float Level;
        Cells Counts, Levels;
    };
    const Row rows[] = {{0.1F, {0, 1, 100, 101, 200, 0}, {0, 1, 5, 6, 10, 0}},
                        {0.3F, {7, 0, 1, 2, 4, 6}, {4, 0, 1, 2, 3, 4}},
                        {0.1F, {0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0}}};
    Cells colors(11);
    for (std::size_t i = 0; i < colors.size(); ++i)
        colors[i] = static_cast<int>(0xFF000000U + 31 * i);
    for (const Row& row : rows) {
        Raster raster(2, 2, 1);
        std::copy(row.Counts.begin(), row.Counts.end(), raster.Bits);
        OVPlotViewDensity().SetBitmapColor(raster, row.Level, colors.data(), 11);
        Cells expected;
        for (const int level : row.Levels)
            expected.push_back(colors[static_cast<std::size_t>(level)]);
        EXPECT_EQ(raster.Storage, expected);
    }
}

/// What two runs of `construct(bins, maxBin, total)` over cleared bins leave, between guards of 77.
struct Bins {
    template <class Construct>
    Bins(std::size_t size, Construct construct) : Storage(size + 2) {
        Storage.front() = Storage.back() = 77;
        for (int run = 0; run < 2; ++run)
            construct(Storage.data() + 1, Max, Total);
    }

    /// `total` events were added in each run; `expected` are the bins after one.
    void Expect(const Cells& expected, int total) const {
        Cells twice{77};
        int max = std::numeric_limits<int>::min();
        for (const int bin : expected) {
            twice.push_back(2 * bin);
            max = std::max(max, 2 * bin);
        }
        twice.push_back(77);
        EXPECT_EQ(Storage, twice);
        EXPECT_EQ(Max, max);
        EXPECT_EQ(Total, 1000 + 2 * total);
    }

    Cells Storage;
    int Max = 0;
    int Total = 1000;
};

TEST_P(CountingPlots, BinsHoldTheEventsInsideTheAxes) {
    Events events;
    OVBinConstructor bins;
    Signals& xs = events.X.Sections;
    Signals& ys = events.Y.Sections;
    Filters& filters = events.Population.Sections;
    for (const std::size_t n : {1U, 2U, 3U, 90U, 1500U}) {
        const int size = static_cast<int>(n);
        const Axes axes(size, size);
        auto* x = axes.X.get();
        auto* y = axes.Y.get();
        const auto columns = PixelsOf(*x, xs), rows = PixelsOf(*y, ys);
        for (const bool isFiltered : {false, true}) {
            const std::vector<bool> isCounted = EventsOf(isFiltered ? Shown::Filters : Shown::All, events);
            Cells line(n), grid(n * n);
            for (std::size_t i = 0; i < isCounted.size(); ++i) {
                const auto column = static_cast<std::size_t>(columns[i]);
                const auto row = static_cast<std::size_t>(rows[i]);
                const bool isInX = column > 0 && column<n - 1, isInY = row> 0 && row < n - 1;
                line[column] += static_cast<int>(isCounted[i] && isInX);
                grid[column * n + row] += static_cast<int>(isCounted[i] && isInX && isInY);
            }
            const auto total = static_cast<int>(std::count(isCounted.begin(), isCounted.end(), true));
            Bins(n, [&](int* out, int& max, int& sum) {
                if (isFiltered) return bins.ConstructBin_1D(out, size, xs, filters, x, max, sum);
                bins.ConstructBin_1D(out, size, xs, x, max, sum);
            }).Expect(line, total);
            Bins(n * n, [&](int* out, int& max, int& sum) {
                if (isFiltered) return bins.ConstructBin_2D(out, size, xs, ys, filters, x, y, max, sum);
                bins.ConstructBin_2D(out, size, xs, ys, x, y, max, sum);
            }).Expect(grid, total);
        }
    }
}

TEST_P(CountingPlots, NoBinsHaveNoLargest) {
    Signals none;
    const Axes axes(4, 4);
    Bins(0, [&](int* out, int& max, int& sum) {
        OVBinConstructor().ConstructBin_1D(out, 0, none, axes.X.get(), max, sum);
    }).Expect({}, 0);
    Bins(0, [&](int* out, int& max, int& sum) {
        OVBinConstructor().ConstructBin_2D(out, 0, none, none, axes.X.get(), axes.Y.get(), max, sum);
    }).Expect({}, 0);
}

TEST(CountingPlotsShortOfMemory, ReturnWhatTheyTook) {
    const auto work = [](auto operation) {
        ForEachFailingAllocation([&] {
            Floats values(100, 1.0F);
            const Sample x(values), y(values);
            const Axes axes(8, 8);
            Signals xs = x.Sections, ys = y.Sections;
            Gate gate(xs);
            Plot plot(xs, ys);
            Raster counts(8, 8), first(8, 8);
            for (Filters* filters : {static_cast<Filters*>(nullptr), &gate.Sections}) {
                plot.PopulationFilters = filters;
                operation(plot, axes, counts, first);
            }
        });
    };
    work([](Plot& plot, const Axes& axes, Raster& counts, Raster& /*first*/) {
        OVPlotViewDensity().RenderPlot(plot, counts, axes.X.get(), axes.Y.get());
    });
    work([](Plot& plot, const Axes& axes, Raster& counts, Raster& first) {
        OVPlotViewContour().RenderPlot(plot, counts, first, axes.X.get(), axes.Y.get());
    });
    work([](Plot& plot, const Axes& axes, Raster& bins, Raster& /*first*/) {
        int max = 0, total = 0;
        OVBinConstructor().ConstructBin_2D(bins.Bits, 8, *plot.XSections, *plot.YSections, axes.X.get(),
                                           axes.Y.get(), max, total);
        OVBinConstructor().ConstructBin_1D(bins.Bits, 8, *plot.XSections, axes.X.get(), max, total);
    });
}

}  // namespace
}  // namespace Orvane::Testing
