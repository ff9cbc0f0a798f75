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

#include "foundation/convert.h"
#include "tests/support/awkward.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"

namespace Orvane {

namespace {

using namespace Testing;

using Bytes = std::vector<unsigned char>;
constexpr int Guard = 32;
constexpr unsigned char GuardByte = 0xA5;
constexpr float GuardCell = -1.25e-17F;

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
        return std::all_of(storage_.begin(), storage_.end(), [&](const Bytes& bytes) {
            return std::all_of(bytes.begin(), bytes.begin() + Guard + 1, isGuard) &&
                   std::all_of(bytes.end() - Guard, bytes.end(), isGuard);
        });
    }

    std::vector<SegmentSection*> Pointers;

private:
    std::vector<Bytes> storage_;
    std::vector<SegmentSection> sections_;
};

enum Scales { None, Ones, Inexact, Logarithmic, Awkward };

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

std::uint64_t WordAt(const unsigned char* raw, int bytes, bool littleEndian) {
    std::uint64_t word = 0;
    for (int i = 0; i < bytes; ++i) {
        word |= std::uint64_t{raw[i]} << 8 * (littleEndian ? i : bytes - 1 - i);
    }
    return word;
}

int WordBytes(const OVFCSPara& para) {
    if (para.DataType == 1) return para.BitWidth == 16 ? 2 : 4;
    return para.DataType == 2 ? 4 : para.DataType == 3 ? 8 : para.ByteWidth;
}

float PlainScale(double raw, const OVFCSIntParFormat& format, int p) {
    const double linear = raw * format.Scale[p];
    return static_cast<float>(format.IsLog[p] ? std::pow(10.0, linear) * format.Offset[p] : linear);
}

float PlainRead(const unsigned char* raw, const OVFCSPara& para, int p) {
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

std::uint64_t PlainChannel(float value, const OVFCSIntParFormat& format, int p) {
    double x = value;
    if (x < format.Offset[p]) return 0;
    if (format.IsLog[p]) x = std::log10(x * format.LogScale[p]);
    x *= format.Scale[p];
    if (x >= format.Range[p]) return static_cast<std::uint64_t>(TruncateToInt64(format.Range[p] - 1.0));
    return x < 0 ? 0 : static_cast<std::uint64_t>(TruncateToInt64(x));
}

std::uint64_t PlainWrite(float value, const OVFCSPara& para, int p) {
    if (para.DataType == 1) return PlainChannel(value, *para.IntParFormat, p);
    if (para.DataType == 2) return std::bit_cast<std::uint32_t>(value);
    return std::bit_cast<std::uint64_t>(static_cast<double>(value));
}

constexpr Layout Layouts[] = {{"Int16", 1, 2, 16, Ones},           {"Int16Inexact", 1, 2, 16, Inexact},
                              {"Int16Log", 1, 2, 16, Logarithmic}, {"Int16Awkward", 1, 2, 16, Awkward},
                              {"Int32", 1, 4, 32, Ones},           {"Int32Of10Bits", 1, 4, 10, Inexact},
                              {"Int32Log", 1, 4, 32, Logarithmic}, {"Int32Awkward", 1, 4, 32, Awkward},
                              {"Float", 2, 4, 32, None},           {"FloatWithGaps", 2, 6, 32, None},
                              {"Double", 3, 8, 64, None},          {"Ascii", 4, 5, 0, Inexact},
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

    static void ExpectPlainColumns(Columns& columns, Segments& segments, const Para& para) {
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

    static void ExpectPlainBytes(Columns& columns, Segments& segments, const Para& para) {
        for (std::size_t s = 0; s < segments.Pointers.size(); ++s) {
            const SegmentSection& segment = *segments.Pointers[s];
            const int bytes = WordBytes(para);
            const std::uint64_t mask = bytes == 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << 8 * bytes) - 1;
            ASSERT_EQ(segment.Count, (segment.Tag2 - segment.Tag1) * para.ByteWidth * para.ParCount);
            const unsigned char* raw = segments.Raw(s);
            for (int e = segment.Tag1; e < segment.Tag2; ++e) {
                for (int p = 0; p < para.ParCount; ++p, raw += para.ByteWidth) {
                    ASSERT_EQ(WordAt(raw, bytes, para.LittleEndian),
                              PlainWrite(columns.At(p, e), para, p) & mask)
                        << "parameter " << p << " event " << e << ": " << columns.At(p, e);
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
    Para para({"", 2, 4, 32, None}, 1, true);
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
    for (const auto& layout : {Layout{"", 1, 2, 16, Ones}, Layout{"", 3, 8, 64, None}}) {
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
