#include "picture/figure_layout.h"

#include <algorithm>
#include <cmath>

namespace Host {
namespace {

constexpr double FontSize = 12;

// Around the plot area, in multiples of the layout's em.
constexpr double LeftMargin = 5.8;    ///< the name of the axis and the labels of its ticks
constexpr double TopMargin = 5;       ///< title, subtitle, counts of what lies off scale
constexpr double RightMargin = 1.6;   ///< half of a tick's label
constexpr double BottomMargin = 3.9;  ///< as on the left

/// Small pictures have somewhat smaller text, large ones somewhat larger text.
double TextScale(const PictureSize& size) {
    const PictureSize usual;
    const double area = static_cast<double>(size.width) * size.height;
    return std::clamp(std::sqrt(area / (usual.width * usual.height)), 0.8, 1.6);
}

int Pixels(double length) {
    return static_cast<int>(std::lround(length));
}

}  // namespace

Layout::Layout(const PictureSize& size)
    : width(size.width * size.scale),
      height(size.height * size.scale),
      em(FontSize * TextScale(size) * size.scale),
      line(std::max(1, Pixels(em / 14))) {
    area.left = Pixels(LeftMargin * em);
    area.top = Pixels(TopMargin * em);
    area.width = std::max(1, width - area.left - Pixels(RightMargin * em));
    area.height = std::max(1, height - area.top - Pixels(BottomMargin * em));
}

Box Layout::AreaBox() const {
    return {static_cast<double>(area.left), static_cast<double>(area.top), static_cast<double>(area.width),
            static_cast<double>(area.height)};
}

PlotArea FindPlotArea(const PictureSize& size) {
    return Layout(size).area;
}

}  // namespace Host
