#include "gating/populations.h"

#include <cmath>
#include <limits>
#include <utility>

#include <orvane/OVFilter.h>

namespace Host {
namespace {

using Orvane::SignalSection;

constexpr float Infinity = std::numeric_limits<float>::infinity();

/// Evaluates gate after gate; those that a gate refers to must have been evaluated.
class Evaluator {
public:
    Evaluator(const StrategyBinding& binding, std::vector<Orvane::EventSection*>& raw,
              std::vector<Orvane::EventSection*>& compensated)
        : columns_(binding, raw, compensated),
          raw_(raw),
          gates_(binding.GetStrategy().gates),
          memberships_(gates_.size()) {}

    void EvaluateGate(std::size_t index) {
        const Gate& gate = gates_[index];
        Membership members(raw_);
        std::visit([&](const auto& shape) { FindMembers(shape, members); }, gate.shape);
        if (gate.parentIndex) members.And(*memberships_[*gate.parentIndex]);
        memberships_[index].emplace(std::move(members));
    }

    std::vector<GatedPopulation> Take() {
        std::vector<GatedPopulation> populations;
        for (std::size_t i = 0; i < gates_.size(); ++i) {
            const std::uint64_t count = memberships_[i]->Recount();
            populations.push_back({gates_[i].id, gates_[i].parentIndex, std::move(*memberships_[i]), count});
        }
        return populations;
    }

private:
    struct ClosedRange {
        std::vector<SignalSection*>& column;
        float min;
        float max;
    };

    ClosedRange Close(const Range& range) {
        return {columns_.Find(range.dimension), range.min ? SmallestFrom(*range.min) : -Infinity,
                range.max ? LargestBelow(*range.max) : Infinity};
    }

    /// The ranges two at a time, and the last one alone if their number is odd.
    void FindMembers(const RectangleGate& gate, Membership& members) {
        FindInside(gate.ranges, 0, members);
        for (std::size_t i = 2; i < gate.ranges.size(); i += 2) {
            Membership more(raw_);
            FindInside(gate.ranges, i, more);
            members.And(more);
        }
    }

    /// Replaces `members` by the events inside the ranges `first` and, if there is one, `first + 1`.
    void FindInside(const std::vector<Range>& ranges, std::size_t first, Membership& members) {
        const ClosedRange x = Close(ranges[first]);
        if (first + 1 == ranges.size()) {
            filter_.Filter_LineSegment(x.column, members.Sections(), x.min, x.max);
            return;
        }
        const ClosedRange y = Close(ranges[first + 1]);
        filter_.Filter_Rectangle(x.column, y.column, members.Sections(), x.min, x.max, y.min, y.max);
    }

    void FindMembers(const PolygonGate& gate, Membership& members) {
        std::vector<Orvane::OVPoint> points;
        for (const Vertex& vertex : gate.vertices)
            points.emplace_back(vertex.x, vertex.y);
        filter_.Filter_Ploygon(columns_.Find(gate.x), columns_.Find(gate.y), members.Sections(),
                               points.data(), static_cast<int>(points.size()));
    }

    void FindMembers(const BooleanGate& gate, Membership& members) {
        if (gate.isAnd) members.SetAll();
        for (const Operand& operand : gate.operands) {
            Membership& other = *memberships_[operand.index];
            if (gate.isAnd) {
                members.And(other, operand.complement);
            } else {
                members.Or(other, operand.complement);
            }
        }
    }

    GateColumns columns_;
    std::vector<Orvane::EventSection*>& raw_;
    const std::vector<Gate>& gates_;
    std::vector<std::optional<Membership>> memberships_;
    Orvane::OVFilter filter_;
};

}  // namespace

std::vector<GatedPopulation> Evaluate(const StrategyBinding& binding, std::vector<Orvane::EventSection*>& raw,
                                      std::vector<Orvane::EventSection*>& compensated) {
    Evaluator evaluator(binding, raw, compensated);
    for (const std::size_t gate : binding.GetStrategy().evaluationOrder)
        evaluator.EvaluateGate(gate);
    return evaluator.Take();
}

float SmallestFrom(double bound) {
    const auto nearest = static_cast<float>(bound);
    return nearest < bound ? std::nextafter(nearest, Infinity) : nearest;
}

float LargestBelow(double bound) {
    const auto nearest = static_cast<float>(bound);
    return nearest < bound ? nearest : std::nextafter(nearest, -Infinity);
}

}  // namespace Host
