// The spill-over matrix that a file carries.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fcs_parameters.h"

namespace Host {

/// Row i holds what one unit of parameter i adds to each of the parameters.
struct Spillover {
    std::string keyword;               ///< where it stands
    std::vector<std::string> names;    ///< $PnN of the parameters, as bytes
    std::vector<double> coefficients;  ///< row by row

    double At(std::size_t row, std::size_t column) const { return coefficients[row * names.size() + column]; }
};

/// The matrix of $SPILLOVER, or of the SPILL and SPILLOVER of older writers; none when there is none. One
/// that cannot be read is warned of and left out.
std::optional<Spillover> ReadSpillover(const Keywords& keywords, const EventLayout& layout,
                                       Findings& findings);

}  // namespace Host
