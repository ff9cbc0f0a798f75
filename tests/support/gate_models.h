// Gates as their descriptions say them, one event at a time.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <memory>
#include <random>
#include <type_traits>
#include <vector>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/OVPloygon.h>

#include "gate/polygon_rule.h"
#include "tests/support/gates.h"

namespace Orvane::Testing {

inline int QuadrantOf(float x, float y, float xCut, float yCut) {
    if (x > xCut && y > yCut) return 0;
    if (x <= xCut && y > yCut) return 1;
    if (x <= xCut && y <= yCut) return 2;
    return x > xCut && y <= yCut ? 3 : None;
}

/// Quadrants, verticals, the rectangle and the line segment at these cuts: each plain form, each fast form
/// and the model hold the same events.
inline void ExpectThresholds(const Points& points, float a, float b, float c, float d) {
    OVFilter filter;
    ExpectGate(
        points,
        [&](auto& x, auto& y, auto& r) {
            filter.Filter_Quadrant_Fast(x, y, r[0], r[1], r[2], r[3], a, c);
            for (const int wanted : {0, 1, 2, 3, 4, -1})
                filter.Filter_Quadrant(x, y, r.begin()[5 + wanted], a, c, wanted);
            filter.Filter_Vertical_Fast(x, r[10], r[11], a);
            filter.Filter_Vertical(x, r[12], a, 0);
            filter.Filter_Vertical(x, r[13], a, 1);
            filter.Filter_Vertical(x, r[14], a, -2);
            filter.Filter_Rectangle(x, y, r[15], a, b, c, d);
            filter.Filter_LineSegment(x, r[16], a, b);
            for (FilterSection* section : r[16])
                section->CalcTrueCount();
        },
        [&](float x, float y) -> Membership {
            const int q = QuadrantOf(x, y, a, c);
            const bool left = x <= a, right = x > a, within = a <= x && x <= b;
            return {q == 0, q == 1, q == 2, q == 3, false, q == 0, q == 1, q == 2,
                    q == 3, false,  left,   !left,  left,  right,  right,  within && c <= y && y <= d,
                    within};
        });
}

/// The polygon without its rectangle: every edge as described, in drawing order.
inline bool IsInside(const Points& vertices, float x, float y) {
    bool inside = false;
    const OVPoint* from = &vertices.back();
    for (const OVPoint& to : vertices) {
        const float minY = from->y > to.y ? to.y : from->y;
        const float maxY = from->y > to.y ? from->y : to.y;
        const double slope = static_cast<double>((from->x - to.x) / (from->y - to.y));
        const double intercept = static_cast<double>(to.x) - static_cast<double>(to.y) * slope;
        const bool reaches = y >= minY && y < maxY;
        if (reaches && static_cast<double>(y) * slope + intercept > static_cast<double>(x)) inside = !inside;
        from = &to;
    }
    return inside;
}

/// The gate, the polygon and its rule on grids of these sizes hold the events of the model.
inline void ExpectPolygon(Points vertices, const Points& points, const std::vector<int>& gridSizes) {
    const int count = static_cast<int>(vertices.size());
    OVPloygon polygon;
    polygon.ConstructEigenValue(vertices.data(), count);
    const OVRect rect = polygon.GetMinRect();
    Floats xs, ys;
    std::vector<bool> expected;
    for (const OVPoint& point : points) {
        xs.push_back(point.x);
        ys.push_back(point.y);
        const bool inside = IsInside(vertices, point.x, point.y);
        expected.push_back(rect.InRect(point) && inside);
        ASSERT_EQ(polygon.IsInPloygon(point.x, point.y), inside) << point.x << ' ' << point.y;
    }
    ExpectGate(
        {points.begin(), points.begin() + std::min<std::ptrdiff_t>(400, std::ssize(points))},
        [&](auto& x, auto& y, auto& r) { OVFilter().Filter_Ploygon(x, y, r[0], vertices.data(), count); },
        [&](float x, float y) { return Membership{rect.InRect(x, y) && IsInside(vertices, x, y)}; });
    for (const int gridSize : gridSizes) {
        std::vector<std::uint32_t> words(points.size() / 32 + 1);
        const PolygonRule rule(vertices.data(), count, {gridSize});
        rule(xs.data(), ys.data(), static_cast<int>(points.size()), {words.data()});
        for (std::size_t i = 0; i < 32 * words.size(); ++i)
            ASSERT_EQ((words[i / 32] >> (i % 32) & 1U) != 0, i < points.size() && expected[i])
                << "grid " << gridSize << " at event " << i;
    }
}

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

/// The hinged gate in both forms holds the events of the model, and without a whole block none.
inline void ExpectHinged(const HingedModel& model, const Points& points, int wanted) {
    OVFilter filter;
    Points block = model.Block();
    ExpectGate(
        points,
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

}  // namespace Orvane::Testing
