// Reading and writing DATA segments: which events are in which segment, and which kernel converts them.
#include <orvane/OVFCSWriteRead.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#if defined(_OPENMP)
#include <omp.h>
#endif

#include "fcs/kernels.h"
#include "fcs/log_tables.h"
#include "fcs/tile_kernels.h"

namespace Orvane {
namespace {

enum DataType { Integer = 1, Float = 2, Double = 3, Ascii = 4 };

// Deliberate: every other width, 10 bits too, is stored in 32-bit words. Hosts fill `BitWidth` accordingly.
bool HasShortWords(const OVFCSPara& para) {
    return para.BitWidth == 16;
}

ByteOrder OrderOf(const OVFCSPara& para) {
    return para.LittleEndian ? ByteOrder::Native : ByteOrder::Reversed;
}

EventRange RangeOf(const SegmentSection& segment, const EventSection& events, const OVFCSPara& para) {
    return {events.Signals, para.ParCount, segment.Tag1, segment.Tag2 - segment.Tag1};
}

unsigned char* RawOf(const SegmentSection& segment) {
    return static_cast<unsigned char*>(segment.Data);
}

void SetLength(SegmentSection& segment, const OVFCSPara& para) {
    segment.Count = (segment.Tag2 - segment.Tag1) * para.ByteWidth * para.ParCount;
}

// Runs `convert(part, raw)` on the even parts of a range, one per thread, or on all of it where forking would
// cost more than it saves. Parts meet at whole tiles, so that no two threads write to one line.
template <class Byte, class Convert>
void InThreads(const EventRange& range, Byte* raw, [[maybe_unused]] int byteWidth, Convert convert) {
#if defined(_OPENMP)
    constexpr std::int64_t ValuesToPay = 65536;
    const int threads = omp_get_max_threads();
    if (threads > 1 && std::int64_t{range.Count} * range.ParCount >= ValuesToPay) {
        const auto border = [&](int part) {
            if (part == threads) return range.Count;
            const std::int64_t even = range.First + std::int64_t{range.Count} * part / threads;
            return std::max(static_cast<int>(even / TileEvents * TileEvents) - range.First, 0);
        };
#pragma omp parallel for schedule(static) num_threads(threads)
        for (int part = 0; part < threads; ++part) {
            const int from = border(part);
            convert(Part(range, from, border(part + 1) - from), raw + from * RowBytes(range, byteWidth));
        }
        return;
    }
#endif
    convert(range, raw);
}

}  // namespace

void OVFCSWriteRead::WriteFCSData(std::vector<SegmentSection*>& segments, EventSection& events,
                                  OVFCSPara& para) {
    if (para.Mode != 0) return;
    CalcSegmentIndexByCount(segments, events);
    switch (para.DataType) {
        case Integer:
            return HasShortWords(para) ? WriteFCSData_Int16(segments, events, para)
                                       : WriteFCSData_Int32(segments, events, para);
        case Float:
            return WriteFCSData_Float(segments, events, para);
        case Double:
            return WriteFCSData_Double(segments, events, para);
        default:
            return;
    }
}

void OVFCSWriteRead::ReadFCSData(EventSection& events, std::vector<SegmentSection*>& segments,
                                 OVFCSPara& para) {
    if (para.Mode != 0) return;
    CalcSegmentIndexByLength(segments, events, para);
    if (events.Count == 0) return;
    switch (para.DataType) {
        case Integer:
            return HasShortWords(para) ? ReadFCSData_Int16(events, segments, para)
                                       : ReadFCSData_Int32(events, segments, para);
        case Float:
            return ReadFCSData_Float(events, segments, para);
        case Double:
            return ReadFCSData_Double(events, segments, para);
        case Ascii:
            return ReadFCSData_ASCII(events, segments, para);
        default:
            return;
    }
}

void OVFCSWriteRead::WriteFCSData_Double(std::vector<SegmentSection*>& segments, EventSection& events,
                                         OVFCSPara& para) {
    for (SegmentSection* segment : segments) {
        WriteDoubles(RangeOf(*segment, events, para), RawOf(*segment), OrderOf(para));
        SetLength(*segment, para);
    }
}

void OVFCSWriteRead::WriteFCSData_Float(std::vector<SegmentSection*>& segments, EventSection& events,
                                        OVFCSPara& para) {
    if (events.Signals == nullptr) return;
    for (SegmentSection* segment : segments) {
        InThreads(RangeOf(*segment, events, para), RawOf(*segment), para.ByteWidth,
                  [&](const EventRange& part, unsigned char* raw) {
                      WriteFloats(part, raw, para.ByteWidth, OrderOf(para));
                  });
        SetLength(*segment, para);
    }
}

void OVFCSWriteRead::WriteFCSData_Int32(std::vector<SegmentSection*>& segments, EventSection& events,
                                        OVFCSPara& para) {
    for (SegmentSection* segment : segments) {
        WriteInt32(RangeOf(*segment, events, para), RawOf(*segment), OrderOf(para), *para.IntParFormat);
        SetLength(*segment, para);
    }
}

void OVFCSWriteRead::WriteFCSData_Int16(std::vector<SegmentSection*>& segments, EventSection& events,
                                        OVFCSPara& para) {
    for (SegmentSection* segment : segments) {
        WriteInt16(RangeOf(*segment, events, para), RawOf(*segment), OrderOf(para), *para.IntParFormat);
        SetLength(*segment, para);
    }
}

void OVFCSWriteRead::ReadFCSData_Double(EventSection& events, std::vector<SegmentSection*>& segments,
                                        OVFCSPara& para) {
    for (const SegmentSection* segment : segments) {
        ReadDoubles(RangeOf(*segment, events, para), RawOf(*segment), OrderOf(para));
    }
}

void OVFCSWriteRead::ReadFCSData_Float(EventSection& events, std::vector<SegmentSection*>& segments,
                                       OVFCSPara& para) {
    for (const SegmentSection* segment : segments) {
        InThreads(RangeOf(*segment, events, para), RawOf(*segment), para.ByteWidth,
                  [&](const EventRange& part, const unsigned char* raw) {
                      ReadFloats(part, raw, para.ByteWidth, OrderOf(para));
                  });
    }
}

void OVFCSWriteRead::ReadFCSData_Int32(EventSection& events, std::vector<SegmentSection*>& segments,
                                       OVFCSPara& para) {
    const LogTables tables(*para.IntParFormat, para.ParCount, events.Count);
    for (const SegmentSection* segment : segments) {
        ReadInt32(RangeOf(*segment, events, para), RawOf(*segment), OrderOf(para), *para.IntParFormat,
                  tables.Get());
    }
}

void OVFCSWriteRead::ReadFCSData_Int16(EventSection& events, std::vector<SegmentSection*>& segments,
                                       OVFCSPara& para) {
    const LogTables tables(*para.IntParFormat, para.ParCount, events.Count);
    for (const SegmentSection* segment : segments) {
        ReadInt16(RangeOf(*segment, events, para), RawOf(*segment), OrderOf(para), *para.IntParFormat,
                  tables.Get());
    }
}

void OVFCSWriteRead::ReadFCSData_ASCII(EventSection& events, std::vector<SegmentSection*>& segments,
                                       OVFCSPara& para) {
    for (const SegmentSection* segment : segments) {
        ReadAscii(RangeOf(*segment, events, para), RawOf(*segment), para.ByteWidth, *para.IntParFormat);
    }
}

void OVFCSWriteRead::CalcSegmentIndexByCount(std::vector<SegmentSection*>& segments, EventSection& events) {
    const int count = static_cast<int>(segments.size());
    if (count == 0) return;
    const int share = events.Count / count;
    int first = 0;
    for (SegmentSection* segment : segments) {
        segment->Tag1 = first;
        segment->Tag2 = first += share;
    }
    segments.back()->Tag2 = events.Count;
}

void OVFCSWriteRead::CalcSegmentIndexByLength(std::vector<SegmentSection*>& segments, EventSection& events,
                                              OVFCSPara& para) {
    const bool isEmpty = para.ByteWidth <= 0 || para.ParCount <= 0;
    const std::int64_t eventBytes = std::int64_t{para.ByteWidth} * para.ParCount;
    int total = 0;
    for (SegmentSection* segment : segments) {
        segment->Tag1 = total;
        if (!isEmpty) total += static_cast<int>(segment->Count / eventBytes);
        segment->Tag2 = total;
    }
    events.Count = total;
}

int OVFCSWriteRead::StringToInt(char* text, int length) {
    return FoldDigits(reinterpret_cast<const unsigned char*>(text), length);
}

}  // namespace Orvane
