// The events that a plot draws: those of its population that have numbers on its axes.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <orvane/OVPlotData.h>

#include "gating/membership.h"
#include "plots/plot_figures.h"

namespace Host {

/// The events of one sample within a plot. What `events` refers to must outlive it.
class DrawnEvents {
public:
    explicit DrawnEvents(const PlotEvents& events);

    std::uint64_t Count() const { return count_; }       ///< drawn, on and off scale
    std::uint64_t Population() const { return shown_; }  ///< of the population, without numbers as well
    std::uint64_t Sample() const { return total_; }      ///< of the whole sample

    /// The background, which is all that is drawn, and behind it `gates`.
    std::unique_ptr<Orvane::OVPlotData> Describe(const std::vector<PlotGate>& gates);

    /// The label of the events with their number.
    std::string LabelWithCount() const;
    /// The label of a gate with its per cent of the population.
    std::string LabelWithShare(const PlotGate& gate) const;

    void AddOffScale(const Axis& x, const Axis& y, OffScale& sums);

private:
    std::uint64_t CountBetween(std::vector<Orvane::SignalSection*>& values, float min, float max);

    PlotEvents events_;
    Membership members_;
    std::uint64_t count_ = 0;
    std::uint64_t shown_ = 0;
    std::uint64_t total_ = 0;
};

/// A figure with what it says about these events and nothing drawn yet.
Figure BeginFigure(const PlotFrame& frame, std::span<DrawnEvents> samples);

/// Of what is in no gate.
constexpr Color BackgroundColor{150, 150, 150};

/// How many pixels wide the dot of an event is in a plot of so many.
int DotWidth(const PictureSize& size, std::uint64_t events);

}  // namespace Host
