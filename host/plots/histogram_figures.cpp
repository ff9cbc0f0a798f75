// Histograms of one sample with its gates, and of several samples.
#include <orvane/OVPlotViewHistogram.h>
#include <orvane/OVPlotViewHistogram_MultiSample.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "plots/contour_lines.h"
#include "plots/drawn_events.h"
#include "plots/plot_canvas.h"

namespace Host {
namespace {

/// Heights are numbers of events per such a part of the axis, whatever the size of the picture.
constexpr double Channels = 256;
/// The highest point of all curves, as a share of the height of the area.
constexpr float HighestPoint = 0.95F;

/// Counters for a number of curves over the pixels of an axis and its border.
class Counters {
public:
    Counters(std::size_t curves, int pixels) : pixels_(pixels), counts_(curves), sections_(curves) {
        for (std::size_t i = 0; i < curves; ++i) {
            counts_[i].resize(static_cast<std::size_t>(pixels) + std::size_t{2} * CanvasBorder);
            sections_[i].Counts = counts_[i].data();
            sections_[i].Count = sections_[i].Capacity = static_cast<int>(counts_[i].size());
            pointers_.push_back(&sections_[i]);
        }
    }

    std::vector<Orvane::CountSection*>& Sections() { return pointers_; }

    /// The sum of a curve's counts with what is off scale.
    double Total(std::size_t curve) const {
        return std::accumulate(counts_[curve].begin(), counts_[curve].end(), 0.0);
    }

    /// The counts of a curve at each pixel, multiplied.
    std::vector<float> Scaled(std::size_t curve, double factor) const {
        const auto first = counts_[curve].begin() + CanvasBorder;
        std::vector<float> heights(static_cast<std::size_t>(pixels_));
        std::transform(first, first + pixels_, heights.begin(),
                       [&](int count) { return static_cast<float>(count * factor); });
        return heights;
    }

private:
    int pixels_;
    std::vector<std::vector<int>> counts_;
    std::vector<Orvane::CountSection> sections_;
    std::vector<Orvane::CountSection*> pointers_;
};

/// At least one channel, so that the steps of values that were integers do not show; wider for few events.
double SmoothingWidth(int pixels, std::uint64_t events) {
    constexpr double Share = 0.05;
    const double width = std::max(1 / Channels, Share * std::pow(static_cast<double>(events) + 1, -0.2));
    return width * pixels;
}

/// A curve in events per channel. In small samples the library has put many virtual events in the place of
/// each: `total` counts stand for `events`.
std::vector<float> Smoothed(const Counters& counters, std::size_t curve, double total, std::uint64_t events,
                            int pixels) {
    const double perChannel = total > 0 ? pixels / Channels * static_cast<double>(events) / total : 0;
    return Smooth(counters.Scaled(curve, perChannel), SmoothingWidth(pixels, events));
}

float Largest(const std::vector<float>& heights) {
    return *std::max_element(heights.begin(), heights.end());
}

void AddCurve(Figure& figure, std::vector<float> heights, double top, Color color) {
    for (float& height : heights)
        height = static_cast<float>(height / top);
    figure.curves.push_back({std::move(heights), color});
}

}  // namespace

Figure HistogramFigure(const PlotFrame& frame, const PlotEvents& events, const std::vector<PlotGate>& gates) {
    DrawnEvents drawn(events);
    Figure figure = BeginFigure(frame, {&drawn, 1});
    const int pixels = FindPlotArea(frame.size).width;
    Counters counters(gates.size() + 1, pixels);
    Orvane::OVPlotViewHistogram().ConvertSignalToCount(*drawn.Describe(gates), counters.Sections(),
                                                       MakeTransformerX(frame.x, pixels).get());
    const auto curve = [&](std::size_t i) {
        return Smoothed(counters, i, counters.Total(0), drawn.Count(), pixels);
    };
    const float highest = Largest(curve(0));
    figure.y = {"Events", 0, highest > 0 ? highest / HighestPoint : 1, 0};
    AddCurve(figure, curve(0), figure.y.max, gates.empty() ? GateColor(0) : BackgroundColor);
    if (!gates.empty()) figure.legend.push_back({events.label, BackgroundColor});
    for (std::size_t i = 0; i < gates.size(); ++i) {
        AddCurve(figure, curve(i + 1), figure.y.max, GateColor(i));
        figure.legend.push_back({drawn.LabelWithShare(gates[i]), GateColor(i)});
    }
    return figure;
}

Figure HistogramOverlay(const PlotFrame& frame, const std::vector<PlotEvents>& samples) {
    std::vector<DrawnEvents> drawn(samples.begin(), samples.end());
    Figure figure = BeginFigure(frame, drawn);
    const int pixels = FindPlotArea(frame.size).width;
    Counters counters(samples.size(), pixels);
    std::vector<std::unique_ptr<Orvane::OVPlotData>> owned;
    std::vector<Orvane::OVPlotData*> data;
    for (DrawnEvents& sample : drawn) {
        owned.push_back(sample.Describe({}));
        data.push_back(owned.back().get());
    }
    Orvane::OVPlotViewHistogram_MultiSample().ConvertSignalToCount(data, counters.Sections(),
                                                                   MakeTransformerX(frame.x, pixels).get());
    figure.y = {"% of maximum", 0, 100 / HighestPoint, 0};
    for (std::size_t i = 0; i < samples.size(); ++i) {
        std::vector<float> heights = Smoothed(counters, i, counters.Total(i), drawn[i].Count(), pixels);
        const float highest = Largest(heights);
        AddCurve(figure, std::move(heights), highest > 0 ? highest / HighestPoint : 1, GateColor(i));
        figure.legend.push_back({drawn[i].LabelWithCount(), GateColor(i)});
    }
    return figure;
}

}  // namespace Host
