// Axis transformers and the coordinate transform, against their formulas in scalar double.
#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "foundation/convert.h"
#include "tests/support/awkward.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/population.h"

namespace Orvane::Testing {
namespace {

using Pixels = std::vector<unsigned short>;
using Models = std::vector<ModelSection*>;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr unsigned short Untouched = 12345;
constexpr double Infinite = std::numeric_limits<double>::infinity();
const OVConvertLinearAndLog Convert;

unsigned short Truncated(double position) {
    return static_cast<unsigned short>(TruncateToInt64(position));
}

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

/// A value on the axis's own scale.
double Scaled(const Axis& axis, double value) {
    return axis.IsLog ? Convert.asinh(value * (1.0 / axis.Alpha)) : value;
}

/// The stated column formula of the transformers, term by term.
unsigned short TransformerPixel(const Axis& axis, bool isVertical, bool inScreen, float value) {
    const double low = Scaled(axis, axis.WorldMin), width = Scaled(axis, axis.WorldMax) - low;
    const float end = axis.ScreenMax - 1.0F;
    const unsigned short first = Truncated(axis.ScreenMin);
    if ((axis.IsLog && axis.Alpha == 0.0) || width < 1e-5) return first;
    const auto screenRange = static_cast<double>(axis.ScreenMax - axis.ScreenMin);
    const double span = static_cast<std::int32_t>(TruncateToInt64(screenRange));
    const float offset = isVertical ? axis.ScreenMax - end : end - axis.ScreenMin;
    double clamp = offset * (width / span) + low;
    if (axis.IsLog) clamp = Convert.sinh(clamp) / (1.0 / axis.Alpha);
    const double v = value;
    if (inScreen && (isVertical ? clamp : axis.WorldMin) >= v) return isVertical ? Truncated(end) : first;
    if (inScreen && v >= (isVertical ? axis.WorldMax : clamp)) return isVertical ? first : Truncated(end);
    const double scale = span / width;
    const double half = inScreen ? 0.5 : 0.0;
    if (isVertical) return Truncated((axis.ScreenMax + low * scale + half) - Scaled(axis, v) * scale);
    return Truncated(Scaled(axis, v) * scale + (axis.ScreenMin - low * scale + half));
}

/// That of the transform without state, with all that differs.
unsigned short StatelessPixel(const Axis& axis, CoordinateType t, bool inScreen, float value) {
    const double low = Scaled(axis, axis.WorldMin), width = Scaled(axis, axis.WorldMax) - low;
    if (width < 1e-5) return 0;
    const double v = value;
    const float last = axis.ScreenMax - 1.0F;
    if (inScreen && v <= axis.WorldMin) return Truncated(t == Vertical ? last : axis.ScreenMin);
    if (inScreen && v >= axis.WorldMax) return Truncated(t == Vertical ? axis.ScreenMin : last);
    const double scale = static_cast<double>(axis.ScreenMax - axis.ScreenMin) / width;
    if (t == Horizontal) return Truncated(Scaled(axis, v) * scale + (axis.ScreenMin - scale * low));
    return Truncated(last - static_cast<float>(Truncated((Scaled(axis, v) - low) * scale)));
}

/// Of the family that the factory makes.
template <class Factory>
auto TransformerOf(const Axis& a, bool inScreen) {
    auto* made = Factory::CreateTransformer(a.ScreenMin, a.ScreenMax, a.WorldMin, a.WorldMax, a.Alpha,
                                            a.IsLog, inScreen);
    return std::unique_ptr<std::remove_pointer_t<decltype(made)>>(made);
}

template <class Transformer>
float ScreenAt(Transformer& transformer, double world) {
    float screen = 0.0F;
    transformer.GetScreenValue(world, screen);
    return screen;
}

template <class Transformer>
double WorldAt(Transformer& transformer, float screen) {
    double world = 0.0;
    transformer.GetWorldValue(screen, world);
    return world;
}

/// Values that bite on this axis: the data values of pixel borders, clamped ones lying half a pixel further,
/// and of the bounds, each with the two floats on either side; zeros, denormals, extremes, infinities, NaN.
template <class Factory>
Floats BitingValues(const Axis& axis) {
    const auto transformer = TransformerOf<Factory>(axis, false);
    Floats values = AwkwardFloats();
    const float step = std::max(0.5F, (axis.ScreenMax - axis.ScreenMin) / 8192.0F);
    Floats borders{static_cast<float>(axis.WorldMin), static_cast<float>(axis.WorldMax)};
    for (float s = axis.ScreenMin - 3.0F; s < axis.ScreenMax + 3.0F; s += step)
        borders.push_back(static_cast<float>(WorldAt(*transformer, std::floor(2.0F * s) / 2.0F)));
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

/// What `map` writes to a model section: these pixels, nothing behind them, and the count.
template <class Map>
void ExpectColumn(Pixels expected, int count, Map map) {
    const std::size_t room = expected.size() + 1024;
    expected.resize(room, Untouched);
    Pixels column(room, Untouched);
    auto model = Over<ModelSection>(column, 0);
    map(&model);
    ASSERT_EQ(column, expected);
    EXPECT_EQ(model.Count, count);
}

/// The first `count` pixels, those of filtered and packed columns: as a transformer makes them in the current
/// instruction set, and as they follow from the pixels of all values and the bits.
template <class Transformer>
void ExpectColumns(Transformer& transformer, Floats& values, std::vector<std::uint32_t>& bits,
                   const Pixels& pixels, int count) {
    auto signal = Over<SignalSection>(values, count);
    FilterSection filter;
    filter.Count = count;
    filter.TrueCount = 77;  // stale
    filter.Flags = bits.data();
    const Pixels all(pixels.begin(), pixels.begin() + count);
    Pixels filtered(all.size(), 65535), packed;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!filter[static_cast<int>(i)]) continue;
        filtered[i] = all[i];
        packed.push_back(all[i]);
    }
    ExpectColumn(all, count, [&](auto* model) { transformer.GetScreenSection(&signal, model); });
    ExpectColumn(filtered, count,
                 [&](auto* model) { transformer.GetScreenSection(&signal, &filter, model); });
    ExpectColumn(packed, 77,
                 [&](auto* model) { transformer.GetScreenSectionInTrue(&signal, &filter, model); });
}

/// The transform without state: of one value, one section or several.
template <class From, class To>
void MapWithoutState(const Axis& a, CoordinateType direction, bool inScreen, From& from, To& to) {
    const OVCoordinateTransform transform;
    if (a.IsLog) {
        transform.CalculateLogCoordinateScreen(from, a.ScreenMin, a.ScreenMax, a.WorldMin, a.WorldMax,
                                               direction, inScreen, a.Alpha, to);
    } else {
        transform.CalculateLinearCoordinateScreen(from, a.ScreenMin, a.ScreenMax, a.WorldMin, a.WorldMax,
                                                  direction, inScreen, to);
    }
}

/// For either family of transformers, and for the transform without state in its direction.
template <class Factory>
struct Transforms : ::testing::Test {
    static constexpr bool IsVertical = std::is_same_v<Factory, OVCoordinateTransformerYFactory>;
    static constexpr CoordinateType Direction = IsVertical ? Vertical : Horizontal;
};
using Families = ::testing::Types<OVCoordinateTransformerXFactory, OVCoordinateTransformerYFactory>;
TYPED_TEST_SUITE(Transforms, Families);

TYPED_TEST(Transforms, ColumnsEqualTheScalarFormula) {
    for (const Axis& axis : Axes) {
        for (const bool inScreen : {false, true}) {
            const auto transformer = TransformerOf<TypeParam>(axis, inScreen);
            Floats values = BitingValues<TypeParam>(axis);
            Pixels pixels, withoutState;
            for (const float value : values) {
                pixels.push_back(TransformerPixel(axis, this->IsVertical, inScreen, value));
                withoutState.push_back(StatelessPixel(axis, this->Direction, inScreen, value));
            }
            std::vector<std::uint32_t> bits(values.size() / 32 + 1);
            std::generate(bits.begin(), bits.end(), std::mt19937(3));
            for (const InstructionSet set : AvailableInstructionSets()) {
                const ScopedInstructionSet scope(set);
                for (const int count :
                     {0, 1, 31, 32, 33, 63, 64, 65, 1024, static_cast<int>(values.size())}) {
                    SCOPED_TRACE(::testing::Message()
                                 << "axis " << &axis - Axes << ", in screen " << inScreen
                                 << ", instruction set " << static_cast<int>(set) << ", count " << count);
                    ASSERT_NO_FATAL_FAILURE(ExpectColumns(*transformer, values, bits, pixels, count));
                    const Pixels expected(withoutState.begin(), withoutState.begin() + count);
                    ASSERT_NO_FATAL_FAILURE(ExpectColumn(expected, count, [&](ModelSection* model) {
                        auto signal = Over<SignalSection>(values, count);
                        Signals from{&signal};
                        Models to{model};
                        MapWithoutState(axis, this->Direction, inScreen, from, to);
                    }));
                }
            }
        }
    }
}

TYPED_TEST(Transforms, ScalarValues) {
    const struct {
        bool InScreen;
        double World, WorldMax;
        float Across, Upward;
    } rows[] = {{false, 512, 1024, 128, 128},   {false, -3, 1024, -0.75F, 256.75F},
                {false, 2048, 1024, 512, -256}, {true, 2048, 1024, 255, 0},
                {true, -3, 1024, 0, 255},       {true, 512, 0, 0, 0}};
    for (const auto& [inScreen, world, worldMax, across, upward] : rows) {
        for (const bool isLog : {false, true}) {
            SCOPED_TRACE(::testing::Message() << world << ' ' << inScreen << isLog);
            const Axis axis{0, 256, 0, worldMax, 1e6, isLog};  // linear, if need be but for roundings
            const float expected = this->IsVertical ? upward : across;
            const double tolerance = isLog ? 1e-3 : 0.0;
            const auto transformer = TransformerOf<TypeParam>(axis, inScreen);
            EXPECT_NEAR(ScreenAt(*transformer, world), expected, tolerance);
            EXPECT_EQ(std::isnan(ScreenAt(*transformer, NaN)), worldMax > 0) << "a NaN passes the clamp";
            float screen = 777.0F;
            MapWithoutState(axis, this->Direction, inScreen, world, screen);
            EXPECT_NEAR(screen, expected, tolerance);
            MapWithoutState(axis, this->Direction, inScreen, NaN, screen);
            EXPECT_EQ(std::isnan(screen), worldMax > 0);
        }
    }
}

TYPED_TEST(Transforms, WorldValuesInvertScreenValues) {
    const OVCoordinateTransform transform;
    for (const bool isLog : {false, true}) {
        const Axis axis{10, 522, -1000, 1e5, 200, isLog};
        const auto transformer = TransformerOf<TypeParam>(axis, false);
        for (const double world : {-1000.0, 0.0, 77.0, 54321.0, 1e5}) {
            EXPECT_NEAR(WorldAt(*transformer, ScreenAt(*transformer, world)), world, 0.05);
            float screen = 0.0F;
            double back = 0.0;
            MapWithoutState(axis, this->Direction, false, world, screen);
            if (isLog) {
                transform.CalculateLogCoordinateWorld(screen, 10, 522, -1000, 1e5, this->Direction, 200,
                                                      back);
            } else {
                transform.CalculateLinearCoordinateWorld(screen, 10, 522, -1000, 1e5, this->Direction, back);
            }
            EXPECT_NEAR(back, world, 0.05);
        }
        // A reversed range maps to one place, yet keeps its way back.
        const auto reversed = TransformerOf<TypeParam>({10, 522, 1e5, 0, 200, isLog}, true);
        EXPECT_EQ(ScreenAt(*reversed, 54321.0), 10.0F);
        EXPECT_NEAR(WorldAt(*reversed, this->IsVertical ? 10.0F : 522.0F), 0.0, 1e-6);
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

TEST(CoordinateTransform, WithoutDirectionWritesTheCountAndWhatNeedsNone) {
    const OVCoordinateTransform transform;
    const auto neither = static_cast<CoordinateType>(2);
    const Axis linear{0, 256, 0, 1024, 0, false}, log{0, 256, 0, 1024, 1e6, true};
    for (const bool inScreen : {false, true}) {
        const double world = 512.0;
        float screen = 777.0F;
        MapWithoutState(linear, neither, inScreen, world, screen);
        EXPECT_EQ(screen, inScreen ? 255.0F : 777.0F);
        MapWithoutState(log, neither, inScreen, world, screen);
        EXPECT_NEAR(screen, 128.0F, 1e-3);
    }
    double world = -5.0;
    transform.CalculateLinearCoordinateWorld(64, 0, 256, 0, 1024, neither, world);
    EXPECT_EQ(world, -5.0);
    transform.CalculateLogCoordinateWorld(64, 0, 256, 0, 1024, neither, 1e6, world);
    EXPECT_EQ(world, 0.0);
    Floats values{1, 2, 3};
    Pixels pixels(3, Untouched), others = pixels;
    auto signal = Over<SignalSection>(values, 3);
    auto model = Over<ModelSection>(pixels, 0), other = Over<ModelSection>(others, 0);
    Signals from{&signal, &signal};
    Models to{&model, &other};
    for (const Axis& axis : {linear, log}) {
        model.Count = other.Count = 0;
        MapWithoutState(axis, neither, true, from, to);
        EXPECT_EQ((Counts{model.Count, other.Count}), Counts(2, 3));
    }
    EXPECT_EQ(pixels, Pixels(3, Untouched));
    MapWithoutState({5, 256, 7, 7, 0, false}, neither, true, from, to);
    EXPECT_EQ(pixels, Pixels(3, 0));
}

}  // namespace
}  // namespace Orvane::Testing
