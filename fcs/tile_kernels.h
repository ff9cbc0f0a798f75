// Tiles of 16 events: how events-by-rows and events-by-columns are exchanged at the speed of memory.
//
// The columns of a section lie one block (256 KiB) apart, in the same cache sets, and evict each other when
// all of them are touched event by event. Moved 16 events at a time, every column receives or gives a whole
// cache line of 64 bytes at once.
#pragma once

#include <algorithm>
#include <cstddef>

#include "fcs/kernels.h"
#include "fcs/row_kernels.h"

namespace Orvane {

constexpr int TileEvents = 16;
/// Parameters that a tile in between holds; wider events pass through it piece by piece.
constexpr int TileParameters = 32;
/// Events whose raw bytes stay in the cache while one column after another is read from them.
constexpr int BlockEvents = 256;

/// Streaming stores do not read the destination into the cache, and do not leave it there.
enum class Stores { Cached, Streaming };

/// Moves 16 rows of `parCount` 4-byte values, `rowBytes` apart, to event `event` of the columns. Streaming
/// needs lines aligned to 64 bytes there, and FinishStores before anybody else reads the columns.
using TileToColumns = void (*)(const unsigned char* rows, std::ptrdiff_t rowBytes, float* const* columns,
                               int parCount, std::ptrdiff_t event);
TileToColumns SelectTileToColumns(Stores stores);
void FinishStores(Stores stores);

/// Moves event `event` and the next 15 of the columns to 16 rows, `rowBytes` apart.
void TileToRows(const float* const* columns, int parCount, std::ptrdiff_t event, unsigned char* rows,
                std::ptrdiff_t rowBytes);

/// Has the columns' next lines brought in for `events` events, some tiles ahead of `event` (counted from the
/// start of the range): the processor's own prefetching loses track of so many columns.
void FetchAhead(const EventRange& range, int event, int events);

/// How a range is cut: `Head` events up to a line border of the columns, `Body` events in whole tiles, and
/// the rest. Nothing is in tiles when there are too few parameters for the columns to be in each other's way.
struct TileCut {
    int Head;
    int Body;
    Stores Kind;
};
TileCut CutIntoTiles(const EventRange& range);

inline EventRange Part(const EventRange& range, int from, int count) {
    return {range.Columns, range.ParCount, range.First + from, count};
}

/// The distance of two events in the raw bytes.
inline std::ptrdiff_t RowBytes(const EventRange& range, int valueBytes) {
    return std::ptrdiff_t{valueBytes} * range.ParCount;
}

/// Runs `byTiles(part, raw, stores)` on the whole tiles of the range and `byColumns(part, raw)` on what is
/// before and behind them.
template <class Byte, class ByTiles, class ByColumns>
void InTiles(const EventRange& range, Byte* raw, int valueBytes, ByTiles byTiles, ByColumns byColumns) {
    const std::ptrdiff_t rowBytes = RowBytes(range, valueBytes);
    const TileCut cut = CutIntoTiles(range);
    const int tail = cut.Head + cut.Body;
    byColumns(Part(range, 0, cut.Head), raw);
    byTiles(Part(range, cut.Head, cut.Body), raw + cut.Head * rowBytes, cut.Kind);
    byColumns(Part(range, tail, range.Count - tail), raw + tail * rowBytes);
}

/// Runs `visit(raw, parameter, column, count)` on each column in turn, in blocks of BlockEvents events;
/// `raw` is then the parameter's value in the block's first event.
template <class Byte, class Visit>
void InColumns(const EventRange& range, Byte* raw, int valueBytes, Visit visit) {
    const std::ptrdiff_t rowBytes = RowBytes(range, valueBytes);
    for (int event = 0; event < range.Count; event += BlockEvents) {
        const int count = std::min(BlockEvents, range.Count - event);
        for (int p = 0; p < range.ParCount; ++p) {
            visit(raw + event * rowBytes + std::ptrdiff_t{valueBytes} * p, p,
                  range.Columns[p] + range.First + event, count);
        }
    }
}

/// Runs `visit(row, rows)` on the rows of a tile: on all at once when a row is as long as what it has in the
/// tile, otherwise on one after another.
template <class Visit>
void InRows(bool whole, Visit visit) {
    if (whole) return visit(0, TileEvents);
    for (int row = 0; row < TileEvents; ++row)
        visit(row, 1);
}

/// Moves the whole tiles of a range by way of a tile of floats, which `convert(raw, values, count)` makes
/// from raw values in native order.
template <class Convert>
void ReadThroughTiles(const EventRange& range, const unsigned char* raw, int valueBytes, ByteOrder order,
                      Stores stores, Convert convert) {
    alignas(64) float values[TileEvents * TileParameters];
    alignas(64) unsigned char reversed[sizeof values * 2];
    const TileToColumns toColumns = SelectTileToColumns(stores);
    const std::ptrdiff_t rowBytes = RowBytes(range, valueBytes);
    for (int event = 0; event < range.Count; event += TileEvents) {
        for (int p = 0; p < range.ParCount; p += TileParameters) {
            const unsigned char* corner = raw + event * rowBytes + std::ptrdiff_t{valueBytes} * p;
            const int width = std::min(TileParameters, range.ParCount - p);
            InRows(width == range.ParCount, [&](int row, int rows) {
                const unsigned char* from = corner + row * rowBytes;
                if (order == ByteOrder::Reversed) {
                    ReverseValues(from, reversed, valueBytes, rows * width);
                    from = reversed;
                }
                convert(from, values + std::ptrdiff_t{row} * width, rows * width);
            });
            toColumns(reinterpret_cast<const unsigned char*>(values), std::ptrdiff_t{4} * width,
                      range.Columns + p, width, range.First + event);
        }
    }
    FinishStores(stores);
}

/// The way back: `convert(values, raw, count)` makes raw values in native order from the floats of a tile.
template <class Convert>
void WriteThroughTiles(const EventRange& range, unsigned char* raw, int valueBytes, ByteOrder order,
                       Convert convert) {
    alignas(64) float values[TileEvents * TileParameters];
    alignas(64) unsigned char native[sizeof values * 2];
    const std::ptrdiff_t rowBytes = RowBytes(range, valueBytes);
    for (int event = 0; event < range.Count; event += TileEvents) {
        FetchAhead(range, event, TileEvents);
        for (int p = 0; p < range.ParCount; p += TileParameters) {
            unsigned char* corner = raw + event * rowBytes + std::ptrdiff_t{valueBytes} * p;
            const int width = std::min(TileParameters, range.ParCount - p);
            TileToRows(range.Columns + p, width, range.First + event,
                       reinterpret_cast<unsigned char*>(values), std::ptrdiff_t{4} * width);
            InRows(width == range.ParCount, [&](int row, int rows) {
                unsigned char* to = corner + row * rowBytes;
                const bool reverse = order == ByteOrder::Reversed;
                convert(values + std::ptrdiff_t{row} * width, reverse ? native : to, rows * width);
                if (reverse) ReverseValues(native, to, valueBytes, rows * width);
            });
        }
    }
}

/// Moves whole tiles of 4-byte values in native order as they stand.
void RowsToColumns(const EventRange& range, const unsigned char* raw, Stores stores);
void ColumnsToRows(const EventRange& range, unsigned char* raw);

}  // namespace Orvane
