// Building the grid of a polygon gate.
//
// Why its answers are those of the exact walk, to the last bit, without a word about rounding: every step
// from an event to its cell, and from a height to the x of an edge there, never turns back as its argument
// rises; neither does rounding. So
//
// - an event in row r lies above every height whose row is below r, and below every height whose row is
//   above r: an edge matters only in the rows from that of its MinY to that of its MaxY;
// - between two heights an edge's x, as computed, stays between its computed x there. With columns a and
//   b of the two, rounded to float, the edge is to the right of every event in a column before a, and not to
//   the right of any event in a column behind b. Only in the columns a to b do events have to look at it;
// - for events left of a, the edge counts if they are between its ends. Edges that reach through the row
//   count for the whole row. Where an edge ends within the row, the count changes at that height, unless
//   another edge to the right ends at the same height: then both changes cancel. Ends of one height are
//   paired off from the right; between the two of a pair lie cells whose count is not one for all their
//   events. Horizontal edges, which count for nothing themselves, are the extreme case: they join such a
//   pair.
#pragma once

#include <span>
#include <vector>

#include "gate/polygon_kernels.h"

namespace Orvane {

class PolygonGrid {
public:
    /// Whether a grid can be made: the rectangle has an area, every edge a finite line, and there are
    /// not too many. `edges` holds edges that can be crossed.
    static bool Suits(const OVRect& rect, std::span<const OVPloygonEigenValue> edges);

    /// A grid of `size` by `size` cells, `size` at most 256. Throws std::bad_alloc.
    PolygonGrid(const OVRect& rect, std::span<const OVPloygonEigenValue> edges, int size);

    CellGrid View() const;

private:
    struct Columns {
        int First;
        int Last;
    };
    /// An end of an edge within a row: it counts for the columns before `Column`.
    struct End {
        float Height;
        int Column;
    };

    void ListRows();
    void EnterEdge(int index);
    void AddToCell(std::size_t cell, int index);
    void SumParities();
    void MarkUneven();
    void MarkBetween(int row, int from, int to);
    std::size_t CellAt(int row, int column) const;
    float HeightBelow(int row) const;
    float HeightAbove(int row) const;
    Columns ColumnsOf(const OVPloygonEigenValue& edge, int row) const;

    OVRect rect_;
    CellAxis x_;
    CellAxis y_;
    int size_;
    std::vector<OVPloygonEigenValue> edges_;  // and one that nothing crosses
    std::vector<float> below_;                // for each row a height below all its events
    std::vector<float> above_;
    std::vector<std::uint8_t> states_;
    std::vector<CellGrid::FewEdges> few_;
    std::vector<int> rowStarts_;
    std::vector<std::uint16_t> rowEdges_;
    std::vector<End> ends_;
};

}  // namespace Orvane
