// FCS DATA: one million events of twenty parameters, in sixteen sections as the pool hands them out, read
// from and written to one segment per section; the plain loop walks event by event. On one thread.
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <orvane/OVFCSWriteRead.h>

#include "bench/support.h"
#include "foundation/convert.h"

#if defined(_OPENMP)
#include <omp.h>
#endif

namespace Orvane::Bench {
namespace {

constexpr int SectionCount = 16;
constexpr int Events = 65536;
constexpr int ParCount = 20;
constexpr std::size_t RawBytes = std::size_t{Events} * ParCount * 8;

/// Columns in which every word type and range finds values, raw bytes of 10-bit words, and room for bytes.
struct Sample {
    std::array<EventSection, SectionCount> Sections;
    std::vector<unsigned char> Raw = std::vector<unsigned char>(RawBytes);
    std::vector<unsigned char> Written = std::vector<unsigned char>(RawBytes);
    SegmentSection Segment;
    std::vector<SegmentSection*> Segments{&Segment};

    Sample() {
#if defined(_OPENMP)
        omp_set_num_threads(1);
#endif
        std::mt19937 random(1);
        std::uniform_real_distribution<float> value(-100.0F, 1100.0F);
        for (EventSection& section : Sections) {
            section.Initial(ParCount);
            section.Count = Events;
            for (int p = 0; p < ParCount; ++p) {
                for (int e = 0; e < Events; ++e)
                    section.Signals[p][e] = value(random);
            }
        }
        for (std::size_t i = 0; i < RawBytes; ++i) {
            Raw[i] = static_cast<unsigned char>(random() & (i % 2 == 0 ? 0xFFU : 0x03U));
        }
    }
};

Sample& TheSample() {
    static Sample sample;
    return sample;
}

OVFCSPara MakePara(int dataType, int byteWidth, bool littleEndian, int logParameters = 0) {
    OVFCSPara para;
    para.ParCount = ParCount;
    para.DataType = dataType;
    para.ByteWidth = byteWidth;
    para.BitWidth = byteWidth * 8;
    para.LittleEndian = littleEndian;
    para.InitialIntParFormat();
    for (int p = 0; p < ParCount; ++p) {
        para.IntParFormat->IsLog[p] = p >= ParCount - logParameters;
        para.IntParFormat->Scale[p] = para.IntParFormat->IsLog[p] ? 4.0 / 1024.0 : 1.0;
        para.IntParFormat->Offset[p] = 1.0;
        para.IntParFormat->LogScale[p] = 1.0;
        para.IntParFormat->Range[p] = 1024.0;
    }
    return para;
}

template <class Word>
Word Reverse(Word word) {
    Word reversed = 0;
    for (std::size_t i = 0; i < sizeof(Word); ++i) {
        reversed = static_cast<Word>((reversed << 8) | ((word >> 8 * i) & 0xFF));
    }
    return reversed;
}

template <class Word>
float Decode(Word word, const OVFCSPara& para, int p) {
    if (para.DataType == 2) return std::bit_cast<float>(static_cast<std::uint32_t>(word));
    if (para.DataType == 3)
        return static_cast<float>(std::bit_cast<double>(static_cast<std::uint64_t>(word)));
    const double linear = static_cast<double>(word) * para.IntParFormat->Scale[p];
    if (!para.IntParFormat->IsLog[p]) return static_cast<float>(linear);
    return static_cast<float>(std::pow(10.0, linear) * para.IntParFormat->Offset[p]);
}

template <class Word>
Word Encode(float value, const OVFCSPara& para, int p) {
    if (para.DataType == 2) return static_cast<Word>(std::bit_cast<std::uint32_t>(value));
    double x = value;
    if (para.DataType == 3) return static_cast<Word>(std::bit_cast<std::uint64_t>(x));
    const OVFCSIntParFormat& format = *para.IntParFormat;
    if (x < format.Offset[p]) return 0;
    if (format.IsLog[p]) x = std::log10(x * format.LogScale[p]);
    x *= format.Scale[p];
    if (x >= format.Range[p]) return static_cast<Word>(TruncateToInt64(format.Range[p] - 1.0));
    return x < 0 ? Word{0} : static_cast<Word>(TruncateToInt64(x));
}

// Data type and byte order are constants, so that the loops are as good as the description lets them be.
template <class Word, int DataType, bool LittleEndian>
void PlainRead(EventSection& section, OVFCSPara para) {
    para.DataType = DataType;
    const unsigned char* raw = TheSample().Raw.data();
    for (int e = 0; e < Events; ++e) {
        for (int p = 0; p < ParCount; ++p, raw += sizeof(Word)) {
            Word word;
            std::memcpy(&word, raw, sizeof word);
            section.Signals[p][e] = Decode(LittleEndian ? word : Reverse(word), para, p);
        }
    }
}

template <class Word, int DataType, bool LittleEndian>
void PlainWrite(EventSection& section, OVFCSPara para) {
    para.DataType = DataType;
    unsigned char* raw = TheSample().Written.data();
    for (int e = 0; e < Events; ++e) {
        for (int p = 0; p < ParCount; ++p, raw += sizeof(Word)) {
            const auto word = Encode<Word>(section.Signals[p][e], para, p);
            const Word stored = LittleEndian ? word : Reverse(word);
            std::memcpy(raw, &stored, sizeof stored);
        }
    }
}

void Read(EventSection& section, OVFCSPara para) {
    Sample& sample = TheSample();
    sample.Segment.Data = sample.Raw.data();
    sample.Segment.Count = Events * ParCount * para.ByteWidth;
    OVFCSWriteRead().ReadFCSData(section, sample.Segments, para);
}

void Write(EventSection& section, OVFCSPara para) {
    TheSample().Segment.Data = TheSample().Written.data();
    OVFCSWriteRead().WriteFCSData(TheSample().Segments, section, para);
}

using Work = void (*)(EventSection&, OVFCSPara);

/// The bits that a piece of work leaves: columns when it reads, bytes when it writes.
std::vector<unsigned char> OutcomeOf(Work work, const OVFCSPara& para) {
    Sample& sample = TheSample();
    EventSection section;
    section.Initial(ParCount);
    for (int p = 0; p < ParCount; ++p) {
        std::memcpy(section.Signals[p], sample.Sections[0].Signals[p], Events * sizeof(float));
    }
    section.Count = Events;
    work(section, para);
    std::vector<unsigned char> outcome = sample.Written;
    for (int p = 0; p < ParCount; ++p) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(section.Signals[p]);
        outcome.insert(outcome.end(), bytes, bytes + Events * sizeof(float));
    }
    section.Release();
    return outcome;
}

void TimeSections(benchmark::State& state, Work work, const OVFCSPara& para) {
    for (auto _ : state) {
        for (EventSection& section : TheSample().Sections)
            work(section, para);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * SectionCount * Events);
}

void RegisterWork(const std::string& group, Work plain, Work library, const OVFCSPara& para) {
    Register(group, "plain", [=](benchmark::State& state) { TimeSections(state, plain, para); });
    RegisterForEachInstructionSet(group, [=](benchmark::State& state) {
        if (OutcomeOf(plain, para) != OutcomeOf(library, para)) {
            return state.SkipWithError("differs from the plain form");
        }
        TimeSections(state, library, para);
    });
}

template <class Word, int DataType>
void RegisterBothWays(const std::string& type, int logParameters = 0) {
    constexpr int Width = sizeof(Word);
    const OVFCSPara little = MakePara(DataType, Width, true, logParameters);
    const OVFCSPara big = MakePara(DataType, Width, false, logParameters);
    RegisterWork("WriteFcs" + type, PlainWrite<Word, DataType, true>, Write, little);
    RegisterWork("WriteFcs" + type + "BigEndian", PlainWrite<Word, DataType, false>, Write, big);
    RegisterWork("ReadFcs" + type, PlainRead<Word, DataType, true>, Read, little);
    RegisterWork("ReadFcs" + type + "BigEndian", PlainRead<Word, DataType, false>, Read, big);
}

const bool registered = [] {
    RegisterBothWays<std::uint32_t, 2>("Float");
    RegisterBothWays<std::uint64_t, 3>("Double");
    RegisterBothWays<std::uint16_t, 1>("Int16");
    RegisterBothWays<std::uint32_t, 1>("Int32");
    RegisterBothWays<std::uint16_t, 1>("Int16Log", 16);
    return true;
}();

}  // namespace
}  // namespace Orvane::Bench
