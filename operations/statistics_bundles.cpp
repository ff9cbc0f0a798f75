// Several statistics in one call: rows of population and quality-control tables.
#include <optional>

#include <orvane/OVStatisticsSignalSection.h>

#include "operations/statistics_order.h"

namespace Orvane {
namespace {

struct RobustRow {
    float Median;
    float RobustSD;
};

// Median and robust SD of `count` values, one at least, without storage for a copy; nothing when the search
// failed.
std::optional<RobustRow> FindRobustRow(const SignalSections& sections, int count) {
    const std::vector<ValueSpan> spans = SpansOf(sections);
    const auto middle = FindRanked(spans, AsItStands{}, MiddleRanks(count));
    if (!middle) return std::nullopt;
    const float median = MedianOf(*middle);
    const auto deviation = FindRanked(spans, DeviationFrom{median}, MiddleRanks(count));
    if (!deviation) return std::nullopt;
    return RobustRow{median, RobustSDOf(MedianOf(*deviation))};
}

// The same for any number of values, working on a copy where the search failed.
RobustRow CalcRobustRow(OVStatisticsSignalSection& statistics, SignalSections& sections, int count) {
    if (count == 0) return {0, 0};
    if (const auto row = FindRobustRow(sections, count)) return *row;
    TemporarySections copy;
    statistics.BackupSignalSection(sections, copy.Sections);
    const float median = statistics.Median(copy.Sections);
    return {median, statistics.RobustSD(copy.Sections, median)};
}

}  // namespace

bool OVStatisticsSignalSection::CalcStatistic_Average_Median(SignalSections& sections,
                                                             FilterSections& filters, float& average,
                                                             float& median) {
    TemporarySections gated;
    BackupSignalSection(sections, filters, gated.Sections);
    return CalcStatistic_AverageMedian(gated.Sections, average, median);
}

bool OVStatisticsSignalSection::CalcStatistic_Average_Median(SignalSections& sections, float& average,
                                                             float& median) {
    int count = 0;
    average = Average(sections, count);
    if (const auto middle = count > 0 ? FindRanked(SpansOf(sections), AsItStands{}, MiddleRanks(count))
                                      : RankedValues{0, 0}) {
        median = MedianOf(*middle);
        return count > 0;
    }
    TemporarySections copy;
    BackupSignalSection(sections, copy.Sections);
    median = Median(copy.Sections);
    return true;
}

bool OVStatisticsSignalSection::CalcStatistic_AverageMedian(SignalSections& sections, float& average,
                                                            float& median) {
    int count = 0;
    average = Average(sections, count);
    median = Median(sections);
    return count > 0;
}

bool OVStatisticsSignalSection::CalcStatistic_AverageMedianRCVRSD(SignalSections& sections, float& average,
                                                                  float& median, float& robustCV,
                                                                  float& robustSD) {
    const bool hasValues = CalcStatistic_AverageMedian(sections, average, median);
    robustSD = RobustSD(sections, median);
    robustCV = RobustCVOf(robustSD, median);
    return hasValues;
}

bool OVStatisticsSignalSection::CalcStatistic_MorePara(SignalSections& sections, FilterSections& filters,
                                                       OVSignalStatistics& statistics) {
    TemporarySections gated;
    BackupSignalSection(sections, filters, gated.Sections);
    return CalcStatistic_MorePara(gated.Sections, statistics);
}

bool OVStatisticsSignalSection::CalcStatistic_MorePara(SignalSections& sections,
                                                       OVSignalStatistics& statistics) {
    statistics.Average = Average(sections, statistics.Count, statistics.Min, statistics.Max);
    statistics.SD = SD(sections, statistics.Average);
    statistics.CV = statistics.SD / statistics.Average;
    const RobustRow row = CalcRobustRow(*this, sections, statistics.Count);
    statistics.Median = row.Median;
    statistics.RobustSD = row.RobustSD;
    statistics.RobustCV = RobustCVOf(row.RobustSD, row.Median);
    return statistics.Count > 0;
}

bool OVStatisticsSignalSection::CalcStatistic_MorePara_4Part(SignalSections& part1, SignalSections& part2,
                                                             SignalSections& part3, SignalSections& part4,
                                                             OVSignalStatistics& statistics) {
    SignalSections all;
    for (const SignalSections* part : {&part1, &part2, &part3, &part4})
        all.insert(all.end(), part->begin(), part->end());
    return CalcStatistic_MorePara(all, statistics);
}

bool OVStatisticsSignalSection::CalcStatistic_MoreParaQC(SignalSections& sections, FilterSections& filters,
                                                         float limit, OVSignalStatistics& statistics,
                                                         int& rejected) {
    TemporarySections gated;
    BackupSignalSection(sections, filters, gated.Sections);
    return CalcStatistic_MoreParaQC(gated.Sections, limit, statistics, rejected);
}

bool OVStatisticsSignalSection::CalcStatistic_MoreParaQC(SignalSections& sections, float limit,
                                                         OVSignalStatistics& statistics, int& rejected) {
    const int count = static_cast<int>(signalSection_->GetTotalCount(sections));
    const RobustRow row = CalcRobustRow(*this, sections, count);
    const double reach = static_cast<double>(limit) * row.RobustSD;
    const ValueRange range{static_cast<float>(row.Median - reach), static_cast<float>(row.Median + reach)};
    TemporarySections peak;
    CopyRange(*signalSection_, Population(sections), range, peak.Sections);
    const bool hasValues = CalcStatistic_MorePara(peak.Sections, statistics);
    rejected = count - statistics.Count;
    return hasValues;
}

}  // namespace Orvane
