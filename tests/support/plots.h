// Plots under test: rasters with spare cells, plot descriptions over sections, the pixel of every event.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <orvane/orvane.h>

#include "tests/support/awkward.h"
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

/// Axes of -1000 to 1000, linear, or asinh of width 50. Unless said otherwise they keep every event in a
/// raster.
struct Axes {
    explicit Axes(int width, int height, bool isLog = false, bool keepsAll = true)
        : X(OVCoordinateTransformerXFactory::CreateTransformer(0.0F, static_cast<float>(width), -1000.0,
                                                               1000.0, 50.0, isLog, keepsAll)),
          Y(OVCoordinateTransformerYFactory::CreateTransformer(0.0F, static_cast<float>(height), -1000.0,
                                                               1000.0, 50.0, isLog, keepsAll)) {}

    std::unique_ptr<IOVCoordinateTransformerX> X;
    std::unique_ptr<IOVCoordinateTransformerY> Y;
};

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

/// A sample of two parameters and its plot without gates. Many events lie outside the axes.
struct Subject : OVPlotData {
    explicit Subject(Shown way, unsigned seed, int events = 200)
        : Way(way),
          Xs(RandomFloats(events, seed)),
          Ys(RandomFloats(events, seed + 1)),
          Members(Xs.Sections, seed + 2, 1 + seed % 7) {
        XSections = &Xs.Sections;
        YSections = &Ys.Sections;
        Gates = new std::vector<OVPlotData_GateInfo*>;
        if (way != Shown::Everything) Population = new OVPlotData_GateInfo;
        if (way == Shown::Population) Population->Filters = &Members.Sections;
        if (way == Shown::PopulationFilters) {
            Population->Filters = &Other.Sections;  // gives way
            PopulationFilters = &Members.Sections;
        }
    }
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    /// Adds one gate per letter: n has null filters, b those of the background, a digit some of its own, with
    /// so many of 8 events.
    void AddGates(const std::string& letters) {
        for (const char letter : letters) {
            Gates->push_back(new OVPlotData_GateInfo);
            if (letter == 'b' && Population != nullptr) Gates->back()->Filters = Population->Filters;
            const auto density = static_cast<unsigned>(letter - '0');
            OwnGates.push_back(std::make_unique<Gate>(Xs.Sections, 100 + Gates->size(), density));
            if (density <= 8) Gates->back()->Filters = &OwnGates.back()->Sections;
        }
    }

    /// For each event whether it is shown.
    std::vector<bool> ShownEvents() const {
        std::vector<bool> events = Members.Events();
        if (Way < Shown::Population) events.assign(events.size(), true);
        return events;
    }

    /// Calls `draw(x, y, event)` for the events that are shown.
    template <class Draw>
    void DrawEach(const Axes& axes, Draw draw) const {
        const std::vector<bool> isShown = ShownEvents();
        const std::vector<int> columns = PixelsOf(*axes.X, Xs.Sections);
        const std::vector<int> rows = PixelsOf(*axes.Y, Ys.Sections);
        for (std::size_t event = 0; event < columns.size(); ++event)
            if (isShown[event]) draw(columns[event], rows[event], static_cast<int>(event));
    }

    Shown Way;
    Sample Xs, Ys;
    Gate Members, Other{Xs.Sections};
    std::vector<std::unique_ptr<Gate>> OwnGates;
};

}  // namespace Orvane::Testing
