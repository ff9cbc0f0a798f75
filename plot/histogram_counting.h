// What the histogram views share: which population they show, whether it is smoothed, and counting its events
// or virtual events.
#pragma once

#include <array>
#include <vector>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVPlotData.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Where the virtual events of an event lie around it, in square roots of its value; one more lies at it.
inline constexpr std::array<double, 63> SmoothingOffsets = {
    -0.985, -0.976, -0.935, -0.916, -0.884, -0.826, -0.759, -0.731, -0.675, -0.602, -0.597, -0.567, -0.518,
    -0.514, -0.483, -0.468, -0.458, -0.424, -0.407, -0.401, -0.393, -0.372, -0.351, -0.313, -0.276, -0.223,
    -0.151, -0.114, -0.103, -0.066, -0.054, 0.0,    0.054,  0.066,  0.103,  0.114,  0.151,  0.223,  0.276,
    0.313,  0.351,  0.372,  0.393,  0.401,  0.407,  0.424,  0.458,  0.468,  0.483,  0.514,  0.518,  0.567,
    0.597,  0.602,  0.675,  0.731,  0.759,  0.826,  0.884,  0.916,  0.935,  0.976,  0.985};

/// A gate of a histogram and the counters of its events.
struct HistogramGate {
    std::vector<FilterSection*>* Members;  ///< one filter per section; null for every event
    CountSection* Counts;
};

/// The events of a parameter, and who counts them.
struct Histogram {
    std::vector<SignalSection*>& Signals;
    CountSection& Counts;  ///< of all events that are counted
    std::vector<HistogramGate> Gates;
};

/// Whether the population that a plot shows is so small that virtual events are counted instead of its own.
bool IsSmoothed(const OVPlotData& data);

/// Adds every event to the counters of its bin.
void CountEvents(const Histogram& histogram, IOVCoordinateTransformerX& x);
/// The same for the events of a population, one filter per section, only.
void CountPopulation(const Histogram& histogram, std::vector<FilterSection*>& population,
                     IOVCoordinateTransformerX& x);

/// Adds 64 virtual events for each event, which belong to the gates it belongs to.
void CountVirtualEvents(const Histogram& histogram, IOVCoordinateTransformerX& x);
/// The same for the events of a population only. Without filters there is none.
void CountVirtualPopulation(const Histogram& histogram, std::vector<FilterSection*>& population,
                            IOVCoordinateTransformerX& x);

}  // namespace Orvane
