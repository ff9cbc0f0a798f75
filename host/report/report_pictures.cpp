#include "report/report_pictures.h"

#include <algorithm>
#include <cmath>

#include "fcs_files/parameter_names.h"
#include "plots/sample_plots.h"
#include "text/numbers.h"

namespace Host {
namespace {

constexpr PictureSize GateSize{460, 385, 2};
constexpr PictureSize HistogramSize{360, 270, 2};

std::string KindName(PlotKind kind) {
    switch (kind) {
        case PlotKind::Dot:
            return "Dot plot";
        case PlotKind::Histogram:
            return "Histogram";
        case PlotKind::Contour:
            return "Contour plot";
        default:
            return "Density plot";
    }
}

/// The plot in words, without its gates.
std::string InWords(PlottedSample& sample, const PlotRequest& request) {
    std::string text = KindName(request.kind) + " of " + sample.Label(request.x);
    if (request.y) text += " and " + sample.Label(*request.y);
    return text + " in " + sample.PopulationName(request.population);
}

Picture Draw(PlottedSample& sample, const PlotRequest& request, std::string caption, std::string inWords) {
    return {DrawPng(MakePlot(sample, request)), request.size, std::move(caption), std::move(inWords)};
}

/// Whether both show the same values of the same events in the same way.
bool ShareAPicture(PlottedSample& sample, const PlotRequest& a, const PlotRequest& b) {
    return a.kind == b.kind && a.population == b.population && a.y.has_value() == b.y.has_value() &&
           sample.IsSame(a.x, b.x) && (!a.y || sample.IsSame(*a.y, *b.y));
}

/// One request for all gates that can share it, in the order of the tree.
std::vector<PlotRequest> RequestGates(PlottedSample& sample) {
    std::vector<PlotRequest> requests;
    for (const std::size_t gate : sample.Gates().treeOrder) {
        std::optional<PlotRequest> request = RequestForGate(sample, gate);
        if (!request) continue;
        const auto known = std::find_if(requests.begin(), requests.end(), [&](const PlotRequest& other) {
            return ShareAPicture(sample, *request, other);
        });
        if (known == requests.end()) {
            request->size = GateSize;
            requests.push_back(std::move(*request));
        } else {
            known->gates.push_back(gate);
        }
    }
    return requests;
}

std::string CountsInWords(PlottedSample& sample, const PlotRequest& request) {
    const std::uint64_t whole = sample.CountOf(request.population);
    std::string text;
    for (const std::size_t gate : request.gates) {
        const std::uint64_t part = sample.CountOf(gate);
        text += (text.empty() ? "" : ", ") + sample.PopulationName(gate) + ": " + Grouped(part) + " of " +
                Grouped(whole) + " (" + Percentage(part, whole) + ")";
    }
    return text;
}

std::vector<Picture> DrawGates(PlottedSample& sample) {
    std::vector<Picture> pictures;
    for (const PlotRequest& request : RequestGates(sample)) {
        const std::string counts = CountsInWords(sample, request);
        pictures.push_back(Draw(sample, request, counts, InWords(sample, request) + ". " + counts));
    }
    return pictures;
}

/// Plots know parameters by their names, and a name that comes twice stands for the first.
std::vector<Picture> DrawHistograms(PlottedSample& sample, const EventLayout& layout) {
    std::vector<Picture> pictures;
    for (std::size_t p = 0; p < layout.parameters.size(); ++p) {
        if (FindParameter(layout, layout.parameters[p].name) != p) continue;
        PlotRequest request;
        request.kind = PlotKind::Histogram;
        request.x = sample.FindDimension(p);
        request.size = HistogramSize;
        pictures.push_back(Draw(sample, request, sample.Label(request.x), InWords(sample, request)));
    }
    return pictures;
}

/// Of what channel `from` shows, the share that channel `to` shows of it.
struct Spill {
    std::size_t from;
    std::size_t to;
    double share;
};

std::vector<Spill> FindWorst(const Spillover& matrix, const EventLayout& layout) {
    constexpr std::size_t MostPairs = 4;
    std::vector<std::optional<std::size_t>> channels;
    for (const std::string& name : matrix.names)
        channels.push_back(FindChannel(layout, name));
    std::vector<Spill> spills;
    for (std::size_t i = 0; i < matrix.names.size(); ++i) {
        for (std::size_t j = 0; j < matrix.names.size(); ++j) {
            const double share = matrix.At(i, j) / matrix.At(i, i);
            if (i != j && channels[i] && channels[j] && share != 0 && std::isfinite(share)) {
                spills.push_back({*channels[i], *channels[j], share});
            }
        }
    }
    std::stable_sort(spills.begin(), spills.end(),
                     [](const Spill& a, const Spill& b) { return std::abs(a.share) > std::abs(b.share); });
    spills.resize(std::min(spills.size(), MostPairs));
    return spills;
}

/// An axis for the values of a parameter with and without compensation, asinh so that spill-over, which is in
/// proportion, lies along a straight line where it outweighs noise.
AxisChoice CommonAxis(PlottedSample& sample, std::size_t parameter) {
    const Dimension before = sample.FindDimension(parameter, false);
    const Dimension after = sample.FindDimension(parameter, true);
    AxisChoice choice;
    choice.scale = ScaleChoice::Asinh;
    choice.alpha = sample.UsualAlpha(after);
    return SameAs(ChooseAxis({{&sample.Values(before), nullptr}, {&sample.Values(after), nullptr}}, choice,
                             sample.Label(after)));
}

CompensationPictures DrawSpill(PlottedSample& sample, const EventLayout& layout, const Spill& spill) {
    PlotRequest request;
    request.size = GateSize;
    request.xAxis = CommonAxis(sample, spill.from);
    request.yAxis = CommonAxis(sample, spill.to);
    const auto draw = [&](bool compensated, const std::string& caption) {
        request.x = sample.FindDimension(spill.from, compensated);
        request.y = sample.FindDimension(spill.to, compensated);
        return Draw(sample, request, caption, InWords(sample, request) + ". " + caption);
    };
    const std::string title = AxisLabel(layout.parameters[spill.from]) + " into " +
                              AxisLabel(layout.parameters[spill.to]) + ": " + Rounded(100 * spill.share, 3) +
                              " %";
    return {title, draw(false, "Before compensation"), draw(true, "After compensation")};
}

}  // namespace

ReportPictures DrawPictures(const std::string& name, const FcsFile& file, GatedSample& sample,
                            const Spillover* matrix) {
    PlottedSample plotted(name, file, sample);
    ReportPictures pictures;
    pictures.gates = DrawGates(plotted);
    pictures.histograms = DrawHistograms(plotted, file.layout);
    if (matrix == nullptr || !sample.IsCompensated()) return pictures;
    for (const Spill& spill : FindWorst(*matrix, file.layout))
        pictures.compensation.push_back(DrawSpill(plotted, file.layout, spill));
    return pictures;
}

}  // namespace Host
