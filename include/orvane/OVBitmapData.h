// The raster that every plot view draws into.
#pragma once

#include <cstddef>

#include <orvane/Platform.h>

namespace Orvane {

/// A raster of 32-bit cells in memory of the caller, which the structure never allocates or frees. A cell
/// holds a count, an index or flags while a view draws, and a color of the caller's table afterwards.
///
/// Cell (x, y), column x of row y, lies `Stride * y + 4 * x` bytes behind `Bits`. Cells are signed numbers to
/// the operations that compare. Operations on every cell cover whole rows, the cells beyond `Width` included;
/// operations on one cell and on the border do not check bounds. Nothing is validated and nothing is thrown.
struct ORVANE_API OVBitmapData {
    int Height = 0;       ///< rows
    int Width = 0;        ///< cells of a row
    int Stride = 0;       ///< bytes from one row to the next, a multiple of 4, at least 4 * `Width`
    int* Bits = nullptr;  ///< row 0 first

    /// Adds `v`, in 32-bit arithmetic that wraps.
    void AddData(int x, int y, int v) {
        int& cell = Cell(x, y);
        cell = static_cast<int>(static_cast<unsigned>(cell) + static_cast<unsigned>(v));
    }
    void SetData(int x, int y, int v) { Cell(x, y) = v; }
    void SetPixel(int x, int y, int v) { Cell(x, y) = v; }
    /// Raises a smaller cell to `v`.
    void SetDataGreater(int x, int y, int v) {
        if (Cell(x, y) < v) Cell(x, y) = v;
    }
    /// Lowers a larger cell to `v`.
    void SetDataLess(int x, int y, int v) {
        if (Cell(x, y) > v) Cell(x, y) = v;
    }
    /// Sets the bits of `v`.
    void SetDataFlag(int x, int y, int v) { Cell(x, y) |= v; }
    int GetData(int x, int y) const { return Cell(x, y); }
    int GetPixel(int x, int y) const { return Cell(x, y); }

    /// Sets all `Stride * Height` bytes to 0.
    void SetAllDataZero();
    /// Sets every cell.
    void SetAllData(int v);
    /// The largest cell; the smallest int when there are none.
    int GetDataMax() const;

    /// Turns counts into levels: cell c becomes ceil(c * (levels / max)) in double, truncated to 32 bits,
    /// where levels = ceil(1 / level). So 0 stays 0, every other count up to `max` becomes 1 to levels, and
    /// `max` itself levels exactly. `max` must not be 0.
    void SetDataIndexByMaxAndLevel(int max, float level);
    /// Replaces every cell c by table[c]. `size` is not looked at: the table must hold every cell's entry.
    void SetPixelByIndex(int* table, int size);

    /// Clears row 0, the first and last cell of the rows below it, and the last row. Of a raster with fewer
    /// than two rows, memory behind it is cleared.
    void SetEdgeDataZero();

    /// Fold the border one cell inward: first row 0 and the last row in every column, then the first and last
    /// cell of the rows between. The inner cell gets the sum, or the larger of both; the border cell becomes
    /// 0. The raster has at least two rows and two columns, or no cells at all.
    void MoveEdgeData();
    void MoveEdgeDataGreater();
    /// The same for border cells that equal `flag` exactly, which is set in the inner cell; other border
    /// cells stay as they are.
    void MoveEdgeDataFlag(int flag);

private:
    int& Cell(int x, int y) const {
        unsigned char* row = reinterpret_cast<unsigned char*>(Bits) + static_cast<std::ptrdiff_t>(Stride) * y;
        return reinterpret_cast<int*>(row)[x];
    }
};

}  // namespace Orvane
