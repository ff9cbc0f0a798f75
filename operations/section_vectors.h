// Vectors of section records, whatever the kind: growing without losing a record, emptying, counting,
// finding.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace Orvane {

/// Makes sure that one more record can be appended without fail.
template <class Section>
void MakeRoom(std::vector<Section*>& sections) {
    if (sections.size() == sections.capacity()) sections.reserve(2 * sections.size() + 1);
}

/// Appends a new record whose storage `initialise(Section&)` takes. When that throws, the record is still
/// without storage and the vector as it was.
template <class Section, class Initialise>
Section* AppendNew(std::vector<Section*>& sections, Initialise initialise) {
    MakeRoom(sections);
    auto section = std::make_unique<Section>();
    initialise(*section);
    sections.push_back(section.release());
    return sections.back();
}

/// Takes the last record out of the vector, its storage unreleased.
template <class Section>
std::unique_ptr<Section> TakeLast(std::vector<Section*>& sections) {
    std::unique_ptr<Section> last(sections.back());
    sections.pop_back();
    return last;
}

/// Releases and deletes every section, the last one first. When the pool refuses one, the ones before it
/// stay.
template <class Section>
void ReleaseFromLast(std::vector<Section*>& sections) {
    while (!sections.empty())
        TakeLast(sections)->Release();
}

/// The same, the first one first. When the pool refuses one, the ones behind it stay, in reverse order.
template <class Section>
void ReleaseFromFirst(std::vector<Section*>& sections) {
    std::reverse(sections.begin(), sections.end());
    ReleaseFromLast(sections);
}

/// A vector of sections that lives as long as a call.
template <class Section>
struct TemporaryVector {
    TemporaryVector() = default;
    TemporaryVector(const TemporaryVector&) = delete;
    TemporaryVector& operator=(const TemporaryVector&) = delete;
    ~TemporaryVector() { ReleaseFromLast(Sections); }

    std::vector<Section*> Sections;
};

/// The sum of one number per section, `numberOf(section)`, in 32-bit arithmetic that wraps.
template <class Section, class NumberOf>
int SumOver(const std::vector<Section*>& sections, NumberOf numberOf) {
    std::uint32_t sum = 0;
    for (const Section* section : sections) {
        sum += static_cast<std::uint32_t>(numberOf(*section));
    }
    return static_cast<int>(sum);
}

/// The sum of `Count`, in 32-bit arithmetic.
template <class Section>
int TotalCount(const std::vector<Section*>& sections) {
    return SumOver(sections, [](const Section& section) { return section.Count; });
}

/// One event of a vector: its section and its position there. `Holder` is null when there is no such event.
template <class Section>
struct EventPosition {
    Section* Holder = nullptr;
    int Offset = 0;
};

/// Finds global event `index`; there is none at a negative index and beyond the total.
template <class Section>
EventPosition<Section> FindEvent(const std::vector<Section*>& sections, int index) {
    if (index < 0) return {};
    for (Section* section : sections) {
        if (index < section->Count) return {section, index};
        index -= section->Count;
    }
    return {};
}

}  // namespace Orvane
