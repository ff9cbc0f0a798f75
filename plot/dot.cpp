// The dot plot of one sample: every event marks its pixel with the number of its last gate.
#include <algorithm>
#include <cassert>
#include <optional>

#include <orvane/OVFilterSection.h>
#include <orvane/OVPlotViewDot.h>

#include "plot/dot_kernels.h"
#include "plot/population.h"
#include "plot/walk.h"

namespace Orvane {
namespace {

/// A filter that every event passes.
class EveryEventFilter {
public:
    EveryEventFilter() {
        section_.Capacity = MemoryManage::GetCapacity();
        section_.Flags = reinterpret_cast<std::uint32_t*>(storage_.Get());
        section_.SetAll(true);
    }

    /// The filter for a section of `count` events.
    FilterSection* Of(int count) {
        section_.Count = section_.TrueCount = count;
        return &section_;
    }

private:
    PooledBits storage_;
    FilterSection section_;
};

/// The filters that number the events of one section after another: the gates', but the population's in place
/// of the first gate's where there is one.
class NumberingFilters {
public:
    NumberingFilters(const std::vector<OVPlotData_GateInfo*>& gates,
                     const std::vector<FilterSection*>* population) {
        for (const OVPlotData_GateInfo* gate : gates)
            vectors_.push_back(gate->Filters);
        if (population != nullptr) vectors_.front() = population;
        if (std::find(vectors_.begin(), vectors_.end(), nullptr) != vectors_.end()) every_.emplace();
    }

    /// The filters of section `k`, which has `count` events.
    std::vector<FilterSection*>& Of(std::size_t k, int count) {
        filters_.clear();
        for (const std::vector<FilterSection*>* filters : vectors_)
            filters_.push_back(filters == nullptr ? every_->Of(count) : (*filters)[k]);
        return filters_;
    }

private:
    std::vector<const std::vector<FilterSection*>*> vectors_;
    std::optional<EveryEventFilter> every_;
    std::vector<FilterSection*> filters_;
};

/// Marks the pixels of `events`, those of `population` if it is not null, by gate if there are several:
/// `number(filters, k, numbers)` then stores the gate numbers of the events of section k.
template <class Events, class Number>
void RenderEvents(const OVPlotData& data, const OVBitmapData& bitmap, IOVCoordinateTransformerX& x,
                  IOVCoordinateTransformerY& y, const Events& events,
                  const std::vector<FilterSection*>* population, const Number& number) {
    assert(!data.Gates->empty());
    if (data.Gates->size() == 1) {
        WalkPixels(*data.XSections, *data.YSections, x, y, events,
                   [&](std::size_t /*k*/, const Pixels& pixels) { MarkCells(bitmap, pixels, 1); });
        return;
    }
    NumberingFilters filters(*data.Gates, population);
    TemporaryModel numbers;
    WalkPixels(*data.XSections, *data.YSections, x, y, events, [&](std::size_t k, const Pixels& pixels) {
        number(filters, k, numbers.Get());
        RaiseCells(bitmap, pixels, numbers.Values());
    });
}

}  // namespace

void OVPlotViewDot::RenderPlot(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                               IOVCoordinateTransformerY* y) {
    bitmap.SetAllDataZero();
    if (auto* population = PopulationOf(data); population != nullptr) {
        RenderPlot_Part(data, bitmap, x, y, *population);
    } else {
        RenderPlot_All(data, bitmap, x, y);
    }
    bitmap.MoveEdgeDataGreater();
}

void OVPlotViewDot::RenderPlot_All(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                                   IOVCoordinateTransformerY* y) const {
    const auto number = [&](NumberingFilters& filters, std::size_t k, ModelSection* numbers) {
        OVFilterSection().CalcFilterIndex(filters.Of(k, (*data.XSections)[k]->Count), numbers);
    };
    RenderEvents(data, bitmap, *x, *y, EveryEvent{}, nullptr, number);
}

void OVPlotViewDot::RenderPlot_Part(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                                    IOVCoordinateTransformerY* y, std::vector<FilterSection*>& population) {
    const auto number = [&](NumberingFilters& filters, std::size_t k, ModelSection* numbers) {
        OVFilterSection().CalcFilterIndexInTrue(population[k], filters.Of(k, population[k]->Count), numbers);
    };
    RenderEvents(data, bitmap, *x, *y, PopulationEvents{population}, &population, number);
}

void OVPlotViewDot::SetBitmapColor(OVBitmapData& bitmap, int* colors, int count) {
    bitmap.SetPixelByIndex(colors, count);
}

}  // namespace Orvane
