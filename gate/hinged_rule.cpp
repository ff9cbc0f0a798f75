#include "gate/hinged_rule.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "sections/kernels.h"
#include "transform/axis_scales.h"

namespace Orvane {
namespace {

constexpr int BlockEvents = 1024;
constexpr int BlockWords = BlockEvents / 32;
constexpr float ErrorPerTerm = 16 * AsinhBracket::Unit;

AxisScales ScalesOf(const HingedAxis& axis) {
    return AxisScales(axis.ScreenMax - axis.ScreenMin, 0.0F, axis.WorldMin, axis.WorldMax,
                      axis.IsLog ? axis.Alpha : 0.0F);
}

/// Rises from `screen` with `direction` 1, falls from it with -1.
ScreenScale ScaleOf(const HingedAxis& axis, double screen, double direction) {
    const AxisScales scales = ScalesOf(axis);
    const double perUnit = direction * (axis.IsLog ? scales.PixelsPerAsinh : scales.PixelsPerWorld);
    const double start = axis.IsLog ? scales.AsinhMin : static_cast<double>(axis.WorldMin);
    return {axis.IsLog, 1.0 / axis.Alpha, perUnit, screen - start * perUnit};
}

double ScreenBounds(const HingedAxis& axis) {
    return std::fabs(static_cast<double>(axis.ScreenMin)) + std::fabs(static_cast<double>(axis.ScreenMax));
}

/// The arms `upTo` and `beyond` across `axis`, given from positions on `other`; see hinged_kernels.h.
ArmPair PairOf(const HingedArm& upTo, const HingedArm& beyond, const HingedAxis& axis,
               const ScreenScale& scale, const HingedAxis& other, const ScreenScale& otherScale) {
    const double slope = std::max(std::fabs(upTo.Slope), std::fabs(beyond.Slope));
    const double intercept = std::max(std::fabs(upTo.Intercept), std::fabs(beyond.Intercept));
    const double terms = slope * ScreenBounds(other) + intercept + ScreenBounds(axis) + 1.0;
    const double fixed = scale.Fixed() + slope * otherScale.Fixed() + ErrorPerTerm * terms;
    // The bound adds 4u each for the positions themselves.
    const double perTerm = ErrorPerTerm + 4.0 * AsinhBracket::Unit;
    ArmPair pair;
    pair.UpToCentre = upTo;
    pair.Beyond = beyond;
    pair.Fixed = static_cast<float>(1.01 * fixed);
    pair.PerPosition = static_cast<float>(1.01 * perTerm);
    pair.PerOther = static_cast<float>(1.01 * perTerm * slope);
    return pair;
}

/// The events of a block up to a value and beyond it; NaN is neither.
struct SplitBlock {
    SplitBlock(const float* values, int count, float cut) {
        CutRule{cut}(values, values, count, {UpTo.data(), Beyond.data(), nullptr});
    }
    std::uint32_t Known(std::size_t word) const { return UpTo[word] | Beyond[word]; }

    std::array<std::uint32_t, BlockWords> UpTo{};
    std::array<std::uint32_t, BlockWords> Beyond{};
};

}  // namespace

HingedRule::HingedRule(const OVPoint* points, int count)
    : hasRegions_(graph_.CalcParaFromGraph(points, count)),
      scaleX_(ScaleOf(graph_.AxisX(), graph_.AxisX().ScreenMin, 1.0)),
      scaleY_(ScaleOf(graph_.AxisY(), graph_.AxisY().ScreenMax, -1.0)),
      isProven_(scaleX_.IsProven(1.0) && scaleY_.IsProven(-1.0)),
      upperLower_(PairOf(graph_.Lower(), graph_.Upper(), graph_.AxisX(), scaleX_, graph_.AxisY(), scaleY_)),
      leftRight_(PairOf(graph_.Left(), graph_.Right(), graph_.AxisY(), scaleY_, graph_.AxisX(), scaleX_)) {
    leftRight_.Direction = -1.0F;
}

void HingedRule::operator()(const float* x, const float* y, int count,
                            const RegionWords<Regions>& out) const {
    if (!hasRegions_) return;
    RegionWords<Regions> words = out;
    for (int start = 0; start < count; start += BlockEvents) {
        FileBlock(x + start, y + start, std::min(BlockEvents, count - start), words);
        for (std::uint32_t*& region : words) {
            if (region != nullptr) region += BlockWords;
        }
    }
}

void HingedRule::FileBlock(const float* x, const float* y, int count, const RegionWords<Regions>& out) const {
    std::array<float, BlockEvents> positionsX;
    std::array<float, BlockEvents> positionsY;
    std::array<float, BlockEvents> fromUpperLower;
    std::array<float, BlockEvents> fromLeftRight;
    if (isProven_) {
        FindPositions(scaleX_, x, count, positionsX.data());
        FindPositions(scaleY_, y, count, positionsY.data());
        FindDistances(upperLower_, positionsX.data(), positionsY.data(), y, graph_.Centre().y, count,
                      fromUpperLower.data());
        FindDistances(leftRight_, positionsY.data(), positionsX.data(), x, graph_.Centre().x, count,
                      fromLeftRight.data());
    } else {
        std::fill_n(fromUpperLower.begin(), count, std::numeric_limits<float>::quiet_NaN());
        std::fill_n(fromLeftRight.begin(), count, std::numeric_limits<float>::quiet_NaN());
    }
    const SplitBlock sideX(x, count, graph_.Centre().x);
    const SplitBlock sideY(y, count, graph_.Centre().y);
    const SplitBlock armX(fromUpperLower.data(), count, 0.0F);
    const SplitBlock armY(fromLeftRight.data(), count, 0.0F);
    for (int word = 0; word < WordsFor(count); ++word) {
        const auto w = static_cast<std::size_t>(word);
        const std::uint32_t valid = sideX.Known(w) & sideY.Known(w);
        const std::uint32_t known = valid & armX.Known(w) & armY.Known(w);
        // Across the upper or lower arm the region there is final; otherwise the other arm decides.
        const std::uint32_t right = armX.Beyond[w];
        const std::uint32_t crossed = right ^ sideX.Beyond[w];
        const std::uint32_t above = (crossed & sideY.Beyond[w]) | (~crossed & armY.Beyond[w]);
        const std::array<std::uint32_t, Regions> regions{right & above, ~right & above, ~right & ~above,
                                                         right & ~above};
        for (std::size_t region = 0; region < Regions; ++region) {
            if (out[region] != nullptr) out[region][w] |= known & regions[region];
        }
        FileExactly(valid & ~known, x, y, word, out);
    }
}

void HingedRule::FileExactly(std::uint32_t open, const float* x, const float* y, int word,
                             const RegionWords<Regions>& out) const {
    for (; open != 0; open &= open - 1) {
        const int i = std::countr_zero(open);
        const int region = graph_.RegionOf(x[32 * word + i], y[32 * word + i]);
        std::uint32_t* words = out[static_cast<std::size_t>(region)];
        if (words != nullptr) words[word] |= std::uint32_t{1} << i;
    }
}

}  // namespace Orvane
