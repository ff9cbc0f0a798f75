// Gates against slow, obvious models: every event on its own, every formula as it is described.
#include <gtest/gtest.h>

#include <map>
#include <numbers>
#include <random>
#include <string>

#include "tests/support/gate_models.h"
#include "tests/support/gates.h"

namespace Orvane::Testing {
namespace {

INSTANTIATE_TEST_SUITE_P(Sets, GateTest, ::testing::ValuesIn(AvailableInstructionSets()),
                         ::testing::PrintToStringParamName());

TEST_P(GateTest, ThresholdsAreClosedBelowAndOnTheLeft) {
    const auto expect = [](float a, float b, float c, float d) {
        SCOPED_TRACE(::testing::Message() << a << ' ' << b << ' ' << c << ' ' << d);
        ExpectThresholds(PointsAround({a, b, c, d}, 2500, 11), a, b, c, d);
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
        ExpectPolygon(shape.second, PointsOn(shape.second, 2100), {0, 1, 2, 13, 64, 128, 256});
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
