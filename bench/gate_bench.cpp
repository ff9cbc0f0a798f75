// Gates to bits over one million events: sixteen sections as the pool hands them out, two clustered
// populations over a spread background. Beside each gate the straightforward loop of its description.
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <vector>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/OVFilter.h>
#include <orvane/OVPloygon.h>

#include "bench/support.h"
#include "gate/hinged_graph.h"

namespace Orvane::Bench {
namespace {

constexpr int SectionCount = 16;
constexpr int Events = 65536;

using Signals = std::vector<SignalSection*>;
using Filters = std::vector<FilterSection*>;

struct Sample {
    Signals X;
    Signals Y;
    std::array<Filters, 4> Results;

    Sample() {
        std::mt19937 random(1);
        std::normal_distribution<float> normal;
        std::uniform_real_distribution<float> anywhere(-100.0F, 1000.0F);
        for (int s = 0; s < SectionCount; ++s) {
            SignalSection* x = X.emplace_back(new SignalSection);
            SignalSection* y = Y.emplace_back(new SignalSection);
            x->Initial();
            y->Initial();
            x->Count = y->Count = Events;
            for (int i = 0; i < Events; ++i) {
                const auto draw = random() % 4;
                const float centre = draw < 2 ? 350.0F : 650.0F;
                x->Values[i] = draw == 3 ? anywhere(random) : centre + 120.0F * normal(random);
                y->Values[i] = draw == 3 ? anywhere(random) : centre + 90.0F * normal(random);
            }
        }
    }
};

Sample& TheSample() {
    static Sample sample;
    return sample;
}

/// One bit per event, event by event; `regionOf` names the output, -1 for none.
template <class RegionOf>
void FilePlainly(int regions, RegionOf regionOf) {
    Sample& sample = TheSample();
    for (int region = 0; region < regions; ++region)
        OVFilterSection().SynchronousVectorSection(sample.Results[region], sample.X);
    for (std::size_t s = 0; s < sample.X.size(); ++s) {
        const float* xs = sample.X[s]->Values;
        const float* ys = sample.Y[s]->Values;
        std::array<std::uint32_t*, 4> words{};
        for (int region = 0; region < regions; ++region)
            words[region] = sample.Results[region][s]->Flags;
        unsigned bit = 0;
        std::size_t word = 0;
        for (int i = 0; i < Events; ++i) {
            const int region = regionOf(xs[i], ys[i]);
            if (region >= 0 && region < regions) words[region][word] |= 1U << bit;
            if (++bit == 32) {
                bit = 0;
                ++word;
            }
        }
        for (int region = 0; region < regions; ++region)
            sample.Results[region][s]->CalcTrueCount();
    }
}

std::vector<std::uint32_t> ResultBits(int regions) {
    std::vector<std::uint32_t> bits;
    for (int region = 0; region < regions; ++region)
        for (const FilterSection* section : TheSample().Results[region])
            bits.insert(bits.end(), section->Flags, section->Flags + Events / 32);
    return bits;
}

/// Before it is timed, the gate's bits are compared with the plain ones.
template <class RegionOf, class Gate>
void RegisterGate(const std::string& group, int regions, RegionOf regionOf, Gate gate) {
    Register(group, "plain", [=](benchmark::State& state) {
        for (auto _ : state)
            FilePlainly(regions, regionOf);
        state.SetItemsProcessed(state.iterations() * SectionCount * Events);
    });
    RegisterForEachInstructionSet(group, [=](benchmark::State& state) {
        FilePlainly(regions, regionOf);
        const std::vector<std::uint32_t> expected = ResultBits(regions);
        gate(TheSample());
        if (ResultBits(regions) != expected) state.SkipWithError("differs from the plain form");
        for (auto _ : state)
            gate(TheSample());
        state.SetItemsProcessed(state.iterations() * SectionCount * Events);
    });
}

/// A ring of vertices whose radius goes up and down.
std::vector<OVPoint> Ring(int count, float wave) {
    std::vector<OVPoint> vertices;
    for (int i = 0; i < count; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / count + 0.1;
        const double radius = 300.0 * (1.0 + wave * std::cos(5.0 * angle));
        vertices.emplace_back(static_cast<float>(450.0 + radius * std::cos(angle)),
                              static_cast<float>(450.0 + radius * std::sin(angle)));
    }
    return vertices;
}

void RegisterPolygon(const std::string& name, const std::vector<OVPoint>& ring) {
    const auto vertices = std::make_shared<std::vector<OVPoint>>(ring);
    const auto polygon = std::make_shared<OVPloygon>();
    polygon->ConstructEigenValue(vertices->data(), static_cast<int>(ring.size()));
    const OVRect rect = polygon->GetMinRect();
    RegisterGate(
        "GatePolygon" + name, 1,
        [polygon = polygon.get(), keep = polygon, rect](float x, float y) {
            return rect.MinX <= x && x <= rect.MaxX && rect.MinY <= y && y <= rect.MaxY &&
                           polygon->OVPloygon::IsInPloygon(x, y)
                       ? 0
                       : -1;
        },
        [vertices](Sample& sample) {
            OVFilter().Filter_Ploygon(sample.X, sample.Y, sample.Results[0], vertices->data(),
                                      static_cast<int>(vertices->size()));
        });
}

void RegisterHinged(const std::string& name, float logFlag) {
    const std::vector<OVPoint> block{{450, 480},   {},          {},           {},           {},
                                     {logFlag, 0}, {512, -100}, {1000, 50},   {logFlag, 0}, {512, -100},
                                     {1000, 50},   {0.1F, 210}, {-0.2F, 350}, {0.15F, 190}, {-0.1F, 310}};
    const auto points = std::make_shared<std::vector<OVPoint>>(block);
    const auto graph = std::make_shared<HingedGraph>();
    graph->CalcParaFromGraph(points->data(), HingedGraph::BlockSize);
    RegisterGate(
        "GateHinged" + name, 4, [graph](float x, float y) { return graph->RegionOf(x, y); },
        [points](Sample& sample) {
            OVFilter().Filter_Hinged_Fast(sample.X, sample.Y, sample.Results[0], sample.Results[1],
                                          sample.Results[2], sample.Results[3], points->data(),
                                          HingedGraph::BlockSize);
        });
}

[[maybe_unused]] const bool registered = [] {
    RegisterGate(
        "GateRectangle", 1,
        [](float x, float y) { return 200 <= x && x <= 500 && 300 <= y && y <= 700 ? 0 : -1; },
        [](Sample& sample) {
            OVFilter().Filter_Rectangle(sample.X, sample.Y, sample.Results[0], 200, 500, 300, 700);
        });
    RegisterGate(
        "GateSegment", 1, [](float x, float /*y*/) { return 200 <= x && x <= 500 ? 0 : -1; },
        [](Sample& sample) {
            OVFilter().Filter_LineSegment(sample.X, sample.Results[0], 200, 500);
            for (FilterSection* section : sample.Results[0])
                section->CalcTrueCount();
        });
    RegisterGate(
        "GateVertical", 2, [](float x, float /*y*/) { return x <= 450 ? 0 : 1; },
        [](Sample& sample) {
            OVFilter().Filter_Vertical_Fast(sample.X, sample.Results[0], sample.Results[1], 450);
        });
    RegisterGate(
        "GateQuadrant", 4,
        [](float x, float y) {
            if (y > 480) return x > 450 ? 0 : 1;
            return x > 450 ? 3 : 2;
        },
        [](Sample& sample) {
            OVFilter().Filter_Quadrant_Fast(sample.X, sample.Y, sample.Results[0], sample.Results[1],
                                            sample.Results[2], sample.Results[3], 450, 480);
        });
    RegisterPolygon("10", Ring(10, 0.2F));
    RegisterPolygon("100", Ring(100, 0.0F));
    RegisterPolygon("100Star", Ring(100, 0.4F));
    RegisterHinged("Linear", 0.0F);
    RegisterHinged("Log", 1.0F);
    return true;
}();

}  // namespace
}  // namespace Orvane::Bench
