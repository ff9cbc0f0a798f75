// Density and contour plots and bins beside the loops of their descriptions: one million events in sixteen
// sections, as the pool hands them out, 512 x 512 pixels. Counting alone is timed on data from widely spread
// to all in one cell, where each count waits for the one before.
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include <orvane/OVBinConstructor.h>
#include <orvane/OVPlotViewContour.h>
#include <orvane/OVPlotViewDensity.h>

#include "bench/axes.h"
#include "bench/raster.h"
#include "bench/support.h"
#include "plot/count_kernels.h"

namespace Orvane::Bench {
namespace {

constexpr int SectionCount = 16;
constexpr int Events = 65536;
constexpr int Size = 512;
constexpr float Level = 0.05F;

using Signals = std::vector<SignalSection*>;

/// Three clusters over a flat background, some of it off scale, as scatter signals have on linear axes.
void FillScatter(float* xs, float* ys, std::mt19937& random) {
    static constexpr std::array<std::array<float, 2>, 3> Centres = {
        {{40e3F, 25e3F}, {90e3F, 60e3F}, {150e3F, 180e3F}}};
    std::normal_distribution<float> spread(0.0F, 15e3F);
    std::uniform_real_distribution<float> anywhere(-10e3F, 280e3F);
    for (int i = 0; i < Events; ++i) {
        const std::size_t cluster = random() % 4;
        const bool isClustered = cluster < Centres.size();
        xs[i] = isClustered ? Centres[cluster][0] + spread(random) : anywhere(random);
        ys[i] = isClustered ? Centres[cluster][1] + spread(random) : anywhere(random);
    }
}

struct Sample {
    Signals Xs, Ys;

    explicit Sample(bool isLog) {
        std::mt19937 random(1);
        for (int k = 0; k < SectionCount; ++k) {
            float* xs = Append(Xs);
            float* ys = Append(Ys);
            if (isLog) {
                FillColumn(xs, Events, random);
                FillColumn(ys, Events, random);
            } else {
                FillScatter(xs, ys, random);
            }
        }
    }

private:
    static float* Append(Signals& signals) {
        signals.push_back(new SignalSection);
        signals.back()->Initial();
        signals.back()->Count = Events;
        return signals.back()->Values;
    }
};

template <bool IsLog>
Sample& TheSample() {
    static Sample sample(IsLog);
    return sample;
}

/// Calls `act(column, row)` for every event of the sample.
template <bool IsLog, class Act>
void ForEachPlainPixel(const Act& act) {
    const PlainAxis x = HorizontalAxis(IsLog, true, Size);
    const PlainAxis y = VerticalAxis(IsLog, true, Size);
    for (std::size_t k = 0; k < SectionCount; ++k) {
        const float* xs = TheSample<IsLog>().Xs[k]->Values;
        const float* ys = TheSample<IsLog>().Ys[k]->Values;
        for (int i = 0; i < Events; ++i)
            act(PlainPixel<IsLog, true>(x, xs[i]), PlainPixel<IsLog, true>(y, ys[i]));
    }
}

template <bool IsLog>
void CountPlainly(Raster& raster) {
    raster.SetAllDataZero();
    int* cells = raster.Bits;
    ForEachPlainPixel<IsLog>([=](unsigned column, unsigned row) { ++cells[row * Size + column]; });
    raster.SetEdgeDataZero();
}

std::array<int, 21>& TheColors() {
    static std::array<int, 21> colors = [] {
        std::array<int, 21> made{};
        std::generate(made.begin(), made.end(), std::mt19937(3));
        return made;
    }();
    return colors;
}

void ColorPlainly(Raster& raster) {
    const int max = *std::max_element(raster.Cells.begin(), raster.Cells.end());
    const double factor = 20.0 / max;
    for (int& cell : raster.Cells)
        cell = TheColors()[static_cast<std::size_t>(cell == max ? 20.0 : std::ceil(cell * factor))];
}

template <bool IsLog>
void KeepFirstPlainly(Raster& counts, Raster& first) {
    first.SetAllData(std::numeric_limits<int>::max());
    counts.SetAllDataZero();
    int number = 0;
    ForEachPlainPixel<IsLog>([&](unsigned column, unsigned row) {
        ++counts.Bits[row * Size + column];
        int& cell = first.Bits[row * Size + column];
        if (cell > number) cell = number;
        ++number;
    });
    counts.SetEdgeDataZero();
}

/// The library's views of the sample.
struct Plot {
    Plot(bool isLog, Sample& sample)
        : Columns(sample.Xs),
          Rows(sample.Ys),
          X(OVCoordinateTransformerXFactory::CreateTransformer(0.0F, Size, WorldMin, WorldMax, Alpha, isLog,
                                                               true)),
          Y(OVCoordinateTransformerYFactory::CreateTransformer(0.0F, Size, WorldMin, WorldMax, Alpha, isLog,
                                                               true)) {
        Data.XSections = &Columns;
        Data.YSections = &Rows;
    }

    void Count(Raster& raster) { OVPlotViewDensity().RenderPlot(Data, raster, X.get(), Y.get()); }
    void Redraw(Raster& raster) {
        Count(raster);
        OVPlotViewDensity().SetBitmapColor(raster, Level, TheColors().data(), 21);
    }
    void KeepFirst(Raster& counts, Raster& first) {
        OVPlotViewContour().RenderPlot(Data, counts, first, X.get(), Y.get());
    }
    void Bin1D(Raster& bins) {
        bins.SetAllDataZero();
        OVBinConstructor().ConstructBin_1D(bins.Bits, Size, Columns, X.get(), MaxBin, Total);
    }
    void Bin2D(Raster& bins) {
        bins.SetAllDataZero();
        OVBinConstructor().ConstructBin_2D(bins.Bits, Size, Columns, Rows, X.get(), Y.get(), MaxBin, Total);
    }

    Signals& Columns;
    Signals& Rows;
    OVPlotData Data;
    std::unique_ptr<IOVCoordinateTransformerX> X;
    std::unique_ptr<IOVCoordinateTransformerY> Y;
    int MaxBin = 0;
    int Total = 0;
};

using Work = std::function<void(Raster&)>;

void Time(benchmark::State& state, const Work& work) {
    Raster raster(Size);
    for (auto _ : state) {
        work(raster);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * SectionCount * Events);
}

void RegisterWork(const std::string& group, const Work& plain, const Work& fast) {
    Register(group, "plain", [=](benchmark::State& state) { Time(state, plain); });
    RegisterForEachInstructionSet(group, [=](benchmark::State& state) {
        Raster expected(Size);
        Raster raster(Size);
        plain(expected);
        fast(raster);
        if (raster.Cells != expected.Cells) return state.SkipWithError("differs from the plain form");
        Time(state, fast);
    });
}

template <bool IsLog>
void Bin1DPlainly(Raster& bins) {
    bins.SetAllDataZero();
    int* cells = bins.Bits;
    const PlainAxis x = HorizontalAxis(IsLog, true, Size);
    for (const SignalSection* section : TheSample<IsLog>().Xs) {
        for (int i = 0; i < Events; ++i)
            ++cells[PlainPixel<IsLog, true>(x, section->Values[i])];
    }
    cells[0] = cells[Size - 1] = 0;
}

template <bool IsLog>
void Bin2DPlainly(Raster& bins) {
    bins.SetAllDataZero();
    int* cells = bins.Bits;
    ForEachPlainPixel<IsLog>([=](unsigned x, unsigned y) { ++cells[x * Size + y]; });
    bins.SetEdgeDataZero();
}

template <bool IsLog>
void RegisterViews(const std::string& scale) {
    const auto plot = std::make_shared<Plot>(IsLog, TheSample<IsLog>());
    const auto counts = std::make_shared<Raster>(Size);
    RegisterWork("Density" + scale, CountPlainly<IsLog>, [=](Raster& raster) { plot->Count(raster); });
    RegisterWork(
        "DensityRedraw" + scale,
        [](Raster& raster) {
            CountPlainly<IsLog>(raster);
            ColorPlainly(raster);
        },
        [=](Raster& raster) { plot->Redraw(raster); });
    RegisterWork(
        "FirstEvents" + scale, [=](Raster& raster) { KeepFirstPlainly<IsLog>(*counts, raster); },
        [=](Raster& raster) { plot->KeepFirst(*counts, raster); });
    RegisterWork("Bins1D" + scale, Bin1DPlainly<IsLog>, [=](Raster& bins) { plot->Bin1D(bins); });
    RegisterWork("Bins2D" + scale, Bin2DPlainly<IsLog>, [=](Raster& bins) { plot->Bin2D(bins); });
}

/// Coordinate columns as a view makes them, all sections with the same events.
struct Columns {
    template <class PixelOf>
    explicit Columns(PixelOf pixelOf) {
        Xs.Initial();
        Ys.Initial();
        for (int i = 0; i < Events; ++i) {
            const auto [x, y] = pixelOf(i);
            Xs.Values[i] = static_cast<unsigned short>(std::clamp(x, 0, Size - 1));
            Ys.Values[i] = static_cast<unsigned short>(std::clamp(y, 0, Size - 1));
        }
    }

    ModelSection Xs, Ys;
};

template <class PixelOf>
void RegisterCounting(const std::string& group, PixelOf pixelOf) {
    const auto columns = std::make_shared<Columns>(pixelOf);
    RegisterWork(
        group,
        [=](Raster& raster) {
            int* cells = raster.Bits;
            const unsigned short* xs = columns->Xs.Values;
            const unsigned short* ys = columns->Ys.Values;
            for (int k = 0; k < SectionCount; ++k) {
                for (int i = 0; i < Events; ++i)
                    ++cells[ys[i] * Size + xs[i]];
            }
        },
        [=](Raster& raster) {
            for (int k = 0; k < SectionCount; ++k)
                CountCells(raster, {columns->Xs.Values, columns->Ys.Values, Events});
        });
}

struct Pixel {
    int X, Y;
};

[[maybe_unused]] const bool registered = [] {
    RegisterViews<false>("Linear");
    RegisterViews<true>("Asinh");
    static std::mt19937 random(2);
    static std::normal_distribution<float> spread(256.0F, 30.0F);
    RegisterCounting("CountSpread", [](int) {
        return Pixel{static_cast<int>(random() % Size), static_cast<int>(random() % Size)};
    });
    RegisterCounting("CountClustered", [](int) {
        return Pixel{static_cast<int>(spread(random)), static_cast<int>(spread(random))};
    });
    static std::geometric_distribution<int> heap(0.5);
    RegisterCounting("CountHeaped", [](int) { return Pixel{4 + heap(random), 4 + heap(random)}; });
    RegisterCounting("CountOneCell", [](int) { return Pixel{100, 200}; });
    RegisterCounting("CountTwoCells", [](int i) { return Pixel{100 + i % 2, 200}; });
    RegisterCounting("CountOneOfTwoCells", [](int) {
        return Pixel{100 + static_cast<int>(random() % 2), 200};
    });
    return true;
}();

}  // namespace
}  // namespace Orvane::Bench
