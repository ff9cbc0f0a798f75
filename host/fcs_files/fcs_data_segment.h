// Where the DATA segment is and how many events it holds.
//
// HEADER and TEXT may both say where DATA is, and either may be wrong; $TOT says how many events there should
// be, and the file has as many bytes as it has. What is read is what all of them can justify, and every
// contradiction is warned of.
#pragma once

#include <cstdint>

#include "fcs_files/fcs_parameters.h"

namespace Host {

struct DataSegment {
    enum class Source { Header, Text };

    Offsets header;  ///< as they stand in HEADER
    Offsets text;    ///< as they stand in $BEGINDATA and $ENDDATA
    Source source = Source::Header;
    std::uint64_t begin = 0;   ///< first byte
    std::uint64_t length = 0;  ///< bytes to read
    std::uint64_t events = 0;
};

/// Finds DATA. Throws Refusal when there is no place for it that the file can have.
DataSegment LocateData(InputFile& file, const Header& header, const Keywords& keywords,
                       const EventLayout& layout, Findings& findings);

}  // namespace Host
