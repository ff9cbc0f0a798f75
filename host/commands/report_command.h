// `orvane report`: one page about some files, to be opened in a browser.
#pragma once

#include <string>
#include <vector>

#include "gating/gated_sample.h"

namespace Host {

struct ReportOptions {
    std::vector<std::string> files;
    AnalysisOptions analysis;
    std::string output;       ///< the HTML file to write
    std::string commandLine;  ///< that makes this report, as people type it
    unsigned jobs = 1;        ///< files at a time
    bool strict = false;
};

/// Returns the exit status: 0, or 1 when a file was refused. Then the page says why.
int RunReport(const ReportOptions& options);

}  // namespace Host
