// `orvane plot`: a picture of the events of one file, or of several over each other.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gating/gated_sample.h"
#include "plots/sample_plots.h"

namespace Host {

struct PlotOptions {
    std::string file;
    std::vector<std::string> overlay;  ///< more files, drawn over the first
    std::string x;                     ///< a $PnN, UTF-8
    std::string y;                     ///< a $PnN; empty for a histogram
    /// What suits the parameters and files when none is given.
    std::optional<PlotKind> kind;
    AxisChoice xAxis;
    AxisChoice yAxis;
    AnalysisOptions analysis;
    PictureSize size;
    std::string output;  ///< the PNG file to write
    bool strict = false;
};

/// "MIN,MAX", numbers that floats reach and far enough apart for an axis. None for anything else.
std::optional<DataRange> ParseRange(std::string_view text);

/// "WIDTHxHEIGHT", each from 160 to 2400, put into `size`. False for anything else.
bool ParseSize(std::string_view text, PictureSize& size);

/// Why no plot can be made of these options together, beginning with the one at fault; empty when one can.
std::string CheckPlot(const PlotOptions& options);

/// Returns the exit status: 0, or 1 when a file was refused; then nothing is written.
int RunPlot(const PlotOptions& options);

}  // namespace Host
