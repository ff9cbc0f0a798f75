#include "commands/stats_command.h"

#include <utility>

#include "fcs_files/opened_files.h"
#include "fcs_files/parameter_names.h"
#include "statistics/population_statistics.h"

namespace Host {
namespace {

std::vector<std::size_t> ChooseParameters(const EventLayout& layout, const std::vector<std::string>& names) {
    std::vector<std::size_t> chosen;
    for (const std::string& name : names) {
        const std::optional<std::size_t> place = FindParameter(layout, name);
        if (!place) Refuse("--parameters", name, "one of " + ListNames(layout));
        chosen.push_back(*place);
    }
    for (std::size_t p = 0; names.empty() && p < layout.parameters.size(); ++p)
        chosen.push_back(p);
    return chosen;
}

FileStatistics Measure(const std::string& path, const StatsOptions& options, const Analysis& analysis,
                       OpenedFile& opened, Progress& progress) {
    auto& [file, findings] = opened;
    const std::vector<std::size_t> parameters = ChooseParameters(file.layout, options.parameters);
    GatedSample sample(file, analysis, findings, [&](std::uint64_t amount) { progress.Add(amount); });
    return MeasureFile(path, opened, sample, analysis, parameters);
}

}  // namespace

int RunStats(const StatsOptions& options) {
    const Analysis analysis = ReadAnalysis(options.analysis, options.values);
    auto outcomes = CollectFromFiles<FileStatistics>(
        options.files, options.jobs, options.strict,
        [&](std::size_t i, OpenedFile& opened, Progress& progress) {
            return Measure(options.files[i], options, analysis, opened, progress);
        });
    std::vector<FileStatistics> results;
    for (Outcome<FileStatistics>& outcome : outcomes) {
        if (outcome.result) results.push_back(std::move(*outcome.result));
    }
    const int status = PrintRefusals(options.files, outcomes);
    if (!results.empty()) WriteResult(FormatStatistics(results, options.format), options.output);
    return status;
}

}  // namespace Host
