// Hinged gates against the formulas of their regions.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <type_traits>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>

#include "tests/support/gates.h"

namespace Orvane::Testing {
namespace {

class HingedGateTest : public GateTest {};
INSTANTIATE_TEST_SUITE_P(Sets, HingedGateTest, ::testing::ValuesIn(AvailableInstructionSets()),
                         ::testing::PrintToStringParamName());

/// Log flag, screenMin, screenMax, worldMin, worldMax, alpha: as they stand in the point block.
using Axis = std::array<float, 6>;

template <class Factory>
struct ScreenAxis {
    explicit ScreenAxis(const Axis& a)
        : Ends(a), Mapping(Factory::CreateTransformer(a[1], a[2], a[3], a[4], a[5], a[0] != 0, false)) {}
    float Screen(float world) const {
        return Ends[0] != 0 ? Mapping->GetScreen_Log(world) : Mapping->GetScreen_Linear(world);
    }
    double World(float screen) const {
        return Ends[0] != 0 ? Mapping->GetWorld_Log(screen) : Mapping->GetWorld_Linear(screen);
    }
    Axis Ends;
    std::unique_ptr<std::remove_pointer_t<decltype(Factory::CreateTransformer(0, 0, 0, 0, 0, false, false))>>
        Mapping;
};

/// The formulas of the regions, through transformers of its own.
struct HingedModel {
    Points Block() const {
        Points block(15, {NaN, NaN});
        block[0] = Centre;
        for (std::size_t i = 0; i < 3; ++i) {
            block[5 + i] = {X.Ends[2 * i], X.Ends[2 * i + 1]};
            block[8 + i] = {Y.Ends[2 * i], Y.Ends[2 * i + 1]};
        }
        std::copy(Arms.begin(), Arms.end(), block.begin() + 11);
        return block;
    }

    /// Arms 13 and 14.
    double ArmX(std::size_t arm, float y) const {
        return X.World(Y.Screen(y) * Arms[arm - 11].x + Arms[arm - 11].y);
    }
    /// Arms 11 and 12.
    double ArmY(std::size_t arm, float x) const {
        return Y.World(X.Screen(x) * Arms[arm - 11].x + Arms[arm - 11].y);
    }

    int RegionOf(float x, float y) const {
        if (x > Centre.x && y > Centre.y) return x > ArmX(13, y) ? (y > ArmY(12, x) ? 0 : 3) : 1;
        if (x <= Centre.x && y > Centre.y) return ArmX(13, y) >= x ? (y > ArmY(11, x) ? 1 : 2) : 0;
        if (x <= Centre.x && y <= Centre.y) return ArmX(14, y) >= x ? (ArmY(11, x) >= y ? 2 : 1) : 3;
        if (x > Centre.x && y <= Centre.y) return x > ArmX(14, y) ? (ArmY(12, x) >= y ? 3 : 0) : 2;
        return None;
    }

    /// Points all over the plot and beyond, and on each arm, near it and next to it.
    Points Around(int count, unsigned seed) const {
        std::mt19937 random(seed);
        std::uniform_real_distribution<float> part(-0.2F, 1.2F);
        std::uniform_real_distribution<float> exponent(-8.0F, -1.0F);
        const auto any = [&](const Axis& axis) { return axis[3] + part(random) * (axis[4] - axis[3]); };
        const auto close = [&](double value) {
            const auto at = static_cast<float>(value);
            return random() % 4 == 0 ? at * (1.0F + std::pow(10.0F, exponent(random))) : Near(at, random);
        };
        Points points = PointsAround({Centre.x, Centre.y}, count / 4, seed);
        while (static_cast<int>(points.size()) < count) {
            const float x = any(X.Ends), y = any(Y.Ends);
            points.emplace_back(x, y);
            points.emplace_back(close(ArmX(13 + random() % 2, y)), y);
            points.emplace_back(x, close(ArmY(11 + random() % 2, x)));
        }
        return points;
    }

    ScreenAxis<OVCoordinateTransformerXFactory> X;
    ScreenAxis<OVCoordinateTransformerYFactory> Y;
    OVPoint Centre;
    std::array<OVPoint, 4> Arms;
};

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
            Points block = model.Block();
            const int wanted = static_cast<int>(seed % 6) - 1;
            ExpectGate(
                model.Around(1500, seed),
                [&](auto& x, auto& y, auto& r) {
                    filter.Filter_Hinged_Fast(x, y, r[0], r[1], r[2], r[3], block.data(), 15);
                    filter.Filter_Hinged_Fast(x, y, r[4], r[5], r[6], r[7], block.data(), 14);
                    filter.Filter_Hinged(x, y, r[8], block.data(), 15, wanted);
                },
                [&](float x, float y) -> Membership {
                    const int q = model.RegionOf(x, y);
                    const bool isWanted = wanted >= 0 && q == wanted;
                    return {q == 0, q == 1, q == 2, q == 3, false, false, false, false, isWanted};
                });
        }
    }
}

}  // namespace
}  // namespace Orvane::Testing
