// `orvane gate`: the populations of a file.
#pragma once

#include <string>

#include "files/output.h"
#include "gating/gated_sample.h"

namespace Host {

struct GateOptions {
    std::string file;
    AnalysisOptions analysis;
    std::string membership;  ///< a CSV file to write; none when empty
    Format format = Format::Table;
    std::string output;  ///< a file; standard output when empty
    bool strict = false;
};

/// Returns the exit status: 0, or 1 when the file was refused.
int RunGate(const GateOptions& options);

}  // namespace Host
