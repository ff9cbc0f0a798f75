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

#include <orvane/OVFCSWriteRead.h>

#include "tests/support/awkward.h"
#include "tests/support/fcs_data.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"

namespace Orvane {

namespace {

using namespace Testing;

constexpr Layout Layouts[] = {{"Int16", 1, 2, 16, Ones},           {"Int16Inexact", 1, 2, 16, Inexact},
                              {"Int16Log", 1, 2, 16, Logarithmic}, {"Int16Awkward", 1, 2, 16, Awkward},
                              {"Int32", 1, 4, 32, Ones},           {"Int32Of10Bits", 1, 4, 10, Inexact},
                              {"Int32Log", 1, 4, 32, Logarithmic}, {"Int32Awkward", 1, 4, 32, Awkward},
                              {"Float", 2, 4, 32, Unscaled},       {"FloatWithGaps", 2, 6, 32, Unscaled},
                              {"Double", 3, 8, 64, Unscaled},      {"Ascii", 4, 5, 0, Inexact},
                              {"AsciiLog", 4, 3, 0, Logarithmic}};

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

class FcsData : public ::testing::TestWithParam<Layout> {
protected:
    /// Runs `check(para, shape)` on every instruction set and in both byte orders.
    template <class Check>
    static void ForEachShape(Check check) {
        for (const InstructionSet set : AvailableInstructionSets()) {
            const ScopedInstructionSet scope(set);
            for (const Shape& shape : Shapes) {
                for (const bool littleEndian : {true, false}) {
                    SCOPED_TRACE(::testing::Message()
                                 << "set " << static_cast<int>(set) << ", " << shape.ParCount << " x "
                                 << shape.Events << ", little endian " << littleEndian);
                    Para para(GetParam(), shape.ParCount, littleEndian);
                    ASSERT_NO_FATAL_FAILURE(check(para, shape));
                }
            }
        }
    }
};

TEST_P(FcsData, ReadsAsThePlainFormula) {
    const SmallPool pool(512);
    ForEachShape([](Para& para, const Shape& shape) {
        Segments segments(CutLengths(shape.Events, para.ByteWidth * para.ParCount));
        Randomise(segments, para);
        Columns columns(shape.ParCount, shape.Events, static_cast<Columns::Place>(shape.Events % 3));
        OVFCSWriteRead().ReadFCSData(columns.Events, segments.Pointers, para);
        ASSERT_EQ(columns.Events.Count, shape.Events);
        ASSERT_NO_FATAL_FAILURE(ExpectPlainColumns(columns, segments, para));
        ASSERT_TRUE(columns.IsIntact(shape.Events));
    });
}

TEST_P(FcsData, WritesAsThePlainFormula) {
    if (GetParam().DataType == 4) return;
    ForEachShape([](Para& para, const Shape& shape) {
        Columns columns(shape.ParCount, shape.Events, static_cast<Columns::Place>(shape.Events % 3));
        for (int p = 0; p < shape.ParCount; ++p) {
            std::vector<float> values = RandomFloats(shape.Events, static_cast<unsigned>(p));
            for (std::size_t e = 0; e < values.size(); e += 5) {
                const auto border = static_cast<float>(e % 2 == 0 ? para.IntParFormat->Offset[p]
                                                                  : para.IntParFormat->Range[p]);
                values[e] = std::nextafter(border, e % 3 == 0 ? 0.0F : e % 3 == 1 ? border : 1e30F);
            }
            std::copy(values.begin(), values.end(), &columns.At(p, 0));
        }
        const int eventBytes = para.ByteWidth * para.ParCount;
        const int share = shape.Events / 3;
        Segments segments({share * eventBytes, share * eventBytes, (shape.Events - 2 * share) * eventBytes});
        OVFCSWriteRead().WriteFCSData(segments.Pointers, columns.Events, para);
        const int borders[] = {0, share, 2 * share, shape.Events};  // the last one takes the rest
        for (std::size_t s = 0; s < 3; ++s) {
            ASSERT_EQ(segments.Pointers[s]->Tag1, borders[s]);
            ASSERT_EQ(segments.Pointers[s]->Tag2, borders[s + 1]);
        }
        ASSERT_NO_FATAL_FAILURE(ExpectPlainBytes(columns, segments, para));
        ASSERT_TRUE(segments.IsIntact());
    });
}

INSTANTIATE_TEST_SUITE_P(Layouts, FcsData, ::testing::ValuesIn(Layouts),
                         [](const auto& test) { return std::string(test.param.Name); });

TEST(FcsLogTables, AnExhaustedPoolChangesNoValue) {
    const auto read = [] {
        Para para({"", 1, 2, 16, Logarithmic}, 6, false);
        Segments segments({2000 * 12});
        Randomise(segments, para);
        Columns columns(6, 2000, Columns::OnLines);
        OVFCSWriteRead().ReadFCSData(columns.Events, segments.Pointers, para);
        const unsigned char* raw = segments.Raw(0);
        for (int e = 0; e < 2000; ++e) {
            for (int p = 0; p < 6; ++p, raw += 2)
                ASSERT_EQ(columns.At(p, e), PlainRead(raw, para, p));
        }
    };
    ForEachFailingAllocation(read, 256);
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
        Columns columns(2, 77, Columns::OnLines);
        Segments segments({40});
        OVFCSWriteRead().ReadFCSData(columns.Events, segments.Pointers, para);
        EXPECT_EQ(columns.Events.Count, example.Count) << example.Name;
        EXPECT_TRUE(columns.IsIntact(0)) << example.Name;
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
