// Copies of populations, whole or separated into parts by value, and medians over such parts.
#include <cfloat>

#include <orvane/OVNthElementSection.h>
#include <orvane/OVStatisticsSignalSection.h>

#include "operations/statistics_moments.h"
#include "operations/statistics_order.h"
#include "operations/value_sequence.h"
#include "sections/kernels.h"

namespace Orvane {
namespace {

void CopyAll(OVSignalSection& signals, const Population& population, SignalSections& out) {
    PackedWriter writer(signals, out);
    population.ForEachRun([&](ValueSpan run) { writer.Append(run); });
}

// Ascending borders of four parts.
struct PartBorders {
    float First;
    float Second;
    float Third;
};

// A border that bounds in the wrong order would bring below the one before it is moved up to that. NaN, which
// infinite bounds give, stays and leaves everything to the last part.
PartBorders Ascending(double first, double second, double third) {
    PartBorders borders{static_cast<float>(first), static_cast<float>(second), static_cast<float>(third)};
    borders.Second = std::max(borders.First, borders.Second);
    borders.Third = std::max(borders.Second, borders.Third);
    return borders;
}

PartBorders QuarterBorders(float min, float max) {
    const double low = min;
    const double width = max - low;
    return Ascending(low + width * 0.25, low + width * 0.5, low + width * 0.75);
}

template <class Form>
void CopyInFourParts(OVSignalSection& signals, SignalSections& sections, Form form, PartBorders borders,
                     SignalSections& part1, SignalSections& part2, SignalSections& part3,
                     SignalSections& part4) {
    struct Part {
        ValueRange Range;
        PackedWriter Writer;
    };
    Part parts[] = {{Below(borders.First), {signals, part1}},
                    {HalfOpen(borders.First, borders.Second), {signals, part2}},
                    {HalfOpen(borders.Second, borders.Third), {signals, part3}},
                    {NotBelow(borders.Third), {signals, part4}}};
    float kept[Population::MaxRun];
    Population(sections).ForEachRun([&](ValueSpan run) {
        for (Part& part : parts) {
            const Gathered gathered = GatherInRange(run, form, part.Range, kept);
            part.Writer.Append({kept, static_cast<std::size_t>(gathered.Kept)});
        }
    });
}

using PartList = std::initializer_list<SignalSections*>;

// The median of parts that ascend by value.
float MedianOfParts(OVSignalSection& signals, OVNthElementSection& nthElement, PartList parts) {
    int total = 0;
    for (SignalSections* part : parts)
        total += static_cast<int>(signals.GetTotalCount(*part));
    if (total == 0) return 0;
    Ranks ranks = MiddleRanks(total);
    RankedValues middle{0, 0};
    for (SignalSections* part : parts) {
        const int count = static_cast<int>(signals.GetTotalCount(*part));
        const bool holdsFirst = ranks.First >= 0 && ranks.First < count;
        const bool holdsSecond = ranks.Second >= 0 && ranks.Second < count;
        if (holdsFirst && holdsSecond) return MedianOf(FindOrReorder(nthElement, *part, count, ranks));
        if (holdsFirst)
            middle.First = FindOrReorder(nthElement, *part, count, {ranks.First, ranks.First}).First;
        if (holdsSecond) middle.Second = nthElement.Min(*part, 0, count);
        ranks = {ranks.First - count, ranks.Second - count};
    }
    return MedianOf(middle);
}

}  // namespace

void OVStatisticsSignalSection::BackupSignalSection(SignalSections& sections, FilterSections& filters,
                                                    SignalSections& out) {
    CopyAll(*signalSection_, Population(sections, filters), out);
}

void OVStatisticsSignalSection::BackupSignalSection(SignalSections& sections, SignalSections& out) {
    CopyAll(*signalSection_, Population(sections), out);
}

void OVStatisticsSignalSection::BackupSignalSection_LessMinValue(SignalSections& sections, float threshold,
                                                                 SignalSections& out, float& min,
                                                                 float& max) {
    min = FLT_MAX;
    max = -FLT_MAX;
    PackedWriter writer(*signalSection_, out);
    Population(sections).ForEachRunInRange(AsItStands{}, Below(threshold), [&](ValueSpan run) {
        FindMaxAndMin(run.data(), static_cast<int>(run.size()), max, min);
        writer.Append(run);
    });
}

void OVStatisticsSignalSection::BackupAndSeparateSection(SignalSections& sections, float border,
                                                         SignalSections& lower, SignalSections& upper) {
    CopyRange(*signalSection_, Population(sections), Below(border), lower);
    CopyRange(*signalSection_, Population(sections), NotBelow(border), upper);
}

void OVStatisticsSignalSection::BackupAndSeparateSection_4Part(SignalSections& sections, float min, float max,
                                                               SignalSections& part1, SignalSections& part2,
                                                               SignalSections& part3, SignalSections& part4) {
    CopyInFourParts(*signalSection_, sections, AsItStands{}, QuarterBorders(min, max), part1, part2, part3,
                    part4);
}

float OVStatisticsSignalSection::Average_BackupAndSeparateSection_2Part(SignalSections& sections, int& count,
                                                                        float& min, float& max,
                                                                        SignalSections& lower,
                                                                        SignalSections& upper) {
    const float average = Average(sections, count, min, max);
    BackupAndSeparateSection(sections, average, lower, upper);
    return average;
}

float OVStatisticsSignalSection::Average_BackupAndSeparateSection_4Part(
    SignalSections& sections, int& count, float& min, float& max, SignalSections& part1,
    SignalSections& part2, SignalSections& part3, SignalSections& part4) {
    const float average = Average(sections, count, min, max);
    const double middle = average;
    CopyInFourParts(*signalSection_, sections, AsItStands{},
                    Ascending((min + middle) * 0.5, middle, (middle + max) * 0.5), part1, part2, part3,
                    part4);
    return average;
}

void OVStatisticsSignalSection::DifferenceMedianAndSeparateSection_4Part(
    SignalSections& sections, float median, float min, float max, SignalSections& part1,
    SignalSections& part2, SignalSections& part3, SignalSections& part4) {
    const float largest = std::max(median - min, max - median);
    CopyInFourParts(*signalSection_, sections, DeviationFrom{median}, QuarterBorders(0, largest), part1,
                    part2, part3, part4);
}

void OVStatisticsSignalSection::SeparateSection_4Part(SignalSections& sections, float min, float max,
                                                      int& end1, int& end2, int& end3) {
    const PartBorders borders = QuarterBorders(min, max);
    ValueSequence sequence(sections);
    const auto separate = [&](int first, float border) {
        const bool nothingBelow = !(border > -Infinity);
        return nothingBelow ? first : sequence.PartitionAtMost(first, sequence.Count(), NextBelow(border));
    };
    end1 = separate(0, borders.First);
    end2 = separate(end1, borders.Second);
    end3 = separate(end2, borders.Third);
}

bool OVStatisticsSignalSection::CalcActual_4Part(SignalSections& part1, SignalSections& part2,
                                                 SignalSections& part3, SignalSections& part4, int& count,
                                                 float& min, float& max) {
    count = 0;
    min = Infinity;
    max = -Infinity;
    for (SignalSections* part : {&part1, &part2, &part3, &part4}) {
        count += static_cast<int>(signalSection_->GetTotalCount(*part));
        WidenTo(Population(*part), min, max);
    }
    if (min <= max) return true;
    min = max = 0;
    return false;
}

float OVStatisticsSignalSection::CalcMedian_2Part(SignalSections& lower, SignalSections& upper) {
    return MedianOfParts(*signalSection_, *nthElementSection_, {&lower, &upper});
}

float OVStatisticsSignalSection::CalcMedian_4Part(SignalSections& part1, SignalSections& part2,
                                                  SignalSections& part3, SignalSections& part4) {
    return MedianOfParts(*signalSection_, *nthElementSection_, {&part1, &part2, &part3, &part4});
}

}  // namespace Orvane
