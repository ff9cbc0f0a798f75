// Histograms of several samples: the displayed population of each.
#include <orvane/OVPlotViewHistogram_MultiSample.h>

#include "plot/histogram_counting.h"
#include "plot/population.h"

namespace Orvane {

void OVPlotViewHistogram_MultiSample::ConvertSignalToCount(std::vector<OVPlotData*>& samples,
                                                           std::vector<CountSection*>& counts,
                                                           IOVCoordinateTransformerX* x) {
    for (std::size_t s = 0; s < samples.size(); ++s) {
        OVPlotData& data = *samples[s];
        if (data.XSections == nullptr) continue;
        const bool isPart = PopulationOf(data) != nullptr;
        if (IsSmoothed(data)) {
            isPart ? ConvertSignalToCount_Part_Virtual(data, *counts[s], x)
                   : ConvertSignalToCount_All_Virtual(data, *counts[s], x);
        } else {
            isPart ? ConvertSignalToCount_Part(data, *counts[s], x)
                   : ConvertSignalToCount_All(data, *counts[s], x);
        }
    }
}

void OVPlotViewHistogram_MultiSample::ConvertSignalToCount_All(OVPlotData& data, CountSection& counts,
                                                               IOVCoordinateTransformerX* x) {
    CountEvents({*data.XSections, counts, {}}, *x);
}

void OVPlotViewHistogram_MultiSample::ConvertSignalToCount_Part(OVPlotData& data, CountSection& counts,
                                                                IOVCoordinateTransformerX* x) {
    CountPopulation({*data.XSections, counts, {}}, *PopulationOf(data), *x);
}

void OVPlotViewHistogram_MultiSample::ConvertSignalToCount_All_Virtual(OVPlotData& data, CountSection& counts,
                                                                       IOVCoordinateTransformerX* x) {
    CountVirtualEvents({*data.XSections, counts, {}}, *x);
}

void OVPlotViewHistogram_MultiSample::ConvertSignalToCount_Part_Virtual(OVPlotData& data,
                                                                        CountSection& counts,
                                                                        IOVCoordinateTransformerX* x) {
    CountVirtualPopulation({*data.XSections, counts, {}}, *PopulationOf(data), *x);
}

}  // namespace Orvane
