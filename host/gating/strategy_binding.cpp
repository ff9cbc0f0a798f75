#include "gating/strategy_binding.h"

#include <algorithm>

#include "fcs_files/parameter_names.h"

namespace Host {
namespace {

std::string Joined(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names)
        list += (list.empty() ? "" : ", ") + name;
    return list;
}

}  // namespace

StrategyBinding::StrategyBinding(const Strategy& strategy, const EventLayout& layout)
    : strategy_(&strategy), layout_(&layout) {
    for (const Gate& gate : strategy.gates) {
        for (const Dimension* dimension : gate.Dimensions()) {
            const auto matrix = strategy.matrices.find(dimension->compensation);
            if (matrix != strategy.matrices.end() && !compensations_.contains(matrix->first)) {
                Bind(matrix->second, matrix->first);
            }
            if (!dimension->parameter.empty()) Find(*dimension, dimension->parameter);
            if (dimension->ratio.empty()) continue;
            for (const std::string& name : strategy.ratios.at(dimension->ratio).parameters)
                Find(*dimension, name);
        }
    }
}

void StrategyBinding::Bind(const SpectrumMatrix& matrix, const std::string& id) {
    std::vector<std::size_t> channels;
    for (const std::string& name : matrix.detectors) {
        const std::optional<std::size_t> channel = FindParameter(*layout_, name);
        if (!channel) Refuse(matrix.place + ": detector", name, "one of " + ListNames(*layout_));
        channels.push_back(*channel);
    }
    compensations_.emplace(id, Compensation(matrix.place, matrix.coefficients, channels));
}

std::size_t StrategyBinding::Find(const Dimension& dimension, const std::string& name) const {
    const auto matrix = strategy_->matrices.find(dimension.compensation);
    std::string detector = name;
    if (matrix != strategy_->matrices.end()) {
        const std::vector<std::string>& dyes = matrix->second.fluorochromes;
        const auto dye = std::find(dyes.begin(), dyes.end(), name);
        if (dye == dyes.end()) Refuse(dimension.place + ": name", name, "one of " + Joined(dyes));
        detector = matrix->second.detectors[static_cast<std::size_t>(dye - dyes.begin())];
    }
    const std::optional<std::size_t> position = FindParameter(*layout_, detector);
    if (!position) Refuse(dimension.place + ": name", name, "one of " + ListNames(*layout_));
    return *position;
}

}  // namespace Host
