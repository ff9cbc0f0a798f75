#include "stats_command.h"

#include <cmath>
#include <utility>

#include "column_statistics.h"
#include "parallel.h"
#include "parameter_names.h"
#include "progress.h"
#include "stats_report.h"

namespace Host {
namespace {

/// A file whose description has been read and whose events have not.
struct Task {
    FcsFile file;
    Findings findings;
    std::vector<std::size_t> parameters;  ///< positions of those to report
};

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

Task Describe(const std::string& path, const StatsOptions& options) {
    Findings findings(options.strict);
    FcsFile file = OpenFcsFile(path, findings);
    std::vector<std::size_t> parameters = ChooseParameters(file.layout, options.parameters);
    return {std::move(file), std::move(findings), std::move(parameters)};
}

/// Measures one population after another.
class Measurement {
public:
    Measurement(Task& task, GatedSample& sample) : task_(task), sample_(sample) {}

    PopulationStatistics Measure(const PopulationSummary& population) {
        PopulationStatistics result{population, {}};
        Membership* members = population.gate ? &sample_.Populations()[*population.gate].members : nullptr;
        for (const std::size_t p : task_.parameters)
            result.parameters.push_back(Measure(p, population, members));
        return result;
    }

private:
    /// A value that is no number has no place in an order, and no statistic says anything beside it.
    ParameterStatistics Measure(std::size_t index, const PopulationSummary& population, Membership* members) {
        const Parameter& parameter = task_.file.layout.parameters[index];
        Column column(sample_.Events(), index);
        const Orvane::OVSignalStatistics statistics = ComputeStatistics(column, members, operations_);
        if (statistics.Count > 0 && std::isnan(statistics.Average)) {
            const std::uint64_t count = CountNaN(column, members);
            if (count > 0) {
                task_.findings.Warn({"DATA of " + parameter.name + " in " + population.name,
                                     std::to_string(count) + " values that are not numbers", "numbers"},
                                    "its statistics are left out");
                return {parameter.name, static_cast<std::uint64_t>(statistics.Count)};
            }
        }
        return {parameter.name, statistics};
    }

    Task& task_;
    GatedSample& sample_;
    Orvane::OVStatisticsSignalSection operations_;
};

FileStatistics Measure(const std::string& path, Task& task, const Analysis& analysis, Progress& progress) {
    GatedSample sample(task.file, analysis, task.findings,
                       [&](std::uint64_t amount) { progress.Add(amount); });
    const std::uint64_t events = task.file.data.events;
    std::vector<PopulationSummary> tree = ListPopulations(analysis, sample.Populations(), events);
    FileStatistics result;
    Measurement measurement(task, sample);
    for (const PopulationSummary& population : tree) {
        if (!analysis.population.empty() && population.name != analysis.population) continue;
        result.populations.push_back(measurement.Measure(population));
    }
    result.summary = {path, task.file.header.version, events, task.findings.Warnings()};
    if (analysis.strategy) result.tree = std::move(tree);
    return result;
}

std::vector<FileStatistics> MeasureAll(std::vector<Outcome<Task>>& tasks, const Analysis& analysis,
                                       const StatsOptions& options) {
    std::vector<const FcsFile*> files;
    std::uint64_t total = 0;
    for (const Outcome<Task>& task : tasks) {
        if (!task.result) continue;
        files.push_back(&task.result->file);
        total += files.back()->data.events * files.back()->layout.parameters.size();
    }
    SizePool(files);
    Progress progress(total);
    auto outcomes = Collect<std::optional<FileStatistics>>(
        tasks.size(), options.jobs, [&](std::size_t i) -> std::optional<FileStatistics> {
            if (!tasks[i].result) return std::nullopt;
            return Measure(options.files[i], *tasks[i].result, analysis, progress);
        });
    std::vector<FileStatistics> results;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        if (!outcomes[i].refusal.empty()) tasks[i].refusal = outcomes[i].refusal;
        if (outcomes[i].result && *outcomes[i].result) results.push_back(std::move(**outcomes[i].result));
    }
    return results;
}

}  // namespace

int RunStats(const StatsOptions& options) {
    const Analysis analysis = ReadAnalysis(options.analysis, options.values);
    auto tasks = Collect<Task>(options.files.size(), options.jobs,
                               [&](std::size_t i) { return Describe(options.files[i], options); });
    const std::vector<FileStatistics> results = MeasureAll(tasks, analysis, options);
    const int status = PrintRefusals(options.files, tasks);
    if (!results.empty()) WriteResult(FormatStatistics(results, options.format), options.output);
    return status;
}

}  // namespace Host
