// Reading Gating-ML 2.0.
#pragma once

#include <string>

#include "gating/gating_strategy.h"

namespace Host {

/// Reads the document at `path`: rectangle, polygon, quadrant and boolean gates, the scales flin, flog,
/// fasinh and fratio, and square spectrum matrices. The parts of a quadrant gate become gates of their own.
/// Throws Refusal, naming element, id and line, for whatever is wrong or of another kind.
Strategy ReadStrategy(const std::string& path);

}  // namespace Host
