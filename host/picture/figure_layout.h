// Where the parts of a picture go. Everything is measured in pixels of the picture.
#pragma once

#include "picture/figure.h"
#include "picture/figure_canvas.h"

namespace Host {

struct Layout {
    explicit Layout(const PictureSize& size);

    Box AreaBox() const;

    int width;
    int height;
    double em;    ///< the size of the axes' font, of which everything else is a multiple
    double line;  ///< the width of the axes' lines, whole pixels
    PlotArea area;
};

}  // namespace Host
