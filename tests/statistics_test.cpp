// Population statistics against the sums in their stated order, gated forms against extracting and the plain
// form, copies against models.
#include <gtest/gtest.h>

#include <iterator>
#include <numeric>

#include <orvane/OVStatisticsSignalSection.h>

#include "operations/statistics_kernels.h"
#include "operations/statistics_moments.h"
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

}  // namespace
}  // namespace Orvane::Testing
