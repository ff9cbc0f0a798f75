// `orvane plot`: a picture of the events of one file, or of several over each other.
#pragma once

#include <string>
#include <vector>

#include "gated_sample.h"
#include "sample_plots.h"

namespace Host {

struct PlotOptions {
    std::string file;
    std::vector<std::string> overlay;  ///< more files, drawn over the first
    std::string x;                     ///< a $PnN, UTF-8
    std::string y;                     ///< a $PnN; empty for a histogram
    PlotKind kind = PlotKind::Density;
    AxisChoice xAxis;
    AxisChoice yAxis;
    AnalysisOptions analysis;
    PictureSize size;
    std::string output;  ///< the PNG file to write
    bool strict = false;
};

/// Returns the exit status: 0, or 1 when a file was refused; then nothing is written.
int RunPlot(const PlotOptions& options);

}  // namespace Host
