// Histograms of one sample: its events counted per screen column, for every gate of a plot.
#pragma once

#include <vector>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVPlotData.h>
#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// The bins of a histogram are the screen columns that the transformer of the horizontal axis maps events to.
///
/// The displayed population is `PopulationFilters`; where that is null, the `Filters` of `Population`; where
/// there is no population either, every event. Populations of fewer than 5000 events are smoothed: each event
/// is replaced by 64 virtual ones around it, which count instead and belong to the gates that it belongs to.
/// The number of events is the `TrueCount` of the filters or the `Count` of the sections; an empty
/// `PopulationFilters` is a population of no event.
class ORVANE_API IOVPlotViewHistogram {
public:
    virtual ~IOVPlotViewHistogram() = default;

    /// Adds the events of the displayed population to the counters of the background, those that are also in
    /// gate j to `counts[j]`, which runs parallel to `Gates`, and recomputes every `TotalCount`. Counters are
    /// not cleared before. A gate with null `Filters` holds every event.
    ///
    /// `Gates` must have a background entry, as FindBackgroundIndex finds it; this is not checked. Columns
    /// from a count section's `Count` on are not counted there. Pixel columns and virtual events are
    /// temporary storage of the pool: OutOfMemoryException* is thrown when it is exhausted, with some
    /// sections counted and totals as they were.
    virtual void ConvertSignalToCount(OVPlotData& data, std::vector<CountSection*>& counts,
                                      IOVCoordinateTransformerX* x) = 0;
};

/// The stateless implementation.
class ORVANE_API OVPlotViewHistogram : public IOVPlotViewHistogram {
public:
    void ConvertSignalToCount(OVPlotData& data, std::vector<CountSection*>& counts,
                              IOVCoordinateTransformerX* x) override;

private:
    void ConvertSignalToCount_All(OVPlotData& data, std::vector<CountSection*>& counts,
                                  IOVCoordinateTransformerX* x);
    void ConvertSignalToCount_Part(OVPlotData& data, std::vector<CountSection*>& counts,
                                   IOVCoordinateTransformerX* x);
    void ConvertSignalToCount_All_Virtual(OVPlotData& data, std::vector<CountSection*>& counts,
                                          IOVCoordinateTransformerX* x);
    void ConvertSignalToCount_Part_Virtual(OVPlotData& data, std::vector<CountSection*>& counts,
                                           IOVCoordinateTransformerX* x);
};

}  // namespace Orvane
