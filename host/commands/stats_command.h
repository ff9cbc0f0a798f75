// `orvane stats`: the statistics of every parameter of some files.
#pragma once

#include <string>
#include <vector>

#include "files/output.h"
#include "gating/gated_sample.h"

namespace Host {

struct StatsOptions {
    std::vector<std::string> files;
    std::vector<std::string> parameters;  ///< names to report, UTF-8; all when empty
    AnalysisOptions analysis;
    ValueKind values = ValueKind::Scale;
    Format format = Format::Table;
    std::string output;  ///< a file; standard output when empty
    unsigned jobs = 1;   ///< files at a time
    bool strict = false;
};

/// Returns the exit status: 0, or 1 when a file was refused.
int RunStats(const StatsOptions& options);

}  // namespace Host
