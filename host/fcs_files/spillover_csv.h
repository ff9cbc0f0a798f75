// A spill-over matrix in a file of comma-separated values.
#pragma once

#include <string>

#include "fcs_files/fcs_spillover.h"

namespace Host {

/// A first line with the names of the channels and one line of numbers for each of them; the lines of numbers
/// may begin with a label that is no number, or any label below an empty field of the first line. Throws
/// Refusal, naming the line, for anything else.
Spillover ReadSpilloverCsv(const std::string& path);

}  // namespace Host
