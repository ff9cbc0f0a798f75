// Order statistics: medians and the robust measures that rest on them.
#include "operations/statistics_order.h"

#include <orvane/OVNthElementSection.h>
#include <orvane/OVStatisticsSignalSection.h>

#include "operations/statistics_kernels.h"

namespace Orvane {

RankedValues FindOrReorder(OVNthElementSection& nthElement, SignalSections& sections, int count,
                           Ranks ranks) {
    if (const auto found = FindRanked(SpansOf(sections), AsItStands{}, ranks)) return *found;
    const float first = nthElement.Nth_Element(sections, 0, ranks.First, count);
    if (ranks.Second == ranks.First) return {first, first};
    return {first, nthElement.Min(sections, ranks.Second, count)};
}

float MedianOf(RankedValues middle) {
    return static_cast<float>((static_cast<double>(middle.First) + middle.Second) * 0.5);
}

float RobustSDOf(float medianDeviation) {
    return static_cast<float>(medianDeviation * 1.4826);
}

float RobustCVOf(float robustSD, float median) {
    return median == 0 ? 0.0F : robustSD / median;
}

float OVStatisticsSignalSection::Median(SignalSections& sections) {
    const int count = static_cast<int>(signalSection_->GetTotalCount(sections));
    if (count == 0) return 0;
    return MedianOf(FindOrReorder(*nthElementSection_, sections, count, MiddleRanks(count)));
}

float OVStatisticsSignalSection::RobustSD(SignalSections& sections, float median) {
    for (const SignalSection* section : sections)
        ReplaceByDeviations(section->Values, section->Count, median);
    return RobustSDOf(Median(sections));
}

float OVStatisticsSignalSection::RobustCV(SignalSections& sections, float median) {
    return median == 0 ? 0.0F : RobustCVOf(RobustSD(sections, median), median);
}

float OVStatisticsSignalSection::RobustSD(SignalSections& sections, float min, float max) {
    TemporarySections inRange;
    CopyRange(*signalSection_, Population(sections), {min, max}, inRange.Sections);
    return RobustSD(inRange.Sections, Median(inRange.Sections));
}

bool OVStatisticsSignalSection::RobustSD_LessMinValue(SignalSections& sections, float threshold, float& sd) {
    sd = 0;
    float min = 0;
    float max = 0;
    TemporarySections copy;
    BackupSignalSection_LessMinValue(sections, threshold, copy.Sections, min, max);
    if (signalSection_->GetTotalCount(copy.Sections) == 0) return false;
    const float median = [&] {
        FourParts parts;
        BackupAndSeparateSection_4Part(copy.Sections, min, max, parts[0], parts[1], parts[2], parts[3]);
        return CalcMedian_4Part(parts[0], parts[1], parts[2], parts[3]);
    }();
    FourParts parts;
    DifferenceMedianAndSeparateSection_4Part(copy.Sections, median, min, max, parts[0], parts[1], parts[2],
                                             parts[3]);
    sd = RobustSDOf(CalcMedian_4Part(parts[0], parts[1], parts[2], parts[3]));
    return true;
}

float OVStatisticsSignalSection::CalcRSDForQC(SignalSections& sections, FilterSections& filters) {
    TemporarySections gated;
    BackupSignalSection(sections, filters, gated.Sections);
    return CalcRSDForQC(gated.Sections);
}

float OVStatisticsSignalSection::CalcRSDForQC(SignalSections& sections) {
    const std::int64_t count = signalSection_->GetTotalCount(sections);
    if (count == 0) return 0;
    const auto valueAt = [&](std::int64_t tenThousandths) {
        const int rank = static_cast<int>(count * tenThousandths / 10000);
        return FindOrReorder(*nthElementSection_, sections, static_cast<int>(count), {rank, rank}).First;
    };
    const double low = valueAt(1587);
    return static_cast<float>((valueAt(8413) - low) * 0.5);
}

}  // namespace Orvane
