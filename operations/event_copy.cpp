// Event vectors: copies, views and extracts.
#include <algorithm>

#include <orvane/Exceptions.h>
#include <orvane/OVEventSection.h>

#include "operations/event_kernels.h"
#include "operations/section_vectors.h"
#include "sections/kernels.h"

namespace Orvane {
namespace {

/// Copies a whole section to dest[position] and, where that becomes full, to the one behind it. Returns the
/// position of the last one written.
std::size_t CopyWhole(EventSection& from, std::vector<EventSection*>& dest, std::size_t position) {
    EventSection* to = dest[position];
    const int fitting = std::min(to->Capacity - to->Count, from.Count);
    to->CopyData(from, 0, to->Count, fitting);
    if (fitting == from.Count) return position;
    to = dest[++position];
    to->CopyData(from, fitting, to->Count, from.Count - fitting);
    return position;
}

/// Copies the selected ones of the events `begin` to `end - 1` behind the events of `packed`, whose column t
/// takes signal signals[t].
void CopySelectedEvents(const EventSection& from, const std::uint32_t* select, int begin, int end,
                        const std::vector<int>& signals, const EventSection& packed) {
    for (std::size_t t = 0; t < signals.size(); ++t) {
        CopySelected(select, from.Signals[signals[t]], begin, end, packed.Signals[t] + packed.Count);
    }
}

}  // namespace

void OVEventSection::GetVectorSignalSection(std::vector<EventSection*>& sections, int signal,
                                            std::vector<SignalSection*>& out) {
    for (EventSection* section : sections) {
        MakeRoom(out);
        out.push_back(section->GetSignalSection(signal));
    }
}

void OVEventSection::CopyEventSection(std::vector<EventSection*>& source, std::vector<EventSection*>& dest,
                                      int start) {
    std::size_t position = 0;
    int before = 0;
    for (EventSection* from : source) {
        const int end = before + from->Count;
        if (end > start && before > start) {
            position = CopyWhole(*from, dest, position);
        } else if (end > start) {
            // Deliberate: this part is never divided.
            dest[position]->CopyData(*from, start - before, dest[position]->Count, end - start);
        }
        before = end;
    }
}

int OVEventSection::CopyOneEventSection(std::vector<EventSection*>& source, EventSection& out, int start) {
    out.Count = 0;
    const auto [section, offset] = FindEvent(source, start);
    if (section != nullptr) out.CopyData(*section, offset, 0, section->Count - offset);
    return out.Count;
}

void OVEventSection::CopyEventSectionShareSignal(std::vector<EventSection*>& source,
                                                 std::vector<EventSection*>& dest) {
    while (!dest.empty())
        TakeLast(dest);
    for (EventSection* from : source) {
        AppendNew(dest, [from](EventSection& section) { section.CopyShareSignal(*from); });
    }
}

bool OVEventSection::InitVectorEventSectionData(std::vector<EventSection*>& out,
                                                std::vector<EventSection*>& source, std::vector<int>& map) {
    try {
        for (EventSection* from : source) {
            AppendNew(out, [&](EventSection& section) { section.Initial(*from, map); })->Count = from->Count;
        }
    } catch (OutOfMemoryException*) {
        // Deliberate: an incomplete result is worth nothing, and `out` holds nothing else.
        ReleaseVectorSection(out, map);
        throw;
    }
    return true;
}

void OVEventSection::ExtractEventSection(std::vector<EventSection*>& out, std::vector<EventSection*>& source,
                                         std::vector<int>& map) {
    InitVectorEventSectionData(out, source, map);
}

void OVEventSection::ExtractEventSection(std::vector<EventSection*>& out, std::vector<EventSection*>& source,
                                         std::vector<FilterSection*>& filter, std::vector<int>& signals) {
    const auto start = [&] {
        return AppendNew(out, [&](EventSection& added) { added.Initial(static_cast<int>(signals.size())); });
    };
    EventSection* packed = start();
    for (std::size_t i = 0; i < source.size(); ++i) {
        const EventSection& from = *source[i];
        const std::uint32_t* select = filter[i]->Flags;
        const int selected = CountBits(select, from.Count);
        for (int done = 0, begin = 0; done < selected;) {
            const int fitting = std::min(selected - done, packed->Capacity - packed->Count);
            done += fitting;
            const int end = PrefixWithSetBits(select, from.Count, done);
            CopySelectedEvents(from, select, begin, end, signals, *packed);
            packed->Count += fitting;
            begin = end;
            if (packed->Count == packed->Capacity) packed = start();
        }
    }
}

}  // namespace Orvane
