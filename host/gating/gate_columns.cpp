#include "gating/gate_columns.h"

namespace Host {

std::vector<Orvane::SignalSection*>& GateColumns::Find(const Dimension& dimension) {
    const Key key(dimension.compensation, dimension.parameter, dimension.ratio, dimension.transformation);
    auto found = columns_.find(key);
    if (found == columns_.end()) found = columns_.emplace(key, Compute(dimension)).first;
    return found->second.Sections();
}

std::vector<Orvane::EventSection*>& GateColumns::Events(const std::string& compensation) {
    if (compensation == Dimension::Uncompensated) return raw_;
    if (compensation == Dimension::FileMatrix) return compensated_;
    return byMatrix_.try_emplace(compensation, raw_, binding_.Matrix(compensation)).first->second.Sections();
}

Column GateColumns::Unscaled(const Dimension& dimension) {
    std::vector<Orvane::EventSection*>& events = Events(dimension.compensation);
    if (dimension.ratio.empty()) return {events, binding_.Find(dimension, dimension.parameter)};
    const Ratio& ratio = binding_.GetStrategy().ratios.at(dimension.ratio);
    const Column x(events, binding_.Find(dimension, ratio.parameters[0]));
    const Column y(events, binding_.Find(dimension, ratio.parameters[1]));
    Column result = Column::Like(x);
    for (std::size_t i = 0; i < result.Sections().size(); ++i) {
        ApplyRatio(ratio.scale, x.Sections()[i]->Values, y.Sections()[i]->Values,
                   result.Sections()[i]->Values, result.Sections()[i]->Count);
    }
    return result;
}

Column GateColumns::Compute(const Dimension& dimension) {
    Column source = Unscaled(dimension);
    if (dimension.transformation.empty()) return source;
    const Scale& scale = binding_.GetStrategy().scales.at(dimension.transformation);
    Column result = Column::Like(source);
    for (std::size_t i = 0; i < result.Sections().size(); ++i) {
        ApplyScale(scale, source.Sections()[i]->Values, result.Sections()[i]->Values,
                   result.Sections()[i]->Count);
    }
    return result;
}

}  // namespace Host
