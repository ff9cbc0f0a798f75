#include "statistics/population_statistics.h"

#include <cmath>
#include <string>
#include <utility>

#include "statistics/column_statistics.h"

namespace Host {
namespace {

/// A value that is no number has no place in an order, and no statistic says anything beside it. An infinite
/// one has a place, but there is no mean.
ParameterStatistics Measure(Column& column, const std::string& name, const std::string& population,
                            Membership* members, Findings& findings) {
    Orvane::OVStatisticsSignalSection operations;
    const Orvane::OVSignalStatistics statistics = ComputeStatistics(column, members, operations);
    if (statistics.Count == 0 || std::isfinite(statistics.Average)) return {name, statistics};
    const std::string place = "DATA of " + name + " in " + population;
    const std::uint64_t count = CountWhere(column, members, [](float x) { return std::isnan(x); });
    if (count == 0) {
        const std::uint64_t infinite = CountWhere(column, members, [](float x) { return std::isinf(x); });
        findings.Warn(
            {place, std::to_string(infinite) + " infinite values", "numbers that 32-bit floats hold"},
            "statistics without a finite value are left out");
        return {name, statistics};
    }
    findings.Warn({place, std::to_string(count) + " values that are not numbers", "numbers"},
                  "its statistics are left out");
    return {name, static_cast<std::uint64_t>(statistics.Count)};
}

PopulationStatistics MeasurePopulation(const PopulationSummary& population, GatedSample& sample,
                                       const EventLayout& layout, const std::vector<std::size_t>& parameters,
                                       Findings& findings) {
    PopulationStatistics result{population, {}};
    Membership* members = population.gate ? &sample.Populations()[*population.gate].members : nullptr;
    for (const std::size_t p : parameters) {
        Column column(sample.Events(), p);
        result.parameters.push_back(
            Measure(column, layout.parameters[p].name, population.name, members, findings));
    }
    return result;
}

}  // namespace

FileStatistics MeasureFile(const std::string& path, OpenedFile& opened, GatedSample& sample,
                           const Analysis& analysis, const std::vector<std::size_t>& parameters) {
    auto& [file, findings] = opened;
    const std::uint64_t events = file.data.events;
    std::vector<PopulationSummary> tree = ListPopulations(analysis, sample.Populations(), events);
    FileStatistics result;
    for (const PopulationSummary& population : tree) {
        if (!analysis.population.empty() && population.name != analysis.population) continue;
        result.populations.push_back(
            MeasurePopulation(population, sample, file.layout, parameters, findings));
    }
    result.summary = {path, file.header.version, events, findings.Warnings()};
    if (analysis.strategy) result.tree = std::move(tree);
    return result;
}

}  // namespace Host
