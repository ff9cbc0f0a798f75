// What an acquisition shows while it runs: how many of the last events are in which population.
#pragma once

#include <cstdint>
#include <string>

#include "acquisition/acquisition.h"
#include "gating/gating_strategy.h"
#include "gating/strategy_binding.h"

namespace Host {

/// Leukocytes, lymphocytes, T cells, B cells and monocytes in blood as Instrument measures it, with
/// rectangles in data units.
Strategy BloodStrategy();

/// One line: the number of events so far, then for every population its count and share in the window.
std::string FormatLiveCounts(const StrategyBinding& binding, Acquisition& acquisition);

}  // namespace Host
