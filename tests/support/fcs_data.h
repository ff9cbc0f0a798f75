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
#include <orvane/Sections.h>

#include "foundation/convert.h"

namespace Orvane::Testing {

inline constexpr int Guard = 32;
inline constexpr unsigned char GuardByte = 0xA5;
inline constexpr float GuardCell = -1.25e-17F;

/// Columns between guard cells; where each begins relative to a cache line is chosen by the caller.
class Columns {
public:
    enum Place { OnLines, FourBehind, AllDifferent };

    Columns(int parCount, int events, Place place) : storage_(static_cast<std::size_t>(parCount)) {
        for (int p = 0; p < parCount; ++p) {
            auto& column = storage_[static_cast<std::size_t>(p)];
            column.assign(static_cast<std::size_t>(events) + std::size_t{2} * Guard, GuardCell);
            const auto toLine = (64 - reinterpret_cast<std::uintptr_t>(column.data()) % 64) / 4;
            const int shift = place == OnLines ? 0 : place == FourBehind ? 4 : p % 5;
            table_.push_back(column.data() + toLine + shift);
        }
        Events.Signals = table_.data();
        Events.SignalCount = parCount;
        Events.Count = events;
    }

    float& At(int p, int e) { return table_[static_cast<std::size_t>(p)][e]; }

    /// Whether nothing was written outside the first `events` cells.
    bool IsIntact(int events) const {
        const auto isGuard = [](float cell) { return cell == GuardCell; };
        for (std::size_t p = 0; p < storage_.size(); ++p) {
            const float* end = storage_[p].data() + storage_[p].size();
            if (!std::all_of(storage_[p].data(), static_cast<const float*>(table_[p]), isGuard)) return false;
            if (!std::all_of(static_cast<const float*>(table_[p]) + events, end, isGuard)) return false;
        }
        return true;
    }

    EventSection Events;

private:
    std::vector<std::vector<float>> storage_;
    std::vector<float*> table_;
};

/// Segments of given lengths in bytes, at odd addresses between guard bytes.
class Segments {
public:
    explicit Segments(const std::vector<int>& lengths) {
        for (const int length : lengths) {
            storage_.emplace_back(static_cast<std::size_t>(length) + std::size_t{2} * Guard + 1, GuardByte);
        }
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            sections_.push_back({});
            sections_.back().Data = storage_[i].data() + Guard + 1;
            sections_.back().Count = lengths[i];
        }
        for (SegmentSection& section : sections_)
            Pointers.push_back(&section);
    }

    unsigned char* Raw(std::size_t segment) { return storage_[segment].data() + Guard + 1; }

    bool IsIntact() const {
        const auto isGuard = [](unsigned char byte) { return byte == GuardByte; };
        return std::all_of(storage_.begin(), storage_.end(), [&](const std::vector<unsigned char>& bytes) {
            return std::all_of(bytes.begin(), bytes.begin() + Guard + 1, isGuard) &&
                   std::all_of(bytes.end() - Guard, bytes.end(), isGuard);
        });
    }

    std::vector<SegmentSection*> Pointers;

private:
    std::vector<std::vector<unsigned char>> storage_;
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

/// Expects what the plain reader makes of the segments.
inline void ExpectPlainColumns(Columns& columns, Segments& segments, const Para& para) {
    for (std::size_t s = 0; s < segments.Pointers.size(); ++s) {
        const unsigned char* raw = segments.Raw(s);
        for (int e = segments.Pointers[s]->Tag1; e < segments.Pointers[s]->Tag2; ++e) {
            for (int p = 0; p < para.ParCount; ++p) {
                const float expected = PlainRead(raw, para, p);
                ASSERT_EQ(std::bit_cast<std::uint32_t>(columns.At(p, e)),
                          std::bit_cast<std::uint32_t>(expected))
                    << "parameter " << p << " event " << e << ": " << columns.At(p, e) << ", not "
                    << expected;
                raw += para.DataType == 1 ? WordBytes(para) : para.ByteWidth;
            }
        }
    }
}

/// Expects what the plain writer makes of the columns.
inline void ExpectPlainBytes(Columns& columns, Segments& segments, const Para& para) {
    for (std::size_t s = 0; s < segments.Pointers.size(); ++s) {
        const SegmentSection& segment = *segments.Pointers[s];
        const int bytes = WordBytes(para);
        const std::uint64_t mask = bytes == 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << 8 * bytes) - 1;
        ASSERT_EQ(segment.Count, (segment.Tag2 - segment.Tag1) * para.ByteWidth * para.ParCount);
        const unsigned char* raw = segments.Raw(s);
        for (int e = segment.Tag1; e < segment.Tag2; ++e) {
            for (int p = 0; p < para.ParCount; ++p, raw += para.ByteWidth) {
                ASSERT_EQ(WordAt(raw, bytes, para.LittleEndian), PlainWrite(columns.At(p, e), para, p) & mask)
                    << "parameter " << p << " event " << e << ": " << columns.At(p, e);
            }
        }
    }
}

}  // namespace Orvane::Testing
