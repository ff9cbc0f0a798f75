#include "stats_command.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "display.h"
#include "parallel.h"
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

std::string ListNames(const EventLayout& layout) {
    std::string names;
    for (const Parameter& parameter : layout.parameters) {
        names += (names.empty() ? "" : ", ") + Printable(parameter.name);
    }
    return names;
}

std::vector<std::size_t> ChooseParameters(const EventLayout& layout, const std::vector<std::string>& names) {
    std::vector<std::size_t> chosen;
    const auto begin = layout.parameters.begin();
    const auto end = layout.parameters.end();
    for (const std::string& name : names) {
        const auto place = std::find_if(
            begin, end, [&](const Parameter& parameter) { return ToUtf8(parameter.name) == name; });
        if (place == end) Refuse("--parameters", name, "one of " + ListNames(layout));
        chosen.push_back(static_cast<std::size_t>(place - begin));
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

/// A value that is no number has no place in an order, and no statistic says anything beside it.
ParameterStatistics Compute(Sample& sample, std::size_t index, const Parameter& parameter, Findings& findings,
                            Orvane::IOVStatisticsSignalSection& operations) {
    const Orvane::OVSignalStatistics statistics = sample.Statistics(index, operations);
    if (statistics.Count > 0 && std::isnan(statistics.Average)) {
        const std::uint64_t count = sample.CountNaN(index);
        if (count > 0) {
            findings.Warn({"DATA of " + parameter.name,
                           std::to_string(count) + " values that are not numbers", "numbers"},
                          "its statistics are left out");
            return {parameter.name, static_cast<std::uint64_t>(statistics.Count)};
        }
    }
    return {parameter.name, statistics};
}

FileStatistics Measure(const std::string& path, Task& task, ValueKind values, Progress& progress) {
    Sample sample(task.file, values, [&](std::uint64_t amount) { progress.Add(amount); });
    Population all;
    all.name = "All";
    all.count = task.file.data.events;
    if (all.count > 0) all.percentOfTotal = 100.0F;
    Orvane::OVStatisticsSignalSection operations;
    for (const std::size_t p : task.parameters) {
        all.statistics.push_back(
            Compute(sample, p, task.file.layout.parameters[p], task.findings, operations));
    }
    FileStatistics result{path, task.file.header.version, all.count, task.findings.Warnings(), {}};
    result.populations.push_back(std::move(all));
    return result;
}

std::vector<FileStatistics> MeasureAll(std::vector<Outcome<Task>>& tasks, const StatsOptions& options) {
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
            return Measure(options.files[i], *tasks[i].result, options.values, progress);
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
    auto tasks = Collect<Task>(options.files.size(), options.jobs,
                               [&](std::size_t i) { return Describe(options.files[i], options); });
    const std::vector<FileStatistics> results = MeasureAll(tasks, options);
    const int status = PrintRefusals(options.files, tasks);
    if (!results.empty()) WriteResult(FormatStatistics(results, options.format), options.output);
    return status;
}

}  // namespace Host
