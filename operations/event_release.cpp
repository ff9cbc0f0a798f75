// Event vectors: returning storage.
#include <algorithm>
#include <memory>

#include <orvane/OVEventSection.h>

#include "operations/section_vectors.h"

namespace Orvane {
namespace {

/// Releases and deletes the first section of a raw vector and its twin.
void ReleaseFirst(std::vector<EventSection*>& raw, std::vector<EventSection*>& compensated) {
    const std::unique_ptr<EventSection> section(raw.front());
    const std::unique_ptr<EventSection> twin(compensated.front());
    raw.erase(raw.begin());
    compensated.erase(compensated.begin());
    twin->Release(*section);
    section->Release();
}

}  // namespace

void OVEventSection::ReleaseVectorSectionCompensation(std::vector<EventSection*>& raw,
                                                      std::vector<EventSection*>& compensated) {
    // Deliberate: without its raw section nobody knows what a twin owns, so those beyond `raw` are dropped.
    compensated.resize(std::min(compensated.size(), raw.size()));
    while (!compensated.empty()) {
        EventSection& reference = *raw[compensated.size() - 1];
        TakeLast(compensated)->Release(reference);
    }
}

void OVEventSection::ReleaseVectorSection(std::vector<EventSection*>& sections, std::vector<int>& map) {
    while (!sections.empty())
        TakeLast(sections)->Release(map);
}

void OVEventSection::ReleaseVectorSection(std::vector<EventSection*>& sections) {
    ReleaseFromLast(sections);
}

void OVEventSection::ReleaseVectorSection(std::vector<EventSection*>& raw,
                                          std::vector<EventSection*>& compensated) {
    ReleaseVectorSectionCompensation(raw, compensated);
    ReleaseVectorSection(raw);
}

void OVEventSection::ReleaseVectorSectionShare(std::vector<EventSection*>& sections) {
    while (!sections.empty())
        TakeLast(sections)->Release_Share();
}

void OVEventSection::RemoveEventSection(int count, std::vector<EventSection*>& raw,
                                        std::vector<EventSection*>& compensated) {
    if (count < 1) return;
    while (!raw.empty() && !compensated.empty() && raw.front()->Count < count) {
        count -= raw.front()->Count;
        ReleaseFirst(raw, compensated);
    }
    if (raw.empty() || compensated.empty()) return;
    EventSection& section = *raw.front();
    section.RemoveData(0, count);
    compensated.front()->RemoveData(0, count, section);
    if (section.Count == 0 && raw.size() >= 2 && compensated.size() >= 2) ReleaseFirst(raw, compensated);
}

}  // namespace Orvane
