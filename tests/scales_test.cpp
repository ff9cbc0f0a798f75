// The arithmetic of scales: conversions, the width of asinh axes, and the bracket that kernels use for asinh.
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "tests/support/pool.h"
#include "tests/support/population.h"
#include "transform/asinh_bracket.h"

namespace Orvane::Testing {
namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();
const OVConvertLinearAndLog Convert;

TEST(ConvertLinearAndLog, OddFunctionsAndTheirInverses) {
    const double decades[][3] = {{0.5, 0, 0},      {-1, 0, 0},      {1, 0, 0},
                                 {-100, -2, -100}, {1000, 3, 1000}, {Infinite, Infinite, Infinite}};
    for (const auto& [linear, log, back] : decades) {
        EXPECT_EQ(Convert.LinearConvertToLog10(linear), log) << linear;
        EXPECT_EQ(Convert.Log10ConvertToLinear(log), back) << log;
    }
    EXPECT_TRUE(std::isnan(Convert.LinearConvertToLog10(NaN)) &&
                std::isnan(Convert.Log10ConvertToLinear(NaN)));
    EXPECT_TRUE(std::signbit(Convert.asinh(-0.0)) && std::signbit(Convert.sinh(-0.0)));
    for (const double value : {1e-3, 0.5, 77.0, 262144.0, 1e30}) {
        for (const double factor : {1.0 / 150, 1.0, -4.0}) {
            const double there = Convert.LinearConvertToAsinh(value, factor);
            EXPECT_NEAR(there, std::asinh(value * factor), 1e-10);
            EXPECT_EQ(Convert.LinearConvertToAsinh(-value, factor), -there);
            EXPECT_NEAR(Convert.AsinhConvertToLinear(there, factor) / value, 1.0, 1e-8);
        }
    }
}

TEST(CalculateAlpha, FollowsTheSpreadBelowTheThresholdOrIsOne) {
    const OVCalculateAlpha alpha;
    const auto spread = static_cast<float>(2 * 1.4826);
    int failed = 0;
    ForEachFailingAllocation([&] {
        // Deviations 1, 2 and 3 about the median 10; the value at the threshold takes no part.
        Sample sample({10, 11, 9, 12, 8, 13, 7, 100});
        const double width = alpha.CalculateAlpha(sample.Sections, 100.0F);
        EXPECT_TRUE(width == 1.0 || width == static_cast<double>(3.0F * spread)) << width;
        failed += static_cast<int>(width == 1.0);
    });
    EXPECT_GT(failed, 1);
    const SmallPool pool;
    Sample sample({10, 11, 9, 12, 8, 13, 7, 100}), constant({5, 5, 5});
    EXPECT_EQ(alpha.CalculateAlpha(constant.Sections, 100.0F), 1.0);
    EXPECT_EQ(alpha.CalculateAlpha(sample.Sections, 7.0F), 1.0) << "nothing below the threshold";
    OVCalculateAlpha::AlphaCoefficient = 5.0F;
    EXPECT_EQ(alpha.CalculateAlpha(sample.Sections, 100.0F), static_cast<double>(5.0F * spread));
    OVCalculateAlpha::AlphaCoefficient = 3.0F;
}

TEST(CalculateAlpha, PutsTheValueWhereItIsWanted) {
    const OVCalculateAlpha alpha;
    for (const auto& [p, q, isHorizontal, units] : {std::tuple(1.0F, 1.0F, true, 1.0),
                                                    {3, 2, true, 2},
                                                    {1, 8, true, -0.75},
                                                    {3, 1, false, 2},
                                                    {1, -3, false, -0.5}}) {
        const double width = alpha.CalculateCustomAlpha(p, q, 500.0, isHorizontal);
        EXPECT_NEAR(std::asinh(500.0 / width), units * std::asinh(1.0), 1e-6) << p << ' ' << q;
    }
    // t = 0: whatever p is, although K * 2p / q - K may miss zero by a rounding.
    for (float p = 0.1F; p < 100.0F; p *= 1.37F)
        EXPECT_EQ(alpha.CalculateHorizontalAlpha(p, 2 * p, 500.0), Infinite);
    EXPECT_EQ(alpha.CalculateVerticalAlpha(1.0F, -1.0F, 500.0), Infinite);
    EXPECT_EQ(alpha.CalculateVerticalAlpha(2.0F, 2.0F, 500.0), 0.0);
}

TEST(AsinhBracket, LogarithmIsWithinItsBoundForEveryMantissa) {
    double worst = 0.0;
    for (std::uint32_t mantissa = 0; mantissa < 1U << 23; ++mantissa) {
        const float z = std::ldexp(static_cast<float>(mantissa), -23);
        worst = std::max(worst, std::fabs(double{Log2OfOnePlus(z)} - std::log2(1.0 + z)));
    }
    EXPECT_LT(worst, AsinhBracket::Log2Error);
}

TEST(AsinhBracket, HoldsTheDoublePosition) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> exponent(-40.0F, 16.0F);
    for (const double factor : {1.0 / 150, 1.0, 3e4}) {
        for (const double scale : {0.03, 35.0, -350.0, 3000.0}) {
            const AsinhBracket bracket(factor, scale, 51.3 * scale);
            ASSERT_TRUE(bracket.IsProven());
            for (int i = 0; i < 200000; ++i) {
                const float v = std::exp2(exponent(random)) * (i % 2 == 0 ? 1.0F : -1.0F);
                const double position = Convert.asinh(v * factor) * scale + 51.3 * scale;
                const float at = bracket.At(v);
                ASSERT_TRUE(bracket.Covers(v)) << v;
                ASSERT_TRUE(bracket.Lower(at) <= position && position <= bracket.Upper(at)) << v;
            }
        }
    }
    EXPECT_FALSE(AsinhBracket(1.0, 1e6, 0.0).IsProven()) << "finer than floats";
    EXPECT_FALSE(AsinhBracket(1e-40, 35.0, 0.0).IsProven());
    EXPECT_FALSE(AsinhBracket(1.0, NaN, 0.0).IsProven());
}

}  // namespace
}  // namespace Orvane::Testing
