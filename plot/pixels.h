// Pixels of events, and the kernel frames that visit their cells of a raster. What happens to a cell is a
// policy of the kernel.
#pragma once

#include <bit>
#include <cstdint>

#include <orvane/OVBitmapData.h>

#include "foundation/instruction_set.h"

namespace Orvane {

/// The pixels of `Count` events: event i lies at (Columns[i], Rows[i]).
struct Pixels {
    const unsigned short* Columns;
    const unsigned short* Rows;
    int Count;
};

// The cells of this many events are found side by side before the first one is changed.
constexpr int CellBlockSize = 32;

/// Calls `visit(numbers, first, size)` for block after block of events, where numbers[i] is the position in
/// the raster's memory of the cell of event first + i. 32 bits hold every position, because no pixel lies
/// beyond row and column 65535.
template <class Visit>
ORVANE_KERNEL_INLINE void NumberCells(const OVBitmapData& raster, const Pixels pixels, const Visit& visit) {
    const auto pitch = static_cast<std::uint32_t>(raster.Stride / 4);
    std::uint32_t numbers[CellBlockSize];
    const auto number = [&](int first, int size) {
        for (int i = 0; i < size; ++i) {
            numbers[i] = pitch * pixels.Rows[first + i] + pixels.Columns[first + i];
        }
    };
    int first = 0;
    for (; pixels.Count - first >= CellBlockSize; first += CellBlockSize) {
        number(first, CellBlockSize);
        visit(numbers, first, CellBlockSize);
    }
    number(first, pixels.Count - first);
    visit(numbers, first, pixels.Count - first);
}

/// Calls `change(cell, i)` for every event i, in order. Every pixel must lie in the raster.
template <class Change>
ORVANE_KERNEL_INLINE void ChangeCells(const OVBitmapData& raster, const Pixels& pixels,
                                      const Change& change) {
    int* cells = raster.Bits;
    // Four instructions take turns, because a processor learns for each of them from which earlier one its
    // cell comes. A single one fails at events that alternate between cells.
    NumberCells(raster, pixels, [=](const std::uint32_t* numbers, int first, int size) {
#pragma GCC unroll 4
        for (int i = 0; i < size; ++i) {
            change(cells[numbers[i]], first + i);
        }
    });
}

/// The same for the events whose bit in `select` is set. Only their pixels must lie in the raster.
template <class Change>
ORVANE_KERNEL_INLINE void ChangeSelectedCells(const OVBitmapData& raster, const Pixels& pixels,
                                              const std::uint32_t* select, const Change& change) {
    int* cells = raster.Bits;
    NumberCells(raster, pixels, [=](const std::uint32_t* numbers, int first, int size) {
        if (size == 0) return;
        std::uint32_t bits = select[first / CellBlockSize];
        if (size < CellBlockSize) bits &= ~(0xFFFFFFFFU << size);
        for (; bits != 0; bits &= bits - 1) {
            const int i = std::countr_zero(bits);
            change(cells[numbers[i]], first + i);
        }
    });
}

}  // namespace Orvane
