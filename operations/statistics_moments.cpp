// Mean, standard deviation, coefficient of variation and range.
#include "operations/statistics_moments.h"

#include <cfloat>
#include <cmath>
#include <memory>
#include <numeric>

#include <orvane/OVFilterSection.h>
#include <orvane/OVNthElementSection.h>
#include <orvane/OVStatisticsSignalSection.h>

#include "operations/statistics_kernels.h"
#include "sections/kernels.h"

namespace Orvane {
namespace {

// A sum over runs of values with the partial sums that sections packed with them would have.
class PackedTotal {
public:
    /// `add(run, sum)` is `sum` with the values of `run` added.
    template <class Add>
    void AddRun(ValueSpan run, Add add) {
        while (!run.empty()) {
            const auto count = std::min(run.size(), static_cast<std::size_t>(room_));
            partial_ = add(run.first(count), partial_);
            count_ += static_cast<int>(count);
            room_ -= static_cast<int>(count);
            if (room_ == 0) ClosePartialSum();
            run = run.subspan(count);
        }
    }

    Total Close() {
        ClosePartialSum();
        return {sum_, count_};
    }

private:
    void ClosePartialSum() {
        sum_ += partial_;
        partial_ = 0;
        room_ = MemoryManage::GetCapacity();
    }

    double sum_ = 0;
    double partial_ = 0;
    int room_ = MemoryManage::GetCapacity();
    int count_ = 0;
};

template <class Add>
Total TotalOfRuns(const Population& population, Add add) {
    PackedTotal total;
    population.ForEachRun([&](ValueSpan run) { total.AddRun(run, add); });
    return total.Close();
}

// `sumColumns(spans, sums)` stores the sum of every span.
template <class SumColumns>
Total TotalOfSections(const SignalSections& sections, SumColumns sumColumns) {
    const std::vector<ValueSpan> spans = SpansOf(sections);
    std::vector<double> sums(spans.size());
    sumColumns(spans, sums.data());
    Total total{std::accumulate(sums.begin(), sums.end(), 0.0), 0};
    for (const ValueSpan& span : spans)
        total.Count += static_cast<int>(span.size());
    return total;
}

}  // namespace

Total SumOf(const Population& population) {
    if (population.IsGated()) return TotalOfRuns(population, AddValues);
    return TotalOfSections(population.Sections(), SumColumns);
}

Total SumOfSquares(const Population& population, float mean) {
    if (population.IsGated()) {
        return TotalOfRuns(population,
                           [mean](ValueSpan run, double sum) { return AddSquares(run, mean, sum); });
    }
    return TotalOfSections(population.Sections(), [mean](const std::vector<ValueSpan>& spans, double* sums) {
        SumSquaresOfColumns(spans, mean, sums);
    });
}

float MeanOf(Total total) {
    return static_cast<float>(total.Sum / total.Count);
}

float DeviationOf(Total squares) {
    if (squares.Count == 1) return 0;
    return static_cast<float>(std::sqrt(squares.Sum / (squares.Count - 1)));
}

void WidenTo(const Population& population, float& min, float& max) {
    population.ForEachRun(
        [&](ValueSpan run) { FindMaxAndMin(run.data(), static_cast<int>(run.size()), max, min); });
}

bool FindRange(const Population& population, float& min, float& max) {
    min = Infinity;
    max = -Infinity;
    WidenTo(population, min, max);
    if (min <= max) return true;
    min = max = 0;
    return false;
}

namespace {

float MeanAndRange(const Population& population, int& count, float& min, float& max) {
    min = FLT_MAX;
    max = -FLT_MAX;
    WidenTo(population, min, max);
    const Total total = SumOf(population);
    count = total.Count;
    return MeanOf(total);
}

// The range of the finite values; false, with zeros, when there is none.
bool FindFiniteRange(const Population& population, float& min, float& max) {
    min = Infinity;
    max = -Infinity;
    population.ForEachRunInRange(AsItStands{}, {-FLT_MAX, FLT_MAX}, [&](ValueSpan run) {
        FindMaxAndMin(run.data(), static_cast<int>(run.size()), max, min);
    });
    if (min <= max) return true;
    min = max = 0;
    return false;
}

}  // namespace

OVStatisticsSignalSection::OVStatisticsSignalSection() {
    auto nthElement = std::make_unique<OVNthElementSection>(16);
    auto signals = std::make_unique<OVSignalSection>();
    filterSection_ = new OVFilterSection;
    nthElementSection_ = nthElement.release();
    signalSection_ = signals.release();
}

OVStatisticsSignalSection::~OVStatisticsSignalSection() {
    delete filterSection_;
    delete signalSection_;
    delete nthElementSection_;
}

float OVStatisticsSignalSection::Average(SignalSections& sections, FilterSections& filters, int& count,
                                         float& min, float& max) {
    return MeanAndRange(Population(sections, filters), count, min, max);
}

float OVStatisticsSignalSection::Average(SignalSections& sections, FilterSections& filters, int& count) {
    const Total total = SumOf(Population(sections, filters));
    count = total.Count;
    return MeanOf(total);
}

float OVStatisticsSignalSection::Average(SignalSections& sections, int& count, float& min, float& max) {
    return MeanAndRange(Population(sections), count, min, max);
}

float OVStatisticsSignalSection::Average(SignalSections& sections, int& count) {
    const Total total = SumOf(Population(sections));
    count = total.Count;
    return MeanOf(total);
}

float OVStatisticsSignalSection::Average(SignalSections& sections) {
    int count = 0;
    return Average(sections, count);
}

float OVStatisticsSignalSection::SD(SignalSections& sections, FilterSections& filters, float mean) {
    return DeviationOf(SumOfSquares(Population(sections, filters), mean));
}

float OVStatisticsSignalSection::SD(SignalSections& sections, float mean) {
    return DeviationOf(SumOfSquares(Population(sections), mean));
}

float OVStatisticsSignalSection::SD(SignalSections& sections) {
    int count = 0;
    return SD(sections, Average(sections, count));
}

float OVStatisticsSignalSection::SD(SignalSections& sections, FilterSections& filters) {
    int count = 0;
    return SD(sections, filters, Average(sections, filters, count));
}

float OVStatisticsSignalSection::CV(SignalSections& sections, FilterSections& filters) {
    int count = 0;
    return SD(sections, filters) / Average(sections, filters, count);
}

float OVStatisticsSignalSection::CV(SignalSections& sections) {
    int count = 0;
    return SD(sections) / Average(sections, count);
}

bool OVStatisticsSignalSection::CalcStatistic_AverageCVSD(SignalSections& sections, FilterSections& filters,
                                                          float& average, float& cv, float& sd) {
    int count = 0;
    average = Average(sections, filters, count);
    sd = SD(sections, filters, average);
    cv = std::fabs(sd / average);
    return count > 0;
}

bool OVStatisticsSignalSection::CalcStatistic_AverageCVSD(SignalSections& sections, float& average, float& cv,
                                                          float& sd) {
    int count = 0;
    float min = 0;
    float max = 0;
    average = Average(sections, count, min, max);
    sd = SD(sections, average);
    cv = std::fabs(sd / average);
    return count > 0;
}

void OVStatisticsSignalSection::FindMinMax(SignalSections& sections, FilterSections& filters, float& min,
                                           float& max) {
    WidenTo(Population(sections, filters), min, max);
}

void OVStatisticsSignalSection::FindMinMax(SignalSections& sections, float& min, float& max) {
    WidenTo(Population(sections), min, max);
}

bool OVStatisticsSignalSection::CalcStatistic_ActualMinMax(SignalSections& sections, FilterSections& filters,
                                                           float& min, float& max) {
    return FindRange(Population(sections, filters), min, max);
}

bool OVStatisticsSignalSection::CalcStatistic_ActualMinMax(SignalSections& sections, float& min, float& max) {
    return FindRange(Population(sections), min, max);
}

bool OVStatisticsSignalSection::CalcStatistic_RealMinMax(SignalSections& sections, FilterSections& filters,
                                                         float& min, float& max) {
    return FindFiniteRange(Population(sections, filters), min, max);
}

bool OVStatisticsSignalSection::CalcStatistic_RealMinMax(SignalSections& sections, float& min, float& max) {
    return FindFiniteRange(Population(sections), min, max);
}

float OVStatisticsSignalSection::GetMaxValue(SignalSections& sections) {
    float min = 0;
    float max = 0;
    FindRange(Population(sections), min, max);
    return max;
}

float OVStatisticsSignalSection::GetMinValue(SignalSections& sections) {
    float min = 0;
    float max = 0;
    FindRange(Population(sections), min, max);
    return min;
}

}  // namespace Orvane
