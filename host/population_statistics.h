// The statistics of populations, computed.
#pragma once

#include <vector>

#include "fcs_parameters.h"
#include "findings.h"
#include "gated_sample.h"
#include "stats_report.h"

namespace Host {

/// The statistics of `population` of `sample`, one row for each of `parameters`, which are positions in
/// `layout`. A parameter with values that are not numbers is warned of and has a count only.
PopulationStatistics MeasurePopulation(const PopulationSummary& population, GatedSample& sample,
                                       const EventLayout& layout, const std::vector<std::size_t>& parameters,
                                       Findings& findings);

}  // namespace Host
