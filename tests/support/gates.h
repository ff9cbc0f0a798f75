// Gates under test: whole operations run over points and compared, event by event, with a model.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include <orvane/OVFilter.h>

#include "tests/support/awkward.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"
#include "tests/support/population.h"

namespace Orvane::Testing {

inline constexpr float Infinity = std::numeric_limits<float>::infinity();
inline constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
inline constexpr int None = -1;
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
inline void ExpectGate(const Points& points, std::size_t outputs, const Operation& gate,
                       const Region& regionOf) {
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
/// Points whose coordinates are random, awkward, or at or next to one of `edges`.
inline Points PointsAround(const Floats& edges, int count, unsigned seed) {
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

}  // namespace Orvane::Testing
