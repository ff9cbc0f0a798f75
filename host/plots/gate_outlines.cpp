#include "plots/gate_outlines.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace Host {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
/// Into how many pieces the edge of a polygon is cut.
constexpr int EdgePieces = 32;

double InvertFormula(const Scale& scale, double scaled) {
    switch (scale.kind) {
        case Scale::Kind::Linear:
            return scaled * (scale.t + scale.a) - scale.a;
        case Scale::Kind::Log:
            return scale.t * std::pow(10.0, (scaled - 1) * scale.m);
        case Scale::Kind::Asinh:
            break;
    }
    const double steepness = std::sinh(scale.m * std::numbers::ln10) / scale.t;
    return std::sinh((scaled * (scale.m + scale.a) - scale.a) * std::numbers::ln10) / steepness;
}

/// Gates in terms of the values that a plot shows.
class OutlineFinder {
public:
    OutlineFinder(const Strategy& strategy, const Dimension& x, const Dimension* y, const SameValues& same)
        : strategy_(strategy), x_(x), y_(y), same_(same) {}

    std::vector<DataPoint> Find(const BooleanGate& /*gate*/) const { return {}; }

    std::vector<DataPoint> Find(const RectangleGate& gate) const {
        Side x{-Infinity, Infinity};
        Side y = x;
        for (const Range& range : gate.ranges) {
            if (!IsX(range.dimension) && !IsY(range.dimension)) return {};
            Narrow(range, IsX(range.dimension) ? x : y);
        }
        return {{x.min, y.min}, {x.max, y.min}, {x.max, y.max}, {x.min, y.max}};
    }

    std::vector<DataPoint> Find(const PolygonGate& gate) const {
        const bool straight = IsX(gate.x) && IsY(gate.y);
        if (!straight && !(IsX(gate.y) && IsY(gate.x))) return {};
        std::vector<DataPoint> points;
        for (std::size_t i = 0; i < gate.vertices.size(); ++i) {
            const Vertex& from = gate.vertices[i];
            const Vertex& to = gate.vertices[(i + 1) % gate.vertices.size()];
            for (int piece = 0; piece < EdgePieces; ++piece) {
                const double part = static_cast<double>(piece) / EdgePieces;
                const double x = Invert(gate.x, from.x + part * (to.x - from.x));
                const double y = Invert(gate.y, from.y + part * (to.y - from.y));
                points.push_back(straight ? DataPoint{x, y} : DataPoint{y, x});
            }
        }
        return points;
    }

private:
    struct Side {
        double min;
        double max;
    };

    bool IsX(const Dimension& dimension) const { return same_(dimension, x_); }
    bool IsY(const Dimension& dimension) const { return y_ != nullptr && same_(dimension, *y_); }

    double Invert(const Dimension& dimension, double scaled) const {
        if (dimension.transformation.empty()) return scaled;
        return InvertScale(strategy_.scales.at(dimension.transformation), scaled);
    }

    void Narrow(const Range& range, Side& side) const {
        if (range.min) side.min = std::max(side.min, Invert(range.dimension, *range.min));
        if (range.max) side.max = std::min(side.max, Invert(range.dimension, *range.max));
    }

    const Strategy& strategy_;
    const Dimension& x_;
    const Dimension* y_;
    const SameValues& same_;
};

}  // namespace

double InvertScale(const Scale& scale, double scaled) {
    if (scale.boundMin && scaled <= *scale.boundMin) return -Infinity;
    if (scale.boundMax && scaled > *scale.boundMax) return Infinity;
    return InvertFormula(scale, scaled);
}

std::vector<DataPoint> FindOutline(const Strategy& strategy, const Gate& gate, const Dimension& x,
                                   const Dimension* y, const SameValues& same) {
    const OutlineFinder finder(strategy, x, y, same);
    return std::visit([&](const auto& shape) { return finder.Find(shape); }, gate.shape);
}

}  // namespace Host
