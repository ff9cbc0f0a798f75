// Stained blood, cell by cell: how much light each gives, before a detector has seen any of it.
#pragma once

#include <array>
#include <cstddef>

#include "acquisition/random.h"

namespace Host {

constexpr std::size_t DyeCount = 6;

/// Light in the units of the detectors. `dyes` are CD3, CD8, CD4, CD19, CD14 and CD45.
struct Cell {
    double forward;
    double side;
    std::array<double, DyeCount> dyes;
};

/// Draws one cell of a blood sample: T, B and NK cells, monocytes, granulocytes, or debris.
Cell DrawCell(Random& random);

}  // namespace Host
