// The frame of every view: section after section is mapped to pixels, in temporary columns, and handed to
// what the view does with them. Which events those are is a policy: EveryEvent or PopulationEvents.
#pragma once

#include <cstddef>
#include <vector>

#include <orvane/OVCoordinateTransformerX.h>
#include <orvane/OVCoordinateTransformerY.h>
#include <orvane/Sections.h>

#include "memory/pooled.h"
#include "plot/pixels.h"

namespace Orvane {

/// A whole model section over storage that returns to the pool at the end of the scope. Complete, because the
/// transformer that fills it may be the host's own. Throws OutOfMemoryException* when the pool is exhausted.
class TemporaryModel {
public:
    TemporaryModel() {
        section_.Capacity = MemoryManage::GetCapacity();
        section_.Values = reinterpret_cast<unsigned short*>(storage_.Get());
    }

    ModelSection* Get() { return &section_; }
    const unsigned short* Values() const { return section_.Values; }
    int Count() const { return section_.Count; }

private:
    PooledShorts storage_;
    ModelSection section_;
};

/// Event i of a section is pixel i of its columns.
struct EveryEvent {
    template <class Transformer>
    void Map(Transformer& transformer, std::size_t /*section*/, SignalSection* signal,
             ModelSection* model) const {
        transformer.GetScreenSection(signal, model);
    }
};

/// The events of a population only, one after another.
struct PopulationEvents {
    std::vector<FilterSection*>& Filters;  ///< one per section

    template <class Transformer>
    void Map(Transformer& transformer, std::size_t section, SignalSection* signal,
             ModelSection* model) const {
        transformer.GetScreenSectionInTrue(signal, Filters[section], model);
    }
};

/// Calls `draw(k, pixels)` for every section k, in order.
template <class Events, class Draw>
void WalkPixels(const std::vector<SignalSection*>& xSections, const std::vector<SignalSection*>& ySections,
                IOVCoordinateTransformerX& x, IOVCoordinateTransformerY& y, const Events& events,
                const Draw& draw) {
    TemporaryModel columns;
    TemporaryModel rows;
    for (std::size_t k = 0; k < xSections.size(); ++k) {
        events.Map(x, k, xSections[k], columns.Get());
        events.Map(y, k, ySections[k], rows.Get());
        draw(k, Pixels{columns.Values(), rows.Values(), columns.Count()});
    }
}

/// The same on one axis: calls `draw(k, bins, count)` for every section k, in order.
template <class Events, class Draw>
void WalkBins(const std::vector<SignalSection*>& sections, IOVCoordinateTransformerX& x, const Events& events,
              const Draw& draw) {
    TemporaryModel bins;
    for (std::size_t k = 0; k < sections.size(); ++k) {
        events.Map(x, k, sections[k], bins.Get());
        draw(k, bins.Values(), bins.Count());
    }
}

}  // namespace Orvane
