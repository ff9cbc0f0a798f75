#include "fcs_files/fcs_data_writer.h"

#include <orvane/MemoryManage.h>
#include <orvane/OVFCSWriteRead.h>
#include <orvane/OVSegmentSection.h>

namespace Host {
namespace {

int DataTypeNumber(StoredType type) {
    switch (type) {
        case StoredType::Float:
            return 2;
        case StoredType::Double:
            return 3;
        default:
            return 1;
    }
}

}  // namespace

FcsDataWriter::FcsDataWriter(const StoredFormat& format, const std::vector<StoredParameter>& parameters) {
    para_.ParCount = static_cast<int>(parameters.size());
    para_.DataType = DataTypeNumber(format.type);
    para_.ByteWidth = format.Bytes();
    para_.BitWidth = format.Bits();
    para_.LittleEndian = format.littleEndian;
    if (!format.IsInteger()) return;
    para_.InitialIntParFormat();
    for (std::size_t p = 0; p < parameters.size(); ++p) {
        para_.IntParFormat->Scale[p] = 1.0;
        para_.IntParFormat->LogScale[p] = 1.0;
        para_.IntParFormat->Range[p] = parameters[p].range;
    }
}

FcsDataWriter::~FcsDataWriter() {
    Orvane::OVSegmentSection().ReleaseVectorSection(segments_);
    para_.Release();
}

std::uint64_t FcsDataWriter::EventBytes() const {
    return static_cast<std::uint64_t>(para_.ByteWidth) * static_cast<std::uint64_t>(para_.ParCount);
}

/// The library divides the events evenly, and the last segment takes the remainder, too.
void FcsDataWriter::Reserve(std::uint64_t events) {
    const std::uint64_t perSegment =
        static_cast<std::uint64_t>(Orvane::MemoryManage::GetSegmentSize()) / EventBytes();
    std::uint64_t needed = std::max<std::uint64_t>(segments_.size(), 1);
    while (events / needed + events % needed > perSegment)
        ++needed;
    Orvane::OVSegmentSection().NewVectorSection(segments_, static_cast<int>(needed - segments_.size()));
}

void FcsDataWriter::Write(Orvane::EventSection& events, OutputFile& file) {
    Reserve(static_cast<std::uint64_t>(events.Count));
    Orvane::OVFCSWriteRead().WriteFCSData(segments_, events, para_);
    for (const Orvane::SegmentSection* segment : segments_)
        file.Write(segment->Data, static_cast<std::size_t>(segment->Count));
}

}  // namespace Host
