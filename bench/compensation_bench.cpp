// Compensation of one million events: sixteen sections, as the pool hands them out.
#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <orvane/OVCompensation.h>

#include "bench/support.h"
#include "memory/pooled.h"

namespace Orvane::Bench {
namespace {

constexpr std::size_t SectionCount = 16;
constexpr int Events = 65536;

struct Set {
    OVMatrix Matrix;
    std::vector<float> Baselines;
    std::vector<int> Channels;
};

/// Spill-over into `spills` other channels per channel.
Set MakeSet(int size, int spills) {
    Set set{OVMatrix(size, size), std::vector<float>(static_cast<std::size_t>(size), 12.5F),
            std::vector<int>(static_cast<std::size_t>(size))};
    std::iota(set.Channels.begin(), set.Channels.end(), 0);
    for (int i = 0; i < size; ++i) {
        set.Matrix.SetValue(i, i, 1.01);
        for (int k = 1; k <= spills; ++k)
            set.Matrix.SetValue(i, (i + 3 * k) % size, 0.3 / (k + 1));
    }
    return set;
}

/// Raw values of a positive mean, and room for the result.
struct Sample {
    std::array<EventSection, SectionCount> Raw, Corrected;

    explicit Sample(int signals) {
        std::mt19937 random(1);
        std::normal_distribution<float> value(2000.0F, 900.0F);
        for (std::size_t i = 0; i < SectionCount; ++i) {
            Raw[i].Initial(signals);
            Corrected[i].Initial(signals);
            Raw[i].Count = Events;
            for (int s = 0; s < signals; ++s)
                std::generate_n(Raw[i][s], Events, [&] { return value(random); });
        }
    }
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;
    ~Sample() {
        for (std::size_t i = 0; i < SectionCount; ++i) {
            Raw[i].Release();
            Corrected[i].Release();
        }
    }
};

/// The loops of the description: one difference column per channel, then one sweep per row.
void CompensatePlainly(EventSection& output, EventSection& input, const Set& set) {
    struct Term {
        double Coefficient;
        const float* Differences;
    };
    const std::size_t size = set.Channels.size();
    std::vector<PooledColumn> differences(size);
    std::vector<bool> ready(size);
    for (std::size_t i = 0; i < size; ++i) {
        std::vector<Term> terms;
        for (std::size_t j = 0; j < size; ++j) {
            const double m = set.Matrix.GetValue(static_cast<int>(i), static_cast<int>(j));
            if (j == i || !(std::fabs(m) > 0)) continue;
            float* column = differences[j].Get();
            const float* raw = input[set.Channels[j]];
            for (int e = 0; e < input.Count && !ready[j]; ++e)
                column[e] = raw[e] - set.Baselines[j];
            ready[j] = true;
            terms.push_back({m, column});
        }
        const double d = set.Matrix.GetValue(static_cast<int>(i), static_cast<int>(i));
        const auto b = static_cast<double>(set.Baselines[i]);
        const float* raw = input[set.Channels[i]];
        float* corrected = output[set.Channels[i]];
        for (int e = 0; e < input.Count; ++e) {
            double value = static_cast<double>(raw[e]) * d + (b - b * d);
            for (const Term& term : terms)
                value -= static_cast<double>(term.Differences[e]) * term.Coefficient;
            corrected[e] = static_cast<float>(value);
        }
    }
}

void Compensate(EventSection& output, EventSection& input, Set& set) {
    static Set none;
    OVCompensation().CalcCompensation_Section(&output, &input, set.Matrix, set.Baselines, set.Channels,
                                              none.Matrix, none.Baselines, none.Channels);
}

bool ResultsAgree(Sample& sample, Set& set) {
    const auto signals = static_cast<int>(set.Channels.size());
    EventSection plain;
    plain.Initial(signals);
    CompensatePlainly(plain, sample.Raw[0], set);
    Compensate(sample.Corrected[0], sample.Raw[0], set);
    bool agree = true;
    for (int s = 0; s < signals; ++s)
        agree = agree && HaveSameBits(plain[s], sample.Corrected[0][s], Events);
    plain.Release();
    return agree;
}

template <class Work>
void TimeSections(benchmark::State& state, Sample& sample, Set& set, Work work) {
    for (auto _ : state) {
        for (std::size_t i = 0; i < SectionCount; ++i)
            work(sample.Corrected[i], sample.Raw[i], set);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int>(SectionCount) * Events);
}

void RegisterWork(const std::string& group, int size, int spills) {
    const auto run = [size, spills](benchmark::State& state, auto work) {
        Sample sample(size);
        Set set = MakeSet(size, spills);
        if (!ResultsAgree(sample, set)) return state.SkipWithError("differs from the plain form");
        TimeSections(state, sample, set, work);
    };
    Register(group, "plain", [run](benchmark::State& state) { run(state, CompensatePlainly); });
    RegisterForEachInstructionSet(group, [run](benchmark::State& state) { run(state, Compensate); });
}

const bool registered = [] {
    RegisterWork("Compensate10Dense", 10, 9);
    RegisterWork("Compensate20Dense", 20, 19);
    RegisterWork("Compensate20Sparse", 20, 2);
    RegisterWork("Compensate20Diagonal", 20, 0);
    return true;
}();

}  // namespace
}  // namespace Orvane::Bench
