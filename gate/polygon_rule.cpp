#include "gate/polygon_rule.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "gate/polygon_edges.h"

namespace Orvane {
namespace {

/// Horizontal edges and those with a NaN never are.
bool CanBeCrossed(const OVPloygonEigenValue& edge) {
    return edge.MinY < edge.MaxY && !std::isnan(edge.Slope) && !std::isnan(edge.Intercept);
}

}  // namespace

PolygonRule::Method PolygonRule::MethodFor(std::int64_t events, int vertices) {
    constexpr std::int64_t WorthSmallGrid = 100'000;
    constexpr std::int64_t WorthLargeGrid = 4'000'000;
    const std::int64_t work = events * vertices;
    if (work < WorthSmallGrid) return EveryEdge;
    return {work < WorthLargeGrid ? 64 : 128};
}

PolygonRule::PolygonRule(const OVPoint* vertices, int count, Method method)
    : rect_(RectangleAround(vertices, count)), edges_(static_cast<std::size_t>(std::max(count, 0))) {
    BuildEdges({vertices, edges_.size()}, edges_.data());
    edges_.erase(std::remove_if(edges_.begin(), edges_.end(), std::not_fn(CanBeCrossed)), edges_.end());
    if (method.GridSize > 0 && PolygonGrid::Suits(rect_, edges_))
        grid_.emplace(rect_, edges_, method.GridSize);
}

void PolygonRule::operator()(const float* x, const float* y, int count,
                             const RegionWords<Regions>& out) const {
    if (grid_) return FileByGrid(rect_, grid_->View(), x, y, count, out[0]);
    FileByEveryEdge(rect_, edges_, x, y, count, out[0]);
}

}  // namespace Orvane
