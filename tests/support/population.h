// A population under test: values in signal sections cut at awkward places, with a random gate beside them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include <orvane/MemoryManage.h>
#include <orvane/OVFilterSection.h>
#include <orvane/OVSignalSection.h>

namespace Orvane::Testing {

using Floats = std::vector<float>;
using Signals = std::vector<SignalSection*>;
using Filters = std::vector<FilterSection*>;

inline Floats ValuesOf(const Signals& sections) {
    Floats values;
    for (const SignalSection* section : sections)
        values.insert(values.end(), section->Values, section->Values + section->Count);
    return values;
}

/// Owns a vector that an operation fills.
struct OwnedSignals {
    OwnedSignals() = default;
    OwnedSignals(const OwnedSignals&) = delete;
    OwnedSignals& operator=(const OwnedSignals&) = delete;
    ~OwnedSignals() { OVSignalSection().ReleaseVectorSection(Sections); }

    Floats Values() const { return ValuesOf(Sections); }
    Signals Sections;
};

/// Owns sections with these values, cut at 1 | 31 | 32 | 33 | nothing and then as `Capacity` allows; or
/// packed.
struct Sample : OwnedSignals {
    enum class Cut { Awkward, Packed };

    explicit Sample(const Floats& values, Cut cut = Cut::Awkward) {
        const int capacity = MemoryManage::GetCapacity();
        std::vector<int> sizes;
        if (cut == Cut::Awkward) sizes = {1, 31, 32, 33, 0};
        std::size_t next = 0;
        for (std::size_t i = 0; next < values.size(); ++i) {
            auto* section = new SignalSection;
            Sections.push_back(section);
            section->Initial();
            const int size = i < sizes.size() ? std::min(sizes[i], capacity) : capacity;
            section->Count = static_cast<int>(std::min<std::size_t>(size, values.size() - next));
            std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(next), section->Count, section->Values);
            next += static_cast<std::size_t>(section->Count);
        }
    }
};

/// Owns a random gate over a population, `density` of 8 set, with arbitrary bits above every `Count`.
struct Gate {
    explicit Gate(Signals& sections, unsigned seed = 1, unsigned density = 5) {
        OVFilterSection().SynchronousVectorSection(Sections, sections);
        std::mt19937 random(seed);
        for (FilterSection* section : Sections)
            for (int i = 0; i < section->Capacity; ++i)
                section->SetFlag(i, random() % 8 < density);
    }
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    ~Gate() { OVFilterSection().ReleaseVectorSection(Sections); }

    Floats Passing(const Signals& sections) const {
        Floats values;
        for (std::size_t s = 0; s < sections.size(); ++s)
            for (int i = 0; i < sections[s]->Count; ++i)
                if (Sections[s]->GetFlag(i)) values.push_back(sections[s]->Values[i]);
        return values;
    }
    Filters Sections;
};

/// The values as comparable bits; every NaN is the same.
inline std::vector<std::uint32_t> Bits(const Floats& values) {
    std::vector<std::uint32_t> bits;
    for (const float value : values)
        bits.push_back(std::isnan(value) ? 0x7FC00000U : std::bit_cast<std::uint32_t>(value));
    return bits;
}

inline std::vector<std::uint32_t> SortedBits(const Floats& values) {
    std::vector<std::uint32_t> bits = Bits(values);
    std::sort(bits.begin(), bits.end());
    return bits;
}

}  // namespace Orvane::Testing
