// Histograms with four gates and 512 bins: the view beside the loop of its description, which maps an event
// by the formula, counts it, and tests its bit in each gate. A million events in sixteen sections, spread
// evenly over the axis, clustered in a tenth of it, or all in one bin; and the virtual events of 4999.
#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <vector>

#include <orvane/OVPlotViewHistogram.h>

#include "bench/axes.h"
#include "bench/support.h"

namespace Orvane::Bench {
namespace {

constexpr int Bins = 512;
constexpr int GateCount = 4;
constexpr int SectionEvents = 65536;
constexpr int Million = 16 * SectionEvents;

struct Shape {
    int Events;
    float Centre, Width;  ///< of the values
    bool IsLog, HasPopulation;
};

/// The plot of a sample with gates of 80, 50, 20 and 5 per cent, drawn at random, and a population of 90.
struct Plot {
    explicit Plot(const Shape& shape) {
        std::mt19937 random(1);
        std::uniform_real_distribution<float> value(shape.Centre - shape.Width / 2,
                                                    shape.Centre + shape.Width / 2);
        for (int begin = 0; begin < shape.Events; begin += SectionEvents) {
            auto& signal = *Signals.emplace_back(new SignalSection);
            signal.Initial();
            signal.Count = std::min(SectionEvents, shape.Events - begin);
            std::generate_n(signal.Values, signal.Count, [&] { return value(random); });
        }
        Data.XSections = &Signals;
        Data.Gates = new std::vector<OVPlotData_GateInfo*>{new OVPlotData_GateInfo};
        constexpr std::array<unsigned, GateCount> Percents = {80, 50, 20, 5};
        for (std::size_t g = 0; g < GateCount; ++g) {
            Fill(Gates[g], Percents[g], random);
            Data.Gates->push_back(new OVPlotData_GateInfo);
            Data.Gates->back()->Filters = &Gates[g];
        }
        Fill(Population, 90, random);
        if (shape.HasPopulation) Data.PopulationFilters = &Population;
        for (int j = 0; j <= GateCount; ++j)
            Counts.emplace_back(new CountSection)->Initial();
        X.reset(OVCoordinateTransformerXFactory::CreateTransformer(0.0F, Bins, WorldMin, WorldMax, Alpha,
                                                                   shape.IsLog, true));
    }

    void Clear() {
        for (CountSection* section : Counts)
            std::fill_n(section->Counts, section->Count, 0);
    }

    std::vector<int> AllCounts() const {
        std::vector<int> all;
        for (const CountSection* section : Counts)
            all.insert(all.end(), section->Counts, section->Counts + section->Count);
        return all;
    }

    std::vector<SignalSection*> Signals;
    std::array<std::vector<FilterSection*>, GateCount> Gates;
    std::vector<FilterSection*> Population;
    OVPlotData Data;
    std::vector<CountSection*> Counts;
    std::unique_ptr<IOVCoordinateTransformerX> X;

private:
    void Fill(std::vector<FilterSection*>& filters, unsigned percent, std::mt19937& random) {
        for (const SignalSection* signal : Signals) {
            FilterSection& filter = *filters.emplace_back(new FilterSection);
            filter.Initial();
            filter.SetAll(false);
            filter.Count = signal->Count;
            for (int i = 0; i < filter.Count; ++i)
                filter.SetFlag(i, random() % 100 < percent);
            filter.CalcTrueCount();
        }
    }
};

bool IsSet(const std::uint32_t* flags, int i) {
    return ((flags[i / 32] >> (i % 32)) & 1U) != 0;
}

template <bool IsLog, bool HasPopulation>
void CountPlainly(Plot& plot) {
    const PlainAxis axis = HorizontalAxis(IsLog, true, Bins);
    for (std::size_t k = 0; k < plot.Signals.size(); ++k) {
        const SignalSection& signal = *plot.Signals[k];
        const std::uint32_t* population = plot.Population[k]->Flags;
        std::array<const std::uint32_t*, GateCount> gates;
        for (std::size_t g = 0; g < GateCount; ++g)
            gates[g] = plot.Gates[g][k]->Flags;
        for (int i = 0; i < signal.Count; ++i) {
            if (HasPopulation && !IsSet(population, i)) continue;
            const int bin = PlainPixel<IsLog, true>(axis, signal.Values[i]);
            ++plot.Counts[0]->Counts[bin];
            for (std::size_t g = 0; g < GateCount; ++g)
                if (IsSet(gates[g], i)) ++plot.Counts[g + 1]->Counts[bin];
        }
    }
}

void CountWithView(Plot& plot) {
    OVPlotViewHistogram().ConvertSignalToCount(plot.Data, plot.Counts, plot.X.get());
}

void Time(benchmark::State& state, Plot& plot, void (*count)(Plot&)) {
    plot.Clear();
    for (auto _ : state) {
        count(plot);
        benchmark::ClobberMemory();
    }
    std::int64_t events = 0;
    for (const SignalSection* signal : plot.Signals)
        events += signal->Count;
    state.SetItemsProcessed(state.iterations() * events);
}

std::vector<int> CountsOf(Plot& plot, void (*count)(Plot&)) {
    plot.Clear();
    count(plot);
    return plot.AllCounts();
}

void RegisterView(const std::string& group, const Shape& shape, void (*plain)(Plot&)) {
    const auto plot = std::make_shared<std::unique_ptr<Plot>>();
    const auto made = [=]() -> Plot& {
        if (*plot == nullptr) *plot = std::make_unique<Plot>(shape);
        return **plot;
    };
    if (plain != nullptr) {
        Register(group, "plain", [=](benchmark::State& state) { Time(state, made(), plain); });
    }
    RegisterForEachInstructionSet(group, [=](benchmark::State& state) {
        if (plain != nullptr && CountsOf(made(), plain) != CountsOf(made(), CountWithView)) {
            return state.SkipWithError("differs from the plain form");
        }
        Time(state, made(), CountWithView);
    });
}

[[maybe_unused]] const bool registered = [] {
    constexpr float Middle = 130000.0F, Whole = 260000.0F;
    RegisterView("HistogramEven", {Million, Middle, Whole, false, false}, CountPlainly<false, false>);
    RegisterView("HistogramClustered", {Million, Middle, Whole / 10, false, false},
                 CountPlainly<false, false>);
    RegisterView("HistogramInOneBin", {Million, Middle, 0.0F, false, false}, CountPlainly<false, false>);
    RegisterView("HistogramOfPopulation", {Million, Middle, Whole, false, true}, CountPlainly<false, true>);
    RegisterView("HistogramAsinh", {Million, Middle, Whole, true, false}, CountPlainly<true, false>);
    RegisterView("HistogramVirtual", {4999, Middle, Whole, false, false}, nullptr);
    RegisterView("HistogramVirtualAsinh", {4999, Middle, Whole, true, true}, nullptr);
    return true;
}();

}  // namespace
}  // namespace Orvane::Bench
