// Plots of gated samples: which columns, populations, gates, names and axes go into a figure.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gating/gate_columns.h"
#include "gating/gated_sample.h"
#include "plots/plot_axes.h"
#include "plots/plot_figures.h"

namespace Host {

/// A sample with all that plots say about it. The file and the sample must outlive it.
class PlottedSample {
public:
    /// `name` stands in titles and legends.
    PlottedSample(const std::string& name, const FcsFile& file, GatedSample& sample);

    /// A parameter as the matrix of the file leaves it, or with `compensated` false as it stands in the file.
    Dimension FindDimension(std::size_t parameter, bool compensated = true) const;

    /// The values of a dimension, compensated as it says and without its scale.
    std::vector<Orvane::SignalSection*>& Values(const Dimension& dimension);
    /// Whether two dimensions have the same values, whatever their scales.
    bool IsSame(const Dimension& a, const Dimension& b);
    std::string Label(const Dimension& dimension) const;
    /// The scale that people expect, and its width: 0 where that should follow the values.
    ScaleChoice UsualScale(const Dimension& dimension) const;
    double UsualAlpha(const Dimension& dimension);

    /// The events of a population; null for every event, whose index is none.
    std::vector<Orvane::FilterSection*>* Members(const std::optional<std::size_t>& population);
    std::string PopulationName(const std::optional<std::size_t>& population) const;
    std::uint64_t CountOf(const std::optional<std::size_t>& population) const;
    /// The gates whose parent is that population.
    std::vector<std::size_t> Children(const std::optional<std::size_t>& population) const;

    const std::string& Name() const { return name_; }
    const Strategy& Gates() const;

private:
    const Parameter& Find(const Dimension& dimension, const std::string& name) const;

    std::string name_;
    const FcsFile& file_;
    GatedSample& sample_;
    GateColumns columns_;
};

enum class PlotKind { Dot, Density, Contour, Histogram };

/// One plot of a population with its gates. Indexes are those of the strategy's gates; none for every event.
struct PlotRequest {
    PlotKind kind = PlotKind::Density;
    Dimension x{};
    std::optional<Dimension> y{};  ///< none for a histogram
    std::optional<std::size_t> population{};
    /// The gates to color in dot plots and histograms, and to outline where their dimensions are those of the
    /// plot.
    std::vector<std::size_t> gates{};
    AxisChoice xAxis{};
    AxisChoice yAxis{};
    PictureSize size{};
};

/// Its title is the name of the sample and that of the population.
Figure MakePlot(PlottedSample& sample, const PlotRequest& request);

/// Several samples over each other, gates left out: dots or histograms only. Dimensions are looked up in each
/// sample by the names that they have in the request.
Figure MakeOverlay(const std::vector<PlottedSample*>& samples, const PlotRequest& request);

/// The plot that shows a gate in the population of its parent, with no other gates: over its dimensions, a
/// histogram when there is only one. A gate made of other gates is colored in a dot plot over the dimensions
/// of the first of them. None when there is no dimension at all.
std::optional<PlotRequest> RequestForGate(PlottedSample& sample, std::size_t gate);

}  // namespace Host
