#include "commands/report_command.h"

#include <filesystem>
#include <numeric>

#include "fcs_files/opened_files.h"
#include "plots/plot_axes.h"
#include "report/report_page.h"
#include "statistics/population_statistics.h"
#include "text/numbers.h"

namespace Host {
namespace {

std::string DescribeMatrix(const Analysis& analysis, GatedSample& sample) {
    if (!sample.IsCompensated()) return "none";
    return analysis.compensation.source == CompensationChoice::Source::Given
               ? "with a matrix from another file"
               : "with the matrix of the file";
}

std::vector<Property> DescribeSample(const std::string& path, const FcsFile& file,
                                     const std::string& compensation) {
    std::vector<Property> list{{"file", path}, {"events", Grouped(file.data.events)}};
    for (Property& property : DescribeAcquisition(file.keywords))
        list.push_back(std::move(property));
    list.push_back({"compensation", compensation});
    return list;
}

/// The statistics of all parameters, called as the axes of plots are.
FileStatistics MeasureAll(const std::string& path, OpenedFile& opened, GatedSample& sample,
                          const Analysis& analysis) {
    const std::vector<Parameter>& parameters = opened.file.layout.parameters;
    std::vector<std::size_t> all(parameters.size());
    std::iota(all.begin(), all.end(), 0);
    FileStatistics statistics = MeasureFile(path, opened, sample, analysis, all);
    for (PopulationStatistics& population : statistics.populations) {
        for (const std::size_t p : all)
            population.parameters[p].parameter = AxisLabel(parameters[p]);
    }
    return statistics;
}

ReportedFile Examine(const std::string& path, OpenedFile& opened, const Analysis& analysis,
                     Progress& progress) {
    const FcsFile& file = opened.file;
    GatedSample sample(opened.file, analysis, opened.findings,
                       [&](std::uint64_t amount) { progress.Add(amount); });
    const std::string name = std::filesystem::path(path).filename().string();
    return {MeasureAll(path, opened, sample, analysis),
            DescribeSample(path, file, DescribeMatrix(analysis, sample)), DescribeFile(file),
            TabulateParameters(file.layout),
            DrawPictures(name, file, sample, ChosenMatrix(analysis.compensation, file.spillover))};
}

}  // namespace

int RunReport(const ReportOptions& options) {
    const Analysis analysis = ReadAnalysis(options.analysis, ValueKind::Scale);
    const auto files =
        CollectFromFiles<ReportedFile>(options.files, options.jobs, options.strict,
                                       [&](std::size_t i, OpenedFile& opened, Progress& progress) {
                                           return Examine(options.files[i], opened, analysis, progress);
                                       });
    const int status = PrintRefusals(options.files, files);
    WriteResult(FormatReport(options.files, files, options.commandLine), options.output);
    return status;
}

}  // namespace Host
