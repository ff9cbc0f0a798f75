// `orvane convert`: the events of a file in a file of FCS 3.1.
#pragma once

#include <string>

#include "fcs_files/stored_parameters.h"
#include "gating/gated_sample.h"

namespace Host {

struct ConvertOptions {
    std::string input;
    std::string output;
    AnalysisOptions analysis;
    ValueKind values = ValueKind::Scale;
    StoredFormat format;
    bool strict = false;
};

/// Returns the exit status: 0, or 1 when the file was refused.
int RunConvert(const ConvertOptions& options);

}  // namespace Host
