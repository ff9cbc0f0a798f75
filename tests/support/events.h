// Event vectors made from rows of values, and read back as rows.
#pragma once

#include <vector>

#include "tests/support/population.h"

namespace Orvane::Testing {

using Events = std::vector<EventSection*>;

/// One row of values, one per signal, for each event.
using Rows = std::vector<std::vector<float>>;

inline Rows RowsOf(const Events& sections) {
    Rows rows;
    for (const EventSection* section : sections) {
        for (int e = 0; e < section->Count; ++e) {
            rows.emplace_back();
            for (int s = 0; s < section->SignalCount; ++s)
                rows.back().push_back((*section)[s][e]);
        }
    }
    return rows;
}

/// A vector that owns every column and releases them at the end of the scope.
struct OwnedEvents : Owned<OVEventSection, EventSection> {
    OwnedEvents() = default;

    /// One section per entry of `cuts` for as many rows, and full ones for the rest.
    explicit OwnedEvents(const Rows& rows, const std::vector<int>& cuts = {}) : OwnedEvents() {
        const int signals = rows.empty() ? 3 : static_cast<int>(rows[0].size());
        std::size_t next = 0;
        for (std::size_t i = 0; i < cuts.size() || next < rows.size(); ++i) {
            OVEventSection().NewEventSection(Sections, 1, signals);
            EventSection& section = *Sections.back();
            const int count = i < cuts.size() ? cuts[i] : section.Capacity;
            for (; section.Count < count && next < rows.size(); ++section.Count, ++next)
                for (std::size_t s = 0; s < rows[next].size(); ++s)
                    section.SetValue(static_cast<int>(s), section.Count, rows[next][s]);
        }
    }
};

}  // namespace Orvane::Testing
