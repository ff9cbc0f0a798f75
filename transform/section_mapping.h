// Mapping whole sections. Model sections must have room for every event of their signal section.
#pragma once

#include <orvane/Sections.h>

#include "foundation/convert.h"
#include "transform/kernels.h"

namespace Orvane {

/// The pixel of a screen coordinate.
inline unsigned short PixelAt(float screen) {
    return static_cast<unsigned short>(TruncateToInt64(static_cast<double>(screen)));
}

inline void MapSection(const PixelMapping& mapping, SignalSection* signal, ModelSection* model) {
    model->Count = signal->Count;
    MapColumn(mapping, signal->Values, signal->Count, model->Values);
}

inline void MapSectionFilter(const PixelMapping& mapping, SignalSection* signal, FilterSection* filter,
                             ModelSection* model) {
    model->Count = signal->Count;
    MapSelected(mapping, signal->Values, filter->Flags, signal->Count, model->Values);
}

/// Deliberately takes over the filter's stored count rather than the number written.
inline void MapSectionInTrue(const PixelMapping& mapping, SignalSection* signal, FilterSection* filter,
                             ModelSection* model) {
    MapSelectedPacked(mapping, signal->Values, filter->Flags, signal->Count, model->Values);
    model->Count = filter->TrueCount;
}

}  // namespace Orvane
