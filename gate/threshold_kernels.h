// The gates that only compare: rules that file the events of one section under the regions of a gate.
//
// A rule is called with the columns of a section (`y` is not looked at by rules of one signal), the number of
// its events and the words of each region, null for a region that nobody wants. Bits are added to those
// already set. Bits at or above `count` stay; words behind the last event are not touched.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Orvane {

template <std::size_t Regions>
using RegionWords = std::array<std::uint32_t*, Regions>;

/// Low <= x <= High.
struct SegmentRule {
    static constexpr std::size_t Regions = 1;
    float Low;
    float High;
    void operator()(const float* x, const float* y, int count, const RegionWords<Regions>& out) const;
};

/// x <= Cut is to the left and x > Cut to the right, so that NaN is neither; it is among what is not to the
/// left.
struct CutRule {
    static constexpr std::size_t Regions = 3;
    enum Region : std::size_t { Left, Right, NotLeft };
    float Cut;
    void operator()(const float* x, const float* y, int count, const RegionWords<Regions>& out) const;
};

/// MinX <= x <= MaxX and MinY <= y <= MaxY.
struct RectangleRule {
    static constexpr std::size_t Regions = 1;
    float MinX;
    float MaxX;
    float MinY;
    float MaxY;
    void operator()(const float* x, const float* y, int count, const RegionWords<Regions>& out) const;
};

/// Counter-clockwise from the upper right; events on a cut are to the left or below.
struct QuadrantRule {
    static constexpr std::size_t Regions = 4;
    float CutX;
    float CutY;
    void operator()(const float* x, const float* y, int count, const RegionWords<Regions>& out) const;
};

}  // namespace Orvane
