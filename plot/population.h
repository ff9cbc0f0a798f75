// Which population a plot shows.
#pragma once

#include <vector>

#include <orvane/OVPlotData.h>

namespace Orvane {

/// The filters of the population, one per section: `PopulationFilters`, else those of `Population`. Null when
/// every event is shown, also for a `Population` with null `Filters`.
inline std::vector<FilterSection*>* PopulationOf(const OVPlotData& data) {
    if (data.PopulationFilters != nullptr) return data.PopulationFilters;
    return data.Population == nullptr ? nullptr : data.Population->Filters;
}

}  // namespace Orvane
