// Population statistics of one signal: mean, spread and order statistics over a vector of signal sections,
// plain or gated.
#pragma once

#include <vector>

#include <orvane/OVSignalStatistics.h>
#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

class OVFilterSection;
class OVNthElementSection;
class OVSignalSection;

/// The caller owns vectors and records. A population is the values below every section's `Count`, sections in
/// order. A gated form takes one filter for each section, with its `Count`, and gives exactly what packing
/// the values whose bits are set into full sections and calling the plain form gives; the data stay as they
/// are.
///
/// NaN makes averages and standard deviations NaN, is passed over by ranges, and ranks above every number in
/// medians: a median is NaN only when NaN reaches the middle. Zeros rank as +0.0.
///
/// Vectors that values are copied into (`out`, `lower`, parts) are overwritten from their first section on.
/// Each is filled to `Capacity` and the next one taken at once, so that the last one may be empty; sections
/// behind it are not touched. New ones come from the pool and belong to the caller. Operations that fill a
/// vector, or that copy data to leave them alone, throw OutOfMemoryException* when the pool is exhausted;
/// nothing else throws.
class ORVANE_API IOVStatisticsSignalSection {
public:
    virtual ~IOVStatisticsSignalSection() = default;

    /// The mean with count and range, of the gated values.
    virtual float Average(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
                          int& count, float& min, float& max) = 0;

    /// The mean and count of the gated values.
    virtual float Average(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
                          int& count) = 0;

    /// The mean of the `count` values, summed in double section by section, each section's sum being added to
    /// the total. `min` follows the smallest value from 3.4028235e38 on, `max` the largest from -3.4028235e38
    /// on. NaN without values.
    virtual float Average(std::vector<SignalSection*>& sections, int& count, float& min, float& max) = 0;

    /// The mean and the number of values.
    virtual float Average(std::vector<SignalSection*>& sections, int& count) = 0;

    /// The mean.
    virtual float Average(std::vector<SignalSection*>& sections) = 0;

    /// The mean with count and range, and BackupAndSeparateSection with the mean as its border.
    virtual float Average_BackupAndSeparateSection_2Part(std::vector<SignalSection*>& sections, int& count,
                                                         float& min, float& max,
                                                         std::vector<SignalSection*>& lower,
                                                         std::vector<SignalSection*>& upper) = 0;

    /// The same with four parts, the borders being the mean and its midpoints to either end of the range.
    virtual float Average_BackupAndSeparateSection_4Part(std::vector<SignalSection*>& sections, int& count,
                                                         float& min, float& max,
                                                         std::vector<SignalSection*>& part1,
                                                         std::vector<SignalSection*>& part2,
                                                         std::vector<SignalSection*>& part3,
                                                         std::vector<SignalSection*>& part4) = 0;

    /// Copies every value, in order, into `lower` if it is below `border`, else (NaN too) into `upper`.
    virtual void BackupAndSeparateSection(std::vector<SignalSection*>& sections, float border,
                                          std::vector<SignalSection*>& lower,
                                          std::vector<SignalSection*>& upper) = 0;

    /// Copies every value, in order, into one of four parts: the borders cut `min` to `max` into four equal
    /// stretches, a value on a border belongs to the part above it, and the outer parts are open-ended. So no
    /// value of a part exceeds one of the next, whatever the bounds are. NaN goes to `part4`.
    virtual void BackupAndSeparateSection_4Part(std::vector<SignalSection*>& sections, float min, float max,
                                                std::vector<SignalSection*>& part1,
                                                std::vector<SignalSection*>& part2,
                                                std::vector<SignalSection*>& part3,
                                                std::vector<SignalSection*>& part4) = 0;

    /// Copies every value below `threshold`, in order, into `out`. `min` and `max` follow the range of the
    /// copied values, from 3.4028235e38 and -3.4028235e38 on.
    virtual void BackupSignalSection_LessMinValue(std::vector<SignalSection*>& sections, float threshold,
                                                  std::vector<SignalSection*>& out, float& min,
                                                  float& max) = 0;

    /// Copies the gated values, in order, into `out`.
    virtual void BackupSignalSection(std::vector<SignalSection*>& sections,
                                     std::vector<FilterSection*>& filters,
                                     std::vector<SignalSection*>& out) = 0;

    /// Copies all values, in order, into `out`: for calls that destroy their data.
    virtual void BackupSignalSection(std::vector<SignalSection*>& sections,
                                     std::vector<SignalSection*>& out) = 0;

    /// Number and range of the values that four parts actually hold. False, with zeros, without a number.
    virtual bool CalcActual_4Part(std::vector<SignalSection*>& part1, std::vector<SignalSection*>& part2,
                                  std::vector<SignalSection*>& part3, std::vector<SignalSection*>& part4,
                                  int& count, float& min, float& max) = 0;

    /// The median of two parts together; no number in `lower` may exceed one in `upper`. The value or the two
    /// values in the middle are looked for in their part only, which is left partially reordered.
    virtual float CalcMedian_2Part(std::vector<SignalSection*>& lower,
                                   std::vector<SignalSection*>& upper) = 0;

    /// The median of four parts together, ordered likewise.
    virtual float CalcMedian_4Part(std::vector<SignalSection*>& part1, std::vector<SignalSection*>& part2,
                                   std::vector<SignalSection*>& part3,
                                   std::vector<SignalSection*>& part4) = 0;

    /// The plain form below, of the gated values.
    virtual float CalcRSDForQC(std::vector<SignalSection*>& sections,
                               std::vector<FilterSection*>& filters) = 0;

    /// The robust SD of instrument quality control: half the distance between the values at ranks `n * 1587 /
    /// 10000` and `n * 8413 / 10000` (integer division), one SD below and above the mean of a normal
    /// population. 0.0 without values, which may be left partially reordered.
    virtual float CalcRSDForQC(std::vector<SignalSection*>& sections) = 0;

    /// The plain form below, of the gated values.
    virtual bool CalcStatistic_ActualMinMax(std::vector<SignalSection*>& sections,
                                            std::vector<FilterSection*>& filters, float& min, float& max) = 0;

    /// The range of all values, infinities included. False, with zeros, without a number.
    virtual bool CalcStatistic_ActualMinMax(std::vector<SignalSection*>& sections, float& min,
                                            float& max) = 0;

    /// The plain form below, of the gated values.
    virtual bool CalcStatistic_RealMinMax(std::vector<SignalSection*>& sections,
                                          std::vector<FilterSection*>& filters, float& min, float& max) = 0;

    /// The range of the finite values only, as an axis needs it. False, with zeros, when there is none.
    virtual bool CalcStatistic_RealMinMax(std::vector<SignalSection*>& sections, float& min, float& max) = 0;

    /// The plain form below, of the gated values.
    virtual bool CalcStatistic_Average_Median(std::vector<SignalSection*>& sections,
                                              std::vector<FilterSection*>& filters, float& average,
                                              float& median) = 0;

    /// Mean and median without disturbing the data. False without values; the results are set all the same.
    virtual bool CalcStatistic_Average_Median(std::vector<SignalSection*>& sections, float& average,
                                              float& median) = 0;

    /// Mean and median of data that may be reordered, which spares CalcStatistic_Average_Median's storage.
    /// False without values.
    virtual bool CalcStatistic_AverageMedian(std::vector<SignalSection*>& sections, float& average,
                                             float& median) = 0;

    /// The same with RobustCV and RobustSD about that median. The data are destroyed as by RobustSD.
    virtual bool CalcStatistic_AverageMedianRCVRSD(std::vector<SignalSection*>& sections, float& average,
                                                   float& median, float& robustCV, float& robustSD) = 0;

    /// The plain form below, of the gated values.
    virtual bool CalcStatistic_AverageCVSD(std::vector<SignalSection*>& sections,
                                           std::vector<FilterSection*>& filters, float& average, float& cv,
                                           float& sd) = 0;

    /// The mean, the SD about it, and the absolute value of `sd / average`: without sign, unlike CV. False
    /// without values.
    virtual bool CalcStatistic_AverageCVSD(std::vector<SignalSection*>& sections, float& average, float& cv,
                                           float& sd) = 0;

    /// The plain form below, of the gated values.
    virtual bool CalcStatistic_MorePara(std::vector<SignalSection*>& sections,
                                        std::vector<FilterSection*>& filters,
                                        OVSignalStatistics& statistics) = 0;

    /// One row of a population table: every statistic of OVSignalStatistics, without disturbing the data.
    /// False without values; the row then holds what the single operations give for nothing.
    virtual bool CalcStatistic_MorePara(std::vector<SignalSection*>& sections,
                                        OVSignalStatistics& statistics) = 0;

    /// The same row for data that lie separated in four parts, taken one after another.
    virtual bool CalcStatistic_MorePara_4Part(std::vector<SignalSection*>& part1,
                                              std::vector<SignalSection*>& part2,
                                              std::vector<SignalSection*>& part3,
                                              std::vector<SignalSection*>& part4,
                                              OVSignalStatistics& statistics) = 0;

    /// The plain form below, of the gated values.
    virtual bool CalcStatistic_MoreParaQC(std::vector<SignalSection*>& sections,
                                          std::vector<FilterSection*>& filters, float limit,
                                          OVSignalStatistics& statistics, int& rejected) = 0;

    /// The row of a quality-control peak: the statistics of the values from `median - limit * robustSD` to
    /// `median + limit * robustSD`, both included, where median and robust SD are those of all values.
    /// `rejected` is the number of the others. The data are not disturbed. False when nothing is left.
    virtual bool CalcStatistic_MoreParaQC(std::vector<SignalSection*>& sections, float limit,
                                          OVSignalStatistics& statistics, int& rejected) = 0;

    /// Separates the absolute deviations of all values from `median` as BackupAndSeparateSection_4Part does
    /// with the values, the borders cutting the stretch from 0 to the deviation of `min` or of `max`,
    /// whichever is larger.
    virtual void DifferenceMedianAndSeparateSection_4Part(std::vector<SignalSection*>& sections, float median,
                                                          float min, float max,
                                                          std::vector<SignalSection*>& part1,
                                                          std::vector<SignalSection*>& part2,
                                                          std::vector<SignalSection*>& part3,
                                                          std::vector<SignalSection*>& part4) = 0;

    /// Separates the values in place, by the borders of BackupAndSeparateSection_4Part: taken as one
    /// sequence, part 1 comes first and ends before position `end1`, parts 2 and 3 end before `end2` and
    /// `end3`, and part 4 is the rest. Within the parts the order changes. Nothing is taken from the pool.
    virtual void SeparateSection_4Part(std::vector<SignalSection*>& sections, float min, float max, int& end1,
                                       int& end2, int& end3) = 0;

    /// The plain form below, of the gated values.
    virtual void FindMinMax(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
                            float& min, float& max) = 0;

    /// Lowers `min` and raises `max` to every value outside, so that several populations can share a range.
    virtual void FindMinMax(std::vector<SignalSection*>& sections, float& min, float& max) = 0;

    /// The plain form below, of the gated values.
    virtual void GenerateVirtualVectorSignalSection(std::vector<SignalSection*>& real,
                                                    std::vector<FilterSection*>& filters, double* offsets,
                                                    int n, std::vector<SignalSection*>& out) = 0;

    /// Expands every value v into 1 + n virtual ones: v itself, then for each of the `n` offsets the float of
    /// `sqrt(|v|) * offset + v`, where the root is taken in float and the rest computed in double. They are
    /// written one after another into `out`.
    virtual void GenerateVirtualVectorSignalSection(std::vector<SignalSection*>& real, double* offsets, int n,
                                                    std::vector<SignalSection*>& out) = 0;

    /// The largest value; 0.0 without a number.
    virtual float GetMaxValue(std::vector<SignalSection*>& sections) = 0;

    /// The smallest value; 0.0 when there is no number.
    virtual float GetMinValue(std::vector<SignalSection*>& sections) = 0;

    /// The plain form below, of the gated values.
    virtual void GetRandomDatas(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
                                int n, unsigned seed, std::vector<SignalSection*>& out) = 0;

    /// Copies `n` values picked at random, each set of n being equally likely, in their order into `out`; all
    /// of them when there are no more than n. The same seed picks the same positions on every machine.
    virtual void GetRandomDatas(std::vector<SignalSection*>& sections, int n, unsigned seed,
                                std::vector<SignalSection*>& out) = 0;

    /// The plain form below, of the gated values.
    virtual float CV(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters) = 0;

    /// `SD(sections) / Average(sections)`: a plain ratio with its sign, not a percentage.
    virtual float CV(std::vector<SignalSection*>& sections) = 0;

    /// The value in the middle, or half the sum of the two in the middle, formed in double. 0.0 without
    /// values. The values may be left partially reordered.
    virtual float Median(std::vector<SignalSection*>& sections) = 0;

    /// RobustSD(sections, median) divided by `median`, and destroying the data like it; 0.0, with nothing
    /// touched, when `median` is zero. A ratio, not a percentage.
    virtual float RobustCV(std::vector<SignalSection*>& sections, float median) = 0;

    /// Replaces every value by its absolute deviation from `median` and returns the median of these times
    /// 1.4826. The deviations stay in the sections, partially reordered: work on a copy
    /// (BackupSignalSection). 0.0 without values.
    virtual float RobustSD(std::vector<SignalSection*>& sections, float median) = 0;

    /// The robust SD of the values from `min` to `max`, both included, about their median; 0.0 without any.
    /// The data stay.
    virtual float RobustSD(std::vector<SignalSection*>& sections, float min, float max) = 0;

    /// The robust SD of the values below `threshold` about their own median; the data are not disturbed.
    /// False, with `sd` 0.0, when there are none.
    virtual bool RobustSD_LessMinValue(std::vector<SignalSection*>& sections, float threshold, float& sd) = 0;

    /// The plain form below, of the gated values.
    virtual float SD(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
                     float mean) = 0;

    /// The sample standard deviation about `mean`: differences are formed in float, squared and summed in
    /// double, section by section as in Average, and divided by n - 1. 0.0 for a single value, -0.0 for none.
    virtual float SD(std::vector<SignalSection*>& sections, float mean) = 0;

    /// The sample standard deviation about the mean.
    virtual float SD(std::vector<SignalSection*>& sections) = 0;

    /// The sample standard deviation of the gated values about their mean.
    virtual float SD(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters) = 0;
};

/// The operations of IOVStatisticsSignalSection. An object keeps nothing between calls, but every call uses
/// its three auxiliary objects: one object must not serve two threads at once.
class ORVANE_API OVStatisticsSignalSection : public IOVStatisticsSignalSection {
public:
    OVStatisticsSignalSection();
    OVStatisticsSignalSection(const OVStatisticsSignalSection&) = delete;
    OVStatisticsSignalSection& operator=(const OVStatisticsSignalSection&) = delete;
    ~OVStatisticsSignalSection() override;

    float Average(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters, int& count,
                  float& min, float& max) override;
    float Average(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
                  int& count) override;
    float Average(std::vector<SignalSection*>& sections, int& count, float& min, float& max) override;
    float Average(std::vector<SignalSection*>& sections, int& count) override;
    float Average(std::vector<SignalSection*>& sections) override;
    float Average_BackupAndSeparateSection_2Part(std::vector<SignalSection*>& sections, int& count,
                                                 float& min, float& max, std::vector<SignalSection*>& lower,
                                                 std::vector<SignalSection*>& upper) override;
    float Average_BackupAndSeparateSection_4Part(std::vector<SignalSection*>& sections, int& count,
                                                 float& min, float& max, std::vector<SignalSection*>& part1,
                                                 std::vector<SignalSection*>& part2,
                                                 std::vector<SignalSection*>& part3,
                                                 std::vector<SignalSection*>& part4) override;
    void BackupAndSeparateSection(std::vector<SignalSection*>& sections, float border,
                                  std::vector<SignalSection*>& lower,
                                  std::vector<SignalSection*>& upper) override;
    void BackupAndSeparateSection_4Part(std::vector<SignalSection*>& sections, float min, float max,
                                        std::vector<SignalSection*>& part1,
                                        std::vector<SignalSection*>& part2,
                                        std::vector<SignalSection*>& part3,
                                        std::vector<SignalSection*>& part4) override;
    void BackupSignalSection_LessMinValue(std::vector<SignalSection*>& sections, float threshold,
                                          std::vector<SignalSection*>& out, float& min, float& max) override;
    void BackupSignalSection(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
                             std::vector<SignalSection*>& out) override;
    void BackupSignalSection(std::vector<SignalSection*>& sections,
                             std::vector<SignalSection*>& out) override;
    bool CalcActual_4Part(std::vector<SignalSection*>& part1, std::vector<SignalSection*>& part2,
                          std::vector<SignalSection*>& part3, std::vector<SignalSection*>& part4, int& count,
                          float& min, float& max) override;
    float CalcMedian_2Part(std::vector<SignalSection*>& lower, std::vector<SignalSection*>& upper) override;
    float CalcMedian_4Part(std::vector<SignalSection*>& part1, std::vector<SignalSection*>& part2,
                           std::vector<SignalSection*>& part3, std::vector<SignalSection*>& part4) override;
    float CalcRSDForQC(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters) override;
    float CalcRSDForQC(std::vector<SignalSection*>& sections) override;
    bool CalcStatistic_ActualMinMax(std::vector<SignalSection*>& sections,
                                    std::vector<FilterSection*>& filters, float& min, float& max) override;
    bool CalcStatistic_ActualMinMax(std::vector<SignalSection*>& sections, float& min, float& max) override;
    bool CalcStatistic_RealMinMax(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
                                  float& min, float& max) override;
    bool CalcStatistic_RealMinMax(std::vector<SignalSection*>& sections, float& min, float& max) override;
    bool CalcStatistic_Average_Median(std::vector<SignalSection*>& sections,
                                      std::vector<FilterSection*>& filters, float& average,
                                      float& median) override;
    bool CalcStatistic_Average_Median(std::vector<SignalSection*>& sections, float& average,
                                      float& median) override;
    bool CalcStatistic_AverageMedian(std::vector<SignalSection*>& sections, float& average,
                                     float& median) override;
    bool CalcStatistic_AverageMedianRCVRSD(std::vector<SignalSection*>& sections, float& average,
                                           float& median, float& robustCV, float& robustSD) override;
    bool CalcStatistic_AverageCVSD(std::vector<SignalSection*>& sections,
                                   std::vector<FilterSection*>& filters, float& average, float& cv,
                                   float& sd) override;
    bool CalcStatistic_AverageCVSD(std::vector<SignalSection*>& sections, float& average, float& cv,
                                   float& sd) override;
    bool CalcStatistic_MorePara(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
                                OVSignalStatistics& statistics) override;
    bool CalcStatistic_MorePara(std::vector<SignalSection*>& sections,
                                OVSignalStatistics& statistics) override;
    bool CalcStatistic_MorePara_4Part(std::vector<SignalSection*>& part1, std::vector<SignalSection*>& part2,
                                      std::vector<SignalSection*>& part3, std::vector<SignalSection*>& part4,
                                      OVSignalStatistics& statistics) override;
    bool CalcStatistic_MoreParaQC(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
                                  float limit, OVSignalStatistics& statistics, int& rejected) override;
    bool CalcStatistic_MoreParaQC(std::vector<SignalSection*>& sections, float limit,
                                  OVSignalStatistics& statistics, int& rejected) override;
    void DifferenceMedianAndSeparateSection_4Part(std::vector<SignalSection*>& sections, float median,
                                                  float min, float max, std::vector<SignalSection*>& part1,
                                                  std::vector<SignalSection*>& part2,
                                                  std::vector<SignalSection*>& part3,
                                                  std::vector<SignalSection*>& part4) override;
    void SeparateSection_4Part(std::vector<SignalSection*>& sections, float min, float max, int& end1,
                               int& end2, int& end3) override;
    void FindMinMax(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters, float& min,
                    float& max) override;
    void FindMinMax(std::vector<SignalSection*>& sections, float& min, float& max) override;
    void GenerateVirtualVectorSignalSection(std::vector<SignalSection*>& real,
                                            std::vector<FilterSection*>& filters, double* offsets, int n,
                                            std::vector<SignalSection*>& out) override;
    void GenerateVirtualVectorSignalSection(std::vector<SignalSection*>& real, double* offsets, int n,
                                            std::vector<SignalSection*>& out) override;
    float GetMaxValue(std::vector<SignalSection*>& sections) override;
    float GetMinValue(std::vector<SignalSection*>& sections) override;
    void GetRandomDatas(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters, int n,
                        unsigned seed, std::vector<SignalSection*>& out) override;
    void GetRandomDatas(std::vector<SignalSection*>& sections, int n, unsigned seed,
                        std::vector<SignalSection*>& out) override;
    float CV(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters) override;
    float CV(std::vector<SignalSection*>& sections) override;
    float Median(std::vector<SignalSection*>& sections) override;
    float RobustCV(std::vector<SignalSection*>& sections, float median) override;
    float RobustSD(std::vector<SignalSection*>& sections, float median) override;
    float RobustSD(std::vector<SignalSection*>& sections, float min, float max) override;
    bool RobustSD_LessMinValue(std::vector<SignalSection*>& sections, float threshold, float& sd) override;
    float SD(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters,
             float mean) override;
    float SD(std::vector<SignalSection*>& sections, float mean) override;
    float SD(std::vector<SignalSection*>& sections) override;
    float SD(std::vector<SignalSection*>& sections, std::vector<FilterSection*>& filters) override;

private:
    OVNthElementSection* nthElementSection_;
    OVSignalSection* signalSection_;
    OVFilterSection* filterSection_;
};

}  // namespace Orvane
