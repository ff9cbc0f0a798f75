// The graph behind a hinged gate: its centre, axes and arms, and the exact formula of its regions.
#pragma once

#include <array>
#include <memory>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/OVPoint.h>

namespace Orvane {

/// An axis as the point block describes it.
struct HingedAxis {
    bool IsLog = false;
    float ScreenMin = 0.0F;
    float ScreenMax = 0.0F;
    float WorldMin = 0.0F;
    float WorldMax = 0.0F;
    float Alpha = 0.0F;
};

/// A straight line on the screen.
struct HingedArm {
    float Slope = 0.0F;
    float Intercept = 0.0F;

    float At(float value) const { return Slope * value + Intercept; }
};

class HingedGraph {
public:
    static constexpr int BlockSize = 15;
    static constexpr int NoRegion = -1;

    /// Reads the point block of IOVFilter::Filter_Hinged. False, with nothing read, when it is too short.
    bool CalcParaFromGraph(const OVPoint* points, int count);

    /// The region of an event, or NoRegion.
    int RegionOf(float x, float y) const;

    const OVPoint& Centre() const { return centre_; }
    const HingedAxis& AxisX() const { return axisX_; }
    const HingedAxis& AxisY() const { return axisY_; }
    /// Those that give y from x, in screen coordinates.
    const HingedArm& Left() const { return arms_[0]; }
    const HingedArm& Right() const { return arms_[1]; }
    /// Those that give x from y.
    const HingedArm& Upper() const { return arms_[2]; }
    const HingedArm& Lower() const { return arms_[3]; }

private:
    double ArmX(const HingedArm& arm, float y) const;
    double ArmY(const HingedArm& arm, float x) const;

    OVPoint centre_;
    HingedAxis axisX_;
    HingedAxis axisY_;
    std::array<HingedArm, 4> arms_;
    std::unique_ptr<IOVCoordinateTransformerX> transformerX_;
    std::unique_ptr<IOVCoordinateTransformerY> transformerY_;
};

}  // namespace Orvane
