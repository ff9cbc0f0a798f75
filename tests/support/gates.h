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
/// For every result of a gate, whether it holds the event at (x, y).
using Membership = std::vector<bool>;
using Model = std::function<Membership(float x, float y)>;

/// Owns the results of the gates under test.
struct Results : std::array<Filters, 17> {
    Results() = default;
    Results(const Results&) = delete;
    Results& operator=(const Results&) = delete;
    ~Results() {
        for (Filters& filters : *this)
            OVFilterSection().ReleaseVectorSection(filters);
    }
};
using Operation = std::function<void(Signals&, Signals&, Results&)>;

/// Runs gates over the points, packed and cut awkwardly; each result must hold the events the model gives it,
/// whatever it held before.
inline void ExpectGate(const Points& points, const Operation& gate, const Model& model) {
    Floats xs, ys;
    std::vector<Membership> expected;
    for (const OVPoint& point : points) {
        xs.push_back(point.x);
        ys.push_back(point.y);
        expected.push_back(model(point.x, point.y));
    }
    Results results;
    for (const auto cut : {Sample::Cut::Packed, Sample::Cut::Awkward}) {
        Sample x(xs, cut), y(ys, cut);
        for (Filters& filters : results)
            OVFilterSection().SetAllTrue(filters);
        gate(x.Sections, y.Sections, results);
        for (std::size_t r = 0; r < expected[0].size(); ++r) {
            ASSERT_EQ(results[r].size(), x.Sections.size());
            auto event = expected.begin();
            for (const FilterSection* section : results[r]) {
                int set = 0;
                for (int i = 0; i < section->Capacity; ++i) {
                    const bool isIn = i < section->Count && (*event++)[r];
                    set += static_cast<int>(isIn);
                    ASSERT_EQ(section->GetFlag(i), isIn)
                        << "result " << r << " at event " << event - expected.begin() - 1;
                }
                EXPECT_EQ(section->TrueCount, set);
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

/// The value, or the float on either side of it.
inline float Near(float value, std::mt19937& random) {
    return std::array{value, std::nextafter(value, -Infinity), std::nextafter(value, Infinity)}[random() % 3];
}

/// Points whose coordinates are random, awkward, or at or next to one of `edges`.
inline Points PointsAround(const Floats& edges, int count, unsigned seed) {
    std::mt19937 random(seed);
    const Floats xs = RandomFloats(count, seed), ys = RandomFloats(count, seed + 1);
    const auto any = [&](float value) {
        return random() % 4 == 0 ? value : Near(edges[random() % edges.size()], random);
    };
    Points points;
    for (std::size_t i = 0; i < xs.size(); ++i)
        points.emplace_back(any(xs[i]), any(ys[i]));
    return points;
}

}  // namespace Orvane::Testing
