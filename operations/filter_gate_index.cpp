// The gate number of every event of a section, for colouring by gate.
#include <algorithm>
#include <cassert>

#include <orvane/OVFilterSection.h>

#include "operations/filter_kernels.h"

namespace Orvane {
namespace {

constexpr std::uint16_t OutsideBase = 65535;

std::vector<const std::uint32_t*> WordsOf(const std::vector<FilterSection*>& filters) {
    assert(filters.size() < OutsideBase);
    std::vector<const std::uint32_t*> words;
    words.reserve(filters.size());
    for (const FilterSection* filter : filters) {
        words.push_back(filter->Flags);
    }
    return words;
}

int CountOfFirst(const std::vector<FilterSection*>& filters) {
    return filters.empty() ? 0 : filters.front()->Count;
}

}  // namespace

void OVFilterSection::CalcFilterIndex(FilterSection* base, std::vector<FilterSection*>& filters,
                                      ModelSection* out) {
    out->Count = CountOfFirst(filters);
    NumberEvents(WordsOf(filters), base->Flags, out->Count, OutsideBase, out->Values);
}

void OVFilterSection::CalcFilterIndex(std::vector<FilterSection*>& filters, ModelSection* out) {
    out->Count = CountOfFirst(filters);
    NumberEvents(WordsOf(filters), nullptr, out->Count, 0, out->Values);
    std::fill(out->Values + out->Count, out->Values + out->Capacity, std::uint16_t{0});
}

void OVFilterSection::CalcFilterIndexInTrue(FilterSection* base, std::vector<FilterSection*>& filters,
                                            ModelSection* out) {
    NumberEvents(WordsOf(filters), base->Flags, base->Count, 0, out->Values);
    out->Count = KeepSelected(base->Flags, base->Count, out->Values);
}

}  // namespace Orvane
