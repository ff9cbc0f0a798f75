// A file of one data set in FCS 3.1: HEADER, TEXT, DATA and an empty checksum.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "fcs_files/fcs_data_writer.h"
#include "fcs_files/fcs_text.h"

namespace Host {

class FcsWriter {
public:
    /// Writes HEADER and TEXT of a file with `events` events. The keywords that describe the layout are made
    /// here; of `keywords`, all others are kept. Throws Refusal when TEXT becomes too long for its place in
    /// HEADER, and as OutputFile does.
    FcsWriter(OutputFile& file, const std::vector<Keyword>& keywords, const StoredFormat& format,
              const std::vector<StoredParameter>& parameters, std::uint64_t events);

    /// Appends the events of one section, as FcsDataWriter does.
    void Write(Orvane::EventSection& events) { data_.Write(events, file_); }

    /// To be called behind the last event.
    void Finish();

private:
    OutputFile& file_;
    FcsDataWriter data_;
};

}  // namespace Host
