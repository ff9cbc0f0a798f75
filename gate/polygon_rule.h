// The polygon gate: a polygon prepared for the number of events that it will see.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "gate/polygon_grid.h"
#include "gate/threshold_kernels.h"

namespace Orvane {

/// A rule as in threshold_kernels.h.
class PolygonRule {
public:
    static constexpr std::size_t Regions = 1;

    /// How events are tested: against every edge, or by way of a grid of so many cells a side, wherever the
    /// polygon suits one. Each gives the same bits.
    struct Method {
        int GridSize;  ///< 0 for every edge
    };
    static constexpr Method EveryEdge{0};
    /// The fastest.
    static Method MethodFor(int events, int vertices);

    /// Of `count` vertices, the first of which must exist. Throws std::bad_alloc.
    PolygonRule(const OVPoint* vertices, int count, Method method);

    void operator()(const float* x, const float* y, int count, const RegionWords<Regions>& out) const;

private:
    OVRect rect_;
    std::vector<OVPloygonEigenValue> edges_;  // those that can be crossed
    std::optional<PolygonGrid> grid_;
};

}  // namespace Orvane
