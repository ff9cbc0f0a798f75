// Values that a population does not hold as they are: expanded by offsets, or picked at random.
#include <orvane/OVFilterSection.h>
#include <orvane/OVStatisticsSignalSection.h>

#include "operations/statistics_kernels.h"
#include "operations/statistics_population.h"

namespace Orvane {
namespace {

void Expand(OVSignalSection& signals, const Population& real, const double* offsets, int n,
            SignalSections& out) {
    PackedWriter writer(signals, out);
    real.ForEachRun([&](ValueSpan run) {
        const std::int64_t total = static_cast<std::int64_t>(run.size()) * (std::int64_t{n} + 1);
        for (std::int64_t first = 0; first < total;) {
            const int count = static_cast<int>(std::min<std::int64_t>(writer.Room(), total - first));
            WriteVirtualValues(run, offsets, n, first, count, writer.Free());
            writer.Advance(count);
            first += count;
        }
    });
}

void PickAtRandom(OVSignalSection& signals, const Population& population, RandomPicker picker,
                  SignalSections& out) {
    PackedWriter writer(signals, out);
    float picked[Population::MaxRun];
    population.ForEachRun([&](ValueSpan run) {
        writer.Append({picked, static_cast<std::size_t>(picker.Pick(run, picked))});
    });
}

}  // namespace

void OVStatisticsSignalSection::GenerateVirtualVectorSignalSection(SignalSections& real,
                                                                   FilterSections& filters, double* offsets,
                                                                   int n, SignalSections& out) {
    Expand(*signalSection_, Population(real, filters), offsets, n, out);
}

void OVStatisticsSignalSection::GenerateVirtualVectorSignalSection(SignalSections& real, double* offsets,
                                                                   int n, SignalSections& out) {
    Expand(*signalSection_, Population(real), offsets, n, out);
}

void OVStatisticsSignalSection::GetRandomDatas(SignalSections& sections, FilterSections& filters, int n,
                                               unsigned seed, SignalSections& out) {
    const int total = static_cast<int>(filterSection_->CalcListSectionTrueCount(filters));
    PickAtRandom(*signalSection_, Population(sections, filters), RandomPicker(n, total, seed), out);
}

void OVStatisticsSignalSection::GetRandomDatas(SignalSections& sections, int n, unsigned seed,
                                               SignalSections& out) {
    const int total = static_cast<int>(signalSection_->GetTotalCount(sections));
    PickAtRandom(*signalSection_, Population(sections), RandomPicker(n, total, seed), out);
}

}  // namespace Orvane
