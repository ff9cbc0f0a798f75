// What a file says about itself, for people.
#pragma once

#include <string>
#include <vector>

#include "fcs_files/fcs_file.h"
#include "text/table.h"

namespace Host {

/// What stands in a line behind its name. Neither has control characters.
struct Property {
    std::string name;
    std::string value;
};

/// Version, places of the segments, data type, numbers of events and parameters, spill-over.
std::vector<Property> DescribeFile(const FcsFile& file);

/// Where and on what the events were acquired, as far as the file says.
std::vector<Property> DescribeAcquisition(const Keywords& keywords);

/// One row per parameter.
Table TabulateParameters(const EventLayout& layout);

/// "HEADER" or "TEXT": which of them the place of DATA is taken from.
const char* SourceName(const DataSegment& data);

}  // namespace Host
