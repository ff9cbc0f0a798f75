// `orvane info`: what files say about themselves.
#pragma once

#include <string>
#include <vector>

#include "files/output.h"

namespace Host {

struct InfoOptions {
    std::vector<std::string> files;
    Format format = Format::Table;  ///< table or JSON
    bool strict = false;
};

/// Returns the exit status: 0, or 1 when a file was refused.
int RunInfo(const InfoOptions& options);

}  // namespace Host
