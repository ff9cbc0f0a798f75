// The statistics of files as results, and the three forms in which they are written.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <orvane/OVSignalStatistics.h>

#include "statistics/population_report.h"
#include "text/table.h"

namespace Host {

/// One parameter over one population. What is undefined is not there: everything without events, the standard
/// deviation of one event, ratios to zero, and what is not finite.
struct ParameterStatistics {
    /// The row of a parameter called `name`, as the library computed it.
    ParameterStatistics(std::string name, const Orvane::OVSignalStatistics& statistics);
    /// The row of a parameter of which only the number of events is known.
    ParameterStatistics(std::string name, std::uint64_t events) : parameter(std::move(name)), count(events) {}

    std::string parameter;  ///< $PnN as bytes, or another name to show
    std::uint64_t count = 0;
    std::optional<float> min, max, mean, median, sd;
    std::optional<float> cv;  ///< a ratio
    std::optional<float> rsd;
    std::optional<float> rcv;  ///< a ratio
};

struct PopulationStatistics {
    PopulationSummary population;
    std::vector<ParameterStatistics> parameters;
};

struct FileStatistics {
    FileSummary summary;
    std::vector<PopulationSummary> tree;  ///< of all populations; empty without gates
    std::vector<PopulationStatistics> populations;
};

/// One row per parameter below the title `first`, numbers rounded, CVs in per cent.
Table TabulateStatistics(const PopulationStatistics& population, const std::string& first);

/// The text of a result. JSON and CSV hold every number with the digits that bring it back; the table rounds,
/// and gives CVs in per cent.
std::string FormatStatistics(const std::vector<FileStatistics>& files, Format format);

}  // namespace Host
