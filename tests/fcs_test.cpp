// The DATA segment: every layout against a slow, obvious reader and writer, bit by bit and byte by byte, and
// the rules that hosts rely on by example.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "tests/support/awkward.h"
#include "tests/support/fcs_data.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"

namespace Orvane {

namespace {

using namespace Testing;

/// Sizes around tiles, blocks of events, tiles in between, streaming and threads.
struct Shape {
    int ParCount;
    int Events;
};
constexpr Shape Shapes[] = {{1, 40},  {2, 17},  {3, 300}, {4, 0},   {4, 1},     {5, 15},    {7, 16},
                            {16, 33}, {20, 63}, {20, 65}, {21, 81}, {32, 1040}, {33, 1057}, {20, 20000}};

void Randomise(Segments& segments, const OVFCSPara& para) {
    std::mt19937 random(7);
    for (std::size_t s = 0; s < segments.Pointers.size(); ++s) {
        unsigned char* raw = segments.Raw(s);
        for (int i = 0; i < segments.Pointers[s]->Count; ++i) {
            raw[i] = static_cast<unsigned char>(random());
            // Doubles that a float holds, denormal ones among them, and words that tables hold.
            const bool isTop = (i % WordBytes(para)) == (para.LittleEndian ? WordBytes(para) - 1 : 0);
            if (isTop && random() % 4 != 0) raw[i] = para.DataType == 3 ? 0x38 + (raw[i] & 0x8F) : raw[i] & 3;
        }
    }
}

/// Cuts events into three segments, the middle one short, and lets each end in part of an event.
std::vector<int> CutLengths(int events, int eventBytes) {
    const int middle = std::min(events, 33);
    const int first = (events - middle) / 3;
    return {first * eventBytes + eventBytes - 1, middle * eventBytes,
            (events - middle - first) * eventBytes + eventBytes / 2};
}

/// Random values and, every fifth, one at or next to a border of its parameter.
void FillForWriting(Columns& columns, const OVFCSPara& para) {
    for (int p = 0; p < para.ParCount; ++p) {
        std::vector<float> values = RandomFloats(columns.Events.Count, static_cast<unsigned>(p));
        for (std::size_t e = 0; e < values.size(); e += 5) {
            const auto border =
                static_cast<float>((e % 2 == 0 ? para.IntParFormat->Offset : para.IntParFormat->Range)[p]);
            values[e] = std::nextafter(border, e % 3 == 0 ? 0.0F : e % 3 == 1 ? border : 1e30F);
        }
        std::copy(values.begin(), values.end(), &columns.At(p, 0));
    }
}

class FcsData : public ::testing::TestWithParam<Layout> {};

TEST_P(FcsData, IsReadAndWrittenByThePlainFormulas) {
    const SmallPool pool(512);
    for (const InstructionSet set : AvailableInstructionSets()) {
        const ScopedInstructionSet scope(set);
        for (const Shape& shape : Shapes) {
            for (const bool littleEndian : {true, false}) {
                SCOPED_TRACE(::testing::Message()
                             << "set " << static_cast<int>(set) << ", " << shape.ParCount << " x "
                             << shape.Events << ", little endian " << littleEndian);
                Para para(GetParam(), shape.ParCount, littleEndian);
                Segments segments(CutLengths(shape.Events, para.ByteWidth * para.ParCount));
                Randomise(segments, para);
                Columns columns(shape.ParCount, shape.Events, static_cast<Columns::Place>(shape.Events % 3));
                ASSERT_NO_FATAL_FAILURE(ExpectPlainReading(columns, segments, para));
                if (para.DataType == 4) continue;  // is only read
                FillForWriting(columns, para);
                para.InvertLogScales();
                ASSERT_NO_FATAL_FAILURE(ExpectPlainWriting(columns, 3, para));
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Layouts, FcsData, ::testing::ValuesIn(Layouts),
                         [](const auto& test) { return std::string(test.param.Name); });

TEST(FcsLogTables, AnExhaustedPoolChangesNoValue) {
    ForEachFailingAllocation(
        [] {
            Para para({"", 1, 2, 16, Logarithmic}, 6, false);
            Segments segments({2000 * 12});
            Randomise(segments, para);
            Columns columns(6, 2000, Columns::OnLines);
            ExpectPlainReading(columns, segments, para);
        },
        256);
}

/// What happens to the counts when there is nothing to convert: another mode touches nothing, an unknown type
/// still counts.
TEST(FcsRules, CountsEventsAlsoWhereNothingIsConverted) {
    struct {
        const char* Name;
        int Mode, DataType, ByteWidth, ParCount, Count;
    } const examples[] = {{"another mode", 1, 2, 4, 2, 77},
                          {"unknown type", 0, 9, 4, 2, 5},
                          {"no bytes", 0, 2, 0, 2, 0},
                          {"no parameters", 0, 1, 2, 0, 0},
                          {"negative parameters", 0, 1, 2, -2, 0},
                          {"negative both", 0, 1, -2, -2, 0}};
    for (const auto& example : examples) {
        OVFCSPara para;
        para.Mode = example.Mode;
        para.DataType = example.DataType;
        para.ByteWidth = example.ByteWidth;
        para.ParCount = example.ParCount;
        Columns columns(2, 0, Columns::OnLines);
        columns.Events.Count = 77;
        Segments segments({40});
        OVFCSWriteRead().ReadFCSData(columns.Events, segments.Pointers, para);
        EXPECT_EQ(columns.Events.Count, example.Count) << example.Name;
        EXPECT_TRUE(columns.IsIntact()) << example.Name;
    }
}

TEST(FcsRules, DoesNothingWithoutSegmentsOrColumns) {
    Para para({"", 2, 4, 32, Unscaled}, 1, true);
    std::vector<SegmentSection*> none;
    Columns columns(1, 5, Columns::OnLines);
    OVFCSWriteRead().WriteFCSData(none, columns.Events, para);
    EXPECT_EQ(columns.Events.Count, 5);
    OVFCSWriteRead().ReadFCSData(columns.Events, none, para);
    EXPECT_EQ(columns.Events.Count, 0);

    EventSection withoutColumns;
    withoutColumns.Count = 5;
    Segments segments({20});
    for (const int dataType : {2, 4}) {  // what is not written has its range all the same
        segments.Pointers[0]->Count = 3;
        segments.Pointers[0]->Tag2 = 0;
        para.DataType = dataType;
        OVFCSWriteRead().WriteFCSData(segments.Pointers, withoutColumns, para);
        EXPECT_EQ(segments.Pointers[0]->Count, 3);
        EXPECT_EQ(segments.Pointers[0]->Tag2, 5);
    }

    withoutColumns.Count = 0;  // for no events, no column is looked at
    for (const auto& layout : {Layout{"", 1, 2, 16, Ones}, Layout{"", 3, 8, 64, Unscaled}}) {
        Para wide(layout, 4, true);
        OVFCSWriteRead().WriteFCSData(segments.Pointers, withoutColumns, wide);
        EXPECT_EQ(segments.Pointers[0]->Count, 0);
    }
}

TEST(FcsParaLifecycle, SharesItsTableWithCopiesUntilItIsReplaced) {
    OVFCSPara para;
    para.ParCount = 3;
    para.InitialIntParFormat();
    OVFCSPara copy = para;
    EXPECT_EQ(copy.IntParFormat, para.IntParFormat);
    copy.Initial();  // forgets the table of the other
    EXPECT_EQ(para.IntParFormat->Range[2], 0.0);
    para.ParCount = 5;
    para.InitialIntParFormat();
    EXPECT_EQ(para.IntParFormat->Count, 5);
    para.IntParFormat->Initial(1);
    EXPECT_EQ(para.IntParFormat->Count, 1);
    para.ParCount = -1;
    EXPECT_THROW(para.InitialIntParFormat(), std::bad_alloc);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(para.IntParFormat, nullptr);
        para.Release();
        EXPECT_EQ(para.ParCount, 0);
    }
}

}  // namespace
}  // namespace Orvane
