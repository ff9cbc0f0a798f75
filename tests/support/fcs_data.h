// The DATA segment under test: columns and segments between guards, conversion records, and a slow, obvious
// reader and writer of single values.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <orvane/OVFCSPara.h>
#include <orvane/OVFCSWriteRead.h>
#include <orvane/Sections.h>

#include "foundation/convert.h"

namespace Orvane::Testing {

/// Cells between guard cells, the first of them `shift` cells behind a cache line.
template <class Cell>
class Guarded {
public:
    Guarded(std::ptrdiff_t count, Cell guard, int shift)
        : count_(count), guard_(guard), storage_(static_cast<std::size_t>(count + 192), guard) {
        Begin = storage_.data() + 64;
        Begin += (64 - reinterpret_cast<std::uintptr_t>(Begin) % 64) % 64 / sizeof(Cell);
        Begin += shift;
    }

    /// Whether nothing was written outside.
    bool IsIntact() const {
        const auto begin = storage_.begin() + (Begin - storage_.data());
        return std::count(storage_.begin(), begin, guard_) == begin - storage_.begin() &&
               std::count(begin + count_, storage_.end(), guard_) == storage_.end() - begin - count_;
    }

    Cell* Begin;

private:
    std::ptrdiff_t count_;
    Cell guard_;
    std::vector<Cell> storage_;
};

/// Columns between guards; where each begins relative to a cache line is chosen by the caller.
class Columns {
public:
    enum Place { OnLines, FourBehind, AllDifferent };

    Columns(int parCount, int events, Place place) {
        for (int p = 0; p < parCount; ++p) {
            storage_.emplace_back(events, -1.25e-17F, place == OnLines ? 0 : place == FourBehind ? 4 : p % 5);
            table_.push_back(storage_.back().Begin);
        }
        Events.Signals = table_.data();
        Events.SignalCount = parCount;
        Events.Count = events;
    }

    float& At(int p, int e) { return table_[static_cast<std::size_t>(p)][e]; }

    bool IsIntact() const { return std::ranges::all_of(storage_, &Guarded<float>::IsIntact); }

    EventSection Events;

private:
    std::vector<Guarded<float>> storage_;
    std::vector<float*> table_;
};

/// Segments of given lengths in bytes, at odd addresses between guards.
class Segments {
public:
    explicit Segments(const std::vector<int>& lengths) : sections_(lengths.size()) {
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            sections_[i].Data = storage_.emplace_back(lengths[i], 0xA5, 1).Begin;
            sections_[i].Count = lengths[i];
            Pointers.push_back(&sections_[i]);
        }
    }

    unsigned char* Raw(std::size_t segment) { return storage_[segment].Begin; }

    bool IsIntact() const { return std::ranges::all_of(storage_, &Guarded<unsigned char>::IsIntact); }

    std::vector<SegmentSection*> Pointers;

private:
    std::vector<Guarded<unsigned char>> storage_;
    std::vector<SegmentSection> sections_;
};

enum Scales { Unscaled, Ones, Inexact, Logarithmic, Awkward };

struct Layout {
    const char* Name;
    int DataType;
    int ByteWidth;
    int BitWidth;
    Scales Kind;
};

inline constexpr Layout Layouts[] = {
    {"Int16", 1, 2, 16, Ones},           {"Int16Inexact", 1, 2, 16, Inexact},
    {"Int16Log", 1, 2, 16, Logarithmic}, {"Int16Awkward", 1, 2, 16, Awkward},
    {"Int32", 1, 4, 32, Ones},           {"Int32Of10Bits", 1, 4, 10, Inexact},
    {"Int32Log", 1, 4, 32, Logarithmic}, {"Int32Awkward", 1, 4, 32, Awkward},
    {"Float", 2, 4, 32, Unscaled},       {"FloatWithGaps", 2, 6, 32, Unscaled},
    {"Double", 3, 8, 64, Unscaled},      {"Ascii", 4, 5, 0, Inexact},
    {"AsciiLog", 4, 3, 0, Logarithmic}};

/// Frees the table at the end of the scope.
struct Para : OVFCSPara {
    Para(const Layout& layout, int parCount, bool littleEndian) {
        ParCount = parCount;
        ByteWidth = layout.ByteWidth;
        BitWidth = layout.BitWidth;
        DataType = layout.DataType;
        LittleEndian = littleEndian;
        InitialIntParFormat();
        for (int p = 0; p < parCount; ++p)
            SetScale(p, layout.Kind);
    }
    Para(const Para&) = delete;
    Para& operator=(const Para&) = delete;
    ~Para() { Release(); }

    void SetScale(int p, Scales kind) {
        constexpr double Infinity = std::numeric_limits<double>::infinity();
        const bool isLog = kind == Logarithmic && p % 5 != 1;
        const double awkward[] = {0.1, -2.0, 1e300, -0.0, Infinity, NAN, 1.0};
        IntParFormat->IsLog[p] = isLog;
        IntParFormat->Scale[p] = isLog ? 4.0 / (256 << p % 3) : kind == Ones ? 1.0 : 0.1 + p;
        if (kind == Awkward) IntParFormat->Scale[p] = awkward[p % 7];
        IntParFormat->Offset[p] = kind == Awkward ? awkward[p % 3]
                                  : kind == Ones  ? 0.1 + p - p % 2 * 9
                                                  : 0.5 + p % 2;
        IntParFormat->LogScale[p] = 2.0;
        const double ranges[] = {1024, 262144, 33554432, 4294967296.0, 10.5, 65536, 0, NAN, 1e19};
        IntParFormat->Range[p] = ranges[p % 9];
    }

    /// From decades per channel, for reading, to channels per decade.
    void InvertLogScales() {
        for (int p = 0; p < ParCount; ++p)
            if (IntParFormat->IsLog[p]) IntParFormat->Scale[p] = 1 / IntParFormat->Scale[p];
    }
};

inline std::uint64_t WordAt(const unsigned char* raw, int bytes, bool littleEndian) {
    std::uint64_t word = 0;
    for (int i = 0; i < bytes; ++i) {
        word |= std::uint64_t{raw[i]} << 8 * (littleEndian ? i : bytes - 1 - i);
    }
    return word;
}

inline int WordBytes(const OVFCSPara& para) {
    if (para.DataType == 1) return para.BitWidth == 16 ? 2 : 4;
    return para.DataType == 2 ? 4 : para.DataType == 3 ? 8 : para.ByteWidth;
}

inline float PlainScale(double raw, const OVFCSIntParFormat& format, int p) {
    const double linear = raw * format.Scale[p];
    return static_cast<float>(format.IsLog[p] ? std::pow(10.0, linear) * format.Offset[p] : linear);
}

inline float PlainRead(const unsigned char* raw, const OVFCSPara& para, int p) {
    if (para.DataType == 4) {
        std::uint32_t folded = 0;
        for (int i = 0; i < para.ByteWidth; ++i) {
            folded = folded * 10U + static_cast<std::uint32_t>(static_cast<signed char>(raw[i]) - '0');
        }
        return PlainScale(static_cast<std::int32_t>(folded), *para.IntParFormat, p);
    }
    const std::uint64_t word = WordAt(raw, WordBytes(para), para.LittleEndian);
    if (para.DataType == 1) return PlainScale(static_cast<double>(word), *para.IntParFormat, p);
    if (para.DataType == 2) return std::bit_cast<float>(static_cast<std::uint32_t>(word));
    return static_cast<float>(std::bit_cast<double>(word));
}

inline std::uint64_t PlainChannel(float value, const OVFCSIntParFormat& format, int p) {
    double x = value;
    if (x < format.Offset[p]) return 0;
    if (format.IsLog[p]) x = std::log10(x * format.LogScale[p]);
    x *= format.Scale[p];
    if (x >= format.Range[p]) return static_cast<std::uint64_t>(TruncateToInt64(format.Range[p] - 1.0));
    return x < 0 ? 0 : static_cast<std::uint64_t>(TruncateToInt64(x));
}

inline std::uint64_t PlainWrite(float value, const OVFCSPara& para, int p) {
    if (para.DataType == 1) return PlainChannel(value, *para.IntParFormat, p);
    if (para.DataType == 2) return std::bit_cast<std::uint32_t>(value);
    return std::bit_cast<std::uint64_t>(static_cast<double>(value));
}

/// Reads the segments: the columns hold what the plain reader makes of them, and nothing else was written.
inline void ExpectPlainReading(Columns& columns, Segments& segments, Para& para) {
    const int eventBytes = para.ByteWidth * para.ParCount;
    OVFCSWriteRead().ReadFCSData(columns.Events, segments.Pointers, para);
    int e = 0;
    for (std::size_t s = 0; s < segments.Pointers.size(); ++s) {
        const unsigned char* raw = segments.Raw(s);
        for (const int end = e + segments.Pointers[s]->Count / eventBytes; e < end; ++e) {
            for (int p = 0; p < para.ParCount; ++p, raw += para.ByteWidth) {
                const float expected = PlainRead(raw, para, p);
                ASSERT_EQ(std::bit_cast<std::uint32_t>(columns.At(p, e)),
                          std::bit_cast<std::uint32_t>(expected))
                    << "parameter " << p << " event " << e << ": " << columns.At(p, e) << ", not "
                    << expected;
            }
        }
    }
    ASSERT_EQ(columns.Events.Count, e);
    ASSERT_TRUE(columns.IsIntact());
}

/// Writes the columns to as many segments: each holds its share as the plain writer makes it, the last one
/// the rest too, and nothing else was written. Then reads it back: but for integers it is what was written.
inline void ExpectPlainWriting(Columns& columns, int segmentCount, Para& para) {
    const int eventBytes = para.ByteWidth * para.ParCount;
    const int share = columns.Events.Count / segmentCount * eventBytes;
    std::vector<int> lengths(static_cast<std::size_t>(segmentCount), share);
    lengths.back() = columns.Events.Count * eventBytes - (segmentCount - 1) * share;
    Segments segments(lengths);
    for (SegmentSection* segment : segments.Pointers)
        segment->Count = -1;
    OVFCSWriteRead().WriteFCSData(segments.Pointers, columns.Events, para);
    const int bytes = WordBytes(para);
    const std::uint64_t mask = bytes == 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << 8 * bytes) - 1;
    int e = 0;
    for (std::size_t s = 0; s < lengths.size(); ++s) {
        ASSERT_EQ(segments.Pointers[s]->Count, lengths[s]);
        ASSERT_EQ(segments.Pointers[s]->Tag1, e);
        const unsigned char* raw = segments.Raw(s);
        for (const int end = e + lengths[s] / eventBytes; e < end; ++e) {
            for (int p = 0; p < para.ParCount; ++p, raw += para.ByteWidth) {
                ASSERT_EQ(WordAt(raw, bytes, para.LittleEndian), PlainWrite(columns.At(p, e), para, p) & mask)
                    << "parameter " << p << " event " << e << ": " << columns.At(p, e);
            }
        }
        ASSERT_EQ(segments.Pointers[s]->Tag2, e);
    }
    ASSERT_TRUE(segments.IsIntact());
    Columns again(para.ParCount, e, Columns::OnLines);
    ExpectPlainReading(again, segments, para);
    for (int p = 0; p < para.ParCount && para.DataType != 1; ++p)
        for (int i = 0; i < e; ++i)
            ASSERT_TRUE(again.At(p, i) == columns.At(p, i) || std::isnan(columns.At(p, i)));
}

}  // namespace Orvane::Testing
