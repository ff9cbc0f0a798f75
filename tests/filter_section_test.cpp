// Filters and vectors of them against models in std::vector<bool>, cut at awkward places, with arbitrary bits
// above every Count.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include <orvane/OVFilterSection.h>

#include "support/instruction_sets.h"
#include "support/population.h"

namespace Orvane::Testing {
namespace {

using EventBits = std::vector<bool>;

OVFilterSection operations;
const Counts Cuts{1, 31, 32, 33, 0, 1500, 13};
constexpr int Total = 1610;

long CountSet(const EventBits& bits) {
    return static_cast<long>(std::count(bits.begin(), bits.end(), true));
}

using FilterVectors = OnEverySet<4096>;
INSTANTIATE_TEST_SUITE_P(Sets, FilterVectors, ::testing::ValuesIn(AvailableInstructionSets()));

/// An operation that combines `real`, perhaps inverted and within `parent`, into `dest`.
struct Combination {
    bool (OVFilterSection::*WithoutParent)(Filters&, Filters&);
    bool (OVFilterSection::*WithParent)(Filters&, Filters&, Filters&);
    bool Inverts;
    char Into;

    bool Run(Gate& dest, Gate& real, Gate& parent) const {
        return WithParent != nullptr ? (operations.*WithParent)(dest.Sections, real.Sections, parent.Sections)
                                     : (operations.*WithoutParent)(dest.Sections, real.Sections);
    }
    /// Inversion and combination reach to the end of the last word with events, and combination needs equal
    /// counts.
    bool Model(const FilterSection& dest, const FilterSection& real, const FilterSection& parent,
               int i) const {
        const bool covered = i < (real.Count + 31) / 32 * 32;
        bool bit = real[i] != (Inverts && covered);
        if (WithParent != nullptr && covered && parent.Count == real.Count) bit = bit && parent[i];
        if (Into == '=') return bit;
        if (!covered || dest.Count != real.Count) return dest[i];
        return Into == '&' ? dest[i] && bit : dest[i] || bit;
    }
};
using I = OVFilterSection;
const Combination Combinations[] = {
    {&I::And, nullptr, false, '&'},
    {&I::Or, nullptr, false, '|'},
    {nullptr, &I::Composite_Comp_Copy_RealAndParent, false, '='},
    {nullptr, &I::Composite_Comp_Copy_NotRealAndParent, true, '='},
    {&I::Composite_Comp_Copy_NotReal, nullptr, true, '='},
    {nullptr, &I::Composite_Comp_Or_RealAndParent, false, '|'},
    {nullptr, &I::Composite_Comp_Or_NotRealAndParent, true, '|'},
    {nullptr, &I::Composite_Comp_And_NotRealAndParent, true, '&'},
    {&I::Composite_Comp_Or_NotReal, nullptr, true, '|'},
    {&I::Composite_Comp_And_NotReal, nullptr, true, '&'},
};

TEST_P(FilterVectors, CombineBitsAndKeepHeadersAndStoredCounts) {
    const Counts destCuts{1, 31, 32, 30, 0, 1500, 13};
    for (const Combination& form : Combinations) {
        SCOPED_TRACE(&form - Combinations);
        Gate dest(destCuts, 1), real(Cuts, 2), parent({1, 31, 30, 33, 0, 1500, 12}, 3), shorter({1}, 4);
        EventBits expected;
        for (std::size_t s = 0; s < Cuts.size(); ++s)
            for (int i = 0; i < 4096; ++i)
                expected.push_back(form.Model(*dest.Sections[s], *real.Sections[s], *parent.Sections[s], i));
        EXPECT_FALSE(form.Run(dest, shorter, parent));
        EXPECT_FALSE(form.WithParent != nullptr && form.Run(dest, real, shorter));
        const Counts stored = dest.TrueCounts();
        EXPECT_TRUE(form.Run(dest, real, parent));
        EXPECT_EQ(dest.Storage(), expected);
        EXPECT_EQ(dest.TrueCounts(), stored);
        EXPECT_EQ(dest.Fields(&FilterSection::Count), destCuts);
    }
}

TEST_P(FilterVectors, CopyTakesHeadersAndWholeBytesOnly) {
    Gate dest({64}, 1, 0), source({13}, 2, 8), longer({1, 1});
    source.Sections[0]->Tag1 = 7;
    EXPECT_FALSE(operations.Copy(dest.Sections, longer.Sections));
    EXPECT_TRUE(operations.Copy(dest.Sections, source.Sections));
    EXPECT_EQ(CountSet(dest.Storage()), 8);
    EXPECT_TRUE(dest.Sections[0]->GetFlag(7));
    EXPECT_EQ(dest.Sections[0]->Count, 13);
    EXPECT_EQ(dest.Sections[0]->TrueCount, 13);
    EXPECT_EQ(dest.Sections[0]->Tag1, 7);
}

TEST_P(FilterVectors, SelectAtEitherEnd) {
    for (const int n : {-1, 0, 1, 2, 33, 64, 65, Total - 1, Total, 2 * Total}) {
        SCOPED_TRACE(n);
        Gate first(Cuts, 1, 0), last(Cuts, 1, 0);
        operations.GetFilterSectionByCount(first.Sections, n);
        operations.GetFilterSectionByCountReverse(last.Sections, n);
        EventBits expected(Total, false);
        std::fill_n(expected.begin(), std::clamp(n, 0, Total), true);
        EXPECT_EQ(first.Events(), expected);
        EXPECT_EQ(last.Events(), EventBits(expected.rbegin(), expected.rend()));
        EXPECT_EQ(operations.GetTrueTotalCount(first.Sections), CountSet(expected));
        EXPECT_EQ(operations.GetTrueTotalCount(last.Sections), CountSet(expected));
    }
    // A section that is cut keeps what was set in it; one that is not reached is cleared.
    Gate cut({40, 5}, 1, 8);
    operations.GetFilterSectionByCount(cut.Sections, 3);
    EXPECT_EQ(cut.TrueCounts(), (Counts{3, 0}));
    EXPECT_EQ(CountSet(cut.Events()), 40);
}

TEST_P(FilterVectors, SelectAFractionEvenlySpacedInFloat) {
    for (const float fraction : {0.0F, 0.1F, 0.25F, 0.3F, 0.5F, 0.999F, 1.0F, 2.0F}) {
        Gate gate(Cuts, 1, 0);
        operations.GetFilterSectionByPercent(gate.Sections, fraction);
        EventBits expected;
        float position = 0;
        int left = static_cast<int>(Total * fraction);
        for (const int count : Cuts) {
            EventBits section(count);
            for (; position < static_cast<float>(count) && left > 0; --left, position += 1.0F / fraction)
                section[static_cast<std::size_t>(position)] = true;
            position -= static_cast<float>(count);
            expected.insert(expected.end(), section.begin(), section.end());
        }
        EXPECT_EQ(gate.Events(), expected) << fraction;
        if (fraction > 1) continue;  // an event may then count twice
        EXPECT_EQ(operations.GetTrueTotalCount(gate.Sections), CountSet(expected));
    }
}

TEST_P(FilterVectors, NumberEventsByTheLastGateThatContainsThem) {
    using Numbers = std::vector<unsigned short>;
    constexpr unsigned short Untouched = 4711;
    for (const int gateCount : {0, 1, 2, 3, 17, 130}) {
        for (const int count : {0, 1, 33, 511, 512, 1500, 4096}) {
            SCOPED_TRACE(::testing::Message() << gateCount << " gates, " << count << " events");
            Gate base({count}, 1), gates(Counts(gateCount, count), 2, 1);
            FilterSection* const population = base.Sections[0];
            const int numbered = gateCount == 0 ? 0 : count;
            Numbers all(4096, 0), inBase(4096, Untouched), packed;
            for (int i = 0; i < count; ++i) {
                int number = gateCount;
                while (number > 0 && !gates.Sections[number - 1]->GetFlag(i))
                    --number;
                const bool isIn = population->GetFlag(i);
                if (isIn) packed.push_back(static_cast<unsigned short>(number));
                if (i >= numbered) continue;
                all[i] = static_cast<unsigned short>(number);
                inBase[i] = isIn && number > 0 ? all[i] : 65535;
            }
            ModelSection out;
            out.Initial();
            operations.CalcFilterIndex(gates.Sections, &out);
            EXPECT_EQ(out.Count, numbered);
            EXPECT_EQ(Numbers(out.Values, out.Values + 4096), all);
            std::fill_n(out.Values, 4096, Untouched);
            operations.CalcFilterIndex(population, gates.Sections, &out);
            EXPECT_EQ(out.Count, numbered);
            EXPECT_EQ(Numbers(out.Values, out.Values + 4096), inBase);
            operations.CalcFilterIndexInTrue(population, gates.Sections, &out);
            EXPECT_EQ(Numbers(out.Values, out.Values + out.Count), packed);
            out.Release();
        }
    }
}

TEST_P(FilterVectors, PackTheGatesOfAPopulation) {
    const Counts counts{4096, 1, 0, 4096, 33, 4062, 4096};  // the whole ends at a border
    for (const unsigned density : {0U, 1U, 4U, 8U}) {
        Gate base(counts, 1, density), first(counts, 2), second(counts, 3, 7), packed({5}, 4), made;
        std::vector<Filters*> gates{&first.Sections, &second.Sections};
        std::vector<Filters*> outputs{&packed.Sections, &made.Sections};
        operations.ExtratTrueFilter(base.Sections, gates, outputs);
        for (const auto& [gate, out] : {std::pair(&first, &packed), std::pair(&second, &made)}) {
            const EventBits expected = base.Passing(gate->Events());
            EXPECT_EQ(out->Events(), expected);
            EXPECT_EQ(operations.GetTrueTotalCount(out->Sections), CountSet(expected));
            Counts full(expected.size() / 4096 + 1, 4096);
            full.back() = static_cast<int>(expected.size() % 4096);
            EXPECT_EQ(out->Fields(&FilterSection::Count), full);
        }
    }
}

/// Sections so large that every stretch of the counting kernels occurs.
using LargeFilters = OnEverySet<65536>;
INSTANTIATE_TEST_SUITE_P(Sets, LargeFilters, ::testing::ValuesIn(AvailableInstructionSets()));

TEST_P(LargeFilters, CountReadAndFindEvents) {
    for (const unsigned density : {0U, 1U, 8U}) {
        SCOPED_TRACE(density);
        Gate a({1, 31, 32, 33, 0, 3079, 6175, 30784, 65535, 65536, 13}, 1, density);
        Gate b({1, 31, 30, 64, 5, 3072, 6175, 30790, 65535, 65536}, 2, 5);
        const EventBits events = a.Events();
        const auto total = static_cast<int>(events.size());
        EXPECT_EQ(operations.GetTotalCount(a.Sections), total);
        EXPECT_EQ(operations.GetTrueTotalCount(a.Sections), CountSet(events));
        int k = 0;
        for (int i = 0; i < total; ++i) {
            ASSERT_EQ(operations.GetValue(a.Sections, i), events[i]) << i;
            if (events[i]) ++k;
            if (!events[i] || (k > 200 && k % 8 != 0)) continue;
            ASSERT_EQ(operations.GetCountByTrueCount(a.Sections, k), i + 1);
        }
        EXPECT_FALSE(operations.GetValue(a.Sections, -1) || operations.GetValue(a.Sections, total));
        EXPECT_EQ(operations.GetCountByTrueCount(a.Sections, 0), 0);
        EXPECT_EQ(operations.GetCountByTrueCount(a.Sections, k + 1), total);
        for (FilterSection* section : a.Sections)
            EXPECT_EQ(section->GetCountByTrueCount(section->TrueCount + 1), section->Count);

        long common = 0;
        const int truth = std::exchange(b.Sections[1]->TrueCount, 0);
        for (const int s : {0, 2, 3, 4, 5, 6, 7, 8, 9})
            for (int i = 0; i < std::min(a.Sections[s]->Count, b.Sections[s]->Count); ++i)
                common += (*a.Sections[s])[i] && (*b.Sections[s])[i];
        EXPECT_EQ(operations.GetTrueTotalCount(a.Sections, b.Sections), common);
        EXPECT_EQ(operations.GetTrueTotalCount(b.Sections, a.Sections), common);
        EXPECT_EQ(operations.CalcListSectionTrueCount(b.Sections), CountSet(b.Events()));
        EXPECT_EQ(b.Sections[1]->TrueCount, 0);

        // A count that promised too much ends the search, and is corrected only when the bits run out.
        b.Sections[1]->TrueCount = 1000;
        EXPECT_LT(operations.GetCountByTrueCount(b.Sections, 2), 32);
        EXPECT_EQ(operations.GetCountByTrueCount(b.Sections, 500), 32);
        EXPECT_EQ(b.Sections[1]->TrueCount, truth);
    }
}

TEST(FilterSections, RangesAndCopiesLeaveTheOtherBitsAlone) {
    const SmallPool pool(160);
    const Gate gate({100}, 1), other({0});
    FilterSection &filter = *gate.Sections[0], &copy = *other.Sections[0];
    EventBits model = gate.Storage();
    for (const int start : {0, 1, 31, 32, 33, 64}) {
        for (const int count : {-1, 0, 1, 30, 31, 32, 33, 63, 64, 65, 96}) {
            const bool value = (start + count) % 3 != 0;
            filter.SetFlag(start, count, value);
            std::fill_n(model.begin() + start, std::max(count, 0), value);
            ASSERT_EQ(gate.Storage(), model) << start << ", " << count;
        }
    }
    copy.Copy(filter);
    EXPECT_EQ(other.Storage(), model);
    EXPECT_EQ(copy.Count, 100);
    copy.SetAll(true);
    EXPECT_EQ(other.Storage(), EventBits(160, true));
}

TEST(FilterSections, AreMadeParallelAndCleared) {
    const SmallPool pool;
    Gate gate({1, 2, 3}, 1, 8);
    Counts fewer{64, 5}, more{7, 0, 64, 33};
    operations.SynchronousVectorSection(gate.Sections, fewer);
    EXPECT_EQ(gate.Fields(&FilterSection::Count), fewer);
    EXPECT_EQ(gate.TrueCounts(), (Counts{1, 2})) << "kept until they are counted again";
    operations.SetAllTrue(gate.Sections);
    const Gate other(more);
    Filters parallel = other.Sections;
    operations.SynchronousVectorSection(gate.Sections, parallel);
    EXPECT_EQ(gate.Fields(&FilterSection::Count), more);
    EXPECT_EQ(CountSet(gate.Storage()), 0);
    std::vector<EventSection> events(3);
    std::vector<EventSection*> sample{&events[0], &events[1], &events[2]};
    events[2].Count = 9;
    operations.SynchronousVectorSection(gate.Sections, sample);
    EXPECT_EQ(gate.Fields(&FilterSection::Count), (Counts{0, 0, 9}));
}

TEST(FilterSections, GiveBackWhatTheyTookWhenThePoolIsExhausted) {
    ForEachFailingAllocation([] {
        Gate base({64, 64}, 1, 8), gate({64, 64}, 2), out;
        std::vector<Filters*> gates{&gate.Sections}, outputs{&out.Sections};
        operations.ExtratTrueFilter(base.Sections, gates, outputs);
        operations.Composite_Comp_Copy_NotRealAndParent(gate.Sections, base.Sections, base.Sections);
        Counts longer(33, 1);  // a block holds 32
        try {
            operations.SynchronousVectorSection(base.Sections, longer);
        } catch (OutOfMemoryException*) {
            EXPECT_EQ(base.Sections.front()->Count, 64);
            EXPECT_EQ(base.Sections.front()->Flags[0], ~0U);
            throw;
        }
    });
}

}  // namespace
}  // namespace Orvane::Testing
