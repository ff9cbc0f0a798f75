// The raster: operations on all cells go to the kernels, those on the border walk it cell by cell.
#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>

#include <orvane/OVBitmapData.h>

#include "plot/kernels.h"

namespace Orvane {
namespace {

/// The cells of all rows, those beyond the width included.
std::ptrdiff_t CellCount(const OVBitmapData& raster) {
    return static_cast<std::ptrdiff_t>(raster.Stride / 4) * raster.Height;
}

void ClearRow(const OVBitmapData& raster, int row) {
    auto* bytes = reinterpret_cast<unsigned char*>(raster.Bits);
    std::memset(bytes + static_cast<std::ptrdiff_t>(raster.Stride) * row, 0,
                static_cast<std::size_t>(raster.Stride));
}

/// Calls `move(x, y, innerX, innerY)` for every border cell: the first and the last row, then the first and
/// the last column between them.
template <class Move>
void FoldEdge(const OVBitmapData& raster, const Move& move) {
    const int lastRow = raster.Height - 1;
    const int lastColumn = raster.Width - 1;
    if (lastRow < 0 || lastColumn < 0) return;
    assert(lastRow > 0 && lastColumn > 0);
    for (int x = 0; x <= lastColumn; ++x) {
        move(x, 0, x, 1);
        move(x, lastRow, x, lastRow - 1);
    }
    for (int y = 1; y < lastRow; ++y) {
        move(0, y, 1, y);
        move(lastColumn, y, lastColumn - 1, y);
    }
}

}  // namespace

void OVBitmapData::SetAllDataZero() {
    if (Height <= 0) return;
    std::memset(Bits, 0, static_cast<std::size_t>(Stride) * static_cast<std::size_t>(Height));
}

void OVBitmapData::SetAllData(int v) {
    std::fill_n(Bits, CellCount(*this), v);
}

int OVBitmapData::GetDataMax() const {
    return LargestCell(Bits, CellCount(*this));
}

void OVBitmapData::SetDataIndexByMaxAndLevel(int max, float level) {
    assert(max != 0);
    ConvertToLevels(Bits, CellCount(*this), max, std::ceil(1.0 / static_cast<double>(level)));
}

void OVBitmapData::SetPixelByIndex(int* table, int /*size*/) {
    LookUp(Bits, CellCount(*this), table);
}

void OVBitmapData::SetEdgeDataZero() {
    ClearRow(*this, 0);
    for (int y = 1; y < Height - 1; ++y) {
        SetData(0, y, 0);
        SetData(Width - 1, y, 0);
    }
    // Deliberate: of a raster with fewer than two rows, the row behind it is cleared.
    ClearRow(*this, std::max(1, Height - 1));
}

void OVBitmapData::MoveEdgeData() {
    FoldEdge(*this, [this](int x, int y, int innerX, int innerY) {
        AddData(innerX, innerY, GetData(x, y));
        SetData(x, y, 0);
    });
}

void OVBitmapData::MoveEdgeDataGreater() {
    FoldEdge(*this, [this](int x, int y, int innerX, int innerY) {
        SetDataGreater(innerX, innerY, GetData(x, y));
        SetData(x, y, 0);
    });
}

void OVBitmapData::MoveEdgeDataFlag(int flag) {
    FoldEdge(*this, [this, flag](int x, int y, int innerX, int innerY) {
        if (GetData(x, y) != flag) return;
        SetDataFlag(innerX, innerY, flag);
        SetData(x, y, 0);
    });
}

}  // namespace Orvane
