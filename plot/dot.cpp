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

/// The gates' filters of one section after another, for the numbering of events.
class GateFilters {
public:
    explicit GateFilters(const std::vector<OVPlotData_GateInfo*>& gates) : gates_(gates) {
        const bool needsEvery = std::any_of(gates.begin(), gates.end(), [](const OVPlotData_GateInfo* gate) {
            return gate->Filters == nullptr;
        });
        if (needsEvery) every_.emplace();
    }

    /// The filters of section `k`, which has `count` events.
    std::vector<FilterSection*>& Of(std::size_t k, int count) {
        filters_.clear();
        for (const OVPlotData_GateInfo* gate : gates_)
            filters_.push_back(gate->Filters == nullptr ? every_->Of(count) : (*gate->Filters)[k]);
        return filters_;
    }

    /// The same with `population` in place of the first gate.
    std::vector<FilterSection*>& Of(std::size_t k, FilterSection* population) {
        Of(k, population->Count).front() = population;
        return filters_;
    }

private:
    const std::vector<OVPlotData_GateInfo*>& gates_;
    std::optional<EveryEventFilter> every_;
    std::vector<FilterSection*> filters_;
};

/// Marks the pixels of `events`, by gate if there are several: `number(filters, k, numbers)` then stores the
/// gate numbers of the events of section k.
template <class Events, class Number>
void RenderEvents(const OVPlotData& data, const OVBitmapData& bitmap, IOVCoordinateTransformerX& x,
                  IOVCoordinateTransformerY& y, const Events& events, const Number& number) {
    assert(!data.Gates->empty());
    if (data.Gates->size() == 1) {
        WalkPixels(*data.XSections, *data.YSections, x, y, events,
                   [&](std::size_t /*k*/, const Pixels& pixels) { MarkCells(bitmap, pixels, 1); });
        return;
    }
    GateFilters filters(*data.Gates);
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
    const auto number = [&](GateFilters& filters, std::size_t k, ModelSection* numbers) {
        OVFilterSection().CalcFilterIndex(filters.Of(k, (*data.XSections)[k]->Count), numbers);
    };
    RenderEvents(data, bitmap, *x, *y, EveryEvent{}, number);
}

void OVPlotViewDot::RenderPlot_Part(OVPlotData& data, OVBitmapData& bitmap, IOVCoordinateTransformerX* x,
                                    IOVCoordinateTransformerY* y, std::vector<FilterSection*>& population) {
    const auto number = [&](GateFilters& filters, std::size_t k, ModelSection* numbers) {
        OVFilterSection().CalcFilterIndexInTrue(population[k], filters.Of(k, population[k]), numbers);
    };
    RenderEvents(data, bitmap, *x, *y, PopulationEvents{population}, number);
}

void OVPlotViewDot::SetBitmapColor(OVBitmapData& bitmap, int* colors, int count) {
    bitmap.SetPixelByIndex(colors, count);
}

}  // namespace Orvane
