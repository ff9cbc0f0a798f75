// The kernels of the DATA segment: a run of events from event-major raw bytes into columns, and back. Value
// type, byte order and scale kinds are settled per call, never per value. A kernel may be called for any part
// of a segment; parts share neither bytes nor column cells, so that they may run side by side.
#pragma once

#include <orvane/OVFCSPara.h>

namespace Orvane {

/// Events `First` .. `First + Count - 1` of the columns, one column per parameter. The raw bytes that go with
/// a range start with its first event.
struct EventRange {
    float* const* Columns;
    int ParCount;
    int First;
    int Count;
};

/// Whether the bytes of a value stand in the machine's order or the other way round.
enum class ByteOrder { Native, Reversed };

/// The values of a logarithmic scale by raw word, computed when a word first turns up. Words from `Capacity`
/// on have no entry.
struct LogTable {
    double Scale;
    double Offset;
    float* Values;
    int Capacity;
    int Marked = 0;  ///< entries in use; each holds its value or the mark of an empty one
};

/// Copies 4-byte values, bit by bit, that stand `byteWidth` bytes apart.
void ReadFloats(const EventRange& range, const unsigned char* raw, int byteWidth, ByteOrder order);
void WriteFloats(const EventRange& range, unsigned char* raw, int byteWidth, ByteOrder order);

/// 8-byte values, narrowed to the nearest float or widened from it.
void ReadDoubles(const EventRange& range, const unsigned char* raw, ByteOrder order);
void WriteDoubles(const EventRange& range, unsigned char* raw, ByteOrder order);

/// Unsigned words w become w * Scale or, where logarithmic, 10^(w * Scale) * Offset. `tables` has one entry
/// per parameter; null (each, or all) where the formula is to be computed for every value.
void ReadInt16(const EventRange& range, const unsigned char* raw, ByteOrder order,
               const OVFCSIntParFormat& format, LogTable* const* tables);
void ReadInt32(const EventRange& range, const unsigned char* raw, ByteOrder order,
               const OVFCSIntParFormat& format, LogTable* const* tables);

/// Numbers of `byteWidth` characters each, converted as integers are.
void ReadAscii(const EventRange& range, const unsigned char* raw, int byteWidth,
               const OVFCSIntParFormat& format);

/// The number that `length` characters read as: digits folded in wrapping 32-bit arithmetic, unchecked.
int FoldDigits(const unsigned char* text, int length);

/// Values as channels: 0 below Offset, scaled, cut to 0 .. Range - 1, truncated toward zero.
void WriteInt16(const EventRange& range, unsigned char* raw, ByteOrder order,
                const OVFCSIntParFormat& format);
void WriteInt32(const EventRange& range, unsigned char* raw, ByteOrder order,
                const OVFCSIntParFormat& format);

}  // namespace Orvane
