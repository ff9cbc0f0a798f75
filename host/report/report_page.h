// The report as a whole: one HTML page that needs nothing beside it.
#pragma once

#include <string>
#include <vector>

#include "files/parallel.h"
#include "report/report_sections.h"

namespace Host {

/// The page about the files at `paths`: a section for each, which says why where a file was refused, and the
/// command line that makes the page. The same arguments give the same bytes.
std::string FormatReport(const std::vector<std::string>& paths,
                         const std::vector<Outcome<ReportedFile>>& files, const std::string& commandLine);

}  // namespace Host
