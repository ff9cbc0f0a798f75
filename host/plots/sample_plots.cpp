#include "plots/sample_plots.h"

#include <algorithm>

#include "plots/drawn_events.h"
#include "plots/gate_outlines.h"
#include "text/display.h"
#include "text/numbers.h"

namespace Host {
namespace {

Dimension WithoutScale(Dimension dimension) {
    dimension.transformation.clear();
    return dimension;
}

/// The axis that all samples share.
Axis FindAxis(const std::vector<PlottedSample*>& samples, const PlotRequest& request,
              const Dimension& dimension, const AxisChoice& wanted) {
    std::vector<ColumnEvents> shown;
    shown.reserve(samples.size());
    for (PlottedSample* sample : samples)
        shown.push_back({&sample->Values(dimension), sample->Members(request.population)});
    AxisChoice choice = wanted;
    if (choice.scale == ScaleChoice::Auto) choice.scale = samples[0]->UsualScale(dimension);
    if (choice.scale == ScaleChoice::Asinh && choice.alpha == 0) {
        choice.alpha = samples[0]->UsualAlpha(dimension);
    }
    return ChooseAxis(shown, choice, samples[0]->Label(dimension));
}

PlotFrame FindFrame(const std::vector<PlottedSample*>& samples, const PlotRequest& request,
                    const std::string& title) {
    PlotFrame frame{request.size, title, FindAxis(samples, request, request.x, request.xAxis), {}};
    if (request.y) frame.y = FindAxis(samples, request, *request.y, request.yAxis);
    return frame;
}

PlotEvents FindEvents(PlottedSample& sample, const PlotRequest& request, const std::string& label) {
    return {&sample.Values(request.x), request.y ? &sample.Values(*request.y) : nullptr,
            sample.Members(request.population), label};
}

/// The outlines of the requested gates that have one on these dimensions.
std::vector<Outline> FindOutlines(PlottedSample& sample, const PlotRequest& request) {
    const Strategy& strategy = sample.Gates();
    const auto same = [&](const Dimension& a, const Dimension& b) { return sample.IsSame(a, b); };
    std::vector<Outline> outlines;
    for (std::size_t i = 0; i < request.gates.size(); ++i) {
        const std::size_t gate = request.gates[i];
        std::vector<DataPoint> points =
            FindOutline(strategy, strategy.gates[gate], request.x, request.y ? &*request.y : nullptr, same);
        if (points.empty()) continue;
        std::string label = sample.PopulationName(gate);
        label.append("\n").append(Percentage(sample.CountOf(gate), sample.CountOf(request.population)));
        outlines.push_back({std::move(label), std::move(points), GateColor(i)});
    }
    return outlines;
}

/// The axes are to reach the borders of gates.
void IncludeOutlines(const std::vector<Outline>& outlines, PlotRequest& request) {
    for (const Outline& outline : outlines) {
        for (const DataPoint& point : outline.points) {
            request.xAxis.include.push_back(point.x);
            request.yAxis.include.push_back(point.y);
        }
    }
}

std::vector<PlotGate> FindGates(PlottedSample& sample, const PlotRequest& request) {
    std::vector<PlotGate> gates;
    for (const std::size_t gate : request.gates)
        gates.push_back({sample.PopulationName(gate), sample.Members(gate)});
    return gates;
}

/// The first gate with dimensions among `gate` and those it is made of.
const Gate& FindRegion(const Strategy& strategy, const Gate& gate) {
    const Gate* region = &gate;
    while (const auto* boolean = std::get_if<BooleanGate>(&region->shape)) {
        if (boolean->operands.empty()) break;
        region = &strategy.gates[boolean->operands.front().index];
    }
    return *region;
}

/// The scale that the gate was drawn on; an asinh scale stands for a logarithmic one, too.
ScaleChoice ScaleFor(const Strategy& strategy, const Dimension& dimension) {
    if (dimension.transformation.empty()) return ScaleChoice::Auto;
    const Scale& scale = strategy.scales.at(dimension.transformation);
    return scale.kind == Scale::Kind::Linear ? ScaleChoice::Linear : ScaleChoice::Asinh;
}

}  // namespace

PlottedSample::PlottedSample(const std::string& name, const FcsFile& file, GatedSample& sample)
    : name_(Printable(name)),
      file_(file),
      sample_(sample),
      columns_(sample.Binding(), sample.RawEvents(), sample.Events()) {}

Dimension PlottedSample::FindDimension(std::size_t parameter, bool compensated) const {
    Dimension dimension;
    dimension.compensation = compensated ? Dimension::FileMatrix : Dimension::Uncompensated;
    dimension.parameter = ToUtf8(file_.layout.parameters[parameter].name);
    dimension.place = dimension.parameter;
    return dimension;
}

std::vector<Orvane::SignalSection*>& PlottedSample::Values(const Dimension& dimension) {
    return columns_.Find(WithoutScale(dimension));
}

bool PlottedSample::IsSame(const Dimension& a, const Dimension& b) {
    const std::vector<Orvane::SignalSection*>& first = Values(a);
    const std::vector<Orvane::SignalSection*>& second = Values(b);
    if (&first == &second) return true;
    return !first.empty() && first[0]->Values == second[0]->Values;
}

std::string PlottedSample::Label(const Dimension& dimension) const {
    if (dimension.ratio.empty()) return AxisLabel(Find(dimension, dimension.parameter));
    const Ratio& ratio = Gates().ratios.at(dimension.ratio);
    std::string label = AxisLabel(Find(dimension, ratio.parameters[0]));
    return label.append(" / ").append(AxisLabel(Find(dimension, ratio.parameters[1])));
}

ScaleChoice PlottedSample::UsualScale(const Dimension& dimension) const {
    return dimension.ratio.empty() ? Host::UsualScale(Find(dimension, dimension.parameter))
                                   : ScaleChoice::Auto;
}

double PlottedSample::UsualAlpha(const Dimension& dimension) {
    if (!dimension.ratio.empty()) return 0;
    const Parameter& parameter = Find(dimension, dimension.parameter);
    Dimension raw = dimension;
    raw.compensation = Dimension::Uncompensated;
    raw.parameter = ToUtf8(parameter.name);
    return parameter.IsLog() && IsSame(dimension, raw) ? parameter.logOffset : 0;
}

const Parameter& PlottedSample::Find(const Dimension& dimension, const std::string& name) const {
    return file_.layout.parameters[sample_.Binding().Find(dimension, name)];
}

std::vector<Orvane::FilterSection*>* PlottedSample::Members(const std::optional<std::size_t>& population) {
    return population ? &sample_.Populations()[*population].members.Sections() : nullptr;
}

std::string PlottedSample::PopulationName(const std::optional<std::size_t>& population) const {
    return population ? Printable(Gates().gates[*population].id) : "All events";
}

std::uint64_t PlottedSample::CountOf(const std::optional<std::size_t>& population) const {
    return population ? sample_.Populations()[*population].count : file_.data.events;
}

std::vector<std::size_t> PlottedSample::Children(const std::optional<std::size_t>& population) const {
    std::vector<std::size_t> children;
    for (const std::size_t gate : Gates().treeOrder) {
        if (Gates().gates[gate].parentIndex == population) children.push_back(gate);
    }
    return children;
}

const Strategy& PlottedSample::Gates() const {
    return sample_.Binding().GetStrategy();
}

Figure MakePlot(PlottedSample& sample, const PlotRequest& wanted) {
    PlotRequest request = wanted;
    // Where gates overlap, the smaller one stays visible over the larger.
    std::stable_sort(request.gates.begin(), request.gates.end(),
                     [&](std::size_t a, std::size_t b) { return sample.CountOf(a) > sample.CountOf(b); });
    std::vector<Outline> outlines = FindOutlines(sample, request);
    IncludeOutlines(outlines, request);
    const std::string population = sample.PopulationName(request.population);
    const PlotFrame frame = FindFrame({&sample}, request, sample.Name() + ": " + population);
    const PlotEvents events = FindEvents(sample, request, population);
    const auto draw = [&] {
        switch (request.kind) {
            case PlotKind::Dot:
                return DotFigure(frame, events, FindGates(sample, request));
            case PlotKind::Density:
                return DensityFigure(frame, events);
            case PlotKind::Contour:
                return ContourFigure(frame, events);
            case PlotKind::Histogram:
                break;
        }
        return HistogramFigure(frame, events, FindGates(sample, request));
    };
    Figure figure = draw();
    figure.outlines = std::move(outlines);
    return figure;
}

Figure MakeOverlay(const std::vector<PlottedSample*>& samples, const PlotRequest& request) {
    std::vector<PlotEvents> events;
    events.reserve(samples.size());
    for (PlottedSample* sample : samples)
        events.push_back(FindEvents(*sample, request, sample->Name()));
    const PlotFrame frame = FindFrame(samples, request, samples[0]->PopulationName(request.population));
    return request.kind == PlotKind::Dot ? DotOverlay(frame, events) : HistogramOverlay(frame, events);
}

std::optional<PlotRequest> RequestForGate(PlottedSample& sample, std::size_t gate) {
    const Strategy& strategy = sample.Gates();
    const Gate& shown = strategy.gates[gate];
    const Gate& region = FindRegion(strategy, shown);
    const std::vector<const Dimension*> dimensions = region.Dimensions();
    if (dimensions.empty()) return std::nullopt;
    PlotRequest request;
    request.kind = &region == &shown && dimensions.size() == 2 ? PlotKind::Density : PlotKind::Dot;
    if (dimensions.size() == 1) request.kind = PlotKind::Histogram;
    request.x = *dimensions[0];
    request.xAxis.scale = ScaleFor(strategy, request.x);
    if (dimensions.size() > 1) {
        request.y = *dimensions[1];
        request.yAxis.scale = ScaleFor(strategy, *request.y);
    }
    request.population = shown.parentIndex;
    request.gates = {gate};
    return request;
}

}  // namespace Host
