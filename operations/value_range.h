// The range of the values in one column of every section, for the operations over event and signal sections.
#pragma once

#include <limits>
#include <vector>

#include "sections/kernels.h"

namespace Orvane {

/// The largest and the smallest value of the columns `columnOf(section)`; both 0.0 without values.
template <class Section, class ColumnOf>
void FindValueRange(const std::vector<Section*>& sections, ColumnOf columnOf, float& max, float& min) {
    max = std::numeric_limits<float>::lowest();
    min = std::numeric_limits<float>::max();
    for (const Section* section : sections) {
        FindMaxAndMin(columnOf(*section), section->Count, max, min);
    }
    if (min > max) max = min = 0.0F;
}

}  // namespace Orvane
