// The DATA segment: the first bytes choose words, order, scales and where segments are cut, the rest is DATA.
// Reading and writing are compared with the plain formulas of the tests under every instruction set, and what
// was written reads back as the same values.
#include <gtest/gtest.h>

#include <numeric>

#include <orvane/OVFCSWriteRead.h>

#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/fcs_data.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"

namespace {

using namespace Orvane::Testing;
using Fuzz::Input;

constexpr Layout Layouts[] = {{"Int16", 1, 2, 16, Ones},
                              {"Int16Log", 1, 2, 16, Logarithmic},
                              {"Int32", 1, 4, 32, Ones},
                              {"Int32Of10Bits", 1, 4, 10, Inexact},
                              {"Int32Log", 1, 4, 32, Logarithmic},
                              {"Float", 2, 4, 32, Unscaled},
                              {"FloatWithGaps", 2, 7, 32, Unscaled},
                              {"Double", 3, 8, 64, Unscaled},
                              {"Ascii", 4, 5, 0, Inexact}};

/// What an input says.
struct Given {
    explicit Given(Input& input)
        : Stored(Layouts[input.Below(static_cast<int>(std::size(Layouts)))]),
          ParCount(1 + input.Below(24)),
          IsLittleEndian(input.Below(2) == 0),
          Place(static_cast<Columns::Place>(input.Below(3))) {
        const int segments = 1 + input.Below(4);
        for (int i = 1; i < segments; ++i)
            Cuts.push_back(input.Below(1 << 12));
        Scale = input.Take<double>();
        Data = input.Rest();
    }

    int EventBytes() const { return Stored.ByteWidth * ParCount; }

    const Layout& Stored;
    int ParCount;
    bool IsLittleEndian;
    Columns::Place Place;
    std::vector<int> Cuts;  ///< bytes of every segment but the last
    double Scale = 0;       ///< of the first parameter, where scales are inexact
    std::string Data;
};

/// The segments with their bytes.
Segments Fill(const Given& given) {
    std::vector<int> lengths;
    int left = static_cast<int>(given.Data.size());
    for (const int cut : given.Cuts) {
        lengths.push_back(std::min(cut, left));
        left -= lengths.back();
    }
    lengths.push_back(left);
    Segments segments(lengths);
    const char* next = given.Data.data();
    for (std::size_t s = 0; s < lengths.size(); ++s) {
        std::copy_n(next, lengths[s], segments.Raw(s));
        next += lengths[s];
    }
    return segments;
}

/// Expects the plain reader's values. Returns the columns.
Columns Read(const Given& given, Segments& segments, Para& para) {
    int events = 0;
    for (const Orvane::SegmentSection* segment : segments.Pointers)
        events += segment->Count / given.EventBytes();
    Columns columns(given.ParCount, events, given.Place);
    Orvane::OVFCSWriteRead().ReadFCSData(columns.Events, segments.Pointers, para);
    EXPECT_EQ(columns.Events.Count, events);
    ExpectPlainColumns(columns, segments, para);
    EXPECT_TRUE(columns.IsIntact(events));
    return columns;
}

/// Expects the plain writer's bytes. Returns the segments, as many as there were.
Segments Write(const Given& given, Columns& columns, Para& para) {
    const int segmentCount = static_cast<int>(given.Cuts.size()) + 1;
    const int share = columns.Events.Count / segmentCount * given.EventBytes();
    std::vector<int> lengths(static_cast<std::size_t>(segmentCount), share);
    lengths.back() = columns.Events.Count * given.EventBytes() - (segmentCount - 1) * share;
    Segments segments(lengths);
    Orvane::OVFCSWriteRead().WriteFCSData(segments.Pointers, columns.Events, para);
    ExpectPlainBytes(columns, segments, para);
    EXPECT_TRUE(segments.IsIntact());
    return segments;
}

void ExpectPlainFormulas(const Given& given) {
    Para para(given.Stored, given.ParCount, given.IsLittleEndian);
    if (given.Stored.Kind == Inexact) para.IntParFormat->Scale[0] = given.Scale;
    Segments segments = Fill(given);
    Columns columns = Read(given, segments, para);
    if (given.Stored.DataType != 4) Write(given, columns, para);
}

/// Scales that undo each other.
void SetInverse(Para& reading, Para& writing) {
    for (int p = 0; p < reading.ParCount; ++p) {
        const bool isLog = reading.IntParFormat->IsLog[p];
        const double range = WordBytes(reading) == 2 ? 65536.0 : 4294967296.0;
        writing.IntParFormat->Range[p] = range;
        reading.IntParFormat->Scale[p] = isLog ? 4 / range : 1;
        writing.IntParFormat->Scale[p] = isLog ? range / 4 : 1;
        reading.IntParFormat->Offset[p] = writing.IntParFormat->Offset[p] = isLog ? 0.5 : 0;
        writing.IntParFormat->LogScale[p] = 2;
    }
}

/// A logarithmic channel may become the one below it when it is truncated; everything else comes back to the
/// bit.
void ExpectSameValues(Columns& columns, Columns& again, const Para& para) {
    ASSERT_EQ(columns.Events.Count, again.Events.Count);
    for (int p = 0; p < para.ParCount; ++p) {
        const double step = std::pow(10.0, para.IntParFormat->Scale[p]) * (1 + 1e-6);
        for (int e = 0; e < columns.Events.Count; ++e) {
            const float value = columns.At(p, e);
            const float back = again.At(p, e);
            if (para.DataType != 1 || !para.IntParFormat->IsLog[p]) {
                ASSERT_EQ(std::bit_cast<std::uint32_t>(value), std::bit_cast<std::uint32_t>(back));
            } else {
                ASSERT_LE(back, value * (1 + 1e-6));
                ASSERT_GE(back * step, value);
            }
        }
    }
}

void ExpectRoundTrip(const Given& given) {
    if (given.Stored.DataType == 4) return;
    Para reading(given.Stored, given.ParCount, given.IsLittleEndian);
    Para writing(given.Stored, given.ParCount, given.IsLittleEndian);
    SetInverse(reading, writing);
    Segments segments = Fill(given);
    Columns columns = Read(given, segments, reading);
    Segments written = Write(given, columns, writing);
    Columns again = Read(given, written, reading);
    ExpectSameValues(columns, again, reading);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const SmallPool pool(512);
    Input input(data, size);
    const Given given(input);
    for (const Orvane::InstructionSet set : AvailableInstructionSets()) {
        const ScopedInstructionSet scope(set);
        ExpectPlainFormulas(given);
        ExpectRoundTrip(given);
    }
    return 0;
}
