// Filter vectors: released, made parallel to other vectors, filled one section after another.
#include <orvane/OVFilterSection.h>

#include "operations/next_section.h"
#include "operations/section_vectors.h"

namespace Orvane {
namespace {

void TakeStorage(FilterSection& section) {
    section.Initial();
}

template <class Section>
std::vector<int> CountsOf(const std::vector<Section*>& sections) {
    std::vector<int> counts;
    counts.reserve(sections.size());
    for (const Section* section : sections) {
        counts.push_back(section->Count);
    }
    return counts;
}

}  // namespace

void OVFilterSection::ReleaseVectorSection(std::vector<FilterSection*>& sections) {
    ReleaseFromLast(sections);
}

void OVFilterSection::SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                               std::vector<int>& counts) {
    while (sections.size() > counts.size()) {
        TakeLast(sections)->Release();
    }
    while (sections.size() < counts.size()) {
        AppendNew(sections, TakeStorage);
    }
    for (std::size_t i = 0; i < counts.size(); ++i) {
        sections[i]->Count = counts[i];
        sections[i]->SetAll(false);
    }
}

void OVFilterSection::SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                               std::vector<EventSection*>& events) {
    std::vector<int> counts = CountsOf(events);
    SynchronousVectorSection(sections, counts);
}

void OVFilterSection::SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                               std::vector<SignalSection*>& signals) {
    std::vector<int> counts = CountsOf(signals);
    SynchronousVectorSection(sections, counts);
}

void OVFilterSection::SynchronousVectorSection(std::vector<FilterSection*>& sections,
                                               std::vector<FilterSection*>& other) {
    std::vector<int> counts = CountsOf(other);
    SynchronousVectorSection(sections, counts);
}

FilterSection* OVFilterSection::GetNextSection(std::vector<FilterSection*>& sections,
                                               FilterSection* current) {
    return NextSection(sections, current, TakeStorage);
}

}  // namespace Orvane
