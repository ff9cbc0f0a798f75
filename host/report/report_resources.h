// The style and the script of a report: the files report.css and report.js, put into the program when it is
// built.
#pragma once

#include <string_view>

namespace Host {

extern const std::string_view ReportStyle;
extern const std::string_view ReportScript;

}  // namespace Host
