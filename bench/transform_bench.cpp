// Columns to pixels: the transformers beside the loop of their description. One million events: sixteen
// sections, as the pool hands them out.
#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <vector>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>

#include "bench/axes.h"
#include "bench/support.h"

namespace Orvane::Bench {
namespace {

constexpr int SectionCount = 16;
constexpr int Events = 65536;

struct Sample {
    struct Part {
        SignalSection Signal;
        FilterSection Filter;
        ModelSection Model;
    };
    std::array<Part, SectionCount> Parts;

    Sample() {
        std::mt19937 random(1);
        for (Part& part : Parts) {
            part.Signal.Initial();
            part.Filter.Initial();
            part.Model.Initial();
            part.Signal.Count = part.Filter.Count = Events;
            FillColumn(part.Signal.Values, Events, random);
            std::generate_n(part.Filter.Flags, Events / 32, random);
            part.Filter.CalcTrueCount();
        }
    }
};

Sample& TheSample() {
    static Sample sample;
    return sample;
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
