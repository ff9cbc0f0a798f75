#include "gate/hinged_graph.h"

#include <algorithm>

namespace Orvane {
namespace {

constexpr int FirstOfAxes = 5;
constexpr int FirstOfArms = 11;

HingedAxis AxisFrom(const float* values) {
    return {values[0] != 0.0F, values[1], values[2], values[3], values[4], values[5]};
}

HingedArm ArmFrom(const OVPoint& point) {
    return {point.x, point.y};
}

template <class Factory>
auto NewTransformer(const HingedAxis& axis) {
    return Factory::CreateTransformer(axis.ScreenMin, axis.ScreenMax, axis.WorldMin, axis.WorldMax,
                                      axis.Alpha, axis.IsLog, false);
}

template <class Transformer>
float ScreenOf(const HingedAxis& axis, Transformer& transformer, float world) {
    return axis.IsLog ? transformer.GetScreen_Log(world) : transformer.GetScreen_Linear(world);
}

template <class Transformer>
double WorldOf(const HingedAxis& axis, Transformer& transformer, float screen) {
    return axis.IsLog ? transformer.GetWorld_Log(screen) : transformer.GetWorld_Linear(screen);
}

}  // namespace

bool HingedGraph::CalcParaFromGraph(const OVPoint* points, int count) {
    if (count < BlockSize) return false;
    std::array<float, 12> axes{};
    for (std::size_t i = 0; i < axes.size(); i += 2) {
        axes[i] = points[FirstOfAxes + i / 2].x;
        axes[i + 1] = points[FirstOfAxes + i / 2].y;
    }
    centre_ = points[0];
    axisX_ = AxisFrom(axes.data());
    axisY_ = AxisFrom(axes.data() + axes.size() / 2);
    std::transform(points + FirstOfArms, points + BlockSize, arms_.begin(), ArmFrom);
    transformerX_.reset(NewTransformer<OVCoordinateTransformerXFactory>(axisX_));
    transformerY_.reset(NewTransformer<OVCoordinateTransformerYFactory>(axisY_));
    return true;
}

double HingedGraph::ArmX(const HingedArm& arm, float y) const {
    return WorldOf(axisX_, *transformerX_, arm.At(ScreenOf(axisY_, *transformerY_, y)));
}

double HingedGraph::ArmY(const HingedArm& arm, float x) const {
    return WorldOf(axisY_, *transformerY_, arm.At(ScreenOf(axisX_, *transformerX_, x)));
}

int HingedGraph::RegionOf(float x, float y) const {
    const double xs = x;
    const double ys = y;
    if (x > centre_.x && y > centre_.y) {
        if (!(xs > ArmX(Upper(), y))) return 1;
        return ys > ArmY(Right(), x) ? 0 : 3;
    }
    if (x <= centre_.x && y > centre_.y) {
        if (!(ArmX(Upper(), y) >= xs)) return 0;
        return ys > ArmY(Left(), x) ? 1 : 2;
    }
    if (x <= centre_.x && y <= centre_.y) {
        if (!(ArmX(Lower(), y) >= xs)) return 3;
        return ArmY(Left(), x) >= ys ? 2 : 1;
    }
    if (x > centre_.x && y <= centre_.y) {
        if (!(xs > ArmX(Lower(), y))) return 2;
        return ArmY(Right(), x) >= ys ? 3 : 0;
    }
    return NoRegion;
}

}  // namespace Orvane
