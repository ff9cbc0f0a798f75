#include <algorithm>

#include <orvane/OVSignalSection.h>

#include "operations/next_section.h"
#include "operations/section_vectors.h"
#include "operations/signal_kernels.h"
#include "operations/value_range.h"

namespace Orvane {

long OVSignalSection::GetTotalCount(std::vector<SignalSection*>& sections) {
    return TotalCount(sections);
}

float OVSignalSection::GetValue(std::vector<SignalSection*>& sections, int index) {
    const auto [section, offset] = FindEvent(sections, index);
    return section == nullptr ? 0.0F : section->Values[offset];
}

float OVSignalSection::GetFirstValue(std::vector<SignalSection*>& sections) {
    return sections.empty() ? 0.0F : sections.front()->Values[0];
}

float OVSignalSection::GetLastValue(std::vector<SignalSection*>& sections) {
    // Deliberate: unlike the event form, an empty last section is not skipped.
    if (sections.empty() || sections.back()->Count == 0) return 0.0F;
    return sections.back()->Values[sections.back()->Count - 1];
}

bool OVSignalSection::CopyVectorSignalSection(std::vector<SignalSection*>& source,
                                              std::vector<SignalSection*>& dest) {
    if (!dest.empty()) ReleaseVectorSection(dest);
    NewCopyVectorSignalSection(dest, source);
    return true;
}

void OVSignalSection::ReleaseVectorSection(std::vector<SignalSection*>& sections) {
    ReleaseFromLast(sections);
}

void OVSignalSection::ReleaseVectorSectionShare(std::vector<SignalSection*>& sections) {
    while (!sections.empty())
        TakeLast(sections);
}

void OVSignalSection::NewCopyVectorSignalSection(std::vector<SignalSection*>& dest,
                                                 std::vector<SignalSection*>& source) {
    const std::size_t count = source.size();  // `dest` may be `source`
    for (std::size_t i = 0; i < count; ++i) {
        AppendNew(dest, [from = source[i]](SignalSection& section) { section.Clone(*from); });
    }
}

SignalSection* OVSignalSection::GetNextSection(std::vector<SignalSection*>& sections,
                                               SignalSection* current) {
    return NextSection(sections, current, [](SignalSection& section) { section.Initial(); });
}

void OVSignalSection::GetValueMaxAndMin(std::vector<SignalSection*>& sections, float& max, float& min) {
    FindValueRange(
        sections, [](const SignalSection& section) { return section.Values; }, max, min);
}

double OVSignalSection::CalcAreaHeightRatio(std::vector<SignalSection*>& area,
                                            std::vector<SignalSection*>& height) {
    // Deliberate: the first sections are a sample that is large enough.
    constexpr std::size_t SectionsUsed = 16;
    double sum = 0.0;
    int visited = 0;
    for (std::size_t i = 0; i < std::min(area.size(), SectionsUsed); ++i) {
        sum = AddRatios(area[i]->Values, height[i]->Values, area[i]->Count, sum);
        visited += area[i]->Count;
    }
    return sum / visited;
}

}  // namespace Orvane
