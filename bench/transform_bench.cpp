// Columns to pixels: the transformers beside the loop of their description. One million events: sixteen
// sections, as the pool hands them out, with values that spread over some decades around zero, a tenth of
// them exactly zero and some saturated.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include <orvane/OVConvertLinearAndLog.h>
#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>

#include "bench/support.h"

namespace Orvane::Bench {
namespace {

constexpr int SectionCount = 16;
constexpr int Events = 65536;
constexpr double WorldMin = -2000.0;
constexpr double WorldMax = 262144.0;
constexpr double Alpha = 150.0;

struct Sample {
    struct Part {
        SignalSection Signal;
        FilterSection Filter;
        ModelSection Model;
    };
    std::array<Part, SectionCount> Parts;

    Sample() {
        std::mt19937 random(1);
        std::lognormal_distribution<float> magnitude(6.0F, 2.5F);
        std::normal_distribution<float> noise(0.0F, 200.0F);
        for (Part& part : Parts) {
            part.Signal.Initial();
            part.Filter.Initial();
            part.Model.Initial();
            part.Signal.Count = part.Filter.Count = Events;
            std::generate_n(part.Signal.Values, Events, [&] {
                if (random() % 10 == 0) return 0.0F;
                return std::min(magnitude(random) + noise(random), 262143.0F);
            });
            std::generate_n(part.Filter.Flags, Events / 32, random);
            part.Filter.CalcTrueCount();
        }
    }
};

Sample& TheSample() {
    static Sample sample;
    return sample;
}

/// An axis as the plain loops see it: constant parts hoisted, everything decided before the loop.
struct PlainAxis {
    bool IsLog, IsClamped;
    double Factor, Scale, Constant, Low, High;
    unsigned short LowPixel, HighPixel;
};

template <bool IsLog, bool IsClamped>
unsigned short PlainPixel(const PlainAxis& axis, double v) {
    if (IsClamped) {
        if (axis.Low >= v) return axis.LowPixel;
        if (v >= axis.High) return axis.HighPixel;
    }
    if (IsLog) {
        const double x = v * axis.Factor;
        const double a = std::fabs(x);
        const double s = std::log(std::sqrt(a * a + 1.0) + a);
        v = x < 0.0 ? -s : s;
    }
    return static_cast<unsigned short>(static_cast<std::int64_t>(v * axis.Scale + axis.Constant));
}

enum class Selection { Whole, Filtered, Packed };

template <bool IsLog, bool IsClamped>
void MapPlainly(const PlainAxis& axis, Selection selection, Sample::Part& part) {
    const float* values = part.Signal.Values;
    unsigned short* pixels = part.Model.Values;
    part.Model.Count = Events;
    if (selection == Selection::Whole) {
        for (int i = 0; i < Events; ++i) {
            pixels[i] = PlainPixel<IsLog, IsClamped>(axis, values[i]);
        }
        return;
    }
    if (selection == Selection::Filtered) std::fill_n(pixels, Events, static_cast<unsigned short>(65535));
    int next = 0;
    for (int i = 0; i < Events; ++i) {
        if (!part.Filter[i]) continue;
        pixels[selection == Selection::Filtered ? i : next++] = PlainPixel<IsLog, IsClamped>(axis, values[i]);
    }
    if (selection == Selection::Packed) part.Model.Count = part.Filter.TrueCount;
}

void MapPlainly(const PlainAxis& axis, Selection selection, Sample::Part& part) {
    if (axis.IsLog && axis.IsClamped) return MapPlainly<true, true>(axis, selection, part);
    if (axis.IsLog) return MapPlainly<true, false>(axis, selection, part);
    if (axis.IsClamped) return MapPlainly<false, true>(axis, selection, part);
    MapPlainly<false, false>(axis, selection, part);
}

template <class Transformer>
void MapWith(Transformer& transformer, Selection selection, Sample::Part& part) {
    switch (selection) {
        case Selection::Whole:
            return transformer.GetScreenSection(&part.Signal, &part.Model);
        case Selection::Filtered:
            return transformer.GetScreenSection(&part.Signal, &part.Filter, &part.Model);
        case Selection::Packed:
            return transformer.GetScreenSectionInTrue(&part.Signal, &part.Filter, &part.Model);
    }
}

template <class Work>
void Time(benchmark::State& state, Work work) {
    for (auto _ : state) {
        for (Sample::Part& part : TheSample().Parts) {
            work(part);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * SectionCount * Events);
}

template <class Work>
std::vector<unsigned short> PixelsOf(Work work, Sample::Part& part) {
    work(part);
    return {part.Model.Values, part.Model.Values + part.Model.Count};
}

template <class Transformer>
void RegisterMapping(const std::string& group, const PlainAxis& axis, Transformer* made,
                     Selection selection = Selection::Whole) {
    const std::shared_ptr<Transformer> transformer(made);
    const auto plain = [=](Sample::Part& part) { MapPlainly(axis, selection, part); };
    const auto mapped = [=](Sample::Part& part) { MapWith(*transformer, selection, part); };
    Register(group, "plain", [=](benchmark::State& state) { Time(state, plain); });
    RegisterForEachInstructionSet(group, [=](benchmark::State& state) {
        for (Sample::Part& part : TheSample().Parts) {
            if (PixelsOf(plain, part) != PixelsOf(mapped, part)) {
                return state.SkipWithError("differs from the plain form");
            }
        }
        Time(state, mapped);
    });
}

PlainAxis HorizontalAxis(bool isLog, bool isClamped, float width) {
    const OVConvertLinearAndLog convert;
    const double factor = 1.0 / Alpha;
    const double low = isLog ? convert.LinearConvertToAsinh(WorldMin, factor) : WorldMin;
    const double high = isLog ? convert.LinearConvertToAsinh(WorldMax, factor) : WorldMax;
    const double scale = width / (high - low);
    const double perPixel = (high - low) / width;
    const double last = (width - 1.0) * perPixel + low;
    return {isLog,
            isClamped,
            factor,
            scale,
            0.0 - low * scale + (isClamped ? 0.5 : 0.0),
            WorldMin,
            isLog ? convert.AsinhConvertToLinear(last, factor) : last,
            0,
            static_cast<unsigned short>(width - 1.0F)};
}

PlainAxis VerticalAxis(bool isLog, bool isClamped, float height) {
    const OVConvertLinearAndLog convert;
    PlainAxis axis = HorizontalAxis(isLog, isClamped, height);
    const double low = isLog ? convert.LinearConvertToAsinh(WorldMin, axis.Factor) : WorldMin;
    const double high = isLog ? convert.LinearConvertToAsinh(WorldMax, axis.Factor) : WorldMax;
    const double onePixel = 1.0 * ((high - low) / height) + low;
    axis.Constant = height + low * axis.Scale + (isClamped ? 0.5 : 0.0);
    axis.Scale = -axis.Scale;
    axis.Low = isLog ? convert.AsinhConvertToLinear(onePixel, axis.Factor) : onePixel;
    axis.High = WorldMax;
    std::swap(axis.LowPixel, axis.HighPixel);
    return axis;
}

void RegisterX(const std::string& group, bool isLog, bool isClamped, float width = 512.0F,
               Selection selection = Selection::Whole) {
    RegisterMapping(group, HorizontalAxis(isLog, isClamped, width),
                    OVCoordinateTransformerXFactory::CreateTransformer(0.0F, width, WorldMin, WorldMax, Alpha,
                                                                       isLog, isClamped),
                    selection);
}

void RegisterY(const std::string& group, bool isLog, bool isClamped) {
    RegisterMapping(group, VerticalAxis(isLog, isClamped, 512.0F),
                    OVCoordinateTransformerYFactory::CreateTransformer(0.0F, 512.0F, WorldMin, WorldMax,
                                                                       Alpha, isLog, isClamped));
}

[[maybe_unused]] const bool registered = [] {
    RegisterX("AsinhToPixelsX", true, false);
    RegisterX("AsinhToPixelsXInScreen", true, true);
    RegisterY("AsinhToPixelsY", true, false);
    RegisterY("AsinhToPixelsYInScreen", true, true);
    RegisterX("AsinhTo4096Pixels", true, false, 4096.0F);
    RegisterX("AsinhToPixelsFiltered", true, true, 512.0F, Selection::Filtered);
    RegisterX("AsinhToPixelsPacked", true, true, 512.0F, Selection::Packed);
    RegisterX("LinearToPixels", false, false);
    RegisterX("LinearToPixelsInScreen", false, true);
    RegisterX("LinearToPixelsFiltered", false, true, 512.0F, Selection::Filtered);
    RegisterX("LinearToPixelsPacked", false, true, 512.0F, Selection::Packed);
    return true;
}();

}  // namespace
}  // namespace Orvane::Bench
