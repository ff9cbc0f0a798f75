#include "report_command.h"

#include <numeric>

#include "opened_files.h"
#include "population_statistics.h"
#include "report_page.h"

namespace Host {
namespace {

std::string DescribeMatrix(const Analysis& analysis, GatedSample& sample) {
    if (!sample.IsCompensated()) return "none";
    return analysis.compensation.source == CompensationChoice::Source::Given
               ? "with a matrix from another file"
               : "with the matrix of the file";
}

std::vector<Property> DescribeAll(const std::string& path, const FcsFile& file,
                                  const std::string& compensation) {
    std::vector<Property> list{{"file", path}};
    const auto append = [&](std::vector<Property> more) {
        list.insert(list.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    };
    append(DescribeAcquisition(file.keywords));
    append({{"compensation", compensation}});
    append(DescribeFile(file));
    return list;
}

ReportedFile Examine(const std::string& path, OpenedFile& opened, const Analysis& analysis,
                     Progress& progress) {
    const FcsFile& file = opened.file;
    GatedSample sample(opened.file, analysis, opened.findings,
                       [&](std::uint64_t amount) { progress.Add(amount); });
    std::vector<std::size_t> parameters(file.layout.parameters.size());
    std::iota(parameters.begin(), parameters.end(), 0);
    return {MeasureFile(path, opened, sample, analysis, parameters),
            DescribeAll(path, file, DescribeMatrix(analysis, sample)),
            TabulateParameters(file.layout),
            {}};
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
