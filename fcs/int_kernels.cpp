// Integer and ASCII values: scaled linearly, or by way of a table or the formula where logarithmic.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>

#include "fcs/kernels.h"
#include "fcs/row_kernels.h"
#include "fcs/tile_kernels.h"
#include "fcs/words.h"

namespace Orvane {
namespace {

// A signalling NaN: what is computed and narrowed to float is never one.
constexpr std::uint32_t EmptyEntry = 0x7F800001;

float LinearValue(double raw, double scale) {
    return static_cast<float>(raw * scale);
}

float LogValue(double raw, double scale, double offset) {
    return static_cast<float>(std::pow(10.0, raw * scale) * offset);
}

// Marks entries until `word` has one, a chunk at a time: most scales use a small part of the table.
void MarkUpTo(LogTable& table, std::uint32_t word) {
    constexpr std::uint32_t Chunk = 1024;
    const std::uint32_t end =
        std::min((word / Chunk + 1) * Chunk, static_cast<std::uint32_t>(table.Capacity));
    std::fill(table.Values + table.Marked, table.Values + end, std::bit_cast<float>(EmptyEntry));
    table.Marked = static_cast<int>(end);
}

float NewLogValue(LogTable& table, std::uint32_t word) {
    const float value = LogValue(word, table.Scale, table.Offset);
    if (word >= static_cast<std::uint32_t>(table.Capacity)) return value;
    if (word >= static_cast<std::uint32_t>(table.Marked)) MarkUpTo(table, word);
    table.Values[word] = value;
    return value;
}

float TableValue(LogTable& table, std::uint32_t word) {
    if (word >= static_cast<std::uint32_t>(table.Marked)) return NewLogValue(table, word);
    const float value = table.Values[word];
    return std::bit_cast<std::uint32_t>(value) == EmptyEntry ? NewLogValue(table, word) : value;
}

// Reads one column: `load(address)` gives a value's number, and the parameter's scale makes its value.
template <class Load>
void ReadScaledColumn(const unsigned char* raw, std::ptrdiff_t rowBytes, float* column, int count, Load load,
                      const OVFCSIntParFormat& format, int parameter) {
    const double scale = format.Scale[parameter];
    const double offset = format.Offset[parameter];
    if (format.IsLog[parameter]) {
        for (int e = 0; e < count; ++e)
            column[e] = LogValue(load(raw + e * rowBytes), scale, offset);
    } else {
        for (int e = 0; e < count; ++e)
            column[e] = LinearValue(load(raw + e * rowBytes), scale);
    }
}

template <class Stored>
void ReadStoredColumns(const EventRange& range, const unsigned char* raw, const OVFCSIntParFormat& format,
                       LogTable* const* tables) {
    const std::ptrdiff_t rowBytes = RowBytes(range, Stored::Bytes);
    InColumns(range, raw, Stored::Bytes,
              [=, &format](const unsigned char* from, int p, float* column, int n) {
                  if (tables == nullptr || tables[p] == nullptr) {
                      return ReadScaledColumn(from, rowBytes, column, n, Stored::Load, format, p);
                  }
                  LogTable& table = *tables[p];
                  for (int e = 0; e < n; ++e)
                      column[e] = TableValue(table, Stored::Load(from + e * rowBytes));
              });
}

template <class Scale>
using ScaleRow = void (*)(const unsigned char* raw, const Scale* scales, float* values, int count);

template <class Scale>
void ReadScaledTiles(const EventRange& range, const unsigned char* raw, int valueBytes, ByteOrder order,
                     Stores stores, const OVFCSIntParFormat& format, ScaleRow<Scale> scaleRow) {
    Scale scales[TileEvents * TileParameters];
    for (int i = 0; i < TileEvents * range.ParCount; ++i) {
        scales[i] = static_cast<Scale>(format.Scale[i % range.ParCount]);
    }
    ReadThroughTiles(
        range, raw, valueBytes, order, stores,
        [&](const unsigned char* from, float* values, int count) { scaleRow(from, scales, values, count); });
}

// Tables need columns, and an event's scales must fit a tile.
bool FitsTiles(const OVFCSIntParFormat& format, int parCount) {
    return parCount <= TileParameters && std::none_of(format.IsLog, format.IsLog + parCount, std::identity());
}

bool AreFloats(const double* scales, int count) {
    return std::all_of(scales, scales + count,
                       [](double scale) { return static_cast<double>(static_cast<float>(scale)) == scale; });
}

template <class Word>
void ReadIntColumns(const EventRange& range, const unsigned char* raw, ByteOrder order,
                    const OVFCSIntParFormat& format, LogTable* const* tables) {
    if (order == ByteOrder::Native) {
        return ReadStoredColumns<StoredWord<Word, ByteOrder::Native>>(range, raw, format, tables);
    }
    ReadStoredColumns<StoredWord<Word, ByteOrder::Reversed>>(range, raw, format, tables);
}

template <class Word, class ReadTiles>
void ReadInt(const EventRange& range, const unsigned char* raw, ByteOrder order,
             const OVFCSIntParFormat& format, LogTable* const* tables, ReadTiles readTiles) {
    if (!FitsTiles(format, range.ParCount)) return ReadIntColumns<Word>(range, raw, order, format, tables);
    InTiles(range, raw, sizeof(Word), readTiles, [&](const EventRange& part, const unsigned char* from) {
        ReadIntColumns<Word>(part, from, order, format, tables);
    });
}

void ReadInt16Tiles(const EventRange& range, const unsigned char* raw, ByteOrder order, Stores stores,
                    const OVFCSIntParFormat& format) {
    if (AreFloats(format.Scale, range.ParCount)) {
        return ReadScaledTiles<float>(range, raw, 2, order, stores, format, ScaleRow16);
    }
    ReadScaledTiles<double>(range, raw, 2, order, stores, format, ScaleRow16);
}

}  // namespace

void ReadInt16(const EventRange& range, const unsigned char* raw, ByteOrder order,
               const OVFCSIntParFormat& format, LogTable* const* tables) {
    ReadInt<std::uint16_t>(range, raw, order, format, tables,
                           [&](const EventRange& part, const unsigned char* from, Stores stores) {
                               ReadInt16Tiles(part, from, order, stores, format);
                           });
}

void ReadInt32(const EventRange& range, const unsigned char* raw, ByteOrder order,
               const OVFCSIntParFormat& format, LogTable* const* tables) {
    ReadInt<std::uint32_t>(range, raw, order, format, tables,
                           [&](const EventRange& part, const unsigned char* from, Stores stores) {
                               ReadScaledTiles<double>(part, from, 4, order, stores, format, ScaleRow32);
                           });
}

// Deliberate: signs and blanks are folded like digits; a wrong number is no error here.
int FoldDigits(const unsigned char* text, int length) {
    std::uint32_t value = 0;
    for (int i = 0; i < length; ++i) {
        const int digit = static_cast<signed char>(text[i]) - '0';
        value = value * 10 + static_cast<std::uint32_t>(digit);
    }
    return static_cast<int>(value);
}

void ReadAscii(const EventRange& range, const unsigned char* raw, int byteWidth,
               const OVFCSIntParFormat& format) {
    const std::ptrdiff_t rowBytes = RowBytes(range, byteWidth);
    const auto load = [=](const unsigned char* text) { return FoldDigits(text, byteWidth); };
    InColumns(range, raw, byteWidth, [&](const unsigned char* from, int p, float* column, int count) {
        ReadScaledColumn(from, rowBytes, column, count, load, format, p);
    });
}

}  // namespace Orvane
