// HEADER, the first 58 bytes of a data set: its version and where its segments are.
#pragma once

#include <cstdint>
#include <string>

#include "files/findings.h"
#include "files/input_file.h"

namespace Host {

/// First and last byte of a segment, counted from the start of the data set, as they stand in the file. 0 and
/// 0 when there is no segment or its place stands elsewhere.
struct Offsets {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;

    bool operator==(const Offsets& other) const { return begin == other.begin && end == other.end; }
};

struct Header {
    static constexpr std::uint64_t Size = 58;
    /// Stands in an 8-digit field for a number that does not fit.
    static constexpr std::uint64_t EightNines = 99999999;

    std::string version;  ///< "FCS3.1"
    Offsets text;
    Offsets data;
    Offsets analysis;
};

/// Reads the HEADER of the data set that starts at byte `start`. Throws Refusal when it is none, or when the
/// place of TEXT cannot be read or lies outside the file; unreadable places of the others are warned of and
/// become 0.
Header ReadHeader(InputFile& file, std::uint64_t start, Findings& findings);

/// "2462..512201"
std::string ToText(const Offsets& offsets);

}  // namespace Host
