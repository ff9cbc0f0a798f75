// Histograms of several samples over one axis: the population of each counted per screen column.
#pragma once

#include <vector>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVPlotData.h>
#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// As IOVPlotViewHistogram, with one histogram per sample, that of its displayed population. Gates play no
/// part.
class ORVANE_API IOVPlotViewHistogram_MultiSample {
public:
    virtual ~IOVPlotViewHistogram_MultiSample() = default;

    /// Adds the events of the displayed population of `samples[s]` to the counters of `counts[s]`. Samples
    /// with null `XSections` are left out.
    ///
    /// Deliberate: `TotalCount` stays, unlike in the view of one sample; the counters are not cleared before.
    /// Columns from a count section's `Count` on are not counted there. OutOfMemoryException* is thrown when
    /// the pool is exhausted, with some of the events counted.
    virtual void ConvertSignalToCount(std::vector<OVPlotData*>& samples, std::vector<CountSection*>& counts,
                                      IOVCoordinateTransformerX* x) = 0;
};

/// The stateless implementation.
class ORVANE_API OVPlotViewHistogram_MultiSample : public IOVPlotViewHistogram_MultiSample {
public:
    void ConvertSignalToCount(std::vector<OVPlotData*>& samples, std::vector<CountSection*>& counts,
                              IOVCoordinateTransformerX* x) override;

private:
    void ConvertSignalToCount_All(OVPlotData& data, CountSection& counts, IOVCoordinateTransformerX* x);
    void ConvertSignalToCount_Part(OVPlotData& data, CountSection& counts, IOVCoordinateTransformerX* x);
    void ConvertSignalToCount_All_Virtual(OVPlotData& data, CountSection& counts,
                                          IOVCoordinateTransformerX* x);
    void ConvertSignalToCount_Part_Virtual(OVPlotData& data, CountSection& counts,
                                           IOVCoordinateTransformerX* x);
};

}  // namespace Orvane
