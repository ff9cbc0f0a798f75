// Axis transformers and the coordinate transform, against their formulas in scalar double.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <orvane/orvane.h>

#include "foundation/convert.h"
#include "tests/support/awkward.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"
#include "tests/support/population.h"
#include "transform/kernels.h"

namespace Orvane {
namespace {

using namespace Testing;

using Pixels = std::vector<unsigned short>;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr unsigned short Untouched = 12345;
constexpr double Infinite = std::numeric_limits<double>::infinity();
const OVConvertLinearAndLog Convert;

unsigned short Truncated(double position) {
    return static_cast<unsigned short>(TruncateToInt64(position));
}

// ---- Transformers

struct Axis {
    float ScreenMin, ScreenMax;
    double WorldMin, WorldMax, Alpha;
    bool IsLog;
};

// Ordinary ones of three sizes; symmetric ones whose zero lies on a pixel border; fractional and negative
// screen ranges; negative data; huge and tiny scales and widths; empty, reversed and infinite ranges.
const Axis Axes[] = {
    {0, 512, -2000, 262144, 150, true},   {0, 256, -100, 262144, 1, true},
    {0, 4096, -1e5, 1e6, 10, true},       {0, 512, -1000, 1000, 1e4, true},
    {7, 263, -5000, 5000, 0.1, true},     {0, 100.7F, -150, 1e4, 30, true},
    {-20.25F, 491.5F, 10, 1e5, 3, true},  {0, 60000, -1e5, 1e6, 5, true},
    {0, 3e6F, -1e5, 1e6, 5, true},        {0, 512, -1e-3, 1e-3, 1e-7, true},
    {0, 512, -2000, 262144, 1e-42, true}, {0, 512, -2000, 262144, 1e300, true},
    {0, 0.5F, -2000, 262144, 150, true},  {0, 512, -2000, 262144, -150, true},
    {0, 512, -2000, 262144, 0, true},     {0, 256, 0, 1024, 0, false},
    {0, 1024, 0, 262144, 0, false},       {3.5F, 100.7F, -13.25, 1e4, 0, false},
    {0, 512, 0, 1e-4, 0, false},          {0, 512, 0, 1e300, 0, false},
    {-1e6F, 9e18F, 0, 10, 0, false},      {0, 512, 100, 0, 0, false},
    {5.9F, 512, 3, 3, 0, false},          {0, 512, -Infinite, Infinite, 0, false},
};

/// The data range of an axis on its own scale.
struct ScaledRange {
    explicit ScaledRange(const Axis& axis) : IsLog(axis.IsLog), Factor(1.0 / axis.Alpha) {
        Low = Scaled(axis.WorldMin);
        Width = Scaled(axis.WorldMax) - Low;
    }
    double Scaled(double v) const { return IsLog ? Convert.asinh(v * Factor) : v; }
    bool IsLog;
    double Factor, Low, Width;
};

/// The stated column formula of the transformers, term by term.
unsigned short TransformerPixel(const Axis& axis, bool isVertical, bool inScreen, float value) {
    const ScaledRange range(axis);
    const float end = axis.ScreenMax - 1.0F;
    const unsigned short first = Truncated(axis.ScreenMin);
    if ((axis.IsLog && axis.Alpha == 0.0) || range.Width < 1e-5) return first;
    const auto screenRange = static_cast<double>(axis.ScreenMax - axis.ScreenMin);
    const double span = static_cast<std::int32_t>(TruncateToInt64(screenRange));
    const float offset = isVertical ? axis.ScreenMax - end : end - axis.ScreenMin;
    double clamp = offset * (range.Width / span) + range.Low;
    if (axis.IsLog) clamp = Convert.sinh(clamp) / range.Factor;
    const double v = value;
    if (inScreen && (isVertical ? clamp : axis.WorldMin) >= v) return isVertical ? Truncated(end) : first;
    if (inScreen && v >= (isVertical ? axis.WorldMax : clamp)) return isVertical ? first : Truncated(end);
    const double scale = span / range.Width;
    const double half = inScreen ? 0.5 : 0.0;
    if (isVertical) return Truncated((axis.ScreenMax + range.Low * scale + half) - range.Scaled(v) * scale);
    return Truncated(range.Scaled(v) * scale + (axis.ScreenMin - range.Low * scale + half));
}

/// Both families behind one face.
struct Transformer {
    Transformer(const Axis& a, bool isVertical, bool inScreen) {
        if (isVertical) {
            Y.reset(OVCoordinateTransformerYFactory::CreateTransformer(
                a.ScreenMin, a.ScreenMax, a.WorldMin, a.WorldMax, a.Alpha, a.IsLog, inScreen));
        } else {
            X.reset(OVCoordinateTransformerXFactory::CreateTransformer(
                a.ScreenMin, a.ScreenMax, a.WorldMin, a.WorldMax, a.Alpha, a.IsLog, inScreen));
        }
    }
    template <class Call>
    void operator()(Call call) const {
        if (X != nullptr) return call(*X);
        call(*Y);
    }
    float ScreenAt(double world) const {
        float screen = 0.0F;
        (*this)([&](auto& axis) { axis.GetScreenValue(world, screen); });
        return screen;
    }
    double WorldAt(float screen) const {
        double world = 0.0;
        (*this)([&](auto& axis) { axis.GetWorldValue(screen, world); });
        return world;
    }
    std::unique_ptr<IOVCoordinateTransformerX> X;
    std::unique_ptr<IOVCoordinateTransformerY> Y;
};

/// Values that bite on this axis: the data values of pixel borders, clamped ones lying half a pixel further,
/// and of the bounds, each with the two floats on either side; zeros, denormals, extremes, infinities, NaN.
Floats BitingValues(const Axis& axis, const Transformer& transformer) {
    Floats values = AwkwardFloats();
    const float step = std::max(0.5F, (axis.ScreenMax - axis.ScreenMin) / 8192.0F);
    Floats borders{static_cast<float>(axis.WorldMin), static_cast<float>(axis.WorldMax)};
    for (float s = axis.ScreenMin - 3.0F; s < axis.ScreenMax + 3.0F; s += step) {
        borders.push_back(static_cast<float>(transformer.WorldAt(std::floor(2.0F * s) / 2.0F)));
    }
    for (const float border : borders) {
        const float below = std::nextafter(border, -INFINITY), above = std::nextafter(border, INFINITY);
        values.insert(values.end(), {below, border, above});
    }
    const Floats random = RandomFloats(1000, 7);
    values.insert(values.end(), random.begin(), random.end());
    return values;
}

template <class Section, class Values>
Section Over(Values& values, int count) {
    Section section;
    section.Count = section.Capacity = count;
    section.Values = values.data();
    return section;
}

class Columns : public ::testing::TestWithParam<int> {
protected:
    const bool IsVertical = GetParam() / 2 != 0, InScreen = GetParam() % 2 != 0;
};

/// The first `count` pixels, those of filtered and packed columns: as a transformer makes them in the current
/// instruction set, and as they follow from the pixels of all values and the bits.
void ExpectColumns(const Transformer& transformer, Floats& values, std::vector<std::uint32_t>& bits,
                   const Pixels& pixels, int count) {
    auto signal = Over<SignalSection>(values, count);
    FilterSection filter;
    filter.Count = count;
    filter.TrueCount = 77;  // stale
    filter.Flags = bits.data();
    const std::size_t size = static_cast<std::size_t>(count);
    Pixels expected(pixels.begin(), pixels.begin() + count), expectedFiltered(size, 65535), expectedPacked;
    for (std::size_t i = 0; i < size; ++i) {
        if (!filter[static_cast<int>(i)]) continue;
        expectedFiltered[i] = pixels[i];
        expectedPacked.push_back(pixels[i]);
    }
    for (Pixels* column : {&expected, &expectedFiltered, &expectedPacked})
        column->resize(size + 64, Untouched);
    Pixels whole(size + 64, Untouched), filtered = whole, packed = whole;
    auto wholeModel = Over<ModelSection>(whole, 0), filteredModel = Over<ModelSection>(filtered, 0),
         packedModel = Over<ModelSection>(packed, 0);
    transformer([&](auto& axis) {
        axis.GetScreenSection(&signal, &wholeModel);
        axis.GetScreenSection(&signal, &filter, &filteredModel);
        axis.GetScreenSectionInTrue(&signal, &filter, &packedModel);
    });
    ASSERT_EQ(whole, expected);
    ASSERT_EQ(filtered, expectedFiltered);
    ASSERT_EQ(packed, expectedPacked);
    EXPECT_EQ(wholeModel.Count, count);
    EXPECT_EQ(filteredModel.Count, count);
    EXPECT_EQ(packedModel.Count, 77);
}

TEST_P(Columns, OfTransformersEqualTheScalarFormula) {
    for (const Axis& axis : Axes) {
        const Transformer transformer(axis, IsVertical, InScreen);
        Floats values = BitingValues(axis, transformer);
        Pixels pixels;
        for (const float value : values)
            pixels.push_back(TransformerPixel(axis, IsVertical, InScreen, value));
        std::vector<std::uint32_t> bits(values.size() / 32 + 1);
        std::generate(bits.begin(), bits.end(), std::mt19937(3));
        for (const InstructionSet set : AvailableInstructionSets()) {
            const ScopedInstructionSet scope(set);
            for (const int count : {0, 1, 31, 32, 33, 63, 64, 65, 1024, static_cast<int>(values.size())}) {
                SCOPED_TRACE(::testing::Message() << "axis " << &axis - Axes << ", instruction set "
                                                  << static_cast<int>(set) << ", count " << count);
                ASSERT_NO_FATAL_FAILURE(ExpectColumns(transformer, values, bits, pixels, count));
            }
        }
    }
}

std::string NameOf(const ::testing::TestParamInfo<int>& info) {
    return std::string(info.param / 2 != 0 ? "Y" : "X") + (info.param % 2 != 0 ? "InScreen" : "");
}

INSTANTIATE_TEST_SUITE_P(Axes, Columns, ::testing::Range(0, 4), NameOf);

TEST(Transformers, ScalarValues) {
    const struct {
        bool IsVertical, InScreen;
        double World;
        float Screen;
    } rows[] = {{false, false, 512, 128}, {false, false, -3, -0.75F}, {false, false, 2048, 512},
                {false, true, 2048, 255}, {false, true, -3, 0},       {true, false, 0, 256},
                {true, false, 512, 128},  {true, true, 0, 255},       {true, true, 2048, 0}};
    for (const auto& row : rows) {
        const Transformer transformer({0, 256, 0, 1024, 0, false}, row.IsVertical, row.InScreen);
        EXPECT_EQ(transformer.ScreenAt(row.World), row.Screen) << row.IsVertical << row.InScreen;
        EXPECT_TRUE(std::isnan(transformer.ScreenAt(NaN))) << "a NaN passes the clamp";
    }
}

TEST(Transformers, WorldValuesInvertScreenValues) {
    for (const bool isVertical : {false, true}) {
        for (const bool isLog : {false, true}) {
            const Transformer transformer({10, 522, -1000, 1e5, 200, isLog}, isVertical, false);
            for (const double world : {-1000.0, 0.0, 77.0, 54321.0, 1e5})
                EXPECT_NEAR(transformer.WorldAt(transformer.ScreenAt(world)), world, 0.05);
            // A reversed range maps to one place, yet keeps its way back.
            const Transformer reversed({10, 522, 1e5, 0, 200, isLog}, isVertical, true);
            EXPECT_EQ(reversed.ScreenAt(54321.0), 10.0F);
            EXPECT_NEAR(reversed.WorldAt(isVertical ? 10.0F : 522.0F), 0.0, 1e-6);
        }
    }
}

/// A host's own axis: its scalar mapping is honoured only where values are not kept in the screen.
struct SquareRootAxis : OVCoordinateTransformerX_Linear {
    using OVCoordinateTransformerX_Linear::OVCoordinateTransformerX_Linear;
    float GetScreen_Linear(double world) override { return static_cast<float>(std::sqrt(world)); }
};

TEST(Transformers, OverriddenScalarMapping) {
    SquareRootAxis free(0, 256, 0, 1024, false), kept(0, 256, 0, 1024, true);
    float screen = 0.0F;
    free.GetScreenValue(81.0, screen);
    EXPECT_EQ(screen, 9.0F);
    kept.GetScreenValue(80.0, screen);
    EXPECT_EQ(screen, 20.0F);
}

// ---- The transform without state

const CoordinateType Neither = static_cast<CoordinateType>(2);

TEST(CoordinateTransform, ScalarValues) {
    const OVCoordinateTransform transform;
    constexpr double Wide = 1e6;  // An axis linear but for roundings.
    const struct {
        double World;
        CoordinateType Type;
        bool InScreen;
        double WorldMax;
        float Linear, Log;
    } screens[] = {{512, Horizontal, false, 1024, 128, 128}, {512, Vertical, false, 1024, 128, 128},
                   {2048, Horizontal, true, 1024, 255, 255}, {2048, Vertical, true, 1024, 0, 0},
                   {-9, Horizontal, true, 1024, 0, 0},       {512, Horizontal, true, 0, 0, 0},
                   {512, Neither, false, 1024, 777, 128},    {512, Neither, true, 1024, 255, 128}};
    for (const auto& [world, type, inScreen, max, linear, log] : screens) {
        float screen = 777.0F;
        transform.CalculateLinearCoordinateScreen(world, 0, 256, 0, max, type, inScreen, screen);
        EXPECT_EQ(screen, linear) << world << ' ' << type;
        transform.CalculateLogCoordinateScreen(world, 0, 256, 0, max, type, inScreen, Wide, screen);
        EXPECT_NEAR(screen, log, 1e-3) << world << ' ' << type;
    }
    const struct {
        CoordinateType Type;
        double Linear, Log;
    } worlds[] = {{Horizontal, 256, 256}, {Vertical, 768, 768}, {Neither, -5, 0}};
    for (const auto& [type, linear, log] : worlds) {
        double world = -5.0;
        transform.CalculateLinearCoordinateWorld(64, 0, 256, 0, 1024, type, world);
        EXPECT_EQ(world, linear);
        transform.CalculateLogCoordinateWorld(64, 0, 256, 0, 1024, type, Wide, world);
        EXPECT_NEAR(world, log, 1e-2);
    }
}

/// The stated column formula, with all that differs from the transformers.
unsigned short StatelessPixel(const Axis& axis, CoordinateType t, bool inScreen, float value) {
    const ScaledRange range(axis);
    if (range.Width < 1e-5) return 0;
    const double v = value;
    const float last = axis.ScreenMax - 1.0F;
    if (inScreen && v <= axis.WorldMin) return Truncated(t == Vertical ? last : axis.ScreenMin);
    if (inScreen && v >= axis.WorldMax) return Truncated(t == Vertical ? axis.ScreenMin : last);
    const double scale = static_cast<double>(axis.ScreenMax - axis.ScreenMin) / range.Width;
    if (t == Horizontal) return Truncated(range.Scaled(v) * scale + (axis.ScreenMin - scale * range.Low));
    return Truncated(last - static_cast<float>(Truncated((range.Scaled(v) - range.Low) * scale)));
}

TEST_P(Columns, OfTheStatelessTransformEqualTheScalarFormula) {
    const OVCoordinateTransform transform;
    const CoordinateType type = IsVertical ? Vertical : Horizontal;
    for (const Axis& axis : Axes) {
        SCOPED_TRACE(::testing::Message() << "axis " << &axis - Axes);
        const auto& [screenMin, screenMax, worldMin, worldMax, alpha, isLog] = axis;
        Floats values = BitingValues(axis, Transformer(axis, IsVertical, false));
        Pixels expected;
        for (const float value : values)
            expected.push_back(StatelessPixel(axis, type, InScreen, value));
        Pixels pixels(values.size());
        auto one = Over<SignalSection>(values, 1),
             rest = Over<SignalSection>(values, static_cast<int>(values.size()) - 1);
        auto oneModel = Over<ModelSection>(pixels, 1), restModel = Over<ModelSection>(pixels, rest.Count);
        ++rest.Values;
        ++restModel.Values;
        Signals signals{&one, &rest};
        std::vector<ModelSection*> models{&oneModel, &restModel};
        for (const InstructionSet set : AvailableInstructionSets()) {
            const ScopedInstructionSet scope(set);
            std::fill(pixels.begin(), pixels.end(), Untouched);
            if (isLog) {
                transform.CalculateLogCoordinateScreen(signals, screenMin, screenMax, worldMin, worldMax,
                                                       type, InScreen, alpha, models);
            } else {
                transform.CalculateLinearCoordinateScreen(signals, screenMin, screenMax, worldMin, worldMax,
                                                          type, InScreen, models);
            }
            ASSERT_EQ(pixels, expected);
        }
    }
}

TEST(CoordinateTransform, WithoutDirectionWritesOnlyTheCount) {
    Floats values{1, 2, 3};
    Pixels pixels(3, Untouched);
    auto signal = Over<SignalSection>(values, 3);
    auto model = Over<ModelSection>(pixels, 0);
    OVCoordinateTransform().CalculateLinearCoordinateScreen(&signal, 0, 256, 0, 1024, Neither, true, &model);
    EXPECT_EQ(model.Count, 3);
    EXPECT_EQ(pixels, Pixels(3, Untouched));
    OVCoordinateTransform().CalculateLinearCoordinateScreen(&signal, 5, 256, 7, 7, Neither, true, &model);
    EXPECT_EQ(pixels, Pixels(3, 0));
}

}  // namespace
}  // namespace Orvane
