// Polygons: the table of edges and the walk over it.
#include <orvane/OVPloygon.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "gate/polygon_edges.h"

namespace Orvane {
namespace {

double SlopeOf(float dx, float dy) {
    if (dy != 0.0F) return static_cast<double>(dx / dy);
    if (dx > 0.0F) return FLT_MAX;
    return dx < 0.0F ? -FLT_MAX : 0.0;
}

OVPloygonEigenValue EdgeBetween(const OVPoint& from, const OVPoint& to) {
    OVPloygonEigenValue edge;
    edge.Slope = SlopeOf(from.x - to.x, from.y - to.y);
    edge.Intercept = static_cast<double>(to.x) - static_cast<double>(to.y) * edge.Slope;
    const bool falls = from.y > to.y;
    edge.MinY = falls ? to.y : from.y;
    edge.MaxY = falls ? from.y : to.y;
    edge.X = to.x;
    edge.Y = to.y;
    return edge;
}

/// Orders by descending MaxY. NaN comes first: such an edge neither counts nor ends a walk.
bool EndsHigher(const OVPloygonEigenValue& a, const OVPloygonEigenValue& b) {
    if (std::isnan(a.MaxY) || std::isnan(b.MaxY)) return std::isnan(a.MaxY) && !std::isnan(b.MaxY);
    return a.MaxY > b.MaxY;
}

void Widen(float value, float& min, float& max) {
    if (value < min) {
        min = value;
    } else if (value > max) {
        max = value;
    }
}

}  // namespace

void BuildEdges(std::span<const OVPoint> vertices, OVPloygonEigenValue* edges) {
    if (vertices.empty()) return;
    const OVPoint* from = &vertices.back();
    OVPloygonEigenValue* next = edges;
    for (const OVPoint& to : vertices) {
        *next++ = EdgeBetween(*from, to);
        from = &to;
    }
    std::sort(edges, next, EndsHigher);
}

OVRect RectangleAround(const OVPoint* vertices, int count) {
    OVRect rect(vertices[0].x, vertices[0].y, vertices[0].x, vertices[0].y);
    for (int i = 1; i < count; ++i) {
        Widen(vertices[i].x, rect.MinX, rect.MaxX);
        Widen(vertices[i].y, rect.MinY, rect.MaxY);
    }
    return rect;
}

OVPloygon::OVPloygon() : count_(0), edges_(nullptr) {}

OVPloygon::OVPloygon(const OVPloygon& other) = default;
OVPloygon& OVPloygon::operator=(const OVPloygon& other) = default;

OVPloygon::~OVPloygon() {
    delete[] edges_;
}

void OVPloygon::ConstructEigenValue(OVPoint* vertices, int count) {
    const auto edges = static_cast<std::size_t>(std::max(count, 0));
    // Without a table in between, should there be no memory for the new one.
    count_ = 0;
    delete[] edges_;
    edges_ = nullptr;
    edges_ = new OVPloygonEigenValue[edges];
    count_ = count;
    BuildEdges({vertices, edges}, edges_);
    CalcMinRect(vertices, count);
}

OVRect OVPloygon::GetMinRect() {
    return minRect_;
}

bool OVPloygon::IsInPloygon(float x, float y) {
    bool inside = false;
    for (int i = 0; i < count_; ++i) {
        if (y >= edges_[i].MaxY) break;
        if (IsCrossed(edges_[i], x, y)) inside = !inside;
    }
    return inside;
}

void OVPloygon::CalcMinRect(OVPoint* vertices, int count) {
    minRect_ = RectangleAround(vertices, count);
}

}  // namespace Orvane
