#include "picture/figure_axes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace Host {
namespace {

/// Decades of which the ticks would be closer than this many pixels have none.
constexpr double LeastMinorSpacing = 2;

/// Powers of ten of less than this share of alpha lie too close to zero to be told apart.
constexpr double LeastShareOfAlpha = 0.5;

std::string Superscript(int number) {
    static const char* const Digits[] = {"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
    std::string text;
    for (const char c : std::to_string(number))
        text += c == '-' ? "⁻" : Digits[c - '0'];
    return text;
}

std::string PowerOfTen(int exponent) {
    std::string text = "10";
    return text += Superscript(exponent);
}

int FloorLog10(double value) {
    return static_cast<int>(std::floor(std::log10(value)));
}

/// The least of 1, 2 or 5 times a power of ten that is at least `value`.
double NiceFrom(double value) {
    const double power = std::pow(10.0, FloorLog10(value));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= value) return factor * power;
    }
    return 10 * power;
}

/// The greatest of 1, 2 or 5 times a power of ten that is at most `value`.
double NiceUpTo(double value) {
    const double power = std::pow(10.0, FloorLog10(value));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= value) return factor * power;
    }
    return power;
}

/// What the labels of one axis count in.
struct LabelUnit {
    double size;
    std::string suffix;
};

LabelUnit FindUnit(double largest, double step) {
    if (largest >= 1e10 || largest < 1e-3) {
        const int exponent = FloorLog10(largest);
        std::string suffix = "×";
        return {std::pow(10.0, exponent), suffix += PowerOfTen(exponent)};
    }
    if (largest >= 1e6 && step >= 1e4) return {1e6, "M"};
    if (largest >= 1e4 && step >= 10) return {1e3, "k"};
    return {1, ""};
}

/// Deals in values that are multiples of a nice step.
class LinearLabels {
public:
    LinearLabels(double largest, double step)
        : unit_(FindUnit(largest, step)),
          decimals_(std::clamp(-static_cast<int>(std::floor(std::log10(step / unit_.size) + 1e-9)), 0, 17)) {}

    std::string Label(double value) const {
        if (value == 0) return "0";
        char digits[400];
        const auto end = std::to_chars(digits, std::end(digits), std::abs(value) / unit_.size,
                                       std::chars_format::fixed, decimals_)
                             .ptr;
        std::string text = value < 0 ? "−" : "";
        return text.append(digits, end) += unit_.suffix;
    }

private:
    LabelUnit unit_;
    int decimals_;
};

std::vector<double> Multiples(const Axis& axis, double step) {
    // A share of a step beyond the ends makes up for rounding.
    const double first = std::ceil(axis.min / step - 1e-6);
    const double count = std::floor(axis.max / step + 1e-6) - first;
    std::vector<double> values;
    for (int i = 0; i <= count; ++i)
        values.push_back((first + i) * step);
    return values;
}

/// Twos are halved, ones and fives cut into fifths.
int MinorParts(double step) {
    const double digits = step / std::pow(10.0, FloorLog10(step * 1.001));
    return std::lround(digits) == 2 ? 2 : 5;
}

Ticks FindRoundTicks(const Axis& axis, int pixels, double spacing) {
    const AxisScale scale(axis, pixels);
    const double range = axis.max - axis.min;
    const double step = std::min(NiceFrom(range * spacing / pixels), NiceUpTo(range / 2));
    const LinearLabels labels(std::max(std::abs(axis.min), std::abs(axis.max)), step);
    Ticks ticks;
    for (const double value : Multiples(axis, step))
        ticks.labelled.push_back({scale.Position(value), labels.Label(value)});
    for (const double value : Multiples(axis, step / MinorParts(step)))
        ticks.minor.push_back(scale.Position(value));
    return ticks;
}

bool Within(const Axis& axis, double value) {
    return axis.min <= value && value <= axis.max;
}

/// The ticks of an asinh axis: zero, and powers of ten with their negatives and what lies between them.
class Decades {
public:
    Decades(const Axis& axis, int pixels)
        : axis_(axis),
          scale_(axis, pixels),
          largest_(std::max(std::abs(axis.min), std::abs(axis.max))),
          last_(FloorLog10(largest_)) {
        for (int exponent = last_; exponent >= FloorLog10(axis.alpha); --exponent)
            AddMinor(std::pow(10.0, exponent));
    }

    Ticks Powers() {
        LabelZero();
        const double least = axis_.alpha * LeastShareOfAlpha;
        for (int exponent = last_; exponent >= std::ceil(std::log10(least)); --exponent)
            AddLabelled(std::pow(10.0, exponent), PowerOfTen(exponent));
        return ticks_;
    }

    /// With 2 and 5 times the powers of ten, for axes over few of these.
    Ticks Halves() {
        ticks_.labelled.clear();
        LabelZero();
        const double least = axis_.alpha * LeastShareOfAlpha;
        const LabelUnit unit = FindUnit(largest_, least);
        for (const double factor : {1.0, 2.0, 5.0}) {
            for (int exponent = last_; exponent >= FloorLog10(least); --exponent) {
                const double value = factor * std::pow(10.0, exponent);
                if (value >= least) AddLabelled(value, ShortLabel(value, unit));
            }
        }
        return ticks_;
    }

private:
    static std::string ShortLabel(double value, const LabelUnit& unit) {
        constexpr int Digits = 6;
        char digits[32];
        const auto end =
            std::to_chars(digits, std::end(digits), value / unit.size, std::chars_format::general, Digits)
                .ptr;
        return std::string(digits, end).append(unit.suffix);
    }

    void LabelZero() {
        if (Within(axis_, 0)) ticks_.labelled.push_back({scale_.Position(0), "0"});
    }

    void AddLabelled(double value, const std::string& label) {
        if (Within(axis_, value)) ticks_.labelled.push_back({scale_.Position(value), label});
        if (Within(axis_, -value))
            ticks_.labelled.push_back({scale_.Position(-value), std::string("−").append(label)});
    }

    void AddMinor(double power) {
        if (scale_.Position(10 * power) - scale_.Position(9 * power) < LeastMinorSpacing) return;
        for (int multiple = 1; multiple <= 9; ++multiple) {
            for (const double value : {multiple * power, -multiple * power}) {
                if (Within(axis_, value)) ticks_.minor.push_back(scale_.Position(value));
            }
        }
    }

    const Axis& axis_;
    AxisScale scale_;
    double largest_;
    int last_;
    Ticks ticks_;
};

}  // namespace

AxisScale::AxisScale(const Axis& axis, int pixels)
    : transformer_(Orvane::OVCoordinateTransformerXFactory::CreateTransformer(
          0, static_cast<float>(pixels), axis.min, axis.max, axis.alpha, axis.alpha > 0, false)),
      asinh_(axis.alpha > 0) {}

double AxisScale::Position(double value) const {
    return asinh_ ? transformer_->GetScreen_Log(value) : transformer_->GetScreen_Linear(value);
}

Ticks FindTicks(const Axis& axis, int pixels, double spacing) {
    const double range = axis.max - axis.min;
    if (!(range > 0) || !std::isfinite(range)) return {};
    if (axis.alpha > 0) {
        Decades decades(axis, pixels);
        for (const Ticks& ticks : {decades.Powers(), decades.Halves()}) {
            if (ticks.labelled.size() >= 3) return ticks;
        }
    }
    return FindRoundTicks(axis, pixels, spacing);
}

}  // namespace Host
