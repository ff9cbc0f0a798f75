// Hinged gates against the formulas of their regions.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

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
auto NewTransformer(const Axis& axis) {
    return Factory::CreateTransformer(axis[1], axis[2], axis[3], axis[4], axis[5], axis[0] != 0, false);
}

/// The formulas of the regions, through transformers of its own.
class HingedModel {
public:
    HingedModel(const Axis& x, const Axis& y, const OVPoint& centre, const std::array<OVPoint, 4>& arms)
        : axisX_(x),
          axisY_(y),
          centre_(centre),
          arms_(arms),
          x_(NewTransformer<OVCoordinateTransformerXFactory>(x)),
          y_(NewTransformer<OVCoordinateTransformerYFactory>(y)) {}

    Points Block() const {
        Points block(15, {NaN, NaN});
        block[0] = centre_;
        for (std::size_t i = 0; i < 3; ++i) {
            block[5 + i] = {axisX_[2 * i], axisX_[2 * i + 1]};
            block[8 + i] = {axisY_[2 * i], axisY_[2 * i + 1]};
        }
        std::copy(arms_.begin(), arms_.end(), block.begin() + 11);
        return block;
    }

    /// Arms 13 and 14.
    double ArmX(std::size_t arm, float y) const {
        const float screen = axisY_[0] != 0 ? y_->GetScreen_Log(y) : y_->GetScreen_Linear(y);
        const float s = screen * arms_[arm - 11].x + arms_[arm - 11].y;
        return axisX_[0] != 0 ? x_->GetWorld_Log(s) : x_->GetWorld_Linear(s);
    }
    /// Arms 11 and 12.
    double ArmY(std::size_t arm, float x) const {
        const float screen = axisX_[0] != 0 ? x_->GetScreen_Log(x) : x_->GetScreen_Linear(x);
        const float s = screen * arms_[arm - 11].x + arms_[arm - 11].y;
        return axisY_[0] != 0 ? y_->GetWorld_Log(s) : y_->GetWorld_Linear(s);
    }

    int RegionOf(float x, float y) const {
        if (x > centre_.x && y > centre_.y) return x > ArmX(13, y) ? (y > ArmY(12, x) ? 0 : 3) : 1;
        if (x <= centre_.x && y > centre_.y) return ArmX(13, y) >= x ? (y > ArmY(11, x) ? 1 : 2) : 0;
        if (x <= centre_.x && y <= centre_.y) return ArmX(14, y) >= x ? (ArmY(11, x) >= y ? 2 : 1) : 3;
        if (x > centre_.x && y <= centre_.y) return x > ArmX(14, y) ? (ArmY(12, x) >= y ? 3 : 0) : 2;
        return None;
    }

    /// Points all over the plot and beyond, and on each arm, near it and next to it.
    Points Around(int count, unsigned seed) const {
        std::mt19937 random(seed);
        std::uniform_real_distribution<float> part(-0.2F, 1.2F);
        std::uniform_real_distribution<float> exponent(-8.0F, -1.0F);
        const auto any = [&](const Axis& axis) { return axis[3] + part(random) * (axis[4] - axis[3]); };
        const auto near = [&](double value) {
            const auto at = static_cast<float>(value);
            const std::array<float, 4> choice{at, std::nextafter(at, -Infinity), std::nextafter(at, Infinity),
                                              at * (1.0F + std::pow(10.0F, exponent(random)))};
            return choice[random() % 4];
        };
        Points points = PointsAround({centre_.x, centre_.y}, count / 4, seed);
        while (static_cast<int>(points.size()) < count) {
            const float x = any(axisX_);
            const float y = any(axisY_);
            points.emplace_back(x, y);
            points.emplace_back(near(ArmX(13 + random() % 2, y)), y);
            points.emplace_back(x, near(ArmY(11 + random() % 2, x)));
        }
        return points;
    }

private:
    Axis axisX_;
    Axis axisY_;
    OVPoint centre_;
    std::array<OVPoint, 4> arms_;
    std::unique_ptr<IOVCoordinateTransformerX> x_;
    std::unique_ptr<IOVCoordinateTransformerY> y_;
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
            const HingedModel model(axisX, axisY, {400, 300}, arm);
            Points block = model.Block();
            const Points points = model.Around(1500, seed);
            const auto regionOf = [&](float x, float y) { return model.RegionOf(x, y); };
            const auto fileAll = [&](int count) {
                return [&, count](auto& x, auto& y, auto& r) {
                    filter.Filter_Hinged_Fast(x, y, r[0], r[1], r[2], r[3], block.data(), count);
                };
            };
            ExpectGate(points, 4, fileAll(15), regionOf);
            ExpectGate(points, 4, fileAll(14), [](float, float) { return None; });
            const int wanted = static_cast<int>(seed % 6) - 1;
            ExpectGate(
                points, 1,
                [&](auto& x, auto& y, auto& r) {
                    filter.Filter_Hinged(x, y, r[0], block.data(), 15, wanted);
                },
                [&](float x, float y) { return wanted >= 0 && model.RegionOf(x, y) == wanted ? 0 : None; });
        }
    }
}

}  // namespace
}  // namespace Orvane::Testing
