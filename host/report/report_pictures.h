// The pictures of a report.
#pragma once

#include <string>
#include <vector>

#include "fcs_files/fcs_file.h"
#include "gating/gated_sample.h"
#include "picture/figure.h"

namespace Host {

/// A PNG file and what stands below it and in its place.
struct Picture {
    std::string png;
    PictureSize size;
    std::string caption;
    std::string alternative;  ///< the picture in words
};

/// What one channel gives in another, with and without compensation, on the same axes.
struct CompensationPictures {
    std::string title;
    Picture before;
    Picture after;
};

struct ReportPictures {
    std::vector<Picture> gates;
    std::vector<Picture> histograms;  ///< one for each name of a parameter
    std::vector<CompensationPictures> compensation;
};

/// Every gate in the population of its parent, gates over the same values in one picture; every parameter;
/// and where `matrix`, which may be null, changes the events, the pairs of channels with most spill-over.
/// `name` stands in the titles.
ReportPictures DrawPictures(const std::string& name, const FcsFile& file, GatedSample& sample,
                            const Spillover* matrix);

}  // namespace Host
