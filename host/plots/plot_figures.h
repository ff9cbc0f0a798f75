// Figures of events: what the library's plot views find in columns and populations, made ready for drawing.
#pragma once

#include <string>
#include <vector>

#include <orvane/Sections.h>

#include "picture/figure.h"

namespace Host {

/// Events of one sample. The vectors run in parallel, section by section, and belong to the caller. Filters
/// must know their true counts.
struct PlotEvents {
    std::vector<Orvane::SignalSection*>* x = nullptr;
    std::vector<Orvane::SignalSection*>* y = nullptr;           ///< null for histograms
    std::vector<Orvane::FilterSection*>* population = nullptr;  ///< the events to show; null for all
    std::string label{};                                        ///< UTF-8, for legends
};

/// Events to tell apart within a population.
struct PlotGate {
    std::string label;  ///< UTF-8; the share of the population is added to it
    std::vector<Orvane::FilterSection*>* members;
};

struct PlotFrame {
    PictureSize size;
    std::string title;
    Axis x;
    Axis y;  ///< histograms make their own
};

/// The functions below return a whole figure but for its outlines, with the number of events shown as
/// subtitle and the number off scale on each side. A pixel holds the values from its left or lower edge to
/// below the other; the upper ends of the axes are off scale. What is off scale shows at the border of dot
/// plots and as outliers there in contour plots, and nowhere else; events without a number are not drawn,
/// and the subtitle says so. Both axes must be wider than 1e-5, in data values and on their scale. Throw
/// OutOfMemoryException* when the pool is exhausted.

/// The most samples that a dot plot tells apart.
constexpr std::size_t MostDotSamples = 8;

/// Every event as a dot of the color of the last gate that it belongs to. The legend names the gates, and
/// the events in none of them where there is a gate.
Figure DotFigure(const PlotFrame& frame, const PlotEvents& events, const std::vector<PlotGate>& gates);

/// Dots in the color of their sample, and in a mixed color where samples lie over each other. At least one
/// sample and at most `MostDotSamples`.
Figure DotOverlay(const PlotFrame& frame, const std::vector<PlotEvents>& samples);

/// Every event as a dot whose color tells how dense it is there: the share of the events that lie where it
/// is less dense, so that small populations beside large ones show their centers, too. The density is that
/// of the events smoothed by a Gaussian, which is wider the fewer events there are.
Figure DensityFigure(const PlotFrame& frame, const PlotEvents& events);

/// Lines of equal density with the same share of the events between each and the next: outside the lowest
/// lie 5 % of them, as single dots, then 10 % from line to line. The density is the same as in density plots.
Figure ContourFigure(const PlotFrame& frame, const PlotEvents& events);

/// Curves of the population and of each gate within it. Heights are numbers of events per 1/256 of the axis,
/// as histograms of 256 channels have them: the library's counts per pixel column, smoothed by a Gaussian at
/// least one such channel wide, and wider for few events, as people are used to see them.
Figure HistogramFigure(const PlotFrame& frame, const PlotEvents& events, const std::vector<PlotGate>& gates);

/// One such curve per sample, as a percentage of its own highest point, so that samples of different sizes
/// can be compared. At least one sample.
Figure HistogramOverlay(const PlotFrame& frame, const std::vector<PlotEvents>& samples);

}  // namespace Host
