// Kernels of the polygon gate. Both give, for every event, what walking the polygon's edges one by one gives:
// an event counts as inside when the edges crossed on the way to the right are odd in number, in whatever
// order, and edges that end at or below it are not crossed.
#pragma once

#include <cstdint>
#include <span>

#include <orvane/OVPloygon.h>

#include "foundation/instruction_set.h"

namespace Orvane {

/// Cells along one axis of a grid: [min, max] in `count` equal parts.
///
/// All that anybody may rely on is that CellOf never decreases as its argument rises. That is so because each
/// of its steps, rounding included, never does.
struct CellAxis {
    float Min;
    float CellsPerUnit;
    float Last;  ///< the number of the last cell

    /// From 0 to Last for every value, NaN included.
    ORVANE_KERNEL_INLINE int CellOf(float value) const {
        float cell = (value - Min) * CellsPerUnit;
        cell = cell > 0.0F ? cell : 0.0F;
        cell = cell < Last ? cell : Last;
        return static_cast<int>(cell);
    }
};

/// A grid over a polygon's rectangle, whose cells know whether their events are inside or which edges
/// decide it. Cell (column, row) is number row * Size + column.
struct CellGrid {
    static constexpr int MaxFew = 2;
    static constexpr std::uint16_t Many = 0xFFFF;

    // A cell's state. Of an undecided cell, Inside is the parity of the edges that all its events cross.
    static constexpr std::uint8_t Inside = 1;
    static constexpr std::uint8_t Undecided = 2;

    /// The edges that cross an undecided cell, filled up with one that nothing crosses; or Many, when there
    /// are more, or when the parity of the others is not one for the whole cell.
    struct FewEdges {
        std::uint16_t Index[MaxFew];
    };

    CellAxis X;
    CellAxis Y;
    int Size;
    const std::uint8_t* States;
    const FewEdges* Few;
    /// The edges that reach into row r are RowEdges[RowStarts[r]] to RowEdges[RowStarts[r + 1] - 1].
    const int* RowStarts;
    const std::uint16_t* RowEdges;
    const OVPloygonEigenValue* Edges;
};

/// Adds the bits of the events inside the rectangle and inside the polygon of these edges.
void FileByEveryEdge(const OVRect& rect, std::span<const OVPloygonEigenValue> edges, const float* x,
                     const float* y, int count, std::uint32_t* out);

/// The same by way of the grid.
void FileByGrid(const OVRect& rect, const CellGrid& grid, const float* x, const float* y, int count,
                std::uint32_t* out);

}  // namespace Orvane
