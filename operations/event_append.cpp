// Event vectors: taking storage and growing.
#include <algorithm>
#include <cassert>
#include <cstdint>
#include <optional>
#include <utility>

#include <orvane/MemoryManage.h>
#include <orvane/OVEventSection.h>

#include "operations/next_section.h"
#include "operations/section_vectors.h"

namespace Orvane {
namespace {

/// How the sections of a vector that owns its columns are made and filled.
struct PlainSections {
    int SignalCount;

    void Initial(EventSection& section, std::size_t /*position*/) const { section.Initial(SignalCount); }

    void Copy(EventSection& from, int begin, EventSection& to, int count) const {
        to.CopyData(from, begin, to.Count, count);
    }

    // Deliberate: the section that an append below the limit begins is numbered 0 wherever it stands.
    int IndexBelowLimit(int /*position*/) const { return 0; }
};

/// How the sections of a compensated twin are made and filled.
struct TwinSections {
    std::vector<EventSection*>& Reference;
    std::vector<bool>& Reuse;

    void Initial(EventSection& section, std::size_t position) const {
        assert(position < Reference.size());
        section.Initial(*Reference[position], Reuse);
    }

    void Copy(EventSection& from, int begin, EventSection& to, int count) const {
        to.CopyData(from, begin, to.Count, count, Reuse);
    }

    int IndexBelowLimit(int position) const { return position; }
};

template <class Sections>
EventSection& StartSection(std::vector<EventSection*>& dest, const Sections& sections) {
    const std::size_t position = dest.size();
    EventSection& section = *AppendNew(dest, [&](EventSection& added) { sections.Initial(added, position); });
    section.Index = static_cast<int>(position);
    return section;
}

/// The section that the next source section goes into first.
template <class Sections>
EventSection& TargetSection(std::vector<EventSection*>& dest, const Sections& sections,
                            std::optional<int> limit) {
    if (dest.empty()) return StartSection(dest, sections);
    if (!limit || TotalCount(dest) > *limit) return *dest.back();
    EventSection& section = StartSection(dest, sections);
    section.Index = sections.IndexBelowLimit(section.Index);
    return section;
}

template <class Sections>
void AppendSections(std::vector<EventSection*>& source, std::vector<EventSection*>& dest,
                    const Sections& sections, std::optional<int> limit) {
    assert(&source != &dest);
    for (EventSection* from : source) {
        EventSection& target = TargetSection(dest, sections, limit);
        const int fitting = std::min(target.Capacity - target.Count, from->Count);
        if (fitting > 0) sections.Copy(*from, 0, target, fitting);
        if (fitting == from->Count) continue;
        sections.Copy(*from, fitting, StartSection(dest, sections), from->Count - fitting);
    }
}

/// Whether the sections can receive `count` events of `signalCount` signals.
bool Fits(const std::vector<EventSection*>& sections, int count, int signalCount) {
    std::int64_t capacity = 0;
    for (const EventSection* section : sections) {
        if (section->SignalCount != signalCount) return false;
        capacity += section->Capacity;
    }
    return capacity >= count;
}

/// Deliberate: the record itself is not deleted; hosts may still hold it.
void GiveUpLast(std::vector<EventSection*>& sections) {
    sections.back()->Release();
    sections.pop_back();
}

/// Makes column `signal` of a twin shared or its own. A new column holds no values.
void SetShared(EventSection& twin, EventSection& raw, int signal, bool shared) {
    float*& column = twin.Signals[signal];
    float* const rawColumn = raw.Signals[signal];
    if (shared && column != rawColumn) {
        MemoryManage::FreeFloatArray(std::exchange(column, rawColumn));
    } else if (!shared && column == rawColumn) {
        column = MemoryManage::NewFloatArray();
    }
}

}  // namespace

bool OVEventSection::SynchronousEventSectionCompensation(std::vector<EventSection*>& compensated,
                                                         std::vector<EventSection*>& raw,
                                                         std::vector<bool>& reuse) {
    for (std::size_t i = compensated.size(); i < raw.size(); ++i) {
        AppendNew(compensated, [&](EventSection& section) { section.Initial(*raw[i], reuse); });
    }
    for (std::size_t i = 0; i < raw.size(); ++i) {
        compensated[i]->Count = raw[i]->Count;
        for (int s = 0; s < raw[i]->SignalCount; ++s) {
            SetShared(*compensated[i], *raw[i], s, reuse[static_cast<std::size_t>(s)]);
        }
    }
    return true;
}

bool OVEventSection::AppendEventSection(std::vector<EventSection*>& source, std::vector<EventSection*>& dest,
                                        int limit) {
    if (!source.empty()) AppendSections(source, dest, PlainSections{source.front()->SignalCount}, limit);
    return true;
}

bool OVEventSection::AppendEventSection(std::vector<EventSection*>& source,
                                        std::vector<EventSection*>& dest) {
    if (!source.empty()) AppendSections(source, dest, PlainSections{source.front()->SignalCount}, {});
    return true;
}

bool OVEventSection::AppendEventSectionCompensation(std::vector<EventSection*>& source,
                                                    std::vector<EventSection*>& dest,
                                                    std::vector<EventSection*>& reference,
                                                    std::vector<bool>& reuse, int limit) {
    AppendSections(source, dest, TwinSections{reference, reuse}, limit);
    return true;
}

bool OVEventSection::AppendEventSectionCompensation(std::vector<EventSection*>& source,
                                                    std::vector<EventSection*>& dest,
                                                    std::vector<EventSection*>& reference,
                                                    std::vector<bool>& reuse) {
    AppendSections(source, dest, TwinSections{reference, reuse}, {});
    return true;
}

void OVEventSection::SynchronousSignalValue(std::vector<EventSection*>& sections, int count,
                                            int signalCount) {
    if (sections.empty() || !Fits(sections, count, signalCount)) {
        while (!sections.empty())
            GiveUpLast(sections);
        NewEventSection(sections, count, signalCount);
        return;
    }
    if (count < MemoryManage::GetCapacity()) {
        while (sections.size() > 1)
            GiveUpLast(sections);
    }
    ClearVectorSection(sections);
}

void OVEventSection::NewEventSection(std::vector<EventSection*>& sections, int count, int signalCount) {
    for (std::int64_t room = 0; room < count;) {
        room += AppendNew(sections, [=](EventSection& section) { section.Initial(signalCount); })->Capacity;
    }
}

EventSection* OVEventSection::GetNextSection(std::vector<EventSection*>& sections, int signalCount,
                                             EventSection* current) {
    const auto initialise = [=](EventSection& section) { section.Initial(signalCount); };
    // Deliberate: the first section keeps its Index, unlike that of a signal vector.
    if (current == nullptr) return EmptySectionAt(sections, 0, initialise);
    return SectionBehind(sections, current, initialise);
}

}  // namespace Orvane
