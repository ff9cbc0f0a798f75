#include "gate/polygon_kernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "foundation/instruction_set.h"
#include "gate/polygon_edges.h"
#include "gate/threshold_kernels.h"

namespace Orvane {
namespace {

// Events of one step: their words say which of them are in the rectangle at all.
constexpr int BlockEvents = 1024;
constexpr int BlockWords = BlockEvents / 32;
using BlockOfWords = std::array<std::uint32_t, BlockWords>;

BlockOfWords InRectangle(const OVRect& rect, const float* x, const float* y, int count) {
    BlockOfWords words{};
    RectangleRule{rect.MinX, rect.MaxX, rect.MinY, rect.MaxY}(x, y, count, {words.data()});
    return words;
}

/// The parity of the crossed edges of 32 events, eight at a time, one in each lane.
ORVANE_KERNEL_INLINE std::uint32_t CrossEveryEdgeBody(std::span<const OVPloygonEigenValue> edges,
                                                      const float* x, const float* y) {
    constexpr int Lanes = 8;
    std::uint32_t word = 0;
    for (int first = 0; first < 32; first += Lanes) {
        double xs[Lanes];
        double ys[Lanes];
        std::int64_t odd[Lanes] = {};
        for (int i = 0; i < Lanes; ++i) {
            xs[i] = static_cast<double>(x[first + i]);
            ys[i] = static_cast<double>(y[first + i]);
        }
        for (const OVPloygonEigenValue& edge : edges) {
            const auto minY = static_cast<double>(edge.MinY);
            const auto maxY = static_cast<double>(edge.MaxY);
            for (int i = 0; i < Lanes; ++i) {
                const std::int64_t reaches = (ys[i] >= minY ? -1 : 0) & (ys[i] < maxY ? -1 : 0);
                odd[i] ^= reaches & (ys[i] * edge.Slope + edge.Intercept > xs[i] ? -1 : 0);
            }
        }
        for (int i = 0; i < Lanes; ++i) {
            word |= static_cast<std::uint32_t>(odd[i] & 1) << (first + i);
        }
    }
    return word;
}

ORVANE_MULTIVERSION(std::uint32_t, CrossEveryEdge,
                    (std::span<const OVPloygonEigenValue> edges, const float* x, const float* y),
                    (edges, x, y))

/// The same for the `count` events of an incomplete word.
std::uint32_t CrossEveryEdgeRest(std::span<const OVPloygonEigenValue> edges, const float* x, const float* y,
                                 int count) {
    std::array<float, 32> lastX{};
    std::array<float, 32> lastY{};
    std::copy_n(x, count, lastX.begin());
    std::copy_n(y, count, lastY.begin());
    return CrossEveryEdge(edges, lastX.data(), lastY.data());
}

ORVANE_KERNEL_INLINE void FindCellsBody(const CellGrid& grid, const float* x, const float* y, int count,
                                        std::uint16_t* cells) {
    const CellAxis columns = grid.X;
    const CellAxis rows = grid.Y;
    const int size = grid.Size;
    for (int i = 0; i < count; ++i) {
        cells[i] = static_cast<std::uint16_t>(rows.CellOf(y[i]) * size + columns.CellOf(x[i]));
    }
}

ORVANE_MULTIVERSION(void, FindCells,
                    (const CellGrid& grid, const float* x, const float* y, int count, std::uint16_t* cells),
                    (grid, x, y, count, cells))

/// Bit i is the lowest bit of byte i.
std::uint32_t LowestBits(std::uint64_t bytes) {
    constexpr std::uint64_t Lowest = 0x0101010101010101U;
    constexpr std::uint64_t Gather = 0x0102040810204080U;
    return static_cast<std::uint32_t>(((bytes & Lowest) * Gather) >> 56);
}

bool IsInsideByRow(const CellGrid& grid, int row, float x, float y) {
    bool inside = false;
    for (int i = grid.RowStarts[row]; i < grid.RowStarts[row + 1]; ++i) {
        inside ^= IsCrossed(grid.Edges[grid.RowEdges[i]], x, y);
    }
    return inside;
}

/// Whether an event of an undecided cell is inside.
bool IsInsideByEdges(const CellGrid& grid, int cell, float x, float y) {
    const CellGrid::FewEdges& few = grid.Few[cell];
    if (few.Index[0] == CellGrid::Many) return IsInsideByRow(grid, cell / grid.Size, x, y);
    bool inside = (grid.States[cell] & CellGrid::Inside) != 0;
    for (const std::uint16_t index : few.Index) {
        inside ^= IsCrossed(grid.Edges[index], x, y);
    }
    return inside;
}

/// Which of the `wanted` events are inside.
std::uint32_t ResolveCells(const CellGrid& grid, const std::uint16_t* cells, std::uint32_t wanted,
                           const float* x, const float* y) {
    std::uint32_t inside = 0;
    std::uint32_t open = 0;
    for (int first = 0; first < 32; first += 8) {
        std::uint64_t states = 0;
        for (int i = 0; i < 8; ++i) {
            states |= std::uint64_t{grid.States[cells[first + i]]} << (8 * i);
        }
        inside |= LowestBits(states) << first;
        open |= LowestBits(states >> 1) << first;
    }
    open &= wanted;
    inside &= wanted & ~open;
    for (; open != 0; open &= open - 1) {
        const int i = std::countr_zero(open);
        inside |= static_cast<std::uint32_t>(IsInsideByEdges(grid, cells[i], x[i], y[i])) << i;
    }
    return inside;
}

}  // namespace

void FileByEveryEdge(const OVRect& rect, std::span<const OVPloygonEigenValue> edges, const float* x,
                     const float* y, int count, std::uint32_t* out) {
    for (int start = 0; start < count; start += BlockEvents, out += BlockWords) {
        const int events = std::min(BlockEvents, count - start);
        const BlockOfWords inRectangle = InRectangle(rect, x + start, y + start, events);
        const std::uint32_t* wanted = inRectangle.data();
        for (int w = 0; 32 * w < events; ++w) {
            const int first = start + 32 * w;
            if (wanted[w] == 0) continue;
            const std::uint32_t inside = count - first < 32
                                             ? CrossEveryEdgeRest(edges, x + first, y + first, count - first)
                                             : CrossEveryEdge(edges, x + first, y + first);
            out[w] |= wanted[w] & inside;
        }
    }
}

void FileByGrid(const OVRect& rect, const CellGrid& grid, const float* x, const float* y, int count,
                std::uint32_t* out) {
    std::array<std::uint16_t, BlockEvents> cells{};
    for (int start = 0; start < count; start += BlockEvents, out += BlockWords) {
        const int events = std::min(BlockEvents, count - start);
        const BlockOfWords inRectangle = InRectangle(rect, x + start, y + start, events);
        const std::uint32_t* wanted = inRectangle.data();
        FindCells(grid, x + start, y + start, events, cells.data());
        for (int w = 0; 32 * w < events; ++w) {
            const int first = start + 32 * w;
            if (wanted[w] == 0) continue;
            out[w] |= ResolveCells(grid, cells.data() + (first - start), wanted[w], x + first, y + first);
        }
    }
}

}  // namespace Orvane
