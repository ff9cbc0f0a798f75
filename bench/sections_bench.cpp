// Filter bits and single columns. One million events: sixteen sections, as the pool hands them out.
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <random>
#include <tuple>
#include <vector>

#include <orvane/Sections.h>

#include "bench/support.h"
#include "foundation/convert.h"
#include "sections/kernels.h"

namespace Orvane::Bench {
namespace {

constexpr int SectionCount = 16;
constexpr int Events = 65536;

/// Half of the filter bits set at random, values around a positive mean, and room for results.
struct Sample {
    struct Part {
        FilterSection Filter, Other;
        SignalSection Signal;
        ModelSection Model;
    };
    std::array<Part, SectionCount> Parts;

    Sample() {
        std::mt19937 random(1);
        std::normal_distribution<float> value(20000.0F, 9000.0F);
        for (Part& part : Parts) {
            part.Filter.Initial();
            part.Other.Initial();
            std::generate_n(part.Filter.Flags, Events / 32, random);
            part.Signal.Initial();
            part.Model.Initial();
            std::generate_n(part.Signal.Values, Events, [&] { return value(random); });
        }
    }
};

Sample& TheSample() {
    static Sample sample;
    return sample;
}

/// Runs `work` on every part; what it returns is added up, so that nothing is optimised away.
template <class Work>
void TimeParts(benchmark::State& state, Work work) {
    for (auto _ : state) {
        double sum = 0.0;
        for (Sample::Part& part : TheSample().Parts) {
            sum += work(part);
        }
        benchmark::DoNotOptimize(sum);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * SectionCount * Events);
}

/// Everything that work on a part may write, from a fixed start.
template <class Work>
auto OutcomeOf(Work work, Sample::Part& part) {
    std::fill_n(part.Other.Flags, Events / 32, 0x0F1E2D3CU);
    std::fill_n(part.Model.Values, Events, static_cast<unsigned short>(0));
    const double result = work(part);
    return std::tuple(result, std::vector(part.Other.Flags, part.Other.Flags + Events / 32),
                      std::vector(part.Model.Values, part.Model.Values + Events));
}

/// Refuses to time a kernel that does not give exactly what the plain form gives.
template <class Plain, class Kernel>
void RegisterWork(const std::string& group, Plain plain, Kernel kernel) {
    Register(group, "plain", [plain](benchmark::State& state) { TimeParts(state, plain); });
    RegisterForEachInstructionSet(group, [plain, kernel](benchmark::State& state) {
        for (Sample::Part& part : TheSample().Parts) {
            if (OutcomeOf(plain, part) != OutcomeOf(kernel, part)) {
                return state.SkipWithError("differs from the plain form");
            }
        }
        TimeParts(state, kernel);
    });
}

int CountBitsByBytes(const std::uint32_t* words, int bits) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(words);
    int count = 0;
    for (int i = 0; i < bits / 8; ++i) {
        count += std::popcount(bytes[i]);
    }
    return count;
}

int PrefixByBits(const FilterSection& filter, int k) {
    for (int i = 0; i < Events; ++i) {
        k -= static_cast<int>(filter[i]);
        if (k == 0) return i + 1;
    }
    return 0;
}

float RangeByValues(const SignalSection& signal) {
    float max = signal.Values[0];
    float min = max;
    for (int i = 0; i < Events; ++i) {
        if (signal.Values[i] > max) max = signal.Values[i];
        if (signal.Values[i] < min) min = signal.Values[i];
    }
    return max - min;
}

float Range(const SignalSection& signal) {
    float max = signal.Values[0];
    float min = max;
    FindMaxAndMin(signal.Values, Events, max, min);
    return max - min;
}

void ScaleByValues(const SignalSection& signal, ModelSection& model) {
    for (int i = 0; i < Events; ++i) {
        const double scaled = static_cast<double>((signal.Values[i] - 100.0F) * 0.5F);
        model[i] = static_cast<unsigned short>(TruncateToInt64(scaled));
    }
}

/// The words of a filter, read as fast as this machine reads them: the measure for everything over bits.
int ReadWords(const FilterSection& filter) {
    return SumCounters(reinterpret_cast<const int*>(filter.Flags), Events / 32);
}

void RegisterReading(const std::string& group) {
    Register(group, "reading", [](benchmark::State& state) {
        TimeParts(state, [](Sample::Part& part) { return ReadWords(part.Filter); });
    });
}

const bool registered = [] {
    using Part = Sample::Part;
    RegisterWork(
        "CountBits", [](Part& part) { return CountBitsByBytes(part.Filter.Flags, Events); },
        [](Part& part) { return CountBits(part.Filter.Flags, Events); });
    RegisterReading("CountBits");
    RegisterWork(
        "NotWords",
        [](Part& part) {
            for (int i = 0; i < Events / 32; ++i)
                part.Other.Flags[i] = ~part.Other.Flags[i];
            return 0;
        },
        [](Part& part) {
            NotWords(part.Other.Flags, Events / 32);
            return 0;
        });
    RegisterReading("NotWords");
    RegisterWork(
        "AndWords",
        [](Part& part) {
            for (int i = 0; i < Events / 32; ++i)
                part.Other.Flags[i] &= part.Filter.Flags[i];
            return 0;
        },
        [](Part& part) {
            AndWords(part.Other.Flags, part.Filter.Flags, Events / 32);
            return 0;
        });
    RegisterReading("AndWords");
    RegisterWork(
        "PrefixWithSetBits", [](Part& part) { return PrefixByBits(part.Filter, 30000); },
        [](Part& part) { return PrefixWithSetBits(part.Filter.Flags, Events, 30000); });
    RegisterWork(
        "FindMaxAndMin", [](Part& part) { return RangeByValues(part.Signal); },
        [](Part& part) { return Range(part.Signal); });
    RegisterWork(
        "ScaleToModel",
        [](Part& part) {
            ScaleByValues(part.Signal, part.Model);
            return 0;
        },
        [](Part& part) {
            ScaleToModel(part.Signal.Values, Events, 100.0F, 0.5F, part.Model.Values);
            return 0;
        });
    return true;
}();

}  // namespace
}  // namespace Orvane::Bench
