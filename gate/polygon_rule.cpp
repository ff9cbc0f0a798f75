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

PolygonRule::Method PolygonRule::MethodFor(int events, int vertices) {
    // A grid of 32 takes a few microseconds, each larger one some three times as long as the one before.
    if (std::int64_t{events} * vertices < 5'000) return EveryEdge;
    if (events < 8'000) return {32};
    return {events < 50'000 ? 64 : 128};
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
