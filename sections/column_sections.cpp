// The section header, and the records with one piece of storage that are not filters.
#include <algorithm>

#include <orvane/MemoryManage.h>
#include <orvane/Sections.h>

#include "sections/kernels.h"
#include "sections/release_storage.h"

namespace Orvane {

void BaseSection::Copy(BaseSection& src) {
    *this = src;
}

void BaseSection::ClearData() {
    Count = 0;
    Tag1 = 0;
    Tag2 = 0;
}

void BaseSection::Init() {
    *this = BaseSection();
}

bool SignalSection::Initial() {
    Values = MemoryManage::NewFloatArray();
    Capacity = MemoryManage::GetCapacity();
    return Values != nullptr;
}

void SignalSection::Release() {
    ReleaseStorage(*this, Values, MemoryManage::FreeFloatArray);
}

void SignalSection::Clone(SignalSection& src) {
    Values = MemoryManage::NewFloatArrayValue(src.Values);
    Copy(src);
}

bool ModelSection::Initial() {
    // Signed and unsigned views of a short may alias.
    Values = reinterpret_cast<unsigned short*>(MemoryManage::NewShortArray());
    Capacity = MemoryManage::GetCapacity();
    return Values != nullptr;
}

void ModelSection::Release() {
    ReleaseStorage(*this, Values,
                   [](unsigned short* p) { MemoryManage::FreeShortArray(reinterpret_cast<short*>(p)); });
}

unsigned short& ModelSection::operator[](int i) const {
    return Values[i];
}

bool CountSection::Initial() {
    Counts = MemoryManage::NewIntArray();
    Capacity = MemoryManage::GetCapacityInt();
    Count = Capacity;
    std::fill_n(Counts, Count, 0);
    TotalCount = 0;
    return Counts != nullptr;
}

void CountSection::Release() {
    TotalCount = 0;
    ReleaseStorage(*this, Counts, MemoryManage::FreeIntArray);
}

int& CountSection::operator[](int i) const {
    return Counts[i];
}

void CountSection::CalcTotalCount() {
    TotalCount = SumCounters(Counts, Count);
}

void CountSection::DivValue(int d) const {
    ScaleCounters(Counts, Count, 1.0 / d);
}

bool SegmentSection::Initial() {
    Data = MemoryManage::NewSegment();
    Capacity = MemoryManage::GetSegmentSize();
    return Data != nullptr;
}

void SegmentSection::Release() {
    ReleaseStorage(*this, Data, MemoryManage::FreeSegment);
}

}  // namespace Orvane
