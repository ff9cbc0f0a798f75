#include "plot/histogram_counting.h"

#include <orvane/OVFilterSection.h>
#include <orvane/OVSignalSection.h>
#include <orvane/OVStatisticsSignalSection.h>

#include "memory/pooled.h"
#include "operations/section_vectors.h"
#include "plot/histogram_kernels.h"
#include "plot/population.h"
#include "plot/walk.h"

namespace Orvane {
namespace {

using SignalSections = std::vector<SignalSection*>;
using FilterSections = std::vector<FilterSection*>;

constexpr int SmallestUnsmoothed = 5000;
constexpr int VirtualPerEvent = static_cast<int>(SmoothingOffsets.size()) + 1;

/// The events of a population keep their places in the columns of pixels; the others are marked there.
struct MarkedPopulation {
    FilterSections& Filters;  ///< one per section

    template <class Transformer>
    void Map(Transformer& transformer, std::size_t section, SignalSection* signal,
             ModelSection* model) const {
        transformer.GetScreenSection(signal, Filters[section], model);
    }
};

Counters CountersOf(CountSection& counts) {
    return {counts.Counts, counts.Count};
}

/// The counters of the gates and, for one section after another, the bits of their members.
class GateBins {
public:
    explicit GateBins(const Histogram& histogram) : histogram_(histogram) {
        for (const HistogramGate& gate : histogram.Gates)
            gates_.push_back({nullptr, CountersOf(*gate.Counts)});
    }

    /// Counts the pixels of section `k`, of which `shown` are shown and whose gates have the bits
    /// `bitsOf(g, flags)`, made from their flags for the section.
    template <class BitsOf>
    void Count(std::size_t k, const unsigned short* pixels, int count, const std::uint32_t* shown,
               const BitsOf& bitsOf) {
        for (std::size_t g = 0; g < gates_.size(); ++g) {
            const FilterSections* members = histogram_.Gates[g].Members;
            if (members != nullptr) gates_[g].Members = bitsOf(g, (*members)[k]->Flags);
        }
        CountByGate(pixels, count, shown, CountersOf(histogram_.Counts), gates_);
    }

private:
    const Histogram& histogram_;
    std::vector<GateCounters> gates_;
};

/// Counts the events that `events` maps; `shownIn(k)` tells which of section k are shown.
template <class Events, class ShownIn>
void CountReal(const Histogram& histogram, IOVCoordinateTransformerX& x, const Events& events,
               const ShownIn& shownIn) {
    GateBins gates(histogram);
    const auto asTheyAre = [](std::size_t /*gate*/, const std::uint32_t* flags) { return flags; };
    WalkBins(histogram.Signals, x, events, [&](std::size_t k, const unsigned short* pixels, int count) {
        gates.Count(k, pixels, count, shownIn(k), asTheyAre);
    });
}

}  // namespace

bool IsSmoothed(const OVPlotData& data) {
    auto* population = PopulationOf(data);
    const long events = population != nullptr ? OVFilterSection().GetTrueTotalCount(*population)
                                              : OVSignalSection().GetTotalCount(*data.XSections);
    return events < SmallestUnsmoothed;
}

void CountEvents(const Histogram& histogram, IOVCoordinateTransformerX& x) {
    CountReal(histogram, x, EveryEvent{}, [](std::size_t /*section*/) { return nullptr; });
}

void CountPopulation(const Histogram& histogram, FilterSections& population, IOVCoordinateTransformerX& x) {
    CountReal(histogram, x, MarkedPopulation{population},
              [&](std::size_t section) { return population[section]->Flags; });
}

// Each section is expanded by itself, so that the virtual events of its event e are those from 64 e on,
// however the events are spread over sections.
void CountVirtualEvents(const Histogram& histogram, IOVCoordinateTransformerX& x) {
    OVStatisticsSignalSection statistics;
    auto offsets = SmoothingOffsets;
    GateBins gates(histogram);
    std::vector<PooledBits> repeated(histogram.Gates.size());
    for (std::size_t k = 0; k < histogram.Signals.size(); ++k) {
        SignalSections real{histogram.Signals[k]};
        TemporaryVector<SignalSection> expanded;
        statistics.GenerateVirtualVectorSignalSection(real, offsets.data(), static_cast<int>(offsets.size()),
                                                      expanded.Sections);
        int first = 0;
        WalkBins(expanded.Sections, x, EveryEvent{},
                 [&](std::size_t /*section*/, const unsigned short* pixels, int count) {
                     gates.Count(k, pixels, count, nullptr,
                                 [&](std::size_t gate, const std::uint32_t* flags) {
                                     auto* bits = reinterpret_cast<std::uint32_t*>(repeated[gate].Get());
                                     RepeatBits(flags, VirtualPerEvent, first, count, bits);
                                     return bits;
                                 });
                     first += count;
                 });
    }
}

// The population's events are extracted first, with their bits in the gates: however large the sample, only
// they are expanded.
void CountVirtualPopulation(const Histogram& histogram, FilterSections& population,
                            IOVCoordinateTransformerX& x) {
    if (population.empty()) return;
    TemporaryVector<SignalSection> events;
    OVStatisticsSignalSection().BackupSignalSection(histogram.Signals, population, events.Sections);
    std::vector<TemporaryVector<FilterSection>> members(histogram.Gates.size());
    std::vector<FilterSections*> from, to;
    Histogram extracted{events.Sections, histogram.Counts, histogram.Gates};
    for (std::size_t g = 0; g < members.size(); ++g) {
        if (histogram.Gates[g].Members == nullptr) continue;
        from.push_back(histogram.Gates[g].Members);
        to.push_back(&members[g].Sections);
        extracted.Gates[g].Members = to.back();
    }
    OVFilterSection().ExtratTrueFilter(population, from, to);
    CountVirtualEvents(extracted, x);
}

}  // namespace Orvane
