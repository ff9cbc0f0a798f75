// Gates against slow, obvious models: every event on its own, every formula as it is described.
#include <gtest/gtest.h>

#include <map>
#include <numbers>
#include <random>
#include <string>

#include <orvane/OVPloygon.h>

#include "gate/polygon_rule.h"
#include "tests/support/gates.h"

namespace Orvane::Testing {
namespace {

INSTANTIATE_TEST_SUITE_P(Sets, GateTest, ::testing::ValuesIn(AvailableInstructionSets()),
                         ::testing::PrintToStringParamName());

TEST_P(GateTest, ThresholdsAreClosedBelowAndOnTheLeft) {
    const auto expect = [this](float a, float b, float c, float d) {
        SCOPED_TRACE(::testing::Message() << a << ' ' << b << ' ' << c << ' ' << d);
        const Points points = PointsAround({a, b, c, d}, 2500, 11);
        const auto quadrant = [a, c](float x, float y) {
            if (x > a && y > c) return 0;
            if (x <= a && y > c) return 1;
            if (x <= a && y <= c) return 2;
            return x > a && y <= c ? 3 : None;
        };
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
                const int q = quadrant(x, y);
                const bool left = x <= a, right = x > a, within = a <= x && x <= b;
                return {q == 0, q == 1, q == 2, q == 3, false, q == 0, q == 1, q == 2,
                        q == 3, false,  left,   !left,  left,  right,  right,  within && c <= y && y <= d,
                        within};
            });
    };
    expect(-3, 7, 5, 90);
    expect(7, -3, 5, 5);
    expect(0, 0, -0.0F, -0.0F);
    expect(NaN, 7, 5, NaN);
    expect(-Infinity, Infinity, -Infinity, Infinity);
    expect(Infinity, Infinity, 1e-45F, -1e-45F);
}

TEST_P(GateTest, TheFrameKeepsItsPeculiarities) {
    Sample signal({1, 5, 9, NaN}, Sample::Cut::Packed);
    Results results;
    filter.Filter_Rectangle(signal.Sections, signal.Sections, results[0], 0, 10, 0, 10);
    EXPECT_EQ(results[0][0]->TrueCount, 3);
    filter.Filter_LineSegment(signal.Sections, results[0], 5, 5);
    EXPECT_EQ(results[0][0]->TrueCount, 3);
    EXPECT_EQ(results[0][0]->Flags[0], 0b0010U);
    // One vector for two regions gets the events of both.
    filter.Filter_Quadrant_Fast(signal.Sections, signal.Sections, results[0], results[1], results[0],
                                results[1], 5, 5);
    EXPECT_EQ(results[0][0]->Flags[0], 0b0111U);
    OVPoint vertex(5, 5);
    filter.Filter_Ploygon(signal.Sections, signal.Sections, results[0], &vertex, 0);
    EXPECT_EQ(results[0][0]->TrueCount, 0);
    Signals nothing;
    filter.Filter_Ploygon(nothing, nothing, results[0], nullptr, 5);
    EXPECT_TRUE(results[0].empty());
}

// Polygons.

Points Transformed(const Points& vertices, float scaleX, float offsetX, float scaleY, float offsetY) {
    Points transformed;
    for (const OVPoint& vertex : vertices)
        transformed.emplace_back(vertex.x * scaleX + offsetX, vertex.y * scaleY + offsetY);
    return transformed;
}

std::map<std::string, Points> Shapes() {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> anywhere(-1.0F, 1.0F);
    std::map<std::string, Points> shapes{
        {"one vertex", {{1, 1}}},
        {"two vertices", {{0, 0}, {4, 2}}},
        {"square", {{0, 0}, {1, 0}, {1, 1}, {0, 1}}},
        {"steps", {{0, 0}, {3, 0}, {3, 1}, {2, 1}, {2, 2}, {1, 2}, {1, 3}, {0, 3}}},
        {"flat", {{0, 1}, {5, 1}, {9, 1}}},
        {"NaN", {{0, 0}, {1, 0}, {NaN, 0.5F}, {1, 1}, {0.5F, NaN}, {0, 1}}},
        {"NaN first", {{NaN, 0}, {1, 0}, {1, 1}}},
        {"infinite", {{0, 0}, {Infinity, 0}, {1, 1}, {0, -Infinity}}},
        {"near overflow", {{-3e38F, -3e38F}, {3e38F, -3e38F}, {0, 3e38F}}},
        {"slope overflows", {{0, 0}, {3e30F, 1e-10F}, {3e30F, 2}, {0, 2}}}};
    for (const int count : {3, 7, 20, 100, 300}) {
        Points crossing, lattice, ring;
        for (int i = 0; i < count; ++i) {
            crossing.emplace_back(anywhere(random), anywhere(random));
            lattice.emplace_back(std::round(4 * anywhere(random)), std::round(4 * anywhere(random)));
            const float angle =
                2.0F * std::numbers::pi_v<float> * static_cast<float>(i) / static_cast<float>(count);
            const float radius = i % 2 == 0 ? 1.0F : 0.6F;
            ring.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
        }
        const std::string name = std::to_string(count);
        shapes["crossing" + name] = crossing;
        shapes["lattice" + name] = lattice;
        shapes["ring" + name] = ring;
        shapes["nearly horizontal" + name] = Transformed(crossing, 1e6F, 3, 1e-4F, 7);
        shapes["few floats" + name] = Transformed(ring, 40, 1e8F, 9, -1e8F);
        shapes["huge" + name] = Transformed(crossing, 1e37F, 0, 1e30F, 1);
        shapes["tiny" + name] = Transformed(lattice, 1e-41F, 0, 1e-41F, 0);
    }
    return shapes;
}

/// Every edge as described, in drawing order.
bool IsInside(const Points& vertices, float x, float y) {
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

/// Points all over the polygon, at its vertices, on its edges and next to all of these.
Points PointsOn(const Points& vertices, std::size_t count) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> part(-0.1F, 1.1F);
    Points points = PointsAround({0, 1}, 200, 3);
    while (points.size() < count) {
        const std::size_t i = random() % vertices.size();
        const OVPoint& a = vertices[i];
        const OVPoint& b = vertices[(i + 1) % vertices.size()];
        const OVPoint& c = vertices[random() % vertices.size()];
        const float t = part(random);
        points.emplace_back(Near(a.x + t * (b.x - a.x), random), Near(a.y + t * (b.y - a.y), random));
        points.emplace_back(a.x + t * (c.x - a.x), b.y + part(random) * (c.y - b.y));
        points.emplace_back(Near(a.x, random), Near(c.y, random));
    }
    return points;
}

TEST_P(GateTest, PolygonsAreTheWalkOverTheirEdges) {
    for (const auto& shape : Shapes()) {
        SCOPED_TRACE(shape.first);
        Points vertices = shape.second;
        const int count = static_cast<int>(vertices.size());
        OVPloygon polygon;
        polygon.ConstructEigenValue(vertices.data(), count);
        const OVRect rect = polygon.GetMinRect();
        const Points points = PointsOn(vertices, 2100);
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
            {points.begin(), points.begin() + 400},
            [&](auto& x, auto& y, auto& r) { filter.Filter_Ploygon(x, y, r[0], vertices.data(), count); },
            [&](float x, float y) { return Membership{rect.InRect(x, y) && IsInside(vertices, x, y)}; });
        for (const int gridSize : {0, 1, 2, 13, 64, 128, 256}) {
            std::vector<std::uint32_t> words(points.size() / 32 + 1);
            const PolygonRule rule(vertices.data(), count, {gridSize});
            rule(xs.data(), ys.data(), static_cast<int>(points.size()), {words.data()});
            for (std::size_t i = 0; i < 32 * words.size(); ++i)
                ASSERT_EQ((words[i / 32] >> (i % 32) & 1U) != 0, i < points.size() && expected[i])
                    << "grid " << gridSize << " at event " << i;
        }
    }
}

TEST(Gate, GivesBackWhatItMadeWhenThePoolIsExhausted) {
    ForEachFailingAllocation([] {
        Results results;
        Sample sample(Floats(200, 1.0F));
        Points vertices{{0, 0}, {2, 0}, {1, 2}};
        OVFilter filter;
        filter.Filter_Ploygon(sample.Sections, sample.Sections, results[0], vertices.data(), 3);
        filter.Filter_Quadrant_Fast(sample.Sections, sample.Sections, results[0], results[1], results[2],
                                    results[3], 0, 0);
    });
}

}  // namespace
}  // namespace Orvane::Testing
