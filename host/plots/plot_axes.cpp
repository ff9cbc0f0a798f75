#include "plots/plot_axes.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <limits>

#include <orvane/OVCalculateAlpha.h>
#include <orvane/OVNthElementSection.h>
#include <orvane/OVSignalSection.h>
#include <orvane/OVStatisticsSignalSection.h>

#include "gating/column.h"
#include "gating/membership.h"
#include "text/display.h"

namespace Host {
namespace {

using Limits = std::numeric_limits<float>;

/// Of the values, this share is left out at either end.
constexpr double ShareBeyond = 0.001;
/// Linear axes reach beyond the hundredths at either end by this share of the width between them, so that few
/// bright events do not squeeze all others,
constexpr double ShareBeyondHundredths = 0.5;
/// if that makes them so many times narrower.
constexpr double LeastGain = 1.5;
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
/// The greatest one, where next to nothing lies below zero: two decades are told apart.
constexpr double MostAlpha = 1e-2;

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
    double low;         ///< robust minimum
    double high;        ///< robust maximum
    double lowLinear;   ///< where a linear axis is to begin, not below `low`
    double highLinear;  ///< where it is to end, not above `high`
    double least;
    double tenth;  ///< a tenth lie below
    double alpha;
};

void NarrowLinear(FiniteValues& values, Summary& summary) {
    const double first = values.Quantile(0.01);
    const double last = values.Quantile(0.99);
    const double beyond = ShareBeyondHundredths * (last - first);
    const double low = std::max(summary.low, first - beyond);
    const double high = std::min(summary.high, last + beyond);
    const bool gains = first < last && summary.high - summary.low > LeastGain * (high - low);
    summary.lowLinear = gains ? low : summary.low;
    summary.highLinear = gains ? high : summary.high;
}

Summary Summarize(FiniteValues& values) {
    Summary summary{};
    summary.low = values.Quantile(ShareBeyond);
    summary.high = values.Quantile(1 - ShareBeyond);
    if (summary.low == summary.high) {
        summary.low = values.Quantile(0);
        summary.high = values.Quantile(1);
    }
    NarrowLinear(values, summary);
    summary.least = values.Quantile(0);
    summary.tenth = values.Quantile(0.1);
    const double largest = std::max(std::abs(summary.low), std::abs(summary.high));
    const bool reachesBelowZero = values.Quantile(LeastBelowZero) < 0;
    const double alpha = values.Alpha(reachesBelowZero ? 0 : values.Quantile(0.5));
    const double most = reachesBelowZero ? 1 : MostAlpha;
    summary.alpha = largest == 0 ? 1 : std::clamp(alpha, LeastAlpha * largest, most * largest);
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
        all->lowLinear = std::min(all->lowLinear, one.lowLinear);
        all->highLinear = std::max(all->highLinear, one.highLinear);
        all->least = std::min(all->least, one.least);
        all->tenth = std::min(all->tenth, one.tenth);
        all->alpha = std::max(all->alpha, one.alpha);
    }
    return all;
}

bool IsAsinh(ScaleChoice scale, const Summary& values) {
    if (scale != ScaleChoice::Auto) return scale == ScaleChoice::Asinh;
    return values.least < 0 || (values.high > 0 && values.high > SeveralDecades * values.tenth);
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

/// Wider by what it is to include, as long as that lies near it or within `robust`.
Stretch Include(const Stretch& stretch, const Stretch& robust, double alpha,
                const std::vector<double>& values) {
    Stretch wider = stretch;
    for (const double value : values) {
        if (!std::isfinite(value)) continue;
        wider.low = std::min(wider.low, Position(alpha, value));
        wider.high = std::max(wider.high, Position(alpha, value));
    }
    const double most = MostIncluded * stretch.Width();
    return {std::max(wider.low, std::min(stretch.low - most, robust.low)),
            std::min(wider.high, std::max(stretch.high + most, robust.high))};
}

/// Zero belongs to an axis that begins near it, as scatter does.
bool BeginsNearZero(const Summary& values) {
    return values.low >= 0 && values.low < 0.5 * values.high;
}

Stretch FindStretch(const Summary& values, double alpha, const AxisChoice& choice) {
    const Stretch robust{Position(alpha, values.low), Position(alpha, values.high)};
    Stretch stretch = alpha > 0 ? robust : Stretch{values.lowLinear, values.highLinear};
    const double least = std::max(LeastWidth, LeastWidth * std::abs(stretch.high));
    if (stretch.Width() < least) {
        const double half = std::max({least, 0.5 * std::abs(stretch.high), alpha > 0 ? 0.5 : 0.0});
        stretch = {stretch.low - half, stretch.high + half};
    }
    stretch = Include(stretch, robust, alpha, choice.include);
    const bool fromZero = alpha == 0 && BeginsNearZero(values);
    const double margin = Margin * stretch.Width();
    return {fromZero ? std::min(stretch.low, 0.0) : stretch.low - margin, stretch.high + margin};
}

}  // namespace

Axis ChooseAxis(const std::vector<ColumnEvents>& shown, const AxisChoice& choice, const std::string& label) {
    const Summary values = Summarize(shown).value_or(Summary{0, 1, 0, 1, 0, 0.1, 0.1});
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
    // Between blanks, so that words are found at the ends as well.
    std::string name = " ";
    for (const char c : parameter.name)
        name += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    name += " ";
    constexpr std::array<const char*, 11> Linear{"FSC",   "SSC",    " FS ",   " SS ", " FS-", " SS-",
                                                 " TIME", " EVENT", " WIDTH", "-W ",  " W "};
    const bool isLinear = std::any_of(Linear.begin(), Linear.end(),
                                      [&](const char* part) { return name.find(part) != std::string::npos; });
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
