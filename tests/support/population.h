// A population under test: values in signal sections cut at awkward places, with a random gate beside them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include <orvane/orvane.h>

namespace Orvane::Testing {

using Counts = std::vector<int>;
using Floats = std::vector<float>;
using Signals = std::vector<SignalSection*>;
using Filters = std::vector<FilterSection*>;

inline Floats ValuesOf(const Signals& sections) {
    Floats values;
    for (const SignalSection* section : sections)
        values.insert(values.end(), section->Values, section->Values + section->Count);
    return values;
}

/// Owns a vector that the operations over its kind of sections fill.
template <class Operations, class Section>
struct Owned {
    Owned() = default;
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    ~Owned() { Operations().ReleaseVectorSection(Sections); }

    std::vector<Section*> Sections;
};
using OwnedModels = Owned<OVModelSection, ModelSection>;
using OwnedCounts = Owned<OVCountSection, CountSection>;

struct OwnedSignals : Owned<OVSignalSection, SignalSection> {
    Floats Values() const { return ValuesOf(Sections); }
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
            section->Count = std::min(size, static_cast<int>(values.size() - next));
            std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(next), section->Count, section->Values);
            next += static_cast<std::size_t>(section->Count);
        }
    }
};

/// Owns a filter vector with random bits, `density` of 8 set, above every `Count` too.
struct Gate : Owned<OVFilterSection, FilterSection> {
    Gate() = default;
    explicit Gate(Counts counts, unsigned seed = 0, unsigned density = 4) {
        OVFilterSection().SynchronousVectorSection(Sections, counts);
        Randomise(seed, density);
    }
    explicit Gate(Signals& sections, unsigned seed = 1, unsigned density = 5) {
        OVFilterSection().SynchronousVectorSection(Sections, sections);
        Randomise(seed, density);
    }

    /// The bits of the events of all sections in order, or all bits that there is storage for.
    std::vector<bool> Events(int FilterSection::*length = &FilterSection::Count) const {
        std::vector<bool> bits;
        for (const FilterSection* section : Sections)
            for (int i = 0; i < section->*length; ++i)
                bits.push_back(section->GetFlag(i));
        return bits;
    }
    std::vector<bool> Storage() const { return Events(&FilterSection::Capacity); }
    Counts Fields(int FilterSection::*field) const {
        Counts values;
        for (const FilterSection* section : Sections)
            values.push_back(section->*field);
        return values;
    }
    Counts TrueCounts() const { return Fields(&FilterSection::TrueCount); }

    /// The values of the sample that the gate lets through.
    template <class Values>
    Values Passing(const Values& values) const {
        const std::vector<bool> events = Events();
        Values passing;
        for (std::size_t i = 0; i < events.size(); ++i)
            if (events[i]) passing.push_back(values[i]);
        return passing;
    }

private:
    void Randomise(unsigned seed, unsigned density) {
        std::mt19937 random(seed);
        for (FilterSection* section : Sections) {
            for (int i = 0; i < section->Capacity; ++i)
                section->SetFlag(i, random() % 8 < density);
            section->CalcTrueCount();
        }
    }
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
