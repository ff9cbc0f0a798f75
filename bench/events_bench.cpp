// Operations over event vectors beside the loops that a host would write, event by event, on a sample of a
// quarter million events with ten signals.
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <orvane/OVEventSection.h>

#include "bench/support.h"

namespace {

using namespace Orvane;
using Events = std::vector<EventSection*>;

constexpr int Signals = 10;
constexpr int Sections = 4;
constexpr int SectionEvents = 65536;

OVEventSection operations;

Events& Source() {
    static Events source = [] {
        Events sections;
        std::mt19937 random(1);
        std::lognormal_distribution<float> value(5.0F, 2.0F);
        operations.NewEventSection(sections, Sections * SectionEvents, Signals);
        for (EventSection* section : sections) {
            section->Count = SectionEvents;
            for (int s = 0; s < Signals; ++s) {
                for (int e = 0; e < SectionEvents; ++e) {
                    section->SetValue(s, e, value(random));
                }
            }
        }
        return sections;
    }();
    return source;
}

/// Random gates that let `Percent` of the events pass.
template <int Percent>
std::vector<FilterSection*>& Gate() {
    static std::vector<FilterSection*> gate = [] {
        std::vector<FilterSection*> filters;
        std::mt19937 random(2);
        for (int i = 0; i < Sections; ++i) {
            filters.push_back(new FilterSection);
            filters[static_cast<std::size_t>(i)]->Initial();
            for (int e = 0; e < SectionEvents; ++e) {
                filters.back()->SetFlag(e, random() % 100 < Percent);
            }
        }
        return filters;
    }();
    return gate;
}

std::vector<int>& AllSignals() {
    static std::vector<int> all{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    return all;
}

const OVMatrix& Matrix() {
    static const OVMatrix matrix = [] {
        OVMatrix spill(Signals, Signals);
        for (int i = 0; i < Signals * Signals; ++i) {
            spill.GetData()[i] = i % (Signals + 1) == 0 ? 1.0 : -0.01 * (i % 7);
        }
        return spill;
    }();
    return matrix;
}

/// Appends one event to the last section, or to a new one when that is full.
void AppendEvent(const EventSection& from, int event, Events& out) {
    if (out.empty() || out.back()->Count == SectionEvents) operations.NewEventSection(out, 1, Signals);
    EventSection& to = *out.back();
    for (int s = 0; s < Signals; ++s) {
        to.Signals[s][to.Count] = from.Signals[s][event];
    }
    ++to.Count;
}

/// Single values to compare and keep.
void Report(Events& out, float first, float second) {
    operations.NewEventSection(out, 1, 2);
    out[0]->SetValue(0, 0, first);
    out[0]->SetValue(1, 0, second);
    out[0]->Count = 1;
}

void AppendPlainly(Events& out) {
    for (const EventSection* from : Source()) {
        for (int e = 0; e < from->Count; ++e) {
            AppendEvent(*from, e, out);
        }
    }
}

template <int Percent>
void ExtractPlainly(Events& out) {
    for (std::size_t i = 0; i < Source().size(); ++i) {
        const std::uint32_t* flags = Gate<Percent>()[i]->Flags;
        for (int e = 0; e < SectionEvents; ++e) {
            if ((flags[e / 32] >> (e % 32) & 1U) != 0) AppendEvent(*Source()[i], e, out);
        }
    }
}

void MultiplyEvent(const EventSection& from, int event, const double* matrix, EventSection& to) {
    double row[Signals];
    for (int k = 0; k < Signals; ++k) {
        row[k] = from.Signals[k][event];
    }
    for (int j = 0; j < Signals; ++j) {
        double sum = 0.0;
        for (int k = 0; k < Signals; ++k) {
            sum += row[k] * matrix[k * Signals + j];
        }
        to.Signals[j][event] = static_cast<float>(sum);
    }
}

void MultiplyPlainly(Events& out) {
    operations.NewEventSection(out, Sections * SectionEvents, Signals);
    for (std::size_t i = 0; i < out.size(); ++i) {
        for (int e = 0; e < SectionEvents; ++e) {
            MultiplyEvent(*Source()[i], e, Matrix().GetData(), *out[i]);
        }
        out[i]->Count = SectionEvents;
    }
}

void FindRangePlainly(Events& out) {
    float max = -3.4028235e38F;
    float min = 3.4028235e38F;
    for (const EventSection* section : Source()) {
        const float* values = section->Signals[3];
        for (int e = 0; e < section->Count; ++e) {
            const float value = values[e];
            if (value > max) max = value;
            if (value < min) min = value;
        }
    }
    Report(out, max, min);
}

void FindRange(Events& out) {
    float max = 0.0F;
    float min = 0.0F;
    operations.GetValueMaxAndMin(Source(), 3, max, min);
    Report(out, max, min);
}

void Append(Events& out) {
    operations.AppendEventSection(Source(), out);
}

template <int Percent>
void Extract(Events& out) {
    operations.ExtractEventSection(out, Source(), Gate<Percent>(), AllSignals());
}

void Multiply(Events& out) {
    operations.VectorEventSection_Multi_Matrix(Source(), Matrix(), out);
}

/// Whether `work` gives what `plain` gives.
bool Agree(void (*work)(Events&), void (*plain)(Events&)) {
    Events result;
    Events expected;
    work(result);
    plain(expected);
    const bool agree = operations.CheckValueEqual(result, expected);
    operations.ReleaseVectorSection(result);
    operations.ReleaseVectorSection(expected);
    return agree;
}

void RegisterPair(const std::string& group, void (*plain)(Events&), void (*work)(Events&)) {
    const auto timed = [plain](void (*run)(Events&)) {
        return [run, plain](benchmark::State& state) {
            if (run != plain && !Agree(run, plain)) state.SkipWithError("differs from the plain form");
            Events out;
            for (auto _ : state) {
                run(out);
                operations.ReleaseVectorSection(out);
            }
            state.SetItemsProcessed(state.iterations() * Sections * SectionEvents);
        };
    };
    Bench::Register(group, "plain", timed(plain));
    Bench::RegisterForEachInstructionSet(group, timed(work));
}

[[maybe_unused]] const bool registered = [] {
    RegisterPair("EventsAppend", AppendPlainly, Append);
    RegisterPair("EventsExtract2Percent", ExtractPlainly<2>, Extract<2>);
    RegisterPair("EventsExtract50Percent", ExtractPlainly<50>, Extract<50>);
    RegisterPair("EventsExtract98Percent", ExtractPlainly<98>, Extract<98>);
    RegisterPair("EventsTimesMatrix", MultiplyPlainly, Multiply);
    RegisterPair("EventsMaxAndMin", FindRangePlainly, FindRange);
    return true;
}();

}  // namespace
