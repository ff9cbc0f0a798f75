#include "fcs_files/sample.h"

#include <orvane/MemoryManage.h>
#include <orvane/OVEventSection.h>
#include <orvane/OVFCSWriteRead.h>
#include <orvane/OVSegmentSection.h>

#include <algorithm>
#include <bit>
#include <limits>

#include "fcs_files/event_reader.h"

namespace Host {
namespace {

using Orvane::EventSection;
using Orvane::MemoryManage;
using Orvane::SegmentSection;

constexpr std::uint64_t BlocksPerSegment = 32;
/// What the library's counts of events can hold.
constexpr std::uint64_t MostEvents = std::numeric_limits<int>::max();
/// Bytes of the widest word that a reader delivers: ten digits.
constexpr std::uint64_t WidestWord = 10;

bool IsFloating(DataType type) {
    return type == DataType::Float || type == DataType::Double;
}

/// The record that tells the library how to read, with its table.
class Conversion {
public:
    Conversion(const EventLayout& layout, const WordFormat& format, ValueKind values) {
        para_.ParCount = static_cast<int>(layout.parameters.size());
        para_.DataType = format.dataType;
        para_.ByteWidth = format.byteWidth;
        para_.BitWidth = format.bitWidth;
        para_.LittleEndian = format.littleEndian;
        if (IsFloating(layout.type)) return;
        para_.InitialIntParFormat();
        for (std::size_t p = 0; p < layout.parameters.size(); ++p)
            SetScale(p, layout.parameters[p], values);
    }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;
    ~Conversion() { para_.Release(); }

    std::size_t EventBytes() const {
        return static_cast<std::size_t>(para_.ByteWidth) * static_cast<std::size_t>(para_.ParCount);
    }
    Orvane::OVFCSPara& Para() { return para_; }

private:
    void SetScale(std::size_t p, const Parameter& parameter, ValueKind values) {
        Orvane::OVFCSIntParFormat& format = *para_.IntParFormat;
        format.Scale[p] = 1.0;
        if (values == ValueKind::Channel) return;
        format.IsLog[p] = parameter.IsLog();
        if (parameter.IsLog()) {
            format.Scale[p] = parameter.decades / *parameter.range;
            format.Offset[p] = parameter.logOffset;
        } else {
            format.Scale[p] = 1.0 / parameter.gain.value_or(1.0);
        }
    }

    Orvane::OVFCSPara para_;
};

/// The raw bytes of one event section, in as many segments as they need, each of whole events. The segments
/// are used again for the next section.
class RawPiece {
public:
    explicit RawPiece(std::size_t eventBytes)
        : eventBytes_(eventBytes),
          perSegment_(static_cast<std::uint64_t>(MemoryManage::GetSegmentSize()) / eventBytes) {}
    RawPiece(const RawPiece&) = delete;
    RawPiece& operator=(const RawPiece&) = delete;
    ~RawPiece() { Orvane::OVSegmentSection().ReleaseVectorSection(segments_); }

    void Fill(EventReader& reader, std::uint64_t events) {
        const std::uint64_t needed = (events + perSegment_ - 1) / perSegment_;
        if (needed > segments_.size()) {
            Orvane::OVSegmentSection().NewVectorSection(segments_,
                                                        static_cast<int>(needed - segments_.size()));
        }
        for (SegmentSection* segment : segments_) {
            const std::uint64_t share = std::min(events, perSegment_);
            reader.Read(static_cast<unsigned char*>(segment->Data), share);
            segment->Count = static_cast<int>(share * eventBytes_);
            events -= share;
        }
    }

    std::vector<SegmentSection*>& Segments() { return segments_; }

private:
    std::size_t eventBytes_;
    std::uint64_t perSegment_;
    std::vector<SegmentSection*> segments_;
};

/// The gain of floating-point values, which the library's conversion leaves as they are.
void DivideByGain(EventSection& section, const std::vector<Parameter>& parameters) {
    for (std::size_t p = 0; p < parameters.size(); ++p) {
        const double gain = parameters[p].gain.value_or(1.0);
        if (gain == 1.0) continue;
        float* column = section[static_cast<int>(p)];
        for (int e = 0; e < section.Count; ++e)
            column[e] = static_cast<float>(column[e] / gain);
    }
}

void CheckSize(const FcsFile& file, std::size_t eventBytes) {
    const auto segmentBytes = static_cast<std::size_t>(MemoryManage::GetSegmentSize());
    if (eventBytes > segmentBytes) {
        Refuse("$PAR", std::to_string(file.layout.parameters.size()),
               "events of at most " + std::to_string(segmentBytes) + " bytes");
    }
    if (file.data.events > MostEvents) {
        Refuse("$TOT", std::to_string(file.data.events), "at most " + std::to_string(MostEvents) + " events");
    }
}

}  // namespace

void SizePool(const std::vector<const FcsFile*>& files) {
    constexpr std::uint64_t SmallestCapacity = 1024;
    constexpr std::uint64_t SegmentBytesPerElement = BlocksPerSegment * sizeof(float);
    std::uint64_t wanted = SmallestCapacity;
    for (const FcsFile* file : files) {
        const std::uint64_t eventBytes = file->layout.parameters.size() * WidestWord;
        wanted = std::max({wanted, file->data.events, eventBytes / SegmentBytesPerElement + 1});
    }
    if (wanted >= static_cast<std::uint64_t>(MemoryManage::GetCapacity())) return;
    const auto capacity = static_cast<int>(std::bit_ceil(wanted));
    constexpr int Blocks = BlocksPerSegment;
    MemoryManage::InitMemoryManage(capacity * static_cast<int>(SegmentBytesPerElement), Blocks, 0, capacity,
                                   capacity / Blocks);
}

Sample::Sample(FcsFile& file, ValueKind values, const std::function<void(std::uint64_t)>& progress) {
    try {
        Load(file, values, progress);
    } catch (...) {
        Release();
        throw;
    }
    file.bytes.Close();
}

Sample::~Sample() {
    Release();
}

void Sample::Release() {
    Orvane::OVEventSection().ReleaseVectorSection(events_);
}

void Sample::Load(FcsFile& file, ValueKind values, const std::function<void(std::uint64_t)>& progress) {
    const std::unique_ptr<EventReader> reader = MakeEventReader(file);
    Conversion conversion(file.layout, reader->Format(), values);
    CheckSize(file, conversion.EventBytes());
    RawPiece piece(conversion.EventBytes());
    const auto capacity = static_cast<std::uint64_t>(MemoryManage::GetCapacity());
    for (std::uint64_t left = file.data.events; left > 0;) {
        const std::uint64_t events = std::min(left, capacity);
        Orvane::OVEventSection().NewEventSection(events_, static_cast<int>(events),
                                                 conversion.Para().ParCount);
        piece.Fill(*reader, events);
        Orvane::OVFCSWriteRead().ReadFCSData(*events_.back(), piece.Segments(), conversion.Para());
        if (values == ValueKind::Scale && IsFloating(file.layout.type)) {
            DivideByGain(*events_.back(), file.layout.parameters);
        }
        left -= events;
        progress(events * file.layout.parameters.size());
    }
}

}  // namespace Host
