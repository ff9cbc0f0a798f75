#include "gating/gating_strategy.h"

#include "files/findings.h"

namespace Host {
namespace {

template <class Value>
std::string Ids(const std::map<std::string, Value>& things, std::string list) {
    for (const auto& thing : things)
        list += (list.empty() ? "" : ", ") + thing.first;
    return list.empty() ? "none, as there is nothing to refer to" : "one of " + list;
}

/// Fills in the indexes of parents and operands.
void LinkGates(Strategy& strategy) {
    std::map<std::string, std::size_t> indexes;
    for (std::size_t i = 0; i < strategy.gates.size(); ++i)
        indexes[strategy.gates[i].id] = i;
    const auto find = [&](const std::string& id, const std::string& where) {
        const auto found = indexes.find(id);
        if (found == indexes.end()) Refuse(where, id, Ids(indexes, ""));
        return found->second;
    };
    for (Gate& gate : strategy.gates) {
        if (!gate.parent.empty()) gate.parentIndex = find(gate.parent, gate.place + ": parent_id");
        if (auto* boolean = std::get_if<BooleanGate>(&gate.shape)) {
            for (Operand& operand : boolean->operands)
                operand.index = find(operand.gate, operand.place + ": ref");
        }
    }
}

void CheckDimension(const Strategy& strategy, const Dimension& dimension) {
    const std::string& matrix = dimension.compensation;
    if (matrix != Dimension::Uncompensated && matrix != Dimension::FileMatrix &&
        !strategy.matrices.contains(matrix)) {
        Refuse(dimension.place + ": compensation-ref", matrix,
               Ids(strategy.matrices, std::string(Dimension::Uncompensated) + ", " + Dimension::FileMatrix));
    }
    if (!dimension.transformation.empty() && !strategy.scales.contains(dimension.transformation)) {
        Refuse(dimension.place + ": transformation-ref", dimension.transformation, Ids(strategy.scales, ""));
    }
    if (!dimension.ratio.empty() && !strategy.ratios.contains(dimension.ratio)) {
        Refuse(dimension.place + ": new-dimension: transformation-ref", dimension.ratio,
               Ids(strategy.ratios, ""));
    }
}

/// Walks from gate to gate along their references, depth first, and lists each behind what it refers to.
class EvaluationOrder {
public:
    explicit EvaluationOrder(const Strategy& strategy)
        : gates_(strategy.gates), states_(gates_.size(), State::New) {}

    std::vector<std::size_t> Take() {
        for (std::size_t i = 0; i < gates_.size(); ++i)
            Visit(i);
        return std::move(order_);
    }

private:
    enum class State : char { New, Open, Done };
    struct Step {
        std::size_t gate;
        std::vector<std::size_t> open;  ///< references still to follow
    };

    static std::vector<std::size_t> References(const Gate& gate) {
        std::vector<std::size_t> references;
        if (gate.parentIndex) references.push_back(*gate.parentIndex);
        if (const auto* boolean = std::get_if<BooleanGate>(&gate.shape)) {
            for (const Operand& operand : boolean->operands)
                references.push_back(operand.index);
        }
        return references;
    }

    void Open(std::size_t gate) {
        if (states_[gate] == State::Done) return;
        if (states_[gate] == State::Open) {
            Refuse(gates_[gate].place + ": gate", gates_[gate].id,
                   "one that does not depend on itself through its parent or its references");
        }
        states_[gate] = State::Open;
        path_.push_back({gate, References(gates_[gate])});
    }

    /// With a path of its own, so that a long chain of gates needs no deep stack.
    void Visit(std::size_t first) {
        Open(first);
        while (!path_.empty()) {
            Step& step = path_.back();
            if (!step.open.empty()) {
                const std::size_t next = step.open.back();
                step.open.pop_back();
                Open(next);
                continue;
            }
            states_[step.gate] = State::Done;
            order_.push_back(step.gate);
            path_.pop_back();
        }
    }

    const std::vector<Gate>& gates_;
    std::vector<State> states_;
    std::vector<Step> path_;
    std::vector<std::size_t> order_;
};

std::vector<std::size_t> TreeOrder(const std::vector<Gate>& gates) {
    std::vector<std::vector<std::size_t>> children(gates.size());
    std::vector<std::size_t> waiting;  // the next one last
    for (std::size_t i = gates.size(); i-- > 0;) {
        (gates[i].parentIndex ? children[*gates[i].parentIndex] : waiting).push_back(i);
    }
    std::vector<std::size_t> order;
    while (!waiting.empty()) {
        order.push_back(waiting.back());
        waiting.pop_back();
        const std::vector<std::size_t>& next = children[order.back()];
        waiting.insert(waiting.end(), next.begin(), next.end());
    }
    return order;
}

}  // namespace

std::vector<const Dimension*> Gate::Dimensions() const {
    std::vector<const Dimension*> dimensions;
    if (const auto* rectangle = std::get_if<RectangleGate>(&shape)) {
        for (const Range& range : rectangle->ranges)
            dimensions.push_back(&range.dimension);
    } else if (const auto* polygon = std::get_if<PolygonGate>(&shape)) {
        dimensions = {&polygon->x, &polygon->y};
    }
    return dimensions;
}

void Link(Strategy& strategy) {
    LinkGates(strategy);
    for (const Gate& gate : strategy.gates) {
        for (const Dimension* dimension : gate.Dimensions())
            CheckDimension(strategy, *dimension);
    }
    strategy.evaluationOrder = EvaluationOrder(strategy).Take();
    strategy.treeOrder = TreeOrder(strategy.gates);
}

}  // namespace Host
