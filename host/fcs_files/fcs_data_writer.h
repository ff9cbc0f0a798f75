// The bytes of events to be written, formed by the library.
#pragma once

#include <vector>

#include <orvane/OVFCSPara.h>

#include "fcs_files/stored_parameters.h"
#include "files/output_file.h"

namespace Host {

class FcsDataWriter {
public:
    FcsDataWriter(const StoredFormat& format, const std::vector<StoredParameter>& parameters);
    FcsDataWriter(const FcsDataWriter&) = delete;
    FcsDataWriter& operator=(const FcsDataWriter&) = delete;
    ~FcsDataWriter();

    std::uint64_t EventBytes() const;

    /// Appends the events of one section to `file`. Throws OutOfMemoryException* when the pool cannot hold
    /// their bytes, and as OutputFile does.
    void Write(Orvane::EventSection& events, OutputFile& file);

private:
    void Reserve(std::uint64_t events);

    Orvane::OVFCSPara para_;
    std::vector<Orvane::SegmentSection*> segments_;
};

}  // namespace Host
