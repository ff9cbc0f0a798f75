// The direction in which a screen axis runs.
#pragma once

namespace Orvane {

enum CoordinateType : int {
    Horizontal = 0,  ///< an x axis: screen coordinates grow with the value
    Vertical = 1     ///< a y axis of a raster whose rows count downward: they fall as the value grows
};

}  // namespace Orvane
