// The spill-over matrix that a file carries.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fcs_files/fcs_parameters.h"

namespace Host {

/// Row i holds what one unit of parameter i adds to each of the parameters.
struct Spillover {
    std::string keyword;               ///< where it stands
    std::vector<std::string> names;    ///< $PnN of the parameters, as bytes, or their numbers n
    std::vector<double> coefficients;  ///< row by row

    double At(std::size_t row, std::size_t column) const { return coefficients[row * names.size() + column]; }
};

/// Where ReadSpillover looks for a matrix, in this order.
constexpr const char* SpilloverKeywords = "$SPILLOVER, SPILL, SPILLOVER, $COMP or COMP";

/// The position of the parameter that a matrix calls `name`: its $PnN, or its number when no parameter has
/// that name.
std::optional<std::size_t> FindChannel(const EventLayout& layout, const std::string& name);

/// Whether a keyword is one of those.
bool IsSpilloverKeyword(const std::string& name);

/// The matrix of $SPILLOVER, or of the SPILL, SPILLOVER, $COMP and COMP of older writers; none when there is
/// none. Without names it is for all parameters. One that cannot be read is warned of and left out.
std::optional<Spillover> ReadSpillover(const Keywords& keywords, const EventLayout& layout,
                                       Findings& findings);

}  // namespace Host
