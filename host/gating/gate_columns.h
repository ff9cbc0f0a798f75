// The columns that gates look at: compensated, put into ratio and scaled as their dimensions say. Each is
// computed once, however many gates use it.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "gating/column.h"
#include "gating/strategy_binding.h"

namespace Host {

class GateColumns {
public:
    /// `raw` holds the events and `compensated` what the matrix of the file makes of them. All three must
    /// outlive this.
    GateColumns(const StrategyBinding& binding, std::vector<Orvane::EventSection*>& raw,
                std::vector<Orvane::EventSection*>& compensated)
        : binding_(binding), raw_(raw), compensated_(compensated) {}

    std::vector<Orvane::SignalSection*>& Find(const Dimension& dimension);

private:
    using Key = std::tuple<std::string, std::string, std::string, std::string>;

    std::vector<Orvane::EventSection*>& Events(const std::string& compensation);
    Column Unscaled(const Dimension& dimension);
    Column Compute(const Dimension& dimension);

    const StrategyBinding& binding_;
    std::vector<Orvane::EventSection*>& raw_;
    std::vector<Orvane::EventSection*>& compensated_;
    std::map<std::string, CompensatedEvents> byMatrix_;
    std::map<Key, Column> columns_;
};

}  // namespace Host
