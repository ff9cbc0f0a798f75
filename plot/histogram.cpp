// Histograms of one sample: the displayed population and its gates.
#include <cassert>

#include <orvane/OVPlotViewHistogram.h>

#include "plot/histogram_counting.h"
#include "plot/population.h"

namespace Orvane {
namespace {

Histogram HistogramOf(OVPlotData& data, std::vector<CountSection*>& counts) {
    const int found = data.FindBackgroundIndex();
    assert(found >= 0);
    const auto background = static_cast<std::size_t>(found);
    Histogram histogram{*data.XSections, *counts[background], {}};
    for (std::size_t j = 0; j < data.Gates->size(); ++j)
        if (j != background) histogram.Gates.push_back({(*data.Gates)[j]->Filters, counts[j]});
    return histogram;
}

}  // namespace

void OVPlotViewHistogram::ConvertSignalToCount(OVPlotData& data, std::vector<CountSection*>& counts,
                                               IOVCoordinateTransformerX* x) {
    const bool isPart = PopulationOf(data) != nullptr;
    if (IsSmoothed(data)) {
        isPart ? ConvertSignalToCount_Part_Virtual(data, counts, x)
               : ConvertSignalToCount_All_Virtual(data, counts, x);
    } else {
        isPart ? ConvertSignalToCount_Part(data, counts, x) : ConvertSignalToCount_All(data, counts, x);
    }
    for (CountSection* section : counts)
        section->CalcTotalCount();
}

void OVPlotViewHistogram::ConvertSignalToCount_All(OVPlotData& data, std::vector<CountSection*>& counts,
                                                   IOVCoordinateTransformerX* x) {
    CountEvents(HistogramOf(data, counts), *x);
}

void OVPlotViewHistogram::ConvertSignalToCount_Part(OVPlotData& data, std::vector<CountSection*>& counts,
                                                    IOVCoordinateTransformerX* x) {
    CountPopulation(HistogramOf(data, counts), *PopulationOf(data), *x);
}

void OVPlotViewHistogram::ConvertSignalToCount_All_Virtual(OVPlotData& data,
                                                           std::vector<CountSection*>& counts,
                                                           IOVCoordinateTransformerX* x) {
    CountVirtualEvents(HistogramOf(data, counts), *x);
}

void OVPlotViewHistogram::ConvertSignalToCount_Part_Virtual(OVPlotData& data,
                                                            std::vector<CountSection*>& counts,
                                                            IOVCoordinateTransformerX* x) {
    CountVirtualPopulation(HistogramOf(data, counts), *PopulationOf(data), *x);
}

}  // namespace Orvane
