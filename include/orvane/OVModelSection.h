// Operations over vectors of model sections: one unsigned 16-bit bin number per event, and their counts.
#pragma once

#include <vector>

#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Stateless operations over vectors of model sections. The caller owns vectors and records.
///
/// Counting adds 1 to counts.Counts[v] for a bin number v. Counters are never cleared here, so calls
/// accumulate; `TotalCount` stays. A bin number at or above `counts.Capacity` is skipped.
class ORVANE_API IOVModelSection {
public:
    virtual ~IOVModelSection() = default;

    /// Makes `models` parallel to `signals` and fills it with bin numbers trunc(value × scale), where scale
    /// is 1 / ((max - min) / CapacityInt) in float. Values are expected relative to the lower end of the
    /// range: `min` is not subtracted. Nothing is clamped; the low 16 bits of the truncated number are
    /// stored, 0 for NaN and for numbers beyond 64 bits.
    virtual void ConvertSignalToModel(std::vector<ModelSection*>& models,
                                      std::vector<SignalSection*>& signals, float max, float min) = 0;

    /// The number of events, formed in 32 bits.
    virtual long GetTotalCount(std::vector<ModelSection*>& models) = 0;

    /// Counts the events of one section whose bit in `filter` is set. `counts` must have its counters.
    virtual void StatisticsCountSection(ModelSection* model, FilterSection* filter, CountSection& counts) = 0;

    /// Counts every event of one section. `counts` must have its counters.
    virtual void StatisticsCountSection(ModelSection* model, CountSection& counts) = 0;

    /// Counts the events whose bit in `filters` (parallel to `models`) is set. Counters that `counts` does
    /// not have yet are taken from the pool and zeroed; the caller releases them.
    virtual void StatisticsCountSection(std::vector<ModelSection*>& models,
                                        std::vector<FilterSection*>& filters, CountSection& counts) = 0;

    /// Counts every event, taking counters as above.
    virtual void StatisticsCountSection(std::vector<ModelSection*>& models, CountSection& counts) = 0;

    /// Counts where one bit of `filter` stands for `group` (at least 1) consecutive values of `model`; values
    /// of an incomplete last group are not counted. The first bit is bit 0 of the word that holds bit
    /// `start`, so `start` is expected to be a multiple of 32. Nothing is counted when `filter->TrueCount` is
    /// 0.
    virtual void StatisticsCountSection_Virtual(ModelSection* model, FilterSection* filter, int start,
                                                int group, CountSection& counts) = 0;

    /// Returns every section's packet and deletes the records; empties the vector.
    virtual void ReleaseVectorSection(std::vector<ModelSection*>& models) = 0;

    /// Makes `models` parallel to `signals`: same number of sections, `Count` by `Count`, numbered in order.
    /// Missing sections are appended with packets of their own, surplus ones released and deleted.
    virtual void SynchronousVectorSection(std::vector<ModelSection*>& models,
                                          std::vector<SignalSection*>& signals) = 0;
};

/// The operations of IOVModelSection. An object holds nothing; make one wherever it is needed.
class ORVANE_API OVModelSection : public IOVModelSection {
public:
    void ConvertSignalToModel(std::vector<ModelSection*>& models, std::vector<SignalSection*>& signals,
                              float max, float min) override;
    long GetTotalCount(std::vector<ModelSection*>& models) override;
    void StatisticsCountSection(ModelSection* model, FilterSection* filter, CountSection& counts) override;
    void StatisticsCountSection(ModelSection* model, CountSection& counts) override;
    void StatisticsCountSection(std::vector<ModelSection*>& models, std::vector<FilterSection*>& filters,
                                CountSection& counts) override;
    void StatisticsCountSection(std::vector<ModelSection*>& models, CountSection& counts) override;
    void StatisticsCountSection_Virtual(ModelSection* model, FilterSection* filter, int start, int group,
                                        CountSection& counts) override;
    void ReleaseVectorSection(std::vector<ModelSection*>& models) override;
    void SynchronousVectorSection(std::vector<ModelSection*>& models,
                                  std::vector<SignalSection*>& signals) override;
};

}  // namespace Orvane
