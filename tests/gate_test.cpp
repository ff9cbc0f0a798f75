// Points, rectangles and polygons as values; gates against slow, obvious models: every event on its own,
// every formula as it is described.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <new>
#include <numbers>
#include <random>
#include <string>

#include "tests/support/gate_models.h"

namespace Orvane::Testing {
namespace {

TEST(Geometry, PointsAreEqualExactlyOrWithinAnInclusiveTolerance) {
    const OVPoint point(1.0F, -2.0F);
    OVPoint copy;
    EXPECT_TRUE(copy.IsEqual(0.0F, -0.0F));
    copy = point;
    EXPECT_TRUE(copy.IsEqual(point));
    EXPECT_TRUE(point.IsEqual(OVPoint(1.5F, -2.0F), 0.5F));
    EXPECT_FALSE(point.IsEqual(1.5F, -2.0F, std::nextafter(0.5F, 0.0F)));
    EXPECT_FALSE(point.IsEqual(1.0F, -2.75F, 0.5F));
    copy.SetValue(NaN, 0.0F);
    EXPECT_FALSE(copy.IsEqual(copy));
    EXPECT_FALSE(copy.IsEqual(copy, Infinity));
}

TEST(Geometry, RectanglesAreClosedAndTakeCorners) {
    const OVRect rect(0.0F, 1.0F, 10.0F, 5.0F);
    for (const OVPoint& corner : {OVPoint(0, 1), OVPoint(10, 1), OVPoint(0, 5), OVPoint(10, 5)})
        EXPECT_TRUE(rect.InRect(corner)) << corner.x << ' ' << corner.y;
    for (const OVPoint& outside : {OVPoint(10.0001F, 5), OVPoint(5, 0.9999F), OVPoint(-1, 3),
                                   OVPoint(5, 5.001F), OVPoint(NaN, 3), OVPoint(5, NaN)})
        EXPECT_FALSE(rect.InRect(outside)) << outside.x << ' ' << outside.y;
}

TEST(Geometry, APolygonCanBeBuiltAnewAndWithNothing) {
    OVPoint vertices[] = {{3, 1}, {-2, 4}, {5, -6}};
    OVPloygon polygon;
    EXPECT_FALSE(polygon.IsInPloygon(0, 0));
    for (const int count : {3, 0, -1, 1, 3}) {
        polygon.ConstructEigenValue(vertices, count);
        const OVRect rect = polygon.GetMinRect();
        EXPECT_EQ(rect.MinX, count == 3 ? -2 : 3);
        EXPECT_EQ(rect.MaxX, count == 3 ? 5 : 3);
        EXPECT_EQ(rect.MinY, count == 3 ? -6 : 1);
        EXPECT_EQ(rect.MaxY, count == 3 ? 4 : 1);
        EXPECT_EQ(polygon.IsInPloygon(2, 0), count == 3);
    }
}

TEST(Geometry, ACopiedPolygonSharesItsTable) {
    OVPoint vertices[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    auto* original = new OVPloygon;
    original->ConstructEigenValue(vertices, 4);
    // Never destroyed: only one of the two may be.
    alignas(OVPloygon) unsigned char storage[sizeof(OVPloygon)];
    auto* copy = new (storage) OVPloygon(*original);
    EXPECT_TRUE(copy->IsInPloygon(0.5F, 0.5F));
    EXPECT_EQ(copy->GetMinRect().MaxX, 1.0F);
    delete original;
}

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
        {"two vertices whose edges differ", {{0, 0}, {1, 3}}},
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

TEST_P(GateTest, HingedArmsAreStraightOnTheScreen) {
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
