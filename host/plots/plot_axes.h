// The axes of plots: which scale shows the values of a parameter, and from where to where.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <orvane/Sections.h>

#include "fcs_files/fcs_parameters.h"
#include "picture/figure.h"

namespace Host {

enum class ScaleChoice {
    Auto,  ///< asinh where values go below zero or over several decades, else linear
    Linear,
    Asinh,
};

struct DataRange {
    double min;
    double max;
};

/// What is wanted of an axis. What is not given follows the values to be shown.
struct AxisChoice {
    ScaleChoice scale = ScaleChoice::Auto;
    std::optional<DataRange> range{};
    double alpha = 0;  ///< of an asinh axis; 0 for one that suits the values
    /// Values that a range from the data should reach, borders of gates for instance, as long as they lie
    /// near it. Those that are not finite count for nothing.
    std::vector<double> include{};
};

/// A column and those of its events that matter: all when `members` is null.
struct ColumnEvents {
    std::vector<Orvane::SignalSection*>* values;
    std::vector<Orvane::FilterSection*>* members;
};

/// The axis for the finite values of all the columns. Its range reaches from the lowest thousandth to the
/// highest with a margin, and from zero where that is near, so that single events far off do not squeeze the
/// others; linear axes leave out more of values that are far from most. The asinh scale is as wide around
/// zero as the values below zero scatter, or where there are next to none, the lower half of the values, at
/// most a hundredth of the largest, but never so narrow that it spreads noise over many decades. Without
/// values it goes from 0 to 1. It always has a width that the library's transformers can tell from nothing.
Axis ChooseAxis(const std::vector<ColumnEvents>& shown, const AxisChoice& choice, const std::string& label);

/// The choice that gives exactly this axis, for a plot that is to be compared with another.
AxisChoice SameAs(const Axis& axis);

/// The scale that people expect for a parameter when none is asked for: asinh where the amplifier was
/// logarithmic, linear for scatter, widths of pulses and time, Auto for all others, which are fluorescence.
ScaleChoice UsualScale(const Parameter& parameter);

/// `$PnS ($PnN)`, or `$PnN` alone; UTF-8 without control characters.
std::string AxisLabel(const Parameter& parameter);

}  // namespace Host
