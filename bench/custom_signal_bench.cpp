// Custom signals of one million events: sixteen sections, as the pool hands them out. "memcpy" copies the
// columns that an operation touches: the measure for the memory's part.
#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <orvane/OVCustomSignal.h>

#include "bench/support.h"

namespace Orvane::Bench {
namespace {

using Sections = IOVCustomSignal::Events;

constexpr int SectionCount = 16;
constexpr int Events = 65536;
constexpr int A = 0;
constexpr int B = 1;
constexpr int Target = 2;
constexpr int E = 7;
constexpr float C = 0.3F;

/// Signals A and B, the target, and as many columns again for copies of them.
Sections& TheSections() {
    static Sections sections = [] {
        Sections made;
        std::mt19937 random(1);
        std::normal_distribution<float> value(2000.0F, 900.0F);
        for (int i = 0; i < SectionCount; ++i) {
            made.push_back(new EventSection);
            made.back()->Initial(6);
            made.back()->Count = Events;
            for (int s = 0; s < 6; ++s)
                std::generate_n((*made.back())[s], Events, [&] { return value(random); });
        }
        return made;
    }();
    return sections;
}

template <class Work>
void TimeSections(benchmark::State& state, Work work) {
    for (auto _ : state) {
        work(TheSections());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * SectionCount * Events);
}

/// `formula(a, b)` event by event is the plain form of `kernel`, which touches `columns` columns.
template <class Formula, class Kernel>
void RegisterWork(const std::string& group, int columns, Formula formula, Kernel kernel) {
    const auto plain = [formula](Sections& sections) {
        for (EventSection* section : sections) {
            for (int e = 0; e < section->Count; ++e) {
                const double result = formula(static_cast<double>(section->Signals[A][e]),
                                              static_cast<double>(section->Signals[B][e]));
                section->Signals[Target][e] = static_cast<float>(result);
            }
        }
    };
    Register(group, "plain", [plain](benchmark::State& state) { TimeSections(state, plain); });
    Register(group, "memcpy", [columns](benchmark::State& state) {
        TimeSections(state, [columns](Sections& sections) {
            for (EventSection* section : sections)
                for (int s = 0; s < columns; ++s)
                    std::memcpy((*section)[3 + s], (*section)[s], sizeof(float) * Events);
        });
    });
    RegisterForEachInstructionSet(group, [plain, kernel](benchmark::State& state) {
        const float* target = TheSections()[0]->Signals[Target];
        plain(TheSections());
        const std::vector<float> expected(target, target + Events);
        kernel(TheSections());
        if (!HaveSameBits(target, expected.data(), Events)) {
            return state.SkipWithError("differs from the plain form");
        }
        TimeSections(state, kernel);
    });
}

const bool registered = [] {
    static OVCustomSignal signals;
    constexpr auto Wide = static_cast<double>(C);
    RegisterWork(
        "CustomSignal_A_ADD_B_MUL", 3, [](double a, double b) { return (a + b) * Wide; },
        [](Sections& s) { signals.CalcSignalValue_A_ADD_B_MUL_C(s, Target, A, B, C); });
    RegisterWork(
        "CustomSignal_A_DIV_B_MUL", 3, [](double a, double b) { return a / b * Wide; },
        [](Sections& s) { signals.CalcSignalValue_A_DIV_B_MUL_C(s, Target, A, B, C); });
    RegisterWork(
        "CustomSignal_A_DIV_B_DIV", 3, [](double a, double b) { return a / b / Wide; },
        [](Sections& s) { signals.CalcSignalValue_A_DIV_B_DIV_C(s, Target, A, B, C); });
    RegisterWork(
        "CustomSignal_A_SUB_E_MUL", 2, [](double a, double) { return (a - E) * Wide; },
        [](Sections& s) { signals.CalcSignalValue_A_SUB_E_MUL_C(s, Target, A, E, C); });
    RegisterWork(
        "CustomSignal_A_DIV_E_DIV", 2, [](double a, double) { return a / E / Wide; },
        [](Sections& s) { signals.CalcSignalValue_A_DIV_E_DIV_C(s, Target, A, E, C); });
    return true;
}();

}  // namespace
}  // namespace Orvane::Bench
