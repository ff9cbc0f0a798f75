// All sixty-four custom signals against one formula that reads operators and operands off the slot.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <utility>

#include <orvane/OVCustomSignal.h>

#include "tests/support/awkward.h"
#include "tests/support/custom_signals.h"
#include "tests/support/events.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/population.h"

namespace Orvane {
namespace {

using namespace Testing;
using I = IOVCustomSignal;

enum Group { ColumnColumn, ConstantColumn, ColumnConstant, ConstantConstant };
constexpr int Slots = 64;

/// Calls the operation of a slot, counted from 0; its columns are 0 and 1.
void Calc(int slot, I::Events& sections, int target, int e, float c) {
    static constexpr std::array TwoOperands{ORVANE_CUSTOM_SIGNALS(A, B), ORVANE_CUSTOM_SIGNALS(E, B),
                                            ORVANE_CUSTOM_SIGNALS(A, E)};
    static constexpr std::array OneConstant{ORVANE_CUSTOM_SIGNALS(E, E)};
    OVCustomSignal signals;
    const int group = slot / 16;
    const auto index = static_cast<std::size_t>(slot);
    if (group == ConstantConstant) return (signals.*OneConstant[index - 48])(sections, target, e, c);
    const int x = group == ConstantColumn ? e : 0;
    const int y = group == ColumnConstant ? e : 1;
    (signals.*TwoOperands[index])(sections, target, x, y, c);
}

double Apply(char step, double left, double right) {
    if (step == '+') return left + right;
    if (step == '-') return left - right;
    return step == '*' ? left * right : left / right;
}

float Expected(int slot, float a, float b, int e, float c) {
    const int group = slot / 16;
    const char first = "+-*/"[slot % 4];
    const std::size_t second = static_cast<std::size_t>(slot) / 4 % 4;
    if (group == ConstantConstant && first == '-') return std::array{0.0F, 0.0F, c, -c}[second];
    if (group == ConstantConstant && first == '/') return std::array{c, 1.0F / c, c + 1.0F, 1.0F - c}[second];
    const double x = group == ColumnColumn || group == ColumnConstant ? static_cast<double>(a) : e;
    const double y = group == ColumnColumn || group == ConstantColumn ? static_cast<double>(b) : e;
    return static_cast<float>(Apply("*/+-"[second], Apply(first, x, y), static_cast<double>(c)));
}

constexpr int Capacity = 1056;
using CustomSignals = OnEverySet<Capacity>;
INSTANTIATE_TEST_SUITE_P(Sets, CustomSignals, ::testing::ValuesIn(AvailableInstructionSets()));

TEST_P(CustomSignals, GiveTheBitsOfTheFormulaInEverySlotAndMayOverwriteTheirOperands) {
    constexpr std::pair<int, float> Constants[] = {{0, 2.5F}, {3, -0.0F}, {-7, NAN}, {INT_MAX, 1e-30F}};
    const std::array<Floats, 3> columns{RandomFloats(Capacity, 1), RandomFloats(Capacity, 2),
                                        Floats(Capacity, 7)};
    OwnedEvents sample(Rows(513 + Capacity, Floats(3)), {0, 1, 513, Capacity - 1});
    for (int test = 0; test < 4 * Slots; ++test) {
        const auto [e, c] = Constants[test % 4];
        const int slot = test / 4;
        const auto target = static_cast<unsigned>(test) % 3;
        SCOPED_TRACE(::testing::Message() << "slot " << slot + 1 << ", target " << target << ", E " << e);
        for (const EventSection* section : sample.Sections)
            for (std::size_t s = 0; s < 3; ++s)
                std::copy_n(columns[s].begin(), Capacity, section->Signals[s]);
        Calc(slot, sample.Sections, static_cast<int>(target), e, c);
        for (const EventSection* section : sample.Sections) {
            std::array<Floats, 3> expected = columns;
            for (std::size_t i = 0; i < static_cast<std::size_t>(section->Count); ++i)
                expected[target][i] = Expected(slot, columns[0][i], columns[1][i], e, c);
            for (std::size_t s = 0; s < 3; ++s) {
                const float* column = section->Signals[s];
                ASSERT_EQ(Bits(Floats(column, column + Capacity)), Bits(expected[s])) << s;
            }
        }
    }
}

}  // namespace
}  // namespace Orvane
