#include "figure_layout.h"

#include <algorithm>
#include <cmath>

namespace Host {
namespace {

constexpr double FontSize = 12;

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
    area.left = Pixels(5.8 * em);
    area.top = Pixels(5.0 * em);
    area.width = std::max(1, width - area.left - Pixels(1.6 * em));
    area.height = std::max(1, height - area.top - Pixels(3.9 * em));
}

Box Layout::AreaBox() const {
    return {static_cast<double>(area.left), static_cast<double>(area.top), static_cast<double>(area.width),
            static_cast<double>(area.height)};
}

PlotArea FindPlotArea(const PictureSize& size) {
    return Layout(size).area;
}

}  // namespace Host
