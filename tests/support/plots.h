// Plots under test: rasters with spare cells, plot descriptions over sections, the pixel of every event.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <orvane/orvane.h>

#include "tests/support/population.h"

namespace Orvane::Testing {

using Cells = std::vector<int>;

/// Owns the cells of a raster whose rows are `spare` cells longer than its width.
struct Raster : OVBitmapData {
    explicit Raster(int width, int height, int spare = 3, int fill = 77)
        : Storage(static_cast<std::size_t>((width + spare) * height), fill) {
        Width = width;
        Height = height;
        Stride = 4 * (width + spare);
        Bits = Storage.data();
    }
    Raster(const Raster&) = delete;
    Raster& operator=(const Raster&) = delete;

    Cells Storage;  ///< all cells, row after row, the spare ones included
};

/// How a plot says which events it shows.
enum class Shown { Everything, EmptyPopulation, Population, PopulationFilters };
constexpr Shown WaysToShow[] = {Shown::Everything, Shown::EmptyPopulation, Shown::Population,
                                Shown::PopulationFilters};

/// Describes two parameters without population and gates, which the test adds.
struct Plot : OVPlotData {
    explicit Plot(Signals& xs, Signals& ys) {
        XSections = &xs;
        YSections = &ys;
        Gates = new std::vector<OVPlotData_GateInfo*>;
    }
    Plot(const Plot&) = delete;
    Plot& operator=(const Plot&) = delete;

    static OVPlotData_GateInfo* Info(Filters* filters) {
        auto* info = new OVPlotData_GateInfo;
        info->Filters = filters;
        return info;
    }
    /// Names `population` in one of the ways, or every event. Filters that go before a population contradict
    /// it.
    void Show(Shown way, Gate& population, Gate& other) {
        if (way == Shown::EmptyPopulation) Population = Info(nullptr);
        if (way == Shown::Population) Population = Info(&population.Sections);
        if (way == Shown::PopulationFilters) {
            Population = Info(&other.Sections);
            PopulationFilters = &population.Sections;
        }
    }
    void AddGate(Filters* filters) { Gates->push_back(Info(filters)); }
};

/// Axes that keep every event in a raster: -1000 to 1000 linear, or asinh of width 50.
struct Axes {
    explicit Axes(int width, int height, bool isLog = false)
        : X(OVCoordinateTransformerXFactory::CreateTransformer(0.0F, static_cast<float>(width), -1000.0,
                                                               1000.0, 50.0, isLog, true)),
          Y(OVCoordinateTransformerYFactory::CreateTransformer(0.0F, static_cast<float>(height), -1000.0,
                                                               1000.0, 50.0, isLog, true)) {}

    std::unique_ptr<IOVCoordinateTransformerX> X;
    std::unique_ptr<IOVCoordinateTransformerY> Y;
};

/// For each event whether a plot that names `population` in this way shows it.
inline std::vector<bool> ShownEvents(Shown way, const Gate& population) {
    std::vector<bool> events = population.Events();
    if (way == Shown::Everything || way == Shown::EmptyPopulation) events.assign(events.size(), true);
    return events;
}

/// The pixel of every event on one axis, sections end to end, by the transformer's unfiltered form.
template <class Transformer>
std::vector<int> PixelsOf(Transformer& transformer, const Signals& sections) {
    std::vector<int> pixels;
    std::vector<unsigned short> values(static_cast<std::size_t>(MemoryManage::GetCapacity()));
    ModelSection model;
    model.Capacity = MemoryManage::GetCapacity();
    model.Values = values.data();
    for (SignalSection* section : sections) {
        transformer.GetScreenSection(section, &model);
        pixels.insert(pixels.end(), values.begin(), values.begin() + model.Count);
    }
    return pixels;
}

}  // namespace Orvane::Testing
