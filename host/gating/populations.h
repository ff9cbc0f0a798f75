// The populations that a gating strategy finds in the events of a file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "gating/gate_columns.h"
#include "gating/membership.h"

namespace Host {

/// One gate's events: those inside the gate and inside its parent.
struct GatedPopulation {
    std::string name;
    std::optional<std::size_t> parent;  ///< its index; none for every event
    Membership members;
    std::uint64_t count;
};

/// Evaluates every gate; the populations stand where their gates stand in the strategy. `raw` and
/// `compensated` are as in GateColumns. Throws OutOfMemoryException* when the pool is exhausted.
std::vector<GatedPopulation> Evaluate(const StrategyBinding& binding, std::vector<Orvane::EventSection*>& raw,
                                      std::vector<Orvane::EventSection*>& compensated);

/// The smallest float that is at least `bound`, and the largest that is below it: the closed bounds that
/// contain the same floats as the half-open ones of Gating-ML.
float SmallestFrom(double bound);
float LargestBelow(double bound);

}  // namespace Host
