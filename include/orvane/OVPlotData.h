// What to plot: the columns of a sample, the population to draw, and the gates to tell apart.
#pragma once

#include <vector>

#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// A gate or a population of a plot.
struct ORVANE_API OVPlotData_GateInfo {
    /// Its events, one filter per section of the sample; null for every event. Not owned.
    std::vector<FilterSection*>* Filters = nullptr;
    int Reserved = 0;  ///< for the caller
};

/// Section k of every vector belongs to section k of the sample. The vectors of sections and filters are the
/// caller's; `Population`, `Gates` and the elements of `Gates` come from `new` and are deleted with the plot
/// data.
struct ORVANE_API OVPlotData {
    std::vector<SignalSection*>* XSections = nullptr;  ///< one section of the horizontal signal each
    std::vector<SignalSection*>* YSections = nullptr;  ///< not read by histograms
    /// The population to draw; null, or with null `Filters`, for every event. Owned.
    OVPlotData_GateInfo* Population = nullptr;
    /// The gates to tell apart, a later one before an earlier one. Owned.
    std::vector<OVPlotData_GateInfo*>* Gates = nullptr;
    /// The events to draw; goes before `Population` unless null.
    std::vector<FilterSection*>* PopulationFilters = nullptr;
    int ReservedInt = 0;  ///< for the caller
    int SampleIndex = 0;  ///< the bit of this sample, modulo 32, in a dot plot of several

    OVPlotData() = default;
    /// Deliberate: copies share what the original owns. Exactly one of them may be destroyed with it; set
    /// `Gates` and `Population` of the others to null before.
    OVPlotData(const OVPlotData&) = default;
    OVPlotData& operator=(const OVPlotData&) = default;
    /// Deletes the gates, their vector and the population.
    ~OVPlotData();

    /// The index of the background among `Gates`: the first gate with the `Filters` of `Population`, or with
    /// null `Filters` when there is no population. -1 when there is none.
    int FindBackgroundIndex() const;
};

}  // namespace Orvane
