// Compensation: the stated formula bit for bit, whatever the matrix, and storage that columns share.
#include <gtest/gtest.h>

#include <numeric>

#include "tests/support/awkward.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"
#include "tests/support/population.h"

namespace Orvane::Testing {
namespace {

struct Set {
    OVMatrix Matrix;
    Floats Baselines;
    std::vector<int> Channels;
};

/// Owns a section, random up to the capacity.
struct Section : EventSection {
    Section(int signals, int count, unsigned seed) {
        Initial(signals);
        Count = count;
        for (int s = 0; s < signals; ++s) {
            const Floats values = RandomFloats(Capacity, seed++);
            std::copy(values.begin(), values.end(), Signals[s]);
        }
    }
    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;
    ~Section() { Release(); }
};

/// All columns to the end, as bits.
std::vector<std::uint32_t> Content(const EventSection& section) {
    Floats values;
    for (int s = 0; s < section.SignalCount; ++s)
        values.insert(values.end(), section[s], section[s] + section.Capacity);
    return Bits(values);
}

/// The description, word by word.
void CompensatePlainly(EventSection& output, EventSection& input, const Set& set) {
    const int size = static_cast<int>(set.Channels.size());
    for (int i = 0; i < size; ++i) {
        const float* raw = input[set.Channels[static_cast<std::size_t>(i)]];
        const double d = set.Matrix.GetValue(i, i);
        const auto b = static_cast<double>(set.Baselines[static_cast<std::size_t>(i)]);
        for (int e = 0; e < input.Count; ++e) {
            double value = static_cast<double>(raw[e]) * d + (b - b * d);
            for (std::size_t j = 0; j < set.Channels.size(); ++j) {
                const double m = set.Matrix.GetValue(i, static_cast<int>(j));
                if (static_cast<int>(j) == i || !(std::fabs(m) > 0)) continue;
                const float difference = input[set.Channels[j]][e] - set.Baselines[j];
                value = value - static_cast<double>(difference) * m;
            }
            output[set.Channels[static_cast<std::size_t>(i)]][e] = static_cast<float>(value);
        }
    }
}

/// A set of `size` of the first `signals` signals, in any order. Of its coefficients, off the diagonal, some
/// `density` of 16 are not zero, and some of these not numbers that anybody would choose.
Set RandomSet(int size, int signals, unsigned density, unsigned seed) {
    const Floats awkward = AwkwardFloats();
    std::mt19937 random(seed);
    Set set{OVMatrix(size, size), RandomFloats(size, seed),
            std::vector<int>(static_cast<std::size_t>(signals))};
    std::iota(set.Channels.begin(), set.Channels.end(), 0);
    std::shuffle(set.Channels.begin(), set.Channels.end(), random);
    set.Channels.resize(static_cast<std::size_t>(size));
    for (int i = 0; i < size * size; ++i) {
        if (i % (size + 1) != 0 && random() % 16 >= density) continue;
        const double value = std::normal_distribution()(random);
        set.Matrix.GetData()[i] = random() % 32 == 0 ? awkward[random() % awkward.size()] : value;
    }
    return set;
}

/// Compensates two sections, the first with `events` events, by two sets, and expects what the description
/// gives, and nothing else written.
void ExpectPlainResult(int size, int events, unsigned density) {
    SCOPED_TRACE(::testing::Message() << size << " channels, " << events << " events, density " << density);
    const int signals = size + 2;
    Set first = RandomSet(size, signals, density, static_cast<unsigned>(size + events));
    Set second = RandomSet(2, signals, density, static_cast<unsigned>(events));
    Section inputs[] = {{signals, events, 1}, {signals, 20, 2}};
    Section outputs[] = {{signals, 0, 1000}, {signals, 0, 2000}};
    std::vector<EventSection*> from{&inputs[0], &inputs[1]}, to{&outputs[0], &outputs[1]};
    OVCompensation().CalcCompensation(to, from, first.Matrix, first.Baselines, first.Channels, second.Matrix,
                                      second.Baselines, second.Channels);
    for (const int i : {0, 1}) {
        Section expected(signals, 0, i == 0 ? 1000 : 2000);
        CompensatePlainly(expected, inputs[i], first);
        CompensatePlainly(expected, inputs[i], second);
        EXPECT_EQ(Content(outputs[i]), Content(expected)) << "section " << i;
        EXPECT_EQ(outputs[i].Count, 0);
    }
    EXPECT_EQ(Content(inputs[0]), Content(Section(signals, events, 1)));
}

class CompensationOnEverySet : public EverySet {};

TEST_P(CompensationOnEverySet, GivesTheBitsOfTheDescriptionForColumnsOfEverySize) {
    {
        const SmallPool pool(192);
        for (const int size : {1, 2, 9, 21})
            for (const int events : {0, 1, 15, 16, 17, 63, 64, 65, 192})
                for (const unsigned density : {0U, 3U, 15U})
                    ExpectPlainResult(size, events, density);
    }
    ExpectPlainResult(3, 65535, 12);  // too large for the cache
    MemoryManage::ReleaseAll();
}

INSTANTIATE_TEST_SUITE_P(Sets, CompensationOnEverySet, ::testing::ValuesIn(AvailableInstructionSets()));

TEST(Compensation, InPlaceKeepsDifferencesInThePoolThatOverwrittenColumnsCannotGive) {
    Set set = RandomSet(5, 5, 16, 4), none;
    for (int i = 1; i < 5; ++i)
        set.Matrix.SetValue(i, 0, 0.0);  // channel 0 is overwritten before another row could ask for it
    ForEachFailingAllocation([&] {
        Section section(5, 50, 1), raw(5, 50, 1), expected(5, 50, 1);
        CompensatePlainly(expected, raw, set);
        OVCompensation().CalcCompensation_Section(&section, &section, set.Matrix, set.Baselines, set.Channels,
                                                  none.Matrix, none.Baselines, none.Channels);
        EXPECT_EQ(Content(section), Content(expected));
    });
}

}  // namespace
}  // namespace Orvane::Testing
