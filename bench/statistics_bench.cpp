// Population statistics of a million events in packed sections of the default size, beside the plain loops
// and the standard selection over the gathered values. The results are compared bit for bit before anything
// is timed.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <vector>

#include <orvane/OVNthElementSection.h>
#include <orvane/OVSignalSection.h>
#include <orvane/OVStatisticsSignalSection.h>

#include "bench/support.h"
#include "operations/statistics_population.h"

namespace {

using namespace Orvane;
using Floats = std::vector<float>;

constexpr int Events = 1000000;

OVStatisticsSignalSection statistics;

/// Three clusters over some decades.
Floats MakeValues() {
    std::mt19937 random(1);
    std::lognormal_distribution<float> dim(4.0F, 0.6F);
    std::lognormal_distribution<float> bright(8.0F, 0.4F);
    std::normal_distribution<float> negative(0.0F, 30.0F);
    Floats values;
    for (int i = 0; i < Events; ++i) {
        const auto cluster = random() % 8;
        values.push_back(cluster < 3 ? dim(random) : cluster < 5 ? bright(random) : negative(random));
    }
    return values;
}

/// A million events in sections, and the same ones once more for restoring them.
struct Sample {
    Sample() : Values(MakeValues()) {
        OVSignalSection signals;
        PackedWriter(signals, Sections).Append(Values);
    }
    void Restore() {
        const float* next = Values.data();
        for (SignalSection* section : Sections) {
            std::copy_n(next, section->Count, section->Values);
            next += section->Count;
        }
    }
    Floats Values;
    SignalSections Sections;
};

Sample& Data() {
    static Sample sample;
    return sample;
}

Floats Gathered(const SignalSections& sections) {
    Floats values;
    values.reserve(Events);
    for (const SignalSection* section : sections)
        values.insert(values.end(), section->Values, section->Values + section->Count);
    return values;
}

float PlainMedian(Floats& values) {
    const auto middle = values.begin() + Events / 2;
    std::nth_element(values.begin(), middle - 1, values.end());
    const double sum = static_cast<double>(middle[-1]) + *std::min_element(middle, values.end());
    return static_cast<float>(sum * 0.5);
}

float PlainMeanAndSD(const SignalSections& sections, float& mean) {
    double total = 0;
    for (const SignalSection* section : sections) {
        double partial = 0;
        for (int i = 0; i < section->Count; ++i)
            partial += section->Values[i];
        total += partial;
    }
    mean = static_cast<float>(total / Events);
    double squares = 0;
    for (const SignalSection* section : sections) {
        double partial = 0;
        for (int i = 0; i < section->Count; ++i) {
            const double difference = section->Values[i] - mean;
            partial += difference * difference;
        }
        squares += partial;
    }
    return static_cast<float>(std::sqrt(squares / (Events - 1)));
}

/// Times `work`, which returns its result, after `prepare`, which is not timed.
template <class Prepare, class Work>
auto Timed(Prepare prepare, Work work) {
    return [prepare, work](benchmark::State& state) {
        for (auto _ : state) {
            state.PauseTiming();
            prepare();
            state.ResumeTiming();
            benchmark::DoNotOptimize(work());
        }
        state.SetItemsProcessed(state.iterations() * Events);
    };
}

template <class Prepare, class Plain, class Fast>
void RegisterPair(const std::string& group, Prepare prepare, Plain plain, Fast fast) {
    prepare();
    const float expected = plain();
    prepare();
    if (fast() != expected) {
        std::fprintf(stderr, "%s: the results differ\n", group.c_str());
        std::exit(1);
    }
    Bench::Register(group, "plain", Timed(prepare, plain));
    Bench::RegisterForEachInstructionSet(group, Timed(prepare, fast));
}

const bool Registered = [] {
    static Floats values;
    static float median = statistics.Median(Data().Sections);
    const auto nothing = [] {};
    const auto restore = [] { Data().Restore(); };
    const auto gather = [] { values = Data().Values; };
    const auto gatherDeviations = [] {
        values = Data().Values;
        Data().Restore();
    };
    RegisterPair(
        "StatisticsMedian", gather, [] { return PlainMedian(values); },
        [] { return statistics.Median(Data().Sections); });
    RegisterPair(
        "StatisticsNthElement", gatherDeviations,
        [] {
            std::nth_element(values.begin(), values.begin() + Events / 3, values.end());
            return values[Events / 3];
        },
        [] { return OVNthElementSection().Nth_Element(Data().Sections, 0, Events / 3, Events); });
    RegisterPair(
        "StatisticsRobustSD", gatherDeviations,
        [] {
            for (float& value : values)
                value = std::fabs(value - median);
            return static_cast<float>(PlainMedian(values) * 1.4826);
        },
        [] { return statistics.RobustSD(Data().Sections, median); });
    restore();
    RegisterPair(
        "StatisticsMeanAndSD", nothing,
        [] {
            float mean = 0;
            return PlainMeanAndSD(Data().Sections, mean);
        },
        [] {
            int count = 0;
            return statistics.SD(Data().Sections, statistics.Average(Data().Sections, count));
        });
    RegisterPair(
        "StatisticsRow", restore,
        [] {
            float mean = 0;
            const float sd = PlainMeanAndSD(Data().Sections, mean);
            Floats copy = Gathered(Data().Sections);
            const auto [min, max] = std::minmax_element(copy.begin(), copy.end());
            const float extent = *max - *min;
            const float middle = PlainMedian(copy);
            for (float& value : copy)
                value = std::fabs(value - middle);
            return sd + extent + static_cast<float>(PlainMedian(copy) * 1.4826);
        },
        [] {
            OVSignalStatistics row;
            statistics.CalcStatistic_MorePara(Data().Sections, row);
            return row.SD + (row.Max - row.Min) + row.RobustSD;
        });
    return true;
}();

}  // namespace
