// A gating strategy put on the parameters of a file.
#pragma once

#include <map>
#include <string>

#include "gating/compensation.h"
#include "gating/gating_strategy.h"

namespace Host {

/// The dimensions and matrices of a strategy in terms of the columns of one file. Both must outlive it.
class StrategyBinding {
public:
    /// Throws Refusal when the file has not what a gate looks at, or a matrix cannot be inverted.
    StrategyBinding(const Strategy& strategy, const EventLayout& layout);

    const Strategy& GetStrategy() const { return *strategy_; }
    const Compensation& Matrix(const std::string& id) const { return compensations_.at(id); }

    /// The position of a parameter that a dimension names; a fluorochrome is that of its detector.
    std::size_t Find(const Dimension& dimension, const std::string& name) const;

private:
    void Bind(const SpectrumMatrix& matrix, const std::string& id);

    const Strategy* strategy_;
    const EventLayout* layout_;
    std::map<std::string, Compensation> compensations_;
};

}  // namespace Host
