// Floats and doubles: values are moved, and narrowed or widened.
#include "fcs/kernels.h"
#include "fcs/row_kernels.h"
#include "fcs/tile_kernels.h"
#include "fcs/words.h"

namespace Orvane {
namespace {

constexpr int FloatBytes = 4;
constexpr int DoubleBytes = 8;

template <class Stored>
void ReadColumns(const EventRange& range, const unsigned char* raw, int valueBytes) {
    const std::ptrdiff_t rowBytes = RowBytes(range, valueBytes);
    InColumns(range, raw, valueBytes, [=](const unsigned char* from, int, float* column, int count) {
        for (int e = 0; e < count; ++e)
            column[e] = Stored::Load(from + e * rowBytes);
    });
}

template <class Stored>
void WriteColumns(const EventRange& range, unsigned char* raw, int valueBytes) {
    const std::ptrdiff_t rowBytes = RowBytes(range, valueBytes);
    InColumns(range, raw, valueBytes, [=](unsigned char* to, int, const float* column, int count) {
        for (int e = 0; e < count; ++e)
            Stored::Store(column[e], to + e * rowBytes);
    });
}

void ReadFloatColumns(const EventRange& range, const unsigned char* raw, int byteWidth, ByteOrder order) {
    if (order == ByteOrder::Native) return ReadColumns<StoredFloat<ByteOrder::Native>>(range, raw, byteWidth);
    ReadColumns<StoredFloat<ByteOrder::Reversed>>(range, raw, byteWidth);
}

void WriteFloatColumns(const EventRange& range, unsigned char* raw, int byteWidth, ByteOrder order) {
    if (order == ByteOrder::Native)
        return WriteColumns<StoredFloat<ByteOrder::Native>>(range, raw, byteWidth);
    WriteColumns<StoredFloat<ByteOrder::Reversed>>(range, raw, byteWidth);
}

void ReadFloatTiles(const EventRange& range, const unsigned char* raw, ByteOrder order, Stores stores) {
    if (order == ByteOrder::Native) return RowsToColumns(range, raw, stores);
    // Reversing is all that is left to do with the values.
    ReadThroughTiles(range, raw, FloatBytes, ByteOrder::Native, stores,
                     [](const unsigned char* from, float* values, int count) {
                         ReverseValues(from, reinterpret_cast<unsigned char*>(values), FloatBytes, count);
                     });
}

void WriteFloatTiles(const EventRange& range, unsigned char* raw, ByteOrder order) {
    if (order == ByteOrder::Native) return ColumnsToRows(range, raw);
    WriteThroughTiles(
        range, raw, FloatBytes, ByteOrder::Native, [](const float* values, unsigned char* to, int count) {
            ReverseValues(reinterpret_cast<const unsigned char*>(values), to, FloatBytes, count);
        });
}

void ReadDoubleColumns(const EventRange& range, const unsigned char* raw, ByteOrder order) {
    if (order == ByteOrder::Native) {
        return ReadColumns<StoredDouble<ByteOrder::Native>>(range, raw, DoubleBytes);
    }
    ReadColumns<StoredDouble<ByteOrder::Reversed>>(range, raw, DoubleBytes);
}

void WriteDoubleColumns(const EventRange& range, unsigned char* raw, ByteOrder order) {
    if (order == ByteOrder::Native) {
        return WriteColumns<StoredDouble<ByteOrder::Native>>(range, raw, DoubleBytes);
    }
    WriteColumns<StoredDouble<ByteOrder::Reversed>>(range, raw, DoubleBytes);
}

}  // namespace

void ReadFloats(const EventRange& range, const unsigned char* raw, int byteWidth, ByteOrder order) {
    // Values further apart than they are long are no rows that could be moved as they stand.
    if (byteWidth != FloatBytes) return ReadFloatColumns(range, raw, byteWidth, order);
    InTiles(
        range, raw, FloatBytes,
        [=](const EventRange& part, const unsigned char* from, Stores stores) {
            ReadFloatTiles(part, from, order, stores);
        },
        [=](const EventRange& part, const unsigned char* from) {
            ReadFloatColumns(part, from, FloatBytes, order);
        });
}

void WriteFloats(const EventRange& range, unsigned char* raw, int byteWidth, ByteOrder order) {
    if (byteWidth != FloatBytes) return WriteFloatColumns(range, raw, byteWidth, order);
    InTiles(
        range, raw, FloatBytes,
        [=](const EventRange& part, unsigned char* to, Stores) { WriteFloatTiles(part, to, order); },
        [=](const EventRange& part, unsigned char* to) { WriteFloatColumns(part, to, FloatBytes, order); });
}

void ReadDoubles(const EventRange& range, const unsigned char* raw, ByteOrder order) {
    InTiles(
        range, raw, DoubleBytes,
        [=](const EventRange& part, const unsigned char* from, Stores stores) {
            ReadThroughTiles(part, from, DoubleBytes, order, stores, NarrowRow);
        },
        [=](const EventRange& part, const unsigned char* from) { ReadDoubleColumns(part, from, order); });
}

void WriteDoubles(const EventRange& range, unsigned char* raw, ByteOrder order) {
    InTiles(
        range, raw, DoubleBytes,
        [=](const EventRange& part, unsigned char* to, Stores) {
            WriteThroughTiles(part, to, DoubleBytes, order, WidenRow);
        },
        [=](const EventRange& part, unsigned char* to) { WriteDoubleColumns(part, to, order); });
}

}  // namespace Orvane
