// Event vectors: reading, comparing and computing values.
#include <algorithm>
#include <cassert>

#include <orvane/OVEventSection.h>

#include "operations/event_kernels.h"
#include "operations/section_vectors.h"
#include "operations/value_range.h"

namespace Orvane {
namespace {

bool EqualSections(const EventSection& a, const EventSection& b) {
    if (a.Count != b.Count || a.SignalCount != b.SignalCount) return false;
    for (int s = 0; s < a.SignalCount; ++s) {
        if (!EqualColumns(a.Signals[s], b.Signals[s], a.Count)) return false;
    }
    return true;
}

}  // namespace

void OVEventSection::CheckVectorReuseFlag(std::vector<EventSection*>& a, std::vector<EventSection*>& b,
                                          std::vector<bool>& reuse) {
    reuse.clear();
    if (a.empty() || b.empty()) return;
    const EventSection& first = *a.front();
    for (int s = 0; s < first.SignalCount; ++s) {
        reuse.push_back(first.Signals[s] == b.front()->Signals[s]);
    }
}

int OVEventSection::CheckNoReuseCount(std::vector<EventSection*>& a, std::vector<EventSection*>& b) {
    std::vector<bool> reuse;
    CheckVectorReuseFlag(a, b, reuse);
    return static_cast<int>(std::count(reuse.begin(), reuse.end(), false));
}

long OVEventSection::GetTotalCount(std::vector<EventSection*>& sections) {
    return TotalCount(sections);
}

void OVEventSection::ClearVectorSection(std::vector<EventSection*>& sections) {
    for (EventSection* section : sections) {
        section->ClearData();
    }
}

float OVEventSection::GetFirstValue(std::vector<EventSection*>& sections, int signal) {
    return sections.empty() ? 0.0F : sections.front()->Signals[signal][0];
}

float OVEventSection::GetLastValue(std::vector<EventSection*>& sections, int signal) {
    const auto last = std::find_if(sections.rbegin(), sections.rend(),
                                   [](const EventSection* section) { return section->Count > 0; });
    return last == sections.rend() ? 0.0F : (*last)->Signals[signal][(*last)->Count - 1];
}

float OVEventSection::GetValue(std::vector<EventSection*>& sections, int signal, int index) {
    const auto [section, offset] = FindEvent(sections, index);
    return section == nullptr ? 0.0F : section->Signals[signal][offset];
}

void OVEventSection::SetCountLimit(std::vector<EventSection*>& sections, long limit) {
    long remaining = std::max(limit, 0L);
    for (EventSection* section : sections) {
        section->Count = static_cast<int>(std::min<long>(section->Count, remaining));
        remaining -= section->Count;
    }
}

void OVEventSection::GetValueMaxAndMin(std::vector<EventSection*>& sections, int signal, float& max,
                                       float& min) {
    FindValueRange(
        sections, [signal](const EventSection& section) { return section[signal]; }, max, min);
}

void OVEventSection::VectorEventSection_Multi_Matrix(std::vector<EventSection*>& source,
                                                     const OVMatrix& matrix,
                                                     std::vector<EventSection*>& dest) {
    if (source.empty()) return;
    const int signals = source.front()->SignalCount;
    const int total = TotalCount(source);
    SynchronousSignalValue(dest, total, signals);
    // A matrix that does not fit is refused as the product with an event would be.
    if (total > 0) static_cast<void>(OVMatrix(1, signals) * matrix);
    assert(matrix.GetColumnNum() >= signals);
    const OVMatrix tile(signals, TileEvents);
    for (std::size_t i = 0; i < std::min(source.size(), dest.size()); ++i) {
        assert(source[i]->Count <= dest[i]->Capacity);
        MultiplyEvents(source[i]->Signals, dest[i]->Signals, signals, source[i]->Count, matrix.GetData(),
                       matrix.GetColumnNum(), tile.GetData());
        dest[i]->Count = source[i]->Count;
    }
}

void OVEventSection::CalcWidthSignalValue(std::vector<EventSection*>& sections, int numerator,
                                          int denominator, int target, float scale) {
    for (EventSection* section : sections) {
        DivideColumns(section->Signals[numerator], section->Signals[denominator], section->Signals[target],
                      section->Count, scale);
    }
}

void OVEventSection::SignalValueAddValue(std::vector<EventSection*>& sections, int signal, float value) {
    for (EventSection* section : sections) {
        section->AddValue(signal, value);
    }
}

bool OVEventSection::CheckValueEqual(std::vector<EventSection*>& a, std::vector<EventSection*>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const EventSection* x, const EventSection* y) { return EqualSections(*x, *y); });
}

}  // namespace Orvane
