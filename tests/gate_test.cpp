// Gates against slow, obvious models: every event on its own, every formula as it is described.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <tuple>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/OVFilter.h>
#include <orvane/OVPloygon.h>

#include "gate/polygon_rule.h"
#include "tests/support/awkward.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"
#include "tests/support/population.h"

namespace Orvane::Testing {
namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr int None = -1;
using Points = std::vector<OVPoint>;
using Region = std::function<int(float, float)>;

/// Owns the filters of up to four regions.
struct Results : std::array<Filters, 4> {
    Results() = default;
    Results(const Results&) = delete;
    Results& operator=(const Results&) = delete;
    ~Results() {
        for (Filters& filters : *this)
            OVFilterSection().ReleaseVectorSection(filters);
    }
};
using Operation = std::function<void(Signals&, Signals&, Results&)>;

/// Runs a gate with as many outputs over the points, cut awkwardly and packed; result r must hold the events
/// of region r, whatever it held before.
void ExpectGate(const Points& points, std::size_t outputs, const Operation& gate, const Region& regionOf) {
    Floats xs;
    Floats ys;
    for (const OVPoint& point : points) {
        xs.push_back(point.x);
        ys.push_back(point.y);
    }
    Results results;
    for (const auto cut : {Sample::Cut::Packed, Sample::Cut::Awkward}) {
        Sample x(xs, cut);
        Sample y(ys, cut);
        for (Filters& filters : results)
            OVFilterSection().SetAllTrue(filters);
        gate(x.Sections, y.Sections, results);
        for (std::size_t r = 0; r < outputs; ++r) {
            ASSERT_EQ(results[r].size(), x.Sections.size());
            std::size_t next = 0;
            for (const FilterSection* section : results[r]) {
                int set = 0;
                for (int i = 0; i < section->Count; ++i, ++next) {
                    const bool expected = regionOf(xs[next], ys[next]) == static_cast<int>(r);
                    set += static_cast<int>(expected);
                    ASSERT_EQ(section->GetFlag(i), expected)
                        << "region " << r << " at " << xs[next] << ' ' << ys[next];
                }
                EXPECT_EQ(section->TrueCount, set);
                for (int i = section->Count; i < section->Capacity; ++i)
                    ASSERT_FALSE(section->GetFlag(i)) << "behind the last event";
            }
        }
    }
}

class GateTest : public ::testing::TestWithParam<InstructionSet> {
protected:
    SmallPool pool{2048};
    ScopedInstructionSet set{GetParam()};
    OVFilter filter;
};
INSTANTIATE_TEST_SUITE_P(Sets, GateTest, ::testing::ValuesIn(AvailableInstructionSets()),
                         ::testing::PrintToStringParamName());

/// Points whose coordinates are random, awkward, or at or next to one of `edges`.
Points PointsAround(const Floats& edges, int count, unsigned seed) {
    std::mt19937 random(seed);
    const Floats xs = RandomFloats(count, seed);
    const Floats ys = RandomFloats(count, seed + 1);
    const auto near = [&](float value) {
        const float edge = edges[random() % edges.size()];
        const std::array<float, 4> choice{value, edge, std::nextafter(edge, -Infinity),
                                          std::nextafter(edge, Infinity)};
        return choice[random() % 4];
    };
    Points points;
    for (std::size_t i = 0; i < xs.size(); ++i)
        points.emplace_back(near(xs[i]), near(ys[i]));
    return points;
}

TEST_P(GateTest, ThresholdsAreClosedBelowAndOnTheLeft) {
    const std::array<float, 4> bounds[] = {{-3, 7, 5, 90},
                                           {7, -3, 5, 5},
                                           {0, 0, -0.0F, -0.0F},
                                           {NaN, 7, 5, NaN},
                                           {-Infinity, Infinity, -Infinity, Infinity},
                                           {Infinity, Infinity, 1e-45F, -1e-45F}};
    for (const auto& [a, b, c, d] : bounds) {
        SCOPED_TRACE(::testing::Message() << a << ' ' << b << ' ' << c << ' ' << d);
        const Points points = PointsAround({a, b, c, d}, 2500, 11);
        const auto quadrant = [a = a, c = c](float x, float y) {
            if (x > a && y > c) return 0;
            if (x <= a && y > c) return 1;
            if (x <= a && y <= c) return 2;
            return x > a && y <= c ? 3 : None;
        };
        ExpectGate(
            points, 1,
            [&](Signals& x, Signals& y, Results& r) { filter.Filter_Rectangle(x, y, r[0], a, b, c, d); },
            [&](float x, float y) { return a <= x && x <= b && c <= y && y <= d ? 0 : None; });
        for (const int side : {0, 1, -2}) {
            ExpectGate(
                points, 1,
                [&](Signals& x, Signals&, Results& r) { filter.Filter_Vertical(x, r[0], a, side); },
                [&](float x, float) { return (side == 0 ? x <= a : x > a) ? 0 : None; });
        }
        ExpectGate(
            points, 2,
            [&](Signals& x, Signals&, Results& r) { filter.Filter_Vertical_Fast(x, r[0], r[1], a); },
            [&](float x, float) { return x <= a ? 0 : 1; });
        for (const int wanted : {0, 1, 2, 3, 4, -1}) {
            ExpectGate(
                points, 1,
                [&](Signals& x, Signals& y, Results& r) { filter.Filter_Quadrant(x, y, r[0], a, c, wanted); },
                [&](float x, float y) { return wanted >= 0 && quadrant(x, y) == wanted ? 0 : None; });
        }
        ExpectGate(
            points, 4,
            [&](Signals& x, Signals& y, Results& r) {
                filter.Filter_Quadrant_Fast(x, y, r[0], r[1], r[2], r[3], a, c);
            },
            quadrant);
        ExpectGate(
            points, 1,
            [&](Signals& x, Signals&, Results& r) {
                filter.Filter_LineSegment(x, r[0], a, b);
                for (FilterSection* section : r[0])
                    section->CalcTrueCount();
            },
            [&](float x, float) { return a <= x && x <= b ? 0 : None; });
    }
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

struct Shape {
    std::string Name;
    Points Vertices;
};

Points Transformed(const Points& vertices, float scaleX, float offsetX, float scaleY, float offsetY) {
    Points transformed;
    for (const OVPoint& vertex : vertices)
        transformed.emplace_back(vertex.x * scaleX + offsetX, vertex.y * scaleY + offsetY);
    return transformed;
}

std::vector<Shape> Shapes() {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> anywhere(-1.0F, 1.0F);
    std::vector<Shape> shapes{{"triangle", {{0, 0}, {1, 0}, {0.3F, 1}}},
                              {"steps", {{0, 0}, {3, 0}, {3, 1}, {2, 1}, {2, 2}, {1, 2}, {1, 3}, {0, 3}}},
                              {"flat", {{0, 1}, {5, 1}, {9, 1}}},
                              {"NaN", {{0, 0}, {1, 0}, {NaN, 0.5F}, {1, 1}, {0.5F, NaN}, {0, 1}}},
                              {"NaN first", {{NaN, 0}, {1, 0}, {1, 1}}},
                              {"infinite", {{0, 0}, {Infinity, 0}, {1, 1}, {0, -Infinity}}},
                              {"near overflow", {{-3e38F, -3e38F}, {3e38F, -3e38F}, {0, 3e38F}}},
                              {"slope overflows", {{0, 0}, {3e30F, 1e-10F}, {3e30F, 2}, {0, 2}}}};
    for (const int count : {3, 7, 20, 100, 300}) {
        Points crossing;
        Points lattice;
        Points ring;
        for (int i = 0; i < count; ++i) {
            crossing.emplace_back(anywhere(random), anywhere(random));
            lattice.emplace_back(std::round(4 * anywhere(random)), std::round(4 * anywhere(random)));
            const double angle = 2.0 * std::numbers::pi * i / count;
            const double radius = i % 2 == 0 ? 1.0 : 0.6;
            ring.emplace_back(static_cast<float>(radius * std::cos(angle)),
                              static_cast<float>(radius * std::sin(angle)));
        }
        const std::string name = std::to_string(count);
        shapes.push_back({"crossing" + name, crossing});
        shapes.push_back({"lattice" + name, lattice});
        shapes.push_back({"ring" + name, ring});
        shapes.push_back({"nearly horizontal" + name, Transformed(crossing, 1e6F, 3, 1e-4F, 7)});
        shapes.push_back({"few floats" + name, Transformed(ring, 40, 1e8F, 9, -1e8F)});
        shapes.push_back({"huge" + name, Transformed(crossing, 1e37F, 0, 1e30F, 1)});
        shapes.push_back({"tiny" + name, Transformed(lattice, 1e-41F, 0, 1e-41F, 0)});
    }
    return shapes;
}

/// Every edge as described, in drawing order.
class PolygonModel {
public:
    explicit PolygonModel(Points vertices) : vertices_(std::move(vertices)) {
        OVPloygon polygon;
        polygon.ConstructEigenValue(vertices_.data(), static_cast<int>(vertices_.size()));
        rect_ = polygon.GetMinRect();
    }

    bool IsInside(float x, float y) const {
        if (!rect_.InRect(x, y)) return false;
        bool inside = false;
        const OVPoint* from = &vertices_.back();
        for (const OVPoint& to : vertices_) {
            const float minY = from->y > to.y ? to.y : from->y;
            const float maxY = from->y > to.y ? from->y : to.y;
            const double slope = static_cast<double>((from->x - to.x) / (from->y - to.y));
            const double intercept = static_cast<double>(to.x) - static_cast<double>(to.y) * slope;
            const bool reaches = y >= minY && y < maxY;
            if (reaches && static_cast<double>(y) * slope + intercept > static_cast<double>(x))
                inside = !inside;
            from = &to;
        }
        return inside;
    }

private:
    Points vertices_;
    OVRect rect_;
};

/// Points all over the polygon, at its vertices, on its edges and next to all of these.
Points PointsOn(const Points& vertices, std::size_t count) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> part(-0.1F, 1.1F);
    const auto next = [&](float value) {
        const std::array<float, 3> choice{value, std::nextafter(value, -Infinity),
                                          std::nextafter(value, Infinity)};
        return choice[random() % 3];
    };
    Points points = PointsAround({0, 1}, 200, 3);
    while (points.size() < count) {
        const std::size_t i = random() % vertices.size();
        const OVPoint& a = vertices[i];
        const OVPoint& b = vertices[(i + 1) % vertices.size()];
        const OVPoint& c = vertices[random() % vertices.size()];
        const float t = part(random);
        points.emplace_back(next(a.x + t * (b.x - a.x)), next(a.y + t * (b.y - a.y)));
        points.emplace_back(a.x + t * (c.x - a.x), b.y + part(random) * (c.y - b.y));
        points.emplace_back(next(a.x), next(c.y));
    }
    return points;
}

TEST_P(GateTest, PolygonsAreTheWalkOverTheirEdges) {
    for (const Shape& shape : Shapes()) {
        SCOPED_TRACE(shape.Name);
        Points vertices = shape.Vertices;
        const int count = static_cast<int>(vertices.size());
        const PolygonModel model(vertices);
        const Points points = PointsOn(vertices, 2100);
        std::vector<float> xs;
        std::vector<float> ys;
        std::vector<bool> expected;
        for (const OVPoint& point : points) {
            xs.push_back(point.x);
            ys.push_back(point.y);
            expected.push_back(model.IsInside(point.x, point.y));
        }
        const int events = static_cast<int>(points.size());
        for (const int gridSize : {0, 1, 2, 13, 64, 128, 256}) {
            std::vector<std::uint32_t> words(points.size() / 32 + 1);
            const PolygonRule rule(vertices.data(), count, {gridSize});
            rule(xs.data(), ys.data(), events, {words.data()});
            for (std::size_t i = 0; i < 32 * words.size(); ++i)
                ASSERT_EQ((words[i / 32] >> (i % 32) & 1U) != 0, i < points.size() && expected[i])
                    << "grid " << gridSize << " at " << xs[i] << ' ' << ys[i];
        }
    }
}

TEST_P(GateTest, PolygonGatesFileSectionsOfAnySize) {
    for (const Shape& shape : Shapes()) {
        if (shape.Vertices.size() != 20 && shape.Vertices.size() != 300) continue;
        SCOPED_TRACE(shape.Name);
        Points vertices = shape.Vertices;
        const PolygonModel model(vertices);
        ExpectGate(
            PointsOn(vertices, 400), 1,
            [&](Signals& x, Signals& y, Results& r) {
                filter.Filter_Ploygon(x, y, r[0], vertices.data(), static_cast<int>(vertices.size()));
            },
            [&](float x, float y) { return model.IsInside(x, y) ? 0 : None; });
    }
}

// Hinged gates.

struct Axis {
    bool IsLog;
    float ScreenMin;
    float ScreenMax;
    float WorldMin;
    float WorldMax;
    float Alpha;
};

/// The formulas of the regions, through transformers of its own.
class HingedModel {
public:
    HingedModel(const Axis& x, const Axis& y, OVPoint centre, std::array<OVPoint, 4> arms)
        : axisX_(x), axisY_(y), centre_(centre), arms_(arms) {
        x_.reset(OVCoordinateTransformerXFactory::CreateTransformer(x.ScreenMin, x.ScreenMax, x.WorldMin,
                                                                    x.WorldMax, x.Alpha, x.IsLog, false));
        y_.reset(OVCoordinateTransformerYFactory::CreateTransformer(y.ScreenMin, y.ScreenMax, y.WorldMin,
                                                                    y.WorldMax, y.Alpha, y.IsLog, false));
    }

    Points Block() const {
        const auto flag = [](const Axis& axis) { return axis.IsLog ? -0.5F : 0.0F; };
        return {centre_,
                {NaN, NaN},
                {NaN, NaN},
                {NaN, NaN},
                {NaN, NaN},
                {flag(axisX_), axisX_.ScreenMin},
                {axisX_.ScreenMax, axisX_.WorldMin},
                {axisX_.WorldMax, axisX_.Alpha},
                {flag(axisY_), axisY_.ScreenMin},
                {axisY_.ScreenMax, axisY_.WorldMin},
                {axisY_.WorldMax, axisY_.Alpha},
                arms_[0],
                arms_[1],
                arms_[2],
                arms_[3]};
    }

    /// Arms 13 and 14.
    double ArmX(std::size_t arm, float y) const {
        const float screen = axisY_.IsLog ? y_->GetScreen_Log(y) : y_->GetScreen_Linear(y);
        const float s = screen * arms_[arm - 11].x + arms_[arm - 11].y;
        return axisX_.IsLog ? x_->GetWorld_Log(s) : x_->GetWorld_Linear(s);
    }
    /// Arms 11 and 12.
    double ArmY(std::size_t arm, float x) const {
        const float screen = axisX_.IsLog ? x_->GetScreen_Log(x) : x_->GetScreen_Linear(x);
        const float s = screen * arms_[arm - 11].x + arms_[arm - 11].y;
        return axisY_.IsLog ? y_->GetWorld_Log(s) : y_->GetWorld_Linear(s);
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
        const auto any = [&](const Axis& axis) {
            return axis.WorldMin + part(random) * (axis.WorldMax - axis.WorldMin);
        };
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

TEST_P(GateTest, HingedArmsAreStraightOnTheScreen) {
    const Axis axes[] = {{false, 0, 512, -100, 1000, 0},
                         {true, 0, 512, -1000, 262144, 150},
                         {true, 10.5F, 300.7F, -50, 50, 0.001F},
                         {true, 0, 512, -1, 1, 10},
                         {false, 0, 256, 1e8F, 1.00001e8F, 0},
                         {false, 512, 0, 0, 1000, 0},
                         {true, 0, 512, 1000, -1000, 10},
                         {true, 0, 512, 0, 1000, -10},
                         {true, 0, 512, 0, 1000, 0},
                         {false, 0, 100, 5, 5, 1}};
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
                return [&, count](Signals& x, Signals& y, Results& r) {
                    filter.Filter_Hinged_Fast(x, y, r[0], r[1], r[2], r[3], block.data(), count);
                };
            };
            ExpectGate(points, 4, fileAll(15), regionOf);
            ExpectGate(points, 4, fileAll(14), [](float, float) { return None; });
            const int wanted = static_cast<int>(seed % 6) - 1;
            ExpectGate(
                points, 1,
                [&](Signals& x, Signals& y, Results& r) {
                    filter.Filter_Hinged(x, y, r[0], block.data(), 15, wanted);
                },
                [&](float x, float y) { return wanted >= 0 && model.RegionOf(x, y) == wanted ? 0 : None; });
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
