// Population statistics against the sums in their stated order, gated forms against extracting and the plain
// form, copies against models. Order statistics against sorting, over data that mislead a selection: equal
// values, few channels, ordered data, infinities, NaN.
#include <gtest/gtest.h>

#include <iterator>
#include <numeric>
#include <string>

#include <orvane/OVNthElementSection.h>
#include <orvane/OVStatisticsSignalSection.h>

#include "operations/statistics_kernels.h"
#include "operations/statistics_moments.h"
#include "operations/statistics_rank_search.h"
#include "support/awkward.h"
#include "support/instruction_sets.h"
#include "support/pool.h"
#include "support/population.h"

namespace Orvane::Testing {
namespace {

OVStatisticsSignalSection statistics;

Floats FiniteFloats(int count, unsigned seed) {
    Floats values = RandomFloats(count, seed);
    std::replace_if(
        values.begin(), values.end(), [](float x) { return !(std::fabs(x) < 1e30F); }, 17.0F);
    return values;
}

Floats RangeOf(const Floats& values) {
    Floats range{FLT_MAX, -FLT_MAX};
    for (const float value : values)
        range = {std::min(range[0], value), std::max(range[1], value)};
    return range;
}

double Value(float value) {
    return value;
}

auto SquareFrom(float mean) {
    return [mean](float value) { return static_cast<double>(value - mean) * (value - mean); };
}

template <class Term>
double SumInOrder(std::span<const float> values, Term term) {
    double sum = 0;
    for (const float value : values)
        sum += term(value);
    return sum;
}

/// The sum of every section in order, added to that of the ones before.
template <class Term>
double SumInSections(const Sample& sample, Term term) {
    double total = 0;
    for (const SignalSection* section : sample.Sections)
        total += SumInOrder(SpanOf(*section), term);
    return total;
}

class Statistics : public OnEverySet<96> {};
INSTANTIATE_TEST_SUITE_P(Sets, Statistics, ::testing::ValuesIn(AvailableInstructionSets()));

TEST_P(Statistics, SumEveryColumnInItsOrder) {
    const Floats values = FiniteFloats(4000, 3);
    for (const int columns : {1, 2, 3, 5, 8, 9, 40}) {
        std::mt19937 random(static_cast<unsigned>(columns));
        std::vector<std::span<const float>> spans;
        std::vector<double> sums, squares;
        for (int c = 0; c < columns; ++c) {
            const std::size_t length = c == 3 ? 0 : random() % 3 == 0 ? 1000 : random() % 200;
            spans.emplace_back(values.data() + random() % 100, length);
            sums.push_back(SumInOrder(spans.back(), Value));
            squares.push_back(SumInOrder(spans.back(), SquareFrom(12.5F)));
        }
        std::vector<double> result(spans.size());
        SumColumns(spans, result.data());
        EXPECT_EQ(result, sums);
        SumSquaresOfColumns(spans, 12.5F, result.data());
        EXPECT_EQ(result, squares);
    }
}

TEST_P(Statistics, OfMomentsFollowTheirFormulas) {
    for (const int count : {0, 1, 2, 65, 97, 98, 500, 3000}) {
        SCOPED_TRACE(count);
        Sample sample(FiniteFloats(count, 11));
        const double total = SumInSections(sample, Value);
        const auto mean = static_cast<float>(total / count);
        const double squares = SumInSections(sample, SquareFrom(mean));
        const float sd = count == 1 ? 0.0F : static_cast<float>(std::sqrt(squares / (count - 1)));
        // Floats would hide most changes of order.
        EXPECT_EQ(SumOf(Population(sample.Sections)).Sum, total);
        EXPECT_EQ(SumOfSquares(Population(sample.Sections), mean).Sum, squares);
        OVSignalStatistics row;
        Floats r(3), range(2);
        EXPECT_EQ(statistics.CalcStatistic_AverageCVSD(sample.Sections, r[0], r[1], r[2]), count > 0);
        EXPECT_EQ(Bits(r), Bits({mean, std::fabs(sd / mean), sd}));
        statistics.CalcStatistic_MorePara(sample.Sections, row);
        EXPECT_EQ(row.Count, count);
        EXPECT_EQ(Bits({row.Average, row.SD, row.CV}), Bits({mean, sd, sd / mean}));
        r = {statistics.Average(sample.Sections), statistics.SD(sample.Sections),
             statistics.CV(sample.Sections)};
        EXPECT_EQ(Bits(r), Bits({mean, sd, sd / mean}));
        EXPECT_EQ((Floats{row.Min, row.Max}), RangeOf(sample.Values()));
        statistics.FindMinMax(sample.Sections, range[0], range[1]);
        EXPECT_EQ(range, (Floats{std::min(0.0F, row.Min), std::max(0.0F, row.Max)}));
    }
}

TEST_P(Statistics, OfRangesDifferInWhatTheyPassOver) {
    const float nan = std::nanf("");
    struct Row {
        Floats Values, Actual, Real;
    };
    for (const auto& [values, actual, real] :
         {Row{{2, -1, nan, 5}, {-1, 5}, {-1, 5}}, Row{{2, -Infinity, nan}, {-Infinity, 2}, {2, 2}},
          Row{{Infinity, nan}, {Infinity, Infinity}, {0, 0}}, Row{{nan}, {0, 0}, {0, 0}},
          Row{{}, {0, 0}, {0, 0}}}) {
        Sample sample(values);
        Floats range{9, 9};
        EXPECT_EQ(statistics.CalcStatistic_ActualMinMax(sample.Sections, range[0], range[1]),
                  actual != Floats({0, 0}));
        EXPECT_EQ(range, actual);
        range = {statistics.GetMinValue(sample.Sections), statistics.GetMaxValue(sample.Sections)};
        EXPECT_EQ(range, actual);
        EXPECT_EQ(statistics.CalcStatistic_RealMinMax(sample.Sections, range[0], range[1]),
                  real != Floats({0, 0}));
        EXPECT_EQ(range, real);
    }
}

/// What the operations with a gated form yield on a population: sections alone, or sections and filters.
template <class... Population>
Floats RunAll(Population&... population) {
    Floats all;
    const auto add = [&](auto... numbers) { (all.push_back(static_cast<float>(numbers)), ...); };
    int counts[3] = {};
    float r[13] = {};
    double offsets[] = {0.5, -1.5, 3};
    OVSignalStatistics row, peak;
    statistics.FindMinMax(population..., r[0], r[1]);
    add(statistics.Average(population..., counts[0], r[2], r[3]),
        statistics.Average(population..., counts[1]),
        statistics.CalcStatistic_ActualMinMax(population..., r[4], r[5]),
        statistics.CalcStatistic_RealMinMax(population..., r[6], r[7]),
        statistics.CalcStatistic_AverageCVSD(population..., r[8], r[9], r[10]),
        statistics.CalcStatistic_Average_Median(population..., r[11], r[12]),
        statistics.CalcStatistic_MorePara(population..., row),
        statistics.CalcStatistic_MoreParaQC(population..., 2.5F, peak, counts[2]),
        statistics.SD(population...), statistics.SD(population..., 3.5F), statistics.CV(population...));
    for (const OVSignalStatistics& s : {row, peak})
        add(s.Count, s.Min, s.Max, s.Average, s.Median, s.SD, s.CV, s.RobustSD, s.RobustCV);
    all.insert(all.end(), std::begin(counts), std::end(counts));
    all.insert(all.end(), std::begin(r), std::end(r));
    OwnedSignals copies[3];
    statistics.BackupSignalSection(population..., copies[0].Sections);
    statistics.GetRandomDatas(population..., 30, 5U, copies[1].Sections);
    statistics.GenerateVirtualVectorSignalSection(population..., offsets, 3, copies[2].Sections);
    for (const OwnedSignals& copy : copies) {
        const Floats values = copy.Values();
        add(copy.Sections.size());
        all.insert(all.end(), values.begin(), values.end());
    }
    add(statistics.CalcRSDForQC(population...));
    return all;
}

TEST_P(Statistics, OfAGateAreThoseOfItsExtractedValues) {
    for (const int count : {0, 1, 100, 3000, 20000}) {
        for (const unsigned density : {0U, 1U, 5U, 8U}) {
            SCOPED_TRACE(::testing::Message() << count << " values, density " << density);
            const Floats values = count == 3000 ? RandomFloats(count, 4) : FiniteFloats(count, 4);
            Sample sample(values);
            Gate gate(sample.Sections, 9, density);
            Sample packed(gate.Passing(values), Sample::Cut::Packed);
            const Total sum = SumOf(Population(sample.Sections, gate.Sections));
            EXPECT_TRUE(std::isnan(sum.Sum) || sum.Sum == SumOf(Population(packed.Sections)).Sum);
            EXPECT_EQ(Bits(RunAll(sample.Sections, gate.Sections)), Bits(RunAll(packed.Sections)));
            EXPECT_EQ(Bits(sample.Values()), Bits(values));
        }
    }
}

TEST_P(Statistics, OfAPeakLeaveOutliersOut) {
    Floats values(200, 10.0F);
    for (std::size_t i = 0; i < 100; ++i)
        values[i] = i % 2 == 0 ? 9.0F : 11.0F;
    values.insert(values.end(), {1000.0F, -1000.0F, std::nanf("")});
    Sample sample(values);
    OVSignalStatistics row;
    int rejected = 0;
    EXPECT_TRUE(statistics.CalcStatistic_MoreParaQC(sample.Sections, 3, row, rejected));
    EXPECT_EQ(rejected, 3);
    EXPECT_EQ((Floats{row.Min, row.Max, row.Average}), (Floats{9, 11, 10}));
    EXPECT_FALSE(statistics.CalcStatistic_MoreParaQC(sample.Sections, -1, row, rejected));
    EXPECT_EQ(rejected, 203);
}

TEST_P(Statistics, InPlaceAndOverPartsEqualTheRow) {
    Sample sample(FiniteFloats(5000, 8));
    OVSignalStatistics row;
    statistics.CalcStatistic_MorePara(sample.Sections, row);

    OwnedSignals parts[4];
    auto& [p1, p2, p3, p4] = parts;
    int count = 0;
    float min = 0, max = 0;
    EXPECT_EQ(statistics.Average_BackupAndSeparateSection_4Part(sample.Sections, count, min, max, p1.Sections,
                                                                p2.Sections, p3.Sections, p4.Sections),
              row.Average);
    EXPECT_EQ(count, row.Count);
    OwnedSignals lower, upper;
    EXPECT_EQ(statistics.Average_BackupAndSeparateSection_2Part(sample.Sections, count, min, max,
                                                                lower.Sections, upper.Sections),
              row.Average);
    EXPECT_LT(RangeOf(lower.Values())[1], row.Average);
    EXPECT_GE(RangeOf(upper.Values())[0], row.Average);
    EXPECT_EQ(p1.Values().size() + p2.Values().size(), lower.Values().size());
    EXPECT_EQ(p3.Values().size() + p4.Values().size(), upper.Values().size());
    OVSignalStatistics overParts;
    EXPECT_TRUE(statistics.CalcStatistic_MorePara_4Part(p1.Sections, p2.Sections, p3.Sections, p4.Sections,
                                                        overParts));
    EXPECT_EQ((Floats{overParts.Median, overParts.RobustSD, overParts.Min, overParts.Max}),
              (Floats{row.Median, row.RobustSD, row.Min, row.Max}));
    EXPECT_TRUE(
        statistics.CalcActual_4Part(p1.Sections, p2.Sections, p3.Sections, p4.Sections, count, min, max));
    EXPECT_EQ((Floats{static_cast<float>(count), min, max}), (Floats{5000, row.Min, row.Max}));

    Floats r(4);
    EXPECT_TRUE(statistics.CalcStatistic_AverageMedianRCVRSD(sample.Sections, r[0], r[1], r[2], r[3]));
    EXPECT_EQ(r, (Floats{row.Average, row.Median, row.RobustCV, row.RobustSD}));
    EXPECT_EQ(statistics.RobustCV(sample.Sections, 0.0F), 0.0F);
}

TEST_P(Statistics, ExpandEveryValueIntoItsVirtualOnes) {
    double offsets[] = {1, -0.25, 1e20, 3};
    for (const int n : {0, 1, 4}) {
        for (const int count : {0, 48, 96, 500}) {
            Sample sample(RandomFloats(count, 2));
            Floats expected;
            for (const float v : sample.Values()) {
                expected.push_back(v);
                for (int k = 0; k < n; ++k)
                    expected.push_back(
                        static_cast<float>(static_cast<double>(std::sqrt(std::fabs(v))) * offsets[k] + v));
            }
            OwnedSignals out;
            statistics.GenerateVirtualVectorSignalSection(sample.Sections, offsets, n, out.Sections);
            EXPECT_EQ(Bits(out.Values()), Bits(expected));
            // The section behind a full one is fetched at once.
            EXPECT_EQ(out.Sections.size(), expected.size() / 96 + 1);
        }
    }
}

TEST_P(Statistics, CopyBelowAThresholdIntoSectionsThatAreReused) {
    Sample sample(RandomFloats(1000, 6));
    OwnedSignals out;
    statistics.BackupSignalSection(sample.Sections, out.Sections);
    EXPECT_EQ(Bits(out.Values()), Bits(sample.Values()));
    const std::size_t sections = out.Sections.size();
    for (const float threshold : {-Infinity, 0.0F, 1e9F, std::nanf("")}) {
        Floats expected = sample.Values();
        std::erase_if(expected, [&](float value) { return !(value < threshold); });
        Floats range(2);
        statistics.BackupSignalSection_LessMinValue(sample.Sections, threshold, out.Sections, range[0],
                                                    range[1]);
        Floats copied = out.Values();
        copied.resize(expected.size());
        EXPECT_EQ(Bits(copied), Bits(expected));
        EXPECT_EQ(range, RangeOf(expected));
        EXPECT_EQ(out.Sections[expected.size() / 96]->Count, static_cast<int>(expected.size() % 96));
        EXPECT_EQ(out.Sections.size(), sections);
    }
}

TEST_P(Statistics, PickAtRandomWithoutFavour) {
    Floats values(200);
    std::iota(values.begin(), values.end(), 0.0F);
    Sample sample(values);
    Counts picks(values.size());
    for (unsigned seed = 0; seed < 400; ++seed) {
        OwnedSignals out;
        statistics.GetRandomDatas(sample.Sections, 50, seed, out.Sections);
        const Floats picked = out.Values();
        EXPECT_EQ(picked.size(), 50U);
        EXPECT_TRUE(std::is_sorted(picked.begin(), picked.end()));
        for (const float value : picked)
            ++picks[static_cast<std::size_t>(value)];
    }
    // 100 expected, with a standard deviation of 8.7.
    const auto [least, most] = std::minmax_element(picks.begin(), picks.end());
    EXPECT_TRUE(*least > 60 && *most < 140) << *least << ' ' << *most;
    OwnedSignals all;
    statistics.GetRandomDatas(sample.Sections, 1000, 1, all.Sections);
    EXPECT_EQ(all.Values(), values);
}

TEST(StatisticsWithoutStorage, LoseNothing) {
    const Floats values = FiniteFloats(3000, 12);
    const auto operation = [&] {
        Sample sample(values);
        Gate gate(sample.Sections);
        statistics.RobustSD(sample.Sections, -1e5F, 1e5F);
        OwnedSignals parts[4];
        auto& [p1, p2, p3, p4] = parts;
        int count = 0;
        float min = 0, max = 0;
        statistics.Average_BackupAndSeparateSection_4Part(sample.Sections, count, min, max, p1.Sections,
                                                          p2.Sections, p3.Sections, p4.Sections);
        RunAll(sample.Sections, gate.Sections);
    };
    ForEachFailingAllocation(operation, 1024);
}

// ---- Order statistics

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
