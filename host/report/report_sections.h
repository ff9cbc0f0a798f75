// What a report says about one file, and how it is set out.
#pragma once

#include <string>
#include <vector>

#include "fcs_files/file_description.h"
#include "report/report_pictures.h"
#include "statistics/stats_report.h"
#include "text/html.h"

namespace Host {

struct ReportedFile {
    FileStatistics statistics;
    std::vector<Property> sample;  ///< what and whose it is
    std::vector<Property> format;  ///< how the file stores it
    Table parameters;
    ReportPictures pictures;
};

/// The sections about a file, which are headings of the third level; their ids begin with `id`.
void WriteSections(Html& html, const ReportedFile& file, const std::string& id);

}  // namespace Host
