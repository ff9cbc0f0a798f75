// The population tree of a file as a result: counts and shares, in the three forms in which they are written.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "files/output.h"
#include "gating/gated_sample.h"
#include "text/report_values.h"

namespace Host {

/// What every result says about its file.
struct FileSummary {
    std::string file;
    std::string version;
    std::uint64_t events = 0;
    std::vector<std::string> warnings;
};

/// One row of the tree. Shares of nothing are not there.
struct PopulationSummary {
    std::string name;                   ///< UTF-8
    std::optional<std::string> parent;  ///< none for every event
    unsigned depth = 0;                 ///< 0 for every event
    std::uint64_t count = 0;
    std::optional<float> percentOfParent;
    std::optional<float> percentOfTotal;
    std::optional<std::size_t> gate;  ///< its index among the populations of the sample; none for every event
};

/// Every event first, then every population behind its parent.
std::vector<PopulationSummary> ListPopulations(const Analysis& analysis,
                                               const std::vector<GatedPopulation>& populations,
                                               std::uint64_t events);

FloatJson ToJson(const FileSummary& file);
FloatJson ToJson(const PopulationSummary& population);

/// The titles, and the fields of one population, that every comma-separated form begins with.
std::string CsvTitles();
std::string CsvFields(const FileSummary& file, const PopulationSummary& population);

/// The headline of a file and its warnings, before and behind its tables.
void PrintHeadline(std::ostream& out, const FileSummary& file);
void PrintWarnings(std::ostream& out, const FileSummary& file);

void PrintTree(std::ostream& out, const std::vector<PopulationSummary>& populations);

/// The text of a result. JSON and CSV hold every number with the digits that bring it back; the table rounds.
std::string FormatPopulations(const FileSummary& file, const std::vector<PopulationSummary>& populations,
                              Format format);

}  // namespace Host
