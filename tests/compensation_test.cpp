// Compensation: the stated formula bit for bit, whatever the matrix, and storage that columns share.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
#include <random>

#include <orvane/OVCompensation.h>

#include "tests/support/awkward.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"
#include "tests/support/population.h"

namespace Orvane {
namespace {

using namespace Testing;

using Events = std::vector<EventSection*>;

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

void Compensate(EventSection& output, EventSection& input, Set& set) {
    Set none;
    OVCompensation().CalcCompensation_Section(&output, &input, set.Matrix, set.Baselines, set.Channels,
                                              none.Matrix, none.Baselines, none.Channels);
}

/// A set of `size` of the first `signals` signals, in any order. Of its coefficients, off the diagonal, some
/// `density` of 16 are not zero, and some of these not numbers that anybody would choose.
Set RandomSet(int size, int signals, unsigned density, unsigned seed) {
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    constexpr double Awkward[] = {-0.0, std::numeric_limits<double>::quiet_NaN(), Infinity, -Infinity, 5e-324,
                                  1e300};
    std::mt19937 random(seed);
    Set set{OVMatrix(size, size), RandomFloats(size, seed),
            std::vector<int>(static_cast<std::size_t>(signals))};
    std::iota(set.Channels.begin(), set.Channels.end(), 0);
    std::shuffle(set.Channels.begin(), set.Channels.end(), random);
    set.Channels.resize(static_cast<std::size_t>(size));
    for (int i = 0; i < size * size; ++i) {
        if (i % (size + 1) != 0 && random() % 16 >= density) continue;
        const double value = std::normal_distribution()(random);
        set.Matrix.GetData()[i] = random() % 32 == 0 ? Awkward[random() % std::size(Awkward)] : value;
    }
    return set;
}

/// Compensates `events` events and expects what the description gives, and nothing else written.
void ExpectPlainResult(int size, int events, unsigned density) {
    SCOPED_TRACE(::testing::Message() << size << " channels, " << events << " events, density " << density);
    Set set = RandomSet(size, size + 2, density, static_cast<unsigned>(size + events));
    Section input(size + 2, events, 1);
    Section output(size + 2, 0, 1000);
    Section expected(size + 2, 0, 1000);
    CompensatePlainly(expected, input, set);
    Compensate(output, input, set);
    EXPECT_EQ(Content(output), Content(expected));
    EXPECT_EQ(Content(input), Content(Section(size + 2, events, 1)));
    EXPECT_EQ(output.Count, 0);
}

class CompensationOnEverySet : public ::testing::TestWithParam<InstructionSet> {
    const ScopedInstructionSet forced_{GetParam()};
};

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

OVMatrix Matrix2(double a, double b, double c, double d) {
    double values[] = {a, b, c, d};
    return {values, 2, 2};
}

TEST(Compensation, AppliesBothSetsToTheRawValuesOfEverySectionAndLeavesSharedColumnsAlone) {
    const SmallPool pool;
    Set first{Matrix2(1, 0.5, 0.25, 1), {1, 2}, {3, 0}};
    Set second{Matrix2(1, 0.125, 0.5, 3), {0, 5}, {2, 0}};
    std::vector<bool> shared{false, true, false, false};
    std::vector<std::unique_ptr<Section>> raw;
    std::vector<EventSection> compensated(3);
    Events inputs;
    Events outputs;
    for (unsigned i = 0; i < 3; ++i) {
        raw.push_back(std::make_unique<Section>(4, 20 * static_cast<int>(i), i));
        inputs.push_back(raw[i].get());
        outputs.push_back(&compensated[i]);
        compensated[i].Initial(*raw[i], shared);
        for (const int s : {0, 2, 3})
            std::copy_n((*raw[i])[s], raw[i]->Capacity, compensated[i][s]);
    }
    OVCompensation().CalcCompensation(outputs, inputs, first.Matrix, first.Baselines, first.Channels,
                                      second.Matrix, second.Baselines, second.Channels);
    for (unsigned i = 0; i < 3; ++i) {
        Section expected(4, 20 * static_cast<int>(i), i);
        CompensatePlainly(expected, *raw[i], first);
        CompensatePlainly(expected, *raw[i], second);
        EXPECT_EQ(Content(compensated[i]), Content(expected)) << "section " << i;
        compensated[i].Release(shared);
    }
}

TEST(Compensation, InPlaceKeepsDifferencesInThePoolThatOverwrittenColumnsCannotGive) {
    Set set = RandomSet(5, 5, 16, 4);
    for (int i = 1; i < 5; ++i)
        set.Matrix.SetValue(i, 0, 0.0);  // channel 0 is overwritten before another row could ask for it
    ForEachFailingAllocation([&set] {
        Section section(5, 50, 1);
        Section raw(5, 50, 1);
        Section expected(5, 50, 1);
        CompensatePlainly(expected, raw, set);
        Compensate(section, section, set);
        EXPECT_EQ(Content(section), Content(expected));
    });
}

}  // namespace
}  // namespace Orvane
