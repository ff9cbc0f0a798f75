// Dot plots and the operations on a whole raster beside the loops of their descriptions. One million events
// in sixteen sections, three clusters over a flat background, 512 x 512 pixels; each cluster has a gate, as
// has everything that is bright, and nine events in ten are in the population.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/OVPlotViewDot.h>

#include "bench/raster.h"
#include "bench/support.h"

namespace Orvane::Bench {
namespace {

constexpr int SectionCount = 16;
constexpr int Events = 65536;
constexpr int Size = 512;
constexpr int GateCount = 4;
constexpr double WorldMin = -100.0;
constexpr double WorldMax = 1000.0;

struct Sample {
    using Filters = std::vector<FilterSection*>;
    std::vector<SignalSection*> Xs, Ys;
    std::array<Filters, GateCount> Gates;
    Filters Population;

    Sample() {
        for (int k = 0; k < SectionCount; ++k) {
            Xs.push_back(Make<SignalSection>());
            Ys.push_back(Make<SignalSection>());
            for (Filters& gate : Gates)
                gate.push_back(Make<FilterSection>());
            Population.push_back(Make<FilterSection>());
            Fill(static_cast<std::size_t>(k));
        }
    }

    void Describe(OVPlotData& data, bool hasPopulation) {
        data.XSections = &Xs;
        data.YSections = &Ys;
        if (hasPopulation) data.PopulationFilters = &Population;
        data.Gates = new std::vector<OVPlotData_GateInfo*>;
        for (Filters& gate : Gates) {
            data.Gates->push_back(new OVPlotData_GateInfo);
            data.Gates->back()->Filters = &gate;
        }
    }

private:
    template <class Section>
    static Section* Make() {
        auto* section = new Section;
        section->Initial();
        section->Count = Events;
        return section;
    }

    void Fill(std::size_t k) {
        static constexpr std::array<std::array<float, 2>, 3> Centres = {
            {{150.0F, 200.0F}, {500.0F, 350.0F}, {700.0F, 800.0F}}};
        std::normal_distribution<float> spread(0.0F, 60.0F);
        std::uniform_real_distribution<float> anywhere(-200.0F, 1100.0F);
        for (int i = 0; i < Events; ++i) {
            const std::size_t cluster = random_() % 4;
            const bool isClustered = cluster < Centres.size();
            float& x = Xs[k]->Values[i];
            float& y = Ys[k]->Values[i];
            x = isClustered ? Centres[cluster][0] + spread(random_) : anywhere(random_);
            y = isClustered ? Centres[cluster][1] + spread(random_) : anywhere(random_);
            for (std::size_t gate = 0; gate < Centres.size(); ++gate)
                Gates[gate][k]->SetFlag(i, cluster == gate);
            Gates.back()[k]->SetFlag(i, x > 450.0F);
            Population[k]->SetFlag(i, random_() % 10 != 0);
        }
        for (Filters& gate : Gates)
            gate[k]->CalcTrueCount();
        Population[k]->CalcTrueCount();
    }

    std::mt19937 random_{1};
};

Sample& TheSample() {
    static Sample sample;
    return sample;
}

/// Clamped linear axes as a plain loop sees them, constant parts hoisted.
unsigned PlainColumn(double v) {
    constexpr double Scale = Size / (WorldMax - WorldMin);
    constexpr double WorldClamp = (Size - 1) * ((WorldMax - WorldMin) / Size) + WorldMin;
    if (WorldMin >= v) return 0;
    if (v >= WorldClamp) return Size - 1;
    return static_cast<unsigned>(v * Scale + (0.0 - WorldMin * Scale + 0.5));
}

unsigned PlainRow(double v) {
    constexpr double Scale = Size / (WorldMax - WorldMin);
    constexpr double WorldClamp = 1.0 * ((WorldMax - WorldMin) / Size) + WorldMin;
    if (WorldClamp >= v) return Size - 1;
    if (v >= WorldMax) return 0;
    return static_cast<unsigned>((Size + WorldMin * Scale + 0.5) - v * Scale);
}

void DrawPlainly(const Sample& sample, bool hasPopulation, Raster& raster) {
    raster.SetAllDataZero();
    for (std::size_t k = 0; k < SectionCount; ++k) {
        for (int i = 0; i < Events; ++i) {
            if (hasPopulation && !sample.Population[k]->GetFlag(i)) continue;
            // The population stands in for the first gate.
            int number = hasPopulation ? 1 : 0;
            for (std::size_t gate = hasPopulation ? 1 : 0; gate < GateCount; ++gate) {
                if (sample.Gates[gate][k]->GetFlag(i)) number = static_cast<int>(gate) + 1;
            }
            const unsigned x = PlainColumn(sample.Xs[k]->Values[i]);
            const unsigned y = PlainRow(sample.Ys[k]->Values[i]);
            int& cell = raster.Cells[y * Size + x];
            if (cell < number) cell = number;
        }
    }
    raster.MoveEdgeDataGreater();
}

/// The library's dot plot of the sample.
struct DotPlot {
    explicit DotPlot(bool hasPopulation) { TheSample().Describe(Data, hasPopulation); }

    void Draw(Raster& raster) { OVPlotViewDot().RenderPlot(Data, raster, X.get(), Y.get()); }

    OVPlotData Data;
    std::unique_ptr<IOVCoordinateTransformerX> X{
        OVCoordinateTransformerXFactory::CreateTransformer(0.0F, Size, WorldMin, WorldMax, 0.0, false, true)};
    std::unique_ptr<IOVCoordinateTransformerY> Y{
        OVCoordinateTransformerYFactory::CreateTransformer(0.0F, Size, WorldMin, WorldMax, 0.0, false, true)};
};

template <class Draw>
void TimeDrawing(benchmark::State& state, Draw draw) {
    Raster raster(Size);
    for (auto _ : state) {
        draw(raster);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * SectionCount * Events);
}

void RegisterDotPlot(const std::string& group, bool hasPopulation) {
    const auto plain = [=](Raster& raster) { DrawPlainly(TheSample(), hasPopulation, raster); };
    Register(group, "plain", [=](benchmark::State& state) { TimeDrawing(state, plain); });
    RegisterForEachInstructionSet(group, [=](benchmark::State& state) {
        DotPlot plot(hasPopulation);
        Raster expected(Size);
        Raster drawn(Size);
        plain(expected);
        plot.Draw(drawn);
        if (drawn.Cells != expected.Cells) return state.SkipWithError("differs from the plain form");
        TimeDrawing(state, [&](Raster& raster) { plot.Draw(raster); });
    });
}

/// Counts as of a density plot: mostly small, many zero.
const std::vector<int>& TheCounts() {
    static const std::vector<int> counts = [] {
        std::mt19937 random(2);
        std::geometric_distribution<int> count(0.2);
        std::vector<int> cells(Size * Size);
        std::generate(cells.begin(), cells.end(), [&] { return count(random); });
        return cells;
    }();
    return counts;
}

/// What `work` makes of a raster of counts.
template <class Work>
std::vector<int> CellsAfter(Work work) {
    Raster raster(Size);
    std::copy(TheCounts().begin(), TheCounts().end(), raster.Bits);
    work(raster);
    return raster.Cells;
}

/// Includes filling the raster with the counts again.
template <class Work>
void TimeOnCounts(benchmark::State& state, Work work) {
    const std::vector<int>& counts = TheCounts();
    Raster raster(Size);
    for (auto _ : state) {
        std::copy(counts.begin(), counts.end(), raster.Bits);
        work(raster);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * Size * Size);
}

template <class Plain, class Fast>
void RegisterRasterWork(const std::string& group, Plain plain, Fast fast) {
    Register(group, "plain", [=](benchmark::State& state) { TimeOnCounts(state, plain); });
    RegisterForEachInstructionSet(group, [=](benchmark::State& state) {
        if (CellsAfter(plain) != CellsAfter(fast)) return state.SkipWithError("differs from the plain form");
        TimeOnCounts(state, fast);
    });
}

void RegisterRasters() {
    RegisterRasterWork(
        "RasterLevels",
        [](Raster& raster) {
            const double factor = 20.0 / 100;
            for (int& cell : raster.Cells)
                cell = static_cast<int>(std::ceil(cell * factor));
        },
        [](Raster& raster) { raster.SetDataIndexByMaxAndLevel(100, 0.05F); });
    static std::array<int, 1000> table;
    std::generate(table.begin(), table.end(), std::mt19937(3));
    RegisterRasterWork(
        "RasterColors",
        [](Raster& raster) {
            for (int& cell : raster.Cells)
                cell = table[static_cast<std::size_t>(cell)];
        },
        [](Raster& raster) { raster.SetPixelByIndex(table.data(), 1000); });
    RegisterRasterWork(
        "RasterMax",
        [](Raster& raster) {
            int largest = raster.Cells[0];
            for (const int cell : raster.Cells)
                largest = std::max(largest, cell);
            raster.Cells[0] = largest;
        },
        [](Raster& raster) { raster.Cells[0] = raster.GetDataMax(); });
}

[[maybe_unused]] const bool registered = [] {
    RegisterDotPlot("DotPlot", false);
    RegisterDotPlot("DotPlotOfPopulation", true);
    RegisterRasters();
    return true;
}();

}  // namespace
}  // namespace Orvane::Bench
