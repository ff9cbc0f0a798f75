// The bytes of a file's events, in pieces, as words that the library reads.
#pragma once

#include <cstdint>
#include <memory>

#include "fcs_files/fcs_file.h"

namespace Host {

/// The fields of OVFCSPara that say what a value looks like.
struct WordFormat {
    int dataType;
    int byteWidth;
    int bitWidth;
    bool littleEndian;
};

class EventReader {
public:
    virtual ~EventReader() = default;

    virtual WordFormat Format() const = 0;

    /// Writes the next `events` events to `dest`, event after event, in the format above. There must be so
    /// many left. Throws Refusal when the bytes are no values.
    virtual void Read(unsigned char* dest, std::uint64_t events) = 0;
};

/// A reader for the DATA of `file`, which must outlive it.
std::unique_ptr<EventReader> MakeEventReader(FcsFile& file);

}  // namespace Host
