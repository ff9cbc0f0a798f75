// FilterSection.
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <orvane/MemoryManage.h>
#include <orvane/Sections.h>

#include "sections/kernels.h"
#include "sections/release_storage.h"

namespace Orvane {
namespace {

std::uint32_t BitInWord(int i) {
    return std::uint32_t{1} << (static_cast<unsigned>(i) % 32);
}

bool CanCombine(const FilterSection& section, const FilterSection& other) {
    return &section != &other && section.Count == other.Count;
}

}  // namespace

bool FilterSection::Initial() {
    // Signed and unsigned views of a word may alias.
    Flags = reinterpret_cast<std::uint32_t*>(MemoryManage::NewBitArray());
    Capacity = MemoryManage::GetCapacity();
    return Flags != nullptr;
}

void FilterSection::Release() {
    TrueCount = 0;
    ReleaseStorage(*this, Flags,
                   [](std::uint32_t* p) { MemoryManage::FreeBitArray(reinterpret_cast<int*>(p)); });
}

void FilterSection::Copy(FilterSection& src) {
    assert(Flags != nullptr);
    BaseSection::Copy(src);
    TrueCount = src.TrueCount;
    std::memmove(Flags, src.Flags, static_cast<std::size_t>(src.Capacity / 8));
}

bool FilterSection::operator[](int i) const {
    return GetFlag(i);
}

bool FilterSection::GetFlag(int i) const {
    return (Flags[static_cast<unsigned>(i) / 32] & BitInWord(i)) != 0;
}

void FilterSection::SetFlag(int i, bool v) const {
    std::uint32_t& word = Flags[static_cast<unsigned>(i) / 32];
    word = v ? word | BitInWord(i) : word & ~BitInWord(i);
}

void FilterSection::SetFlag(int start, int count, bool v) {
    FillBits(Flags, start, count, v);
}

void FilterSection::SetAll(bool v) {
    std::memset(Flags, v ? 0xFF : 0x00, static_cast<std::size_t>(Capacity / 8));
}

void FilterSection::CalcTrueCount() {
    TrueCount = CountBits(Flags, Count);
}

int FilterSection::GetCountByTrueCount(int k) {
    if (k < 1) return 0;
    const int prefix = PrefixWithSetBits(Flags, Count, k);
    if (prefix > 0) return prefix;
    CalcTrueCount();
    return Count;
}

void FilterSection::And(FilterSection& other) const {
    if (CanCombine(*this, other)) AndWords(Flags, other.Flags, WordsFor(Count));
}

void FilterSection::Or(FilterSection& other) const {
    if (CanCombine(*this, other)) OrWords(Flags, other.Flags, WordsFor(Count));
}

void FilterSection::Not() const {
    // Deliberate: the bits above `Count` in the last word are inverted too.
    NotWords(Flags, WordsFor(Count));
}

}  // namespace Orvane
