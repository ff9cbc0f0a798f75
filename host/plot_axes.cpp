#include "plot_axes.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <limits>

#include <orvane/OVCalculateAlpha.h>
#include <orvane/OVNthElementSection.h>
#include <orvane/OVSignalSection.h>
#include <orvane/OVStatisticsSignalSection.h>

#include "column.h"
#include "display.h"
#include "membership.h"

namespace Host {
namespace {

using Limits = std::numeric_limits<float>;

/// Of the values, this share is left out at either end.
constexpr double ShareBeyond = 0.001;
/// Of the width of the axis, at either end.
constexpr double Margin = 0.04;
/// How much wider than the values an axis becomes for what it is to include.
constexpr double MostIncluded = 0.35;
/// Widths below half of this are nothing to the library's transformers, and as shares of the values
/// themselves, to floats.
constexpr double LeastWidth = 2e-5;
/// The fewest values, and the smallest share of them, below zero that say how wide the scale is there.
constexpr double LeastBelowZero = 0.005;
/// Values go over several decades when the highest is so many times one that a tenth lie below.
constexpr double SeveralDecades = 50;
/// The least width of an asinh scale as a share of the largest value: below some four decades it is noise
/// that would be spread out.
constexpr double LeastAlpha = 2e-4;

/// The finite values of some events in a copy that may be reordered.
class FiniteValues {
public:
    explicit FiniteValues(const ColumnEvents& events) {
        Membership finite(*events.values, Limits::lowest(), Limits::max());
        if (events.members != nullptr) finite.And(*events.members);
        count_ = static_cast<int>(finite.Recount());
        if (count_ == 0) return;
        try {
            Orvane::OVStatisticsSignalSection().BackupSignalSection(*events.values, finite.Sections(),
                                                                    values_);
        } catch (...) {
            Release();
            throw;
        }
    }
    FiniteValues(const FiniteValues&) = delete;
    FiniteValues& operator=(const FiniteValues&) = delete;
    ~FiniteValues() { Release(); }

    bool IsEmpty() const { return count_ == 0; }

    /// The value below which that share of the values lies.
    double Quantile(double share) {
        const int place = std::min(static_cast<int>(share * count_), count_ - 1);
        return Orvane::OVNthElementSection().Nth_Element(values_, 0, place, count_);
    }

    /// The multiple of the spread of the values below `threshold` that an asinh scale is made with.
    double Alpha(double threshold) {
        return Orvane::OVCalculateAlpha().CalculateAlpha(values_, static_cast<float>(threshold));
    }

private:
    void Release() { Orvane::OVSignalSection().ReleaseVectorSection(values_); }

    std::vector<Orvane::SignalSection*> values_;
    int count_ = 0;
};

/// What an axis needs to know about the values of a column.
struct Summary {
    double low;    ///< robust minimum
    double high;   ///< robust maximum
    double tenth;  ///< a tenth lie below
    double alpha;
};

Summary Summarize(FiniteValues& values) {
    Summary summary{};
    summary.low = values.Quantile(ShareBeyond);
    summary.high = values.Quantile(1 - ShareBeyond);
    if (summary.low == summary.high) {
        summary.low = values.Quantile(0);
        summary.high = values.Quantile(1);
    }
    summary.tenth = values.Quantile(0.1);
    const double largest = std::max(std::abs(summary.low), std::abs(summary.high));
    const bool reachesBelowZero = values.Quantile(LeastBelowZero) < 0;
    const double alpha = values.Alpha(reachesBelowZero ? 0 : values.Quantile(0.5));
    summary.alpha = largest == 0 ? 1 : std::clamp(alpha, LeastAlpha * largest, largest);
    return summary;
}

/// One summary for the columns of several samples; none without a value.
std::optional<Summary> Summarize(const std::vector<ColumnEvents>& shown) {
    std::optional<Summary> all;
    for (const ColumnEvents& events : shown) {
        FiniteValues values(events);
        if (values.IsEmpty()) continue;
        const Summary one = Summarize(values);
        if (!all) all = one;
        all->low = std::min(all->low, one.low);
        all->high = std::max(all->high, one.high);
        all->tenth = std::min(all->tenth, one.tenth);
        all->alpha = std::max(all->alpha, one.alpha);
    }
    return all;
}

bool IsAsinh(ScaleChoice scale, const Summary& values) {
    if (scale != ScaleChoice::Auto) return scale == ScaleChoice::Asinh;
    return values.low < 0 || (values.high > 0 && values.high > SeveralDecades * values.tenth);
}

double Position(double alpha, double value) {
    return alpha > 0 ? std::asinh(value / alpha) : value;
}

double ValueAt(double alpha, double position) {
    return alpha > 0 ? std::sinh(position) * alpha : position;
}

/// Positions on the scale of an axis.
struct Stretch {
    double low;
    double high;

    double Width() const { return high - low; }
};

Stretch Include(const Stretch& stretch, double alpha, const std::vector<double>& values) {
    Stretch wider = stretch;
    for (const double value : values) {
        if (!std::isfinite(value)) continue;
        wider.low = std::min(wider.low, Position(alpha, value));
        wider.high = std::max(wider.high, Position(alpha, value));
    }
    const double most = MostIncluded * stretch.Width();
    return {std::max(wider.low, stretch.low - most), std::min(wider.high, stretch.high + most)};
}

/// Zero belongs to an axis that begins near it, as scatter does.
bool BeginsNearZero(const Summary& values) {
    return values.low >= 0 && values.low < 0.5 * values.high;
}

Stretch FindStretch(const Summary& values, double alpha, const AxisChoice& choice) {
    Stretch stretch{Position(alpha, values.low), Position(alpha, values.high)};
    const double least = std::max(LeastWidth, LeastWidth * std::abs(stretch.high));
    if (stretch.Width() < least) {
        const double half = std::max({least, 0.5 * std::abs(stretch.high), alpha > 0 ? 0.5 : 0.0});
        stretch = {stretch.low - half, stretch.high + half};
    }
    stretch = Include(stretch, alpha, choice.include);
    const bool fromZero = alpha == 0 && BeginsNearZero(values);
    const double margin = Margin * stretch.Width();
    return {fromZero ? std::min(stretch.low, 0.0) : stretch.low - margin, stretch.high + margin};
}

}  // namespace

Axis ChooseAxis(const std::vector<ColumnEvents>& shown, const AxisChoice& choice, const std::string& label) {
    const Summary values = Summarize(shown).value_or(Summary{0, 1, 0.1, 0.1});
    Axis axis{label, 0, 1, 0};
    if (IsAsinh(choice.scale, values)) axis.alpha = choice.alpha > 0 ? choice.alpha : values.alpha;
    if (!choice.range) {
        const Stretch stretch = FindStretch(values, axis.alpha, choice);
        axis.min = ValueAt(axis.alpha, stretch.low);
        axis.max = ValueAt(axis.alpha, stretch.high);
        return axis;
    }
    axis.min = choice.range->min;
    axis.max = choice.range->max;
    // So narrow a part of an asinh scale is as good as straight.
    if (Position(axis.alpha, axis.max) - Position(axis.alpha, axis.min) < LeastWidth) axis.alpha = 0;
    return axis;
}

AxisChoice SameAs(const Axis& axis) {
    return {axis.alpha > 0 ? ScaleChoice::Asinh : ScaleChoice::Linear, DataRange{axis.min, axis.max},
            axis.alpha};
}

ScaleChoice UsualScale(const Parameter& parameter) {
    if (parameter.IsLog()) return ScaleChoice::Asinh;
    std::string name = parameter.name;
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    constexpr std::array<const char*, 7> Linear{"FSC", "SSC", "FS ", "SS ", "FS-", "SS-", "TIME"};
    const bool isLinear = std::any_of(Linear.begin(), Linear.end(),
                                      [&](const char* begin) { return name.rfind(begin, 0) == 0; });
    return isLinear ? ScaleChoice::Linear : ScaleChoice::Auto;
}

std::string AxisLabel(const Parameter& parameter) {
    std::string name = Printable(parameter.name);
    const std::string stain = Printable(parameter.stain);
    if (stain.empty() || stain == name) return name;
    std::string label = stain;
    return label.append(" (").append(name).append(")");
}

}  // namespace Host
