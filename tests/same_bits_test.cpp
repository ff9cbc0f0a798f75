// Results that every machine agrees on: a digest of the bits that each family of operations gives, the same
// on every system, compiler and instruction set. And what the C runtimes do not agree on: the last bit of
// log, exp, pow and log10.
#include <gtest/gtest.h>

#include <memory>

#include "tests/support/events.h"
#include "tests/support/fcs_data.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/population.h"

namespace Orvane::Testing {
namespace {

/// Continues an FNV-1a digest over the bytes of plain values.
using Digest = std::uint64_t;
template <class Value>
void Add(Digest& digest, const Value* values, int count) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(values);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count) * sizeof(Value); ++i)
        digest = (digest ^ bytes[i]) * 0x100000001B3U;
}

/// 3001 events of three parameters over some decades of both signs. They are made without distributions,
/// which differ from library to library.
struct Population : OwnedEvents {
    static constexpr int EventCount = 3001;

    Population() : OwnedEvents(Rows(EventCount, Floats(3))) {
        std::mt19937 random(20);
        for (int p = 0; p < 3; ++p) {
            for (int i = 0; i < EventCount; ++i) {
                const auto mantissa = static_cast<float>(static_cast<int>(random() % 65536) - 20000);
                (*Sections[0])[p][i] = std::ldexp(mantissa, static_cast<int>(random() % 9) - 6);
            }
            OVEventSection().GetVectorSignalSection(Sections, p, Columns[p]);
        }
    }
    ~Population() {
        for (Signals& column : Columns)
            OVSignalSection().ReleaseVectorSectionShare(column);
    }

    const float* operator[](int p) const { return (*Sections[0])[p]; }

    Signals Columns[3];
};

void AddCompensation(Population& population, Digest& digest) {
    double spill[] = {1, 0.125, 0.03, 0.4, 1, 0.0625, 0.001, 0.21, 1};
    const OVMatrix inverse = OVMatrix(spill, 3, 3).Invert();
    Add(digest, inverse.GetData(), 9);
    Population result;
    Floats baselines{0.5F, 0, -2}, noBaselines;
    std::vector<int> channels{0, 1, 2}, noChannels;
    OVCompensation().CalcCompensation(result.Sections, population.Sections, inverse, baselines, channels,
                                      OVMatrix(), noBaselines, noChannels);
    for (int p = 0; p < 3; ++p)
        Add(digest, result[p], Population::EventCount);
}

void AddCustomSignals(Population& population, Digest& digest) {
    OVCustomSignal().CalcSignalValue_A_DIV_B_MUL_C(population.Sections, 2, 0, 1, 0.3F);
    Add(digest, population[2], Population::EventCount);
}

void AddStatistics(Population& population, Digest& digest) {
    OVStatisticsSignalSection statistics;
    for (Signals& column : population.Columns) {
        OVSignalStatistics row;
        statistics.CalcStatistic_MorePara(column, row);
        Add(digest, &row, 1);
    }
}

void AddPixels(Population& population, Digest& digest, bool isLog) {
    const std::unique_ptr<IOVCoordinateTransformerX> axis(
        OVCoordinateTransformerXFactory::CreateTransformer(0, 1024, -300, 262144, 150, isLog, true));
    std::vector<unsigned short> pixels(Population::EventCount);
    ModelSection model;
    model.Values = pixels.data();
    for (Signals& column : population.Columns) {
        axis->GetScreenSection(column[0], &model);
        Add(digest, pixels.data(), Population::EventCount);
    }
}

void AddGates(Population& population, Digest& digest) {
    auto& [x, y, unused] = population.Columns;
    OVPoint polygon[] = {{-900, -1200}, {7000.3F, -333}, {5100, 9000.7F}, {1000, 1500}, {-1700, 8000}};
    Gate gate;
    OVFilter().Filter_Ploygon(x, y, gate.Sections, polygon, 5);
    Add(digest, gate.Sections[0]->Flags, Population::EventCount / 32);
    OVFilter().Filter_Rectangle(x, y, gate.Sections, -50, 4096, 0, 8192);
    Add(digest, gate.Sections[0]->Flags, Population::EventCount / 32);
}

/// Stored channels on a logarithmic scale of four decades, as the float values that stand for them.
void AddLogarithmicData(Population& population, Digest& digest) {
    std::vector<std::uint16_t> channels(std::size_t{3} * Population::EventCount);
    for (std::size_t i = 0; i < channels.size(); ++i)
        channels[i] = static_cast<std::uint16_t>(i % 1024);
    SegmentSection segment;
    segment.Data = channels.data();
    segment.Count = static_cast<int>(channels.size() * sizeof(std::uint16_t));
    std::vector<SegmentSection*> segments{&segment};
    Para layout({"logarithmic", 1, 2, 16, Logarithmic}, 3, true);
    for (int p = 0; p < 3; ++p) {
        layout.IntParFormat->IsLog[p] = true;
        layout.IntParFormat->Scale[p] = 4.0 / 1024;
        layout.IntParFormat->Offset[p] = 1.0 + p;
        layout.IntParFormat->Range[p] = 1024;
    }
    OVFCSWriteRead().ReadFCSData(*population.Sections[0], segments, layout);
    for (int p = 0; p < 3; ++p)
        Add(digest, population[p], Population::EventCount);
}

/// The last two ask the C runtime for logarithms and powers, but what they make of them is rounded to pixels
/// and to floats, and no value lies so near to a border that the last bit of a double decides.
const struct {
    const char* Family;
    void (*Add)(Population&, Digest&);
    std::uint64_t Expected;
} Families[] = {
    {"compensation", AddCompensation, 0xEF1C2B447B1B7C32},
    {"custom signals", AddCustomSignals, 0xFD0F3E1601EEAF7D},
    {"statistics", AddStatistics, 0x01E10D59E8E1FED4},
    {"linear pixels", [](Population& p, Digest& d) { AddPixels(p, d, false); }, 0x8C02A57CAFF48CDF},
    {"gates", AddGates, 0x2829B19C8807EAC0},
    {"asinh pixels", [](Population& p, Digest& d) { AddPixels(p, d, true); }, 0x57F4C4740D448FDD},
    {"logarithmic DATA", AddLogarithmicData, 0xAF81685C9A9BAAA7},
};

class EveryMachine : public EverySet {};
INSTANTIATE_TEST_SUITE_P(Sets, EveryMachine, ::testing::ValuesIn(AvailableInstructionSets()));

TEST_P(EveryMachine, GivesTheSameBits) {
    for (const auto& [family, add, expected] : Families) {
        Population population;
        Digest digest = 0xCBF29CE484222325U;
        add(population, digest);
        EXPECT_EQ(digest, expected) << family << std::hex << ": 0x" << digest;
    }
    MemoryManage::ReleaseAll();
}

/// How far `actual` lies from `exact`, in units of its own last place.
double UnitsApart(double actual, long double exact) {
    const double unit = std::nextafter(std::fabs(actual), INFINITY) - std::fabs(actual);
    return static_cast<double>(std::fabs(exact - actual) / unit);
}

/// Formulas whose last step is a function of the C runtime, beside that function in a higher precision; and
/// how far apart the two may be, in units of the last place. Measured with 10^6 values each:
///
///             glibc 2.36   MinGW-w64 10   same with 53-bit x87 precision
///     log     0.513        0.500          0.500
///     exp     0.505        0.500          1.487
///     pow     0.506        0.500          8.770
///     log10   1.545        0.585          0.585
///
/// MinGW-w64 brings its own log, exp and pow. They compute on the x87, which its programs and threads set to
/// 64 bits; a thread that others start on Windows has 53. log10 is msvcrt.dll's, here Wine's.
const OVConvertLinearAndLog Convert;
const struct {
    const char* Function;
    double (*Actual)(double);
    long double (*Exact)(double);
    double Low, High, MostApart;
} Functions[] = {
    {"log", [](double x) { return Convert.asinh(x); },
     [](double x) { return std::log(static_cast<long double>(std::sqrt(x * x + 1.0) + x)); }, 1, 1e6, 0.52},
    {"exp", [](double x) { return Convert.sinh(x); },  // of values whose exp(-x) does not count
     [](double x) { return std::exp(static_cast<long double>(x)) / 2; }, 20, 50, 0.51},
    {"pow", [](double x) { return Convert.Log10ConvertToLinear(x); },
     [](double x) { return std::pow(10.0L, static_cast<long double>(x)); }, 1, 6, 0.51},
    {"log10", [](double x) { return Convert.LinearConvertToLog10(x); },
     [](double x) { return std::log10(static_cast<long double>(x)); }, 1, 1e6, 1.6},
};

TEST(CRuntime, IsRightToTheLastBitOfADouble) {
    for (const auto& [function, actual, exact, low, high, mostApart] : Functions) {
        std::mt19937 random(21);
        double worst = 0.0;
        for (int i = 0; i < 20000; ++i) {
            const double part = std::ldexp(static_cast<double>(random()), -32);
            const double x = low + (high - low) * part * part * part;
            worst = std::max(worst, UnitsApart(actual(x), exact(x)));
        }
        EXPECT_LT(worst, mostApart) << function;
    }
}

}  // namespace
}  // namespace Orvane::Testing
