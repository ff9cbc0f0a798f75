// Medians and the robust measures against sorting, over data that mislead a selection: equal values, few
// channels, ordered data, infinities, NaN.
#include <gtest/gtest.h>

#include <numeric>
#include <string>

#include <orvane/OVNthElementSection.h>
#include <orvane/OVStatisticsSignalSection.h>

#include "operations/statistics_rank_search.h"
#include "support/awkward.h"
#include "support/instruction_sets.h"
#include "support/pool.h"
#include "support/population.h"

namespace Orvane::Testing {
namespace {

OVStatisticsSignalSection statistics;

/// NaN above every number, zeros equal: the order of the medians.
Floats Sorted(Floats values) {
    std::sort(values.begin(), values.end(),
              [](float a, float b) { return std::isnan(b) ? !std::isnan(a) : a < b; });
    for (float& value : values)
        value += 0.0F;
    return values;
}

float MedianBySorting(const Floats& values) {
    if (values.empty()) return 0;
    const Floats sorted = Sorted(values);
    const std::size_t n = sorted.size();
    return static_cast<float>((static_cast<double>(sorted[(n - 1) / 2]) + sorted[n / 2]) * 0.5);
}

Floats Deviations(Floats values, float median) {
    for (float& x : values)
        x = x <= median ? median - x : x - median;
    return values;
}

float RobustSDBySorting(const Floats& values, float median) {
    return static_cast<float>(MedianBySorting(Deviations(values, median)) * 1.4826);
}

Floats Slice(const Floats& values, int first, int last) {
    return {values.begin() + first, values.begin() + last};
}

/// Data that mislead a selection, with their names.
std::vector<std::pair<std::string, Floats>> DataSets() {
    std::vector<std::pair<std::string, Floats>> sets;
    for (const int count : {0, 1, 2, 3, 4, 100, 2048, 2049, 20000, 70001})
        sets.emplace_back("random " + std::to_string(count), RandomFloats(count, count + 1U));
    const Floats many = RandomFloats(9000, 7);
    const auto add = [&](const char* name, float (*change)(float, int)) {
        Floats values = many;
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = change(values[i], static_cast<int>(i));
        sets.push_back({name, values});
    };
    add("equal", [](float, int) { return 7.0F; });
    add("two values, even split", [](float, int i) { return i % 2 == 0 ? 1.0F : 3.0F; });
    add("zeros of both signs", [](float, int i) { return i % 2 == 0 ? -0.0F : 0.0F; });
    add("channels", [](float, int i) { return static_cast<float>(i * 2654435761U >> 22); });
    add("four channels", [](float, int i) { return static_cast<float>(i * 2654435761U >> 30); });
    add("ascending", [](float, int i) { return static_cast<float>(i); });
    add("descending", [](float, int i) { return static_cast<float>(-i); });
    add("infinities", [](float, int i) { return i % 2 == 0 ? -Infinity : Infinity; });
    add("mostly negative infinity", [](float x, int i) { return i % 4 == 0 ? x : -Infinity; });
    add("all NaN", [](float, int) { return std::nanf(""); });
    add("one NaN", [](float x, int i) { return i == 99 ? std::nanf("") : std::isnan(x) ? 0.0F : x; });
    // What the search samples lies on one side of nearly everything.
    Floats positions(many.size());
    std::iota(positions.begin(), positions.end(), 0.0F);
    float sample[SampleRoom];
    const int sampled = DrawSample(std::vector<ValueSpan>{positions}, static_cast<int>(many.size()), sample);
    for (const float side : {-1e6F, 1e6F}) {
        sets.push_back({"misleading sample", positions});
        for (int i = 0; i < sampled; ++i)
            sets.back().second[static_cast<std::size_t>(sample[i])] += side;
    }
    add("half NaN", [](float, int i) { return i % 2 == 0 ? std::nanf("") : 1.0F; });
    return sets;
}

class OrderStatistics : public EverySet {};
INSTANTIATE_TEST_SUITE_P(Sets, OrderStatistics, ::testing::ValuesIn(AvailableInstructionSets()));

TEST_P(OrderStatistics, EqualWhatSortingGives) {
    for (const int capacity : {96, 65536}) {
        for (const auto& [name, values] : DataSets()) {
            SCOPED_TRACE(name);
            const SmallPool pool(capacity, 16);
            Sample sample(values);
            Gate gate(sample.Sections);
            OwnedSignals gated;
            statistics.BackupSignalSection(sample.Sections, gate.Sections, gated.Sections);
            EXPECT_EQ(Bits(gated.Values()), Bits(gate.Passing(values)));
            const float median = statistics.Median(sample.Sections);
            EXPECT_EQ(Bits({median}), Bits({MedianBySorting(values)}));

            const int n = static_cast<int>(values.size());
            const Floats sorted = Sorted(values);
            const auto at = [&](int tenThousandths) {
                return sorted[static_cast<std::size_t>(n * (tenThousandths / 1e4))];
            };
            const double spread = n == 0 ? 0.0 : (static_cast<double>(at(8413)) - at(1587)) * 0.5;
            EXPECT_EQ(Bits({statistics.CalcRSDForQC(sample.Sections)}), Bits({static_cast<float>(spread)}));

            OVSignalStatistics row;
            EXPECT_EQ(statistics.CalcStatistic_MorePara(sample.Sections, row), n > 0);
            const float robustSD = RobustSDBySorting(values, median);
            EXPECT_EQ(Bits({row.Median, row.RobustSD}), Bits({median, robustSD}));
            EXPECT_EQ(SortedBits(sample.Values()), SortedBits(values));

            EXPECT_EQ(Bits({statistics.RobustSD(sample.Sections, median)}), Bits({robustSD}));
            EXPECT_EQ(SortedBits(sample.Values()), SortedBits(Deviations(values, median)));
        }
    }
}

TEST_P(OrderStatistics, NeedNoStorageForTheMedian) {
    for (const auto& [name, values] : DataSets()) {
        SCOPED_TRACE(name);
        const SmallPool pool(96, 1);
        Sample sample(values);
        const FailingAllocator exhausted(1);
        EXPECT_EQ(Bits({statistics.Median(sample.Sections)}), Bits({MedianBySorting(values)}));
        EXPECT_EQ(SortedBits(sample.Values()), SortedBits(values));
    }
}

TEST_P(OrderStatistics, SeparateWithoutLosingAValueOrTheOrderOfTheParts) {
    const std::pair<float, float> bounds[] = {{-1000, 1000},      {0, 0},        {5, -5},
                                              {-Infinity, 3},     {0, Infinity}, {std::nanf(""), 1},
                                              {-FLT_MAX, FLT_MAX}};
    for (const auto& [name, values] : DataSets()) {
        if (values.size() > 9000) continue;
        for (const auto& [min, max] : bounds) {
            SCOPED_TRACE(name + " from " + std::to_string(min) + " to " + std::to_string(max));
            const SmallPool pool(4096, 16);
            Sample sample(values);
            OwnedSignals parts[4];
            auto& [p1, p2, p3, p4] = parts;
            statistics.BackupAndSeparateSection_4Part(sample.Sections, min, max, p1.Sections, p2.Sections,
                                                      p3.Sections, p4.Sections);
            EXPECT_EQ(Bits({statistics.CalcMedian_4Part(p1.Sections, p2.Sections, p3.Sections, p4.Sections)}),
                      Bits({MedianBySorting(values)}));

            int end[] = {0, 0, 0, static_cast<int>(values.size())};
            statistics.SeparateSection_4Part(sample.Sections, min, max, end[0], end[1], end[2]);
            const Floats separated = sample.Values();
            EXPECT_EQ(SortedBits(separated), SortedBits(values));
            for (int part = 0; part < 4; ++part) {
                const Floats inPlace = Slice(separated, part == 0 ? 0 : end[part - 1], end[part]);
                EXPECT_EQ(SortedBits(inPlace), SortedBits(parts[part].Values()));
            }

            OwnedSignals lower, upper;
            statistics.BackupAndSeparateSection(sample.Sections, max, lower.Sections, upper.Sections);
            EXPECT_EQ(
                static_cast<long>(lower.Values().size()),
                std::count_if(separated.begin(), separated.end(), [m = max](float x) { return x < m; }));
            EXPECT_EQ(Bits({statistics.CalcMedian_2Part(lower.Sections, upper.Sections)}),
                      Bits({MedianBySorting(values)}));
        }
    }
}

TEST_P(OrderStatistics, OfSelectedValuesLeaveTheDataAlone) {
    for (const auto& [name, values] : DataSets()) {
        SCOPED_TRACE(name);
        Sample sample(values);
        Floats below = values, within = values;
        std::erase_if(below, [](float x) { return !(x < 3.0F); });
        std::erase_if(within, [](float x) { return !(x >= -100.0F && x <= 3.0F); });
        float sd = 5;
        EXPECT_EQ(statistics.RobustSD_LessMinValue(sample.Sections, 3.0F, sd), !below.empty());
        EXPECT_EQ(Bits({sd}),
                  Bits({below.empty() ? 0.0F : RobustSDBySorting(below, MedianBySorting(below))}));

        EXPECT_EQ(Bits({statistics.RobustSD(sample.Sections, -100.0F, 3.0F)}),
                  Bits({RobustSDBySorting(within, MedianBySorting(within))}));
        EXPECT_EQ(Bits(sample.Values()), Bits(values));
    }
}

TEST(NthElement, PartitionsItsRangeAndLeavesTheRestAlone) {
    std::mt19937 random(5);
    for (const auto& [name, values] : DataSets()) {
        SCOPED_TRACE(name);
        const int count = static_cast<int>(values.size());
        const SmallPool pool(96, 16);
        for (int round = 0; round < 5 && count > 0; ++round) {
            const auto below = [&](int bound) {
                return static_cast<int>(random() % static_cast<unsigned>(bound));
            };
            const int first = round == 0 ? 0 : below(count);
            const int last = round == 0 ? count : first + 1 + below(count - first);
            const int nth = first + below(last - first);
            Sample sample(values);
            OVNthElementSection selection(round == 1 ? 1 << 30 : 16);
            EXPECT_TRUE(std::isnan(selection.Nth_Element(sample.Sections, first, last, last)));
            EXPECT_TRUE(std::isnan(selection.Nth_Element(sample.Sections, first, nth, count + 1)));
            EXPECT_EQ(Bits(sample.Values()), Bits(values));
            const float found = selection.Nth_Element(sample.Sections, first, nth, last);

            const Floats after = sample.Values();
            const Floats sorted = Sorted(Slice(values, first, last));
            const auto rank = static_cast<std::size_t>(nth - first);
            EXPECT_EQ(Bits({found}), Bits({sorted[rank]}));
            EXPECT_EQ(Bits(Sorted(Slice(after, first, nth))), Bits(Slice(sorted, 0, nth - first)));
            EXPECT_EQ(Bits(Sorted(Slice(after, nth, last))), Bits(Slice(sorted, nth - first, last - first)));
            EXPECT_EQ(SortedBits(Slice(after, first, last)), SortedBits(Slice(values, first, last)));
            EXPECT_EQ(Bits(Slice(after, 0, first)), Bits(Slice(values, 0, first)));
            EXPECT_EQ(Bits(Slice(after, last, count)), Bits(Slice(values, last, count)));
            EXPECT_EQ(Bits({selection.Min(sample.Sections, nth, last)}), Bits({sorted[rank]}));
        }
    }
}

}  // namespace
}  // namespace Orvane::Testing
