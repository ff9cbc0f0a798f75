// The hinged gate: events far enough from the arms are decided on the screen, the others by the formula.
#pragma once

#include "gate/hinged_graph.h"
#include "gate/hinged_kernels.h"
#include "gate/threshold_kernels.h"

namespace Orvane {

/// A rule as in threshold_kernels.h.
class HingedRule {
public:
    static constexpr std::size_t Regions = 4;

    /// Of the point block of IOVFilter::Filter_Hinged, which is not read when it is too short.
    HingedRule(const OVPoint* points, int count);

    void operator()(const float* x, const float* y, int count, const RegionWords<Regions>& out) const;

private:
    void FileBlock(const float* x, const float* y, int count, const RegionWords<Regions>& out) const;
    void FileExactly(std::uint32_t open, const float* x, const float* y, int word,
                     const RegionWords<Regions>& out) const;

    HingedGraph graph_;
    bool hasRegions_;
    ScreenScale scaleX_;
    ScreenScale scaleY_;
    bool isProven_;
    ArmPair upperLower_;
    ArmPair leftRight_;
};

}  // namespace Orvane
