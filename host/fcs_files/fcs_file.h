// An FCS file as it describes itself: HEADER, TEXT, and what follows from them. No event is read here.
#pragma once

#include <optional>
#include <string>

#include "fcs_files/fcs_data_segment.h"
#include "fcs_files/fcs_spillover.h"

namespace Host {

struct FcsFile {
    InputFile bytes;
    Header header;
    Keywords keywords;
    EventLayout layout;
    DataSegment data;
    std::optional<Spillover> spillover;
};

/// Opens and reads the first data set of the file at `path`; that there are more is warned of. The
/// file is closed until its events are read. Throws Refusal when it is no FCS file, or one that cannot be
/// read.
FcsFile OpenFcsFile(const std::string& path, Findings& findings);

}  // namespace Host
