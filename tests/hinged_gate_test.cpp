// Hinged gates against the formulas of their regions.
#include <gtest/gtest.h>

#include "tests/support/gate_models.h"

namespace Orvane::Testing {
namespace {

class HingedGateTest : public GateTest {};
INSTANTIATE_TEST_SUITE_P(Sets, HingedGateTest, ::testing::ValuesIn(AvailableInstructionSets()),
                         ::testing::PrintToStringParamName());

TEST_P(HingedGateTest, HingedArmsAreStraightOnTheScreen) {
    const Axis axes[] = {{0, 0, 512, -100, 1000, 0},
                         {-0.5F, 0, 512, -1000, 262144, 150},
                         {1, 10.5F, 300.7F, -50, 50, 0.001F},
                         {1, 0, 512, -1, 1, 10},
                         {0, 0, 256, 1e8F, 1.00001e8F, 0},
                         {0, 512, 0, 0, 1000, 0},
                         {1, 0, 512, 1000, -1000, 10},
                         {1, 0, 512, 0, 1000, -10},
                         {1, 0, 512, 0, 1000, 0},
                         {0, 0, 100, 5, 5, 1}};
    const std::array<OVPoint, 4> arms[] = {{{{0.1F, 210}, {-0.2F, 350}, {0.15F, 190}, {-0.1F, 310}}},
                                           {{{0, 256}, {0, 256}, {0, 256}, {0, 256}}},
                                           {{{-30, 9000}, {1e6F, -1e8F}, {0.5F, 128}, {-7, 2000}}},
                                           {{{1e38F, 0}, {NaN, 0}, {Infinity, 5}, {1, -Infinity}}}};
    unsigned seed = 0;
    for (const Axis& axisX : axes) {
        for (const Axis& axisY : axes) {
            const auto& arm = arms[++seed % 4];
            SCOPED_TRACE(::testing::Message() << "x axis " << &axisX - axes << ", y axis " << &axisY - axes
                                              << ", arms " << seed % 4);
            const HingedModel model{ScreenAxis<OVCoordinateTransformerXFactory>(axisX),
                                    ScreenAxis<OVCoordinateTransformerYFactory>(axisY),
                                    {400, 300},
                                    arm};
            ExpectHinged(model, model.Around(1500, seed), static_cast<int>(seed % 6) - 1);
        }
    }
}

}  // namespace
}  // namespace Orvane::Testing
