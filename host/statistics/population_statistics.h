// The statistics of the populations of a file, computed.
#pragma once

#include <string>
#include <vector>

#include "fcs_files/opened_files.h"
#include "gating/gated_sample.h"
#include "statistics/stats_report.h"

namespace Host {

/// The statistics of the file at `path`: of every population, or of the one that `analysis` chooses, and one
/// row for each of `parameters`, which are positions in the layout. A parameter with values that are not
/// numbers is warned of and has a count only.
FileStatistics MeasureFile(const std::string& path, OpenedFile& opened, GatedSample& sample,
                           const Analysis& analysis, const std::vector<std::size_t>& parameters);

}  // namespace Host
