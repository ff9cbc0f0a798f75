// Dot plots of one sample with its gates, and of several samples.
#include <orvane/OVPlotViewDot.h>
#include <orvane/OVPlotViewDot_MultiSample.h>

#include <algorithm>
#include <bit>

#include "plots/drawn_events.h"
#include "plots/plot_canvas.h"
#include "text/numbers.h"

namespace Host {
namespace {

std::uint64_t CountAll(const std::vector<DrawnEvents>& samples) {
    std::uint64_t count = 0;
    for (const DrawnEvents& sample : samples)
        count += sample.Count();
    return count;
}

/// The mixture of the colors of the samples whose bits are set, darker where there are more.
Color Mixture(unsigned samples) {
    double red = 0;
    double green = 0;
    double blue = 0;
    for (unsigned sample = 0; sample < MostDotSamples; ++sample) {
        if ((samples >> sample & 1U) == 0) continue;
        const Color color = GateColor(sample);
        red += color.red;
        green += color.green;
        blue += color.blue;
    }
    const double whole = 1.5 * std::popcount(samples) - 0.5;
    const auto part = [&](double sum) { return static_cast<unsigned char>(sum / whole); };
    return {part(red), part(green), part(blue)};
}

}  // namespace

Figure DotFigure(const PlotFrame& frame, const PlotEvents& events, const std::vector<PlotGate>& gates) {
    DrawnEvents drawn(events);
    Figure figure = BeginFigure(frame, {&drawn, 1});
    PlotCanvas canvas(FindPlotArea(frame.size), frame.x, frame.y);
    Orvane::OVPlotViewDot view;
    view.RenderPlot(*drawn.Describe(gates), canvas.Bitmap(), canvas.X(), canvas.Y());
    canvas.Spread(DotWidth(frame.size, drawn.Count()), [](int a, int b) { return std::max(a, b); });
    std::vector<int> colors{0, static_cast<int>(Cell(gates.empty() ? GateColor(0) : BackgroundColor))};
    if (!gates.empty()) figure.legend.push_back({"in no gate", BackgroundColor});
    for (std::size_t i = 0; i < gates.size(); ++i) {
        colors.push_back(static_cast<int>(Cell(GateColor(i))));
        figure.legend.push_back({drawn.LabelWithShare(gates[i]), GateColor(i)});
    }
    view.SetBitmapColor(canvas.Bitmap(), colors.data(), static_cast<int>(colors.size()));
    figure.cells = canvas.Colors();
    return figure;
}

Figure DotOverlay(const PlotFrame& frame, const std::vector<PlotEvents>& samples) {
    std::vector<DrawnEvents> drawn(samples.begin(), samples.end());
    Figure figure = BeginFigure(frame, drawn);
    std::vector<std::unique_ptr<Orvane::OVPlotData>> owned;
    std::vector<Orvane::OVPlotData*> data;
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        owned.push_back(drawn[i].Describe({}));
        owned[i]->SampleIndex = static_cast<int>(i);
        data.push_back(owned[i].get());
        figure.legend.push_back({drawn[i].LabelWithCount(), GateColor(i)});
    }
    PlotCanvas canvas(FindPlotArea(frame.size), frame.x, frame.y);
    Orvane::OVPlotViewDot_MultiSample view;
    view.RenderPlot(data, canvas.Bitmap(), canvas.X(), canvas.Y());
    canvas.Spread(DotWidth(frame.size, CountAll(drawn)), [](int a, int b) { return a | b; });
    std::vector<int> colors{0};
    for (unsigned set = 1; set < 1U << samples.size(); ++set)
        colors.push_back(static_cast<int>(Cell(Mixture(set))));
    view.SetBitmapColor(canvas.Bitmap(), colors.data(), static_cast<int>(colors.size()));
    figure.cells = canvas.Colors();
    return figure;
}

}  // namespace Host
