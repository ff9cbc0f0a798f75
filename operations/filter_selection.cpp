// Selections by count and by fraction.
#include <orvane/OVFilterSection.h>

#include "foundation/convert.h"
#include "operations/filter_kernels.h"

namespace Orvane {
namespace {

enum class Side { First, Last };

/// Selects `n` events at one end of a section, as far as it holds them.
void SelectAtEnd(FilterSection& section, int n, Side side) {
    if (n <= 0 || n >= section.Count) {
        const bool whole = n > 0;
        section.SetAll(whole);
        section.TrueCount = whole ? section.Count : 0;
        return;
    }
    section.SetFlag(side == Side::First ? 0 : section.Count - n, n, true);
    section.TrueCount = n;
}

/// Walks the sections from one end while `n` lasts.
template <class Iterator>
void SelectFromEnd(Iterator begin, Iterator end, int n, Side side) {
    for (Iterator section = begin; section != end; ++section) {
        SelectAtEnd(**section, n, side);
        if (n > 0) n -= (*section)->Count;
    }
}

}  // namespace

void OVFilterSection::GetFilterSectionByPercent(std::vector<FilterSection*>& sections, float fraction) {
    // Deliberate: float throughout, as hosts have always seen it.
    auto remaining =
        static_cast<int>(TruncateToInt64(static_cast<float>(GetTotalCount(sections)) * fraction));
    const float step = 1.0F / fraction;
    float position = 0.0F;
    for (FilterSection* section : sections) {
        section->TrueCount = SelectSpaced(section->Flags, section->Count, step, position, remaining);
        position -= static_cast<float>(section->Count);
    }
}

void OVFilterSection::GetFilterSectionByCount(std::vector<FilterSection*>& sections, int n) {
    SelectFromEnd(sections.begin(), sections.end(), n, Side::First);
}

void OVFilterSection::GetFilterSectionByCountReverse(std::vector<FilterSection*>& sections, int n) {
    SelectFromEnd(sections.rbegin(), sections.rend(), n, Side::Last);
}

}  // namespace Orvane
