// The pictures of a report.
#pragma once

#include <string>
#include <vector>

#include "figure.h"

namespace Host {

/// A PNG file and what stands below it and in its place.
struct Picture {
    std::string png;
    PictureSize size;
    std::string caption;
    std::string alternative;  ///< the picture in words
};

/// What one channel takes from another, with and without compensation.
struct CompensationPictures {
    std::string title;
    Picture before;
    Picture after;
};

struct ReportPictures {
    std::vector<Picture> gates;
    std::vector<Picture> histograms;
    std::vector<CompensationPictures> compensation;
};

}  // namespace Host
