#include "commands/plot_command.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <memory>

#include "fcs_files/opened_files.h"
#include "fcs_files/parameter_names.h"
#include "text/display.h"
#include "text/numbers.h"

namespace Host {
namespace {

PlotKind ChooseKind(const PlotOptions& options) {
    if (options.kind) return *options.kind;
    if (options.y.empty()) return PlotKind::Histogram;
    return options.overlay.empty() ? PlotKind::Density : PlotKind::Dot;
}

/// What is read of a file.
struct Source {
    Source(const std::string& path, OpenedFile& opened, const Analysis& analysis, Progress& progress)
        : events(opened.file, analysis, opened.findings, [&](std::uint64_t amount) { progress.Add(amount); }),
          sample(std::filesystem::path(path).filename().string(), opened.file, events) {}

    GatedSample events;
    PlottedSample sample;
};

/// Refuses the files that have not what the plot is to show.
void RequireParameters(std::vector<Outcome<OpenedFile>>& files, const PlotOptions& options) {
    for (Outcome<OpenedFile>& file : files) {
        if (!file.result) continue;
        const EventLayout& layout = file.result->file.layout;
        const auto require = [&](const char* option, const std::string& name) {
            if (!FindParameter(layout, name)) Refuse(option, name, "one of " + ListNames(layout));
        };
        file.refusal = RunGuarded([&] {
            require("--x", options.x);
            if (!options.y.empty()) require("--y", options.y);
        });
    }
}

PlotRequest MakeRequest(const PlotOptions& options, PlottedSample& sample) {
    PlotRequest request;
    request.kind = ChooseKind(options);
    request.x.parameter = options.x;
    request.x.compensation = Dimension::FileMatrix;
    if (!options.y.empty()) {
        request.y = request.x;
        request.y->parameter = options.y;
    }
    const std::vector<Gate>& gates = sample.Gates().gates;
    for (std::size_t i = 0; i < gates.size(); ++i) {
        if (gates[i].id == options.analysis.population) request.population = i;
    }
    request.gates = sample.Children(request.population);
    request.xAxis = options.xAxis;
    request.yAxis = options.yAxis;
    request.size = options.size;
    return request;
}

Figure Draw(const std::vector<Outcome<std::unique_ptr<Source>>>& sources, const PlotOptions& options) {
    std::vector<PlottedSample*> samples;
    samples.reserve(sources.size());
    for (const auto& source : sources)
        samples.push_back(&(*source.result)->sample);
    const PlotRequest request = MakeRequest(options, *samples[0]);
    return samples.size() == 1 ? MakePlot(*samples[0], request) : MakeOverlay(samples, request);
}

/// What was drawn, and what is to be said about the files.
std::string Describe(const PlotOptions& options, const Figure& figure,
                     const std::vector<Outcome<OpenedFile>>& files) {
    std::string text = Printable(options.output);
    text.append("\n").append(figure.title).append("\n").append(figure.subtitle).append("\n");
    for (const Outcome<OpenedFile>& file : files) {
        for (const std::string& warning : file.result->findings.Warnings())
            text.append("warning: ").append(warning).append("\n");
    }
    return text;
}

}  // namespace

std::optional<DataRange> ParseRange(std::string_view text) {
    constexpr double LeastWidth = 1e-4;
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    const std::optional<double> min = ParseNumber(text.substr(0, comma));
    const std::optional<double> max = ParseNumber(text.substr(comma + 1));
    if (!min || !max || *max - *min < LeastWidth) return std::nullopt;
    if (std::max(-*min, *max) > std::numeric_limits<float>::max()) return std::nullopt;
    return DataRange{*min, *max};
}

bool ParseSize(std::string_view text, PictureSize& size) {
    constexpr std::uint64_t Least = 160;
    constexpr std::uint64_t Most = 2400;
    const std::size_t by = text.find('x');
    if (by == std::string_view::npos) return false;
    const std::uint64_t width = ParseUnsigned(text.substr(0, by)).value_or(0);
    const std::uint64_t height = ParseUnsigned(text.substr(by + 1)).value_or(0);
    if (std::min(width, height) < Least || std::max(width, height) > Most) return false;
    size.width = static_cast<int>(width);
    size.height = static_cast<int>(height);
    return true;
}

std::string CheckPlot(const PlotOptions& options) {
    const PlotKind kind = ChooseKind(options);
    const bool flat = kind == PlotKind::Histogram;
    if (flat && !options.y.empty()) return "--kind: a histogram has no --y";
    if (!flat && options.y.empty()) return "--kind: dot, density and contour plots need --y";
    if (options.overlay.empty()) return "";
    if (!flat && kind != PlotKind::Dot) return "--overlay: only dot plots and histograms can have one";
    if (!flat && options.overlay.size() >= MostDotSamples) {
        return "--overlay: dot plots show at most " + std::to_string(MostDotSamples) + " files";
    }
    return "";
}

int RunPlot(const PlotOptions& options) {
    const Analysis analysis = ReadAnalysis(options.analysis, ValueKind::Scale);
    std::vector<std::string> paths = options.overlay;
    paths.insert(paths.begin(), options.file);
    std::vector<Outcome<OpenedFile>> files = OpenAll(paths, 1, options.strict);
    RequireParameters(files, options);
    if (const int status = PrintRefusals(paths, files)) return status;
    Progress progress(PreparePool(files));
    const auto sources = Collect<std::unique_ptr<Source>>(paths.size(), 1, [&](std::size_t i) {
        return std::make_unique<Source>(paths[i], *files[i].result, analysis, progress);
    });
    if (const int status = PrintRefusals(paths, sources)) return status;
    const Figure figure = Draw(sources, options);
    WriteResult(DrawPng(figure), options.output);
    WriteResult(Describe(options, figure, files), "");
    return 0;
}

}  // namespace Host
