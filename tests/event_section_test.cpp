// Event vectors against a naive model, a vector of rows: growing, sharing, copying, extracting.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include <orvane/orvane.h>

#include "tests/support/awkward.h"
#include "tests/support/events.h"
#include "tests/support/exceptions.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/population.h"

namespace Orvane {
namespace {

using namespace Testing;

OVEventSection operations;

Rows NumberedRows(int count) {
    Rows rows;
    for (float value = 0; static_cast<int>(rows.size()) < count; ++value)
        rows.push_back({value, value + 0.25F, value + 0.5F});
    return rows;
}

Rows RandomRows(int count, int signals) {
    Rows rows;
    for (int i = 0; i < count; ++i)
        rows.push_back(RandomFloats(signals, static_cast<unsigned>(i)));
    return rows;
}

void ExpectBits(const Events& sections, const Rows& expected) {
    const Rows rows = RowsOf(sections);
    ASSERT_EQ(rows.size(), expected.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
        ASSERT_EQ(Bits(rows[i]), Bits(expected[i])) << i;
}

std::vector<int> CountsOf(const Events& sections) {
    std::vector<int> counts;
    for (const EventSection* section : sections)
        counts.push_back(section->Count);
    return counts;
}

/// A raw vector, its compensated twin, whose own columns are 1000 above the raw ones, and the raw model.
struct Pair {
    ~Pair() { operations.ReleaseVectorSection(Raw, Twin); }

    Rows Compensated(Rows rows, const std::vector<bool>& reuse) const {
        for (auto& row : rows)
            for (int s = 0; s < 3; ++s)
                if (!reuse[s]) row[s] += 1000.0F;
        return rows;
    }

    /// The values that come for shared columns are wrong, and must not get there.
    template <class... Limit>
    void Append(const Rows& rows, const std::vector<int>& cuts, Limit... limit) {
        OwnedEvents raw(rows, cuts);
        OwnedEvents twin(Compensated(rows, {false, false, false}), cuts);
        operations.AppendEventSection(raw.Sections, Raw, limit...);
        operations.AppendEventSectionCompensation(twin.Sections, Twin, Raw, Reuse, limit...);
        Model.insert(Model.end(), rows.begin(), rows.end());
    }

    /// Shares other columns, and computes the twin's own ones, as a host does.
    void Share(const std::vector<bool>& reuse) {
        Reuse = reuse;
        operations.SynchronousEventSectionCompensation(Twin, Raw, Reuse);
        for (std::size_t i = 0; i < Raw.size(); ++i) {
            for (int s = 0; s < 3; ++s) {
                if (Reuse[s]) continue;
                std::copy_n((*Raw[i])[s], Raw[i]->Count, (*Twin[i])[s]);
                Twin[i]->AddValue(s, 1000.0F);
            }
        }
    }

    Events Raw, Twin;
    Rows Model;
    std::vector<bool> Reuse{true, false, true};
};

TEST(EventVectors, AgreeWithRowsAfterRandomOperationsOnARawVectorAndItsTwin) {
    const SmallPool pool;
    Pair pair;
    std::mt19937 random(7);
    const auto draw = [&](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
    for (int step = 0; step < 400; ++step) {
        SCOPED_TRACE(step);
        const auto total = static_cast<int>(pair.Model.size());
        const int action = draw(8);
        if (action == 0) {
            pair.Share({draw(2) == 0, draw(2) == 0, draw(2) == 0});
        } else if (action == 1) {
            const int count = std::min(total, draw(2) == 0 ? draw(200) : 64);
            operations.RemoveEventSection(count, pair.Raw, pair.Twin);
            pair.Model.erase(pair.Model.begin(), pair.Model.begin() + count);
        } else if (action == 2) {
            const int limit = draw(total + 1);
            operations.SetCountLimit(pair.Raw, limit);
            operations.SetCountLimit(pair.Twin, limit);
            pair.Model.resize(static_cast<std::size_t>(limit));
        } else if (action < 5) {
            pair.Append(NumberedRows(draw(130)), {draw(2), 31, 32, 33}, draw(300));
        } else {
            pair.Append(NumberedRows(draw(130)), {draw(2), 31, 32, 33});
        }
        std::vector<bool> shared;
        operations.CheckVectorReuseFlag(pair.Raw, pair.Twin, shared);
        ASSERT_EQ(RowsOf(pair.Raw), pair.Model);
        ASSERT_EQ(RowsOf(pair.Twin), pair.Compensated(pair.Model, pair.Reuse));
        ASSERT_TRUE(pair.Raw.empty() || shared == pair.Reuse);
        ASSERT_EQ(operations.GetLastValue(pair.Raw, 1), pair.Model.empty() ? 0.0F : pair.Model.back()[1]);
        ASSERT_EQ(FindPoolFault(), "");
    }
}

TEST(EventVectors, AppendStartsASectionOfItsOwnUpToTheLimitAndPacksBeyondIt) {
    const SmallPool pool;
    for (const int limit : {39, 40}) {
        Pair pair;
        pair.Append(NumberedRows(40), {}, limit);
        pair.Append(NumberedRows(40), {}, limit);
        pair.Append(NumberedRows(40), {});
        EXPECT_EQ(CountsOf(pair.Raw), limit == 39 ? (std::vector{64, 56}) : (std::vector{40, 64, 16}));
        EXPECT_EQ(CountsOf(pair.Twin), CountsOf(pair.Raw));
        EXPECT_EQ(pair.Raw[1]->Index, limit == 39 ? 1 : 0);
        EXPECT_EQ(pair.Twin[1]->Index, 1);
        // A section that becomes empty is given up, except the last one.
        operations.RemoveEventSection(pair.Raw[0]->Count, pair.Raw, pair.Twin);
        EXPECT_EQ(CountsOf(pair.Raw), limit == 39 ? (std::vector{56}) : (std::vector{64, 16}));
        operations.RemoveEventSection(limit == 39 ? 56 : 80, pair.Raw, pair.Twin);
        EXPECT_EQ(CountsOf(pair.Raw), std::vector{0});
    }
}

TEST(EventVectors, NextSectionRenumbersReusesAndAppends) {
    const SmallPool pool;
    OwnedEvents sample(NumberedRows(100), {50});
    OwnedEvents other(NumberedRows(1));
    Events& sections = sample.Sections;
    sections[0]->Index = 5;
    EXPECT_EQ(operations.GetNextSection(sections, 3, nullptr), sections[0]);
    EXPECT_EQ(sections[0]->Index, 5);
    EXPECT_EQ(operations.GetNextSection(sections, 3, sections[0]), sections[1]);
    EXPECT_EQ(CountsOf(sections), (std::vector{0, 0}));
    EXPECT_EQ(operations.GetFirstValue(sections, 1), 0.25F);
    EXPECT_EQ(operations.GetNextSection(sections, 3, sections[1]), sections[2]);
    sections[2]->Index = 9;
    EXPECT_EQ(MessageOf<InvalidParameterException>(
                  [&] { operations.GetNextSection(sections, 3, other.Sections[0]); }),
              "The section object is not in vector.");
    EXPECT_EQ(sections[2]->Index, 2);
}

TEST(EventVectors, MakingReadyKeepsWhatFitsAndGivesTheRestUp) {
    const SmallPool pool;
    const struct {
        int Count, Signals, Kept, Sections;
    } cases[] = {{192, 3, 3, 3}, {64, 3, 3, 3}, {63, 3, 1, 1}, {193, 3, 0, 4}, {10, 2, 0, 1}};
    for (const auto& row : cases) {
        OwnedEvents sample(NumberedRows(150), {50, 50});
        const Events before = sample.Sections;
        operations.SynchronousSignalValue(sample.Sections, row.Count, row.Signals);
        EXPECT_EQ(CountsOf(sample.Sections), std::vector<int>(row.Sections, 0));
        EXPECT_EQ(sample.Sections.front()->SignalCount, row.Signals);
        EXPECT_TRUE(std::equal(before.begin(), before.begin() + row.Kept, sample.Sections.begin()));
        for (int i = row.Kept; i < 3; ++i)
            delete before[i];
    }
}

TEST(EventVectors, CopiesFromAGlobalPositionOn) {
    const SmallPool pool;
    const Rows rows = NumberedRows(180);
    OwnedEvents source(rows, {1, 31, 32, 0, 64});
    OwnedEvents dest;
    operations.NewEventSection(dest.Sections, 256, 3);
    for (const int start : {-1, 0, 1, 31, 32, 64, 127, 128, 179, 180}) {
        SCOPED_TRACE(start);
        const auto first = rows.begin() + std::max(start, 0);
        operations.ClearVectorSection(dest.Sections);
        operations.CopyEventSection(source.Sections, dest.Sections, start);
        EXPECT_EQ(RowsOf(dest.Sections), Rows(first, rows.end()));

        operations.ClearVectorSection(dest.Sections);
        const int copied = operations.CopyOneEventSection(source.Sections, *dest.Sections[0], start);
        const bool exists = start >= 0 && start < 180;
        EXPECT_EQ(copied > 0, exists);
        EXPECT_EQ(RowsOf(dest.Sections), Rows(first, first + copied));
        EXPECT_EQ(operations.GetValue(source.Sections, 1, start), exists ? (*first)[1] : 0.0F);
    }
    // Shared copies and views are the columns themselves.
    Events copy;
    std::vector<SignalSection*> views;
    operations.CopyEventSectionShareSignal(source.Sections, copy);
    operations.GetVectorSignalSection(copy, 1, views);
    views.back()->Values[views.back()->Count - 1] = -5.0F;
    EXPECT_EQ(operations.GetLastValue(source.Sections, 1), -5.0F);
    OVSignalSection().ReleaseVectorSectionShare(views);
    operations.ReleaseVectorSectionShare(copy);
    // The first part is not divided, so it must fit.
    dest.Sections[0]->Count = 40;
    EXPECT_EQ(MessageOf<InvalidMemoryException>(
                  [&] { operations.CopyEventSection(source.Sections, dest.Sections, 1); }),
              "CopyData out of array capacity.");
}

using EventKernels = OnEverySet<1024>;
INSTANTIATE_TEST_SUITE_P(EventVectors, EventKernels, ::testing::ValuesIn(AvailableInstructionSets()));

TEST_P(EventKernels, ExtractionPacksTheSelectedEventsInOrder) {
    const Rows rows = NumberedRows(2500);
    std::vector<int> signals{2, 0, 2, 1};
    OwnedEvents source(rows, {1, 31, 32, 33, 0, 64});
    for (const unsigned density : {0U, 1U, 4U, 7U, 8U}) {
        Gate gate(CountsOf(source.Sections), density, density);
        if (density == 4) gate.Sections[5]->SetFlag(0, 32, true);  // a full word before a mixed one
        Rows expected;
        for (const auto& row : gate.Passing(rows))
            expected.push_back({row[2], row[0], row[2], row[1]});
        OwnedEvents out;
        operations.ExtractEventSection(out.Sections, source.Sections, gate.Sections, signals);
        EXPECT_EQ(RowsOf(out.Sections), expected);
        EXPECT_EQ(out.Sections.size(), expected.size() / 1024 + 1);
    }
}

TEST_P(EventKernels, MatrixProductGivesTheBitsOfTheProductOfEveryRow) {
    for (const int signals : {1, 3, 4, 9}) {
        OVMatrix matrix(signals, signals);
        for (int i = 0; i < signals * signals; ++i)
            matrix.GetData()[i] = i % 5 == 0 ? 0.0 : std::sin(i);
        const Rows rows = RandomRows(1500, signals);
        Rows expected;
        for (const auto& row : rows) {
            std::vector<double> wide(row.begin(), row.end());
            const OVMatrix product = OVMatrix(wide.data(), 1, signals) * matrix;
            expected.emplace_back(product.GetData(), product.GetData() + signals);
        }
        OwnedEvents source(rows);
        OwnedEvents dest;
        operations.VectorEventSection_Multi_Matrix(source.Sections, matrix, dest.Sections);
        ExpectBits(dest.Sections, expected);

        // One section is made for the few events of two: the second is left out.
        OwnedEvents unpacked(Rows(rows.begin(), rows.begin() + 90), {70});
        OwnedEvents smaller;
        operations.VectorEventSection_Multi_Matrix(unpacked.Sections, matrix, smaller.Sections);
        EXPECT_EQ(CountsOf(smaller.Sections), (std::vector{70}));
    }
}

TEST_P(EventKernels, WidthIsTheScaledQuotientAlsoInPlaceAndOneOverZero) {
    for (const std::size_t target : {0U, 1U, 2U}) {
        Rows rows = RandomRows(1500, 3);
        OwnedEvents sample(rows);
        operations.CalcWidthSignalValue(sample.Sections, 0, 1, static_cast<int>(target), 1.7F);
        for (auto& row : rows)
            row[target] = row[1] == 0.0F ? 1.0F : row[0] / row[1] * 1.7F;
        ExpectBits(sample.Sections, rows);
    }
}

TEST(EventVectors, EqualityIsThatOfFloats) {
    const SmallPool pool;
    OwnedEvents a(Rows{{0.0F, 1.0F}}), negativeZero(Rows{{-0.0F, 1.0F}}),
        withNaN(Rows{{0.0F, std::nanf("")}});
    EXPECT_TRUE(operations.CheckValueEqual(a.Sections, negativeZero.Sections));
    EXPECT_FALSE(operations.CheckValueEqual(withNaN.Sections, withNaN.Sections));
}

TEST(EventVectors, ATwinWithoutARawSectionIsDroppedUnreleased) {
    const SmallPool pool;
    OwnedEvents raw(NumberedRows(65));
    Events twin;
    std::vector<bool> reuse{true, false, true};
    operations.SynchronousEventSectionCompensation(twin, raw.Sections, reuse);
    EventSection* const dropped = twin[1];
    Events firstOnly{raw.Sections[0]};
    operations.ReleaseVectorSectionCompensation(firstOnly, twin);
    EXPECT_TRUE(twin.empty());
    dropped->Release(*raw.Sections[1]);
    delete dropped;
}

TEST(EventVectors, AFailingPoolLosesNothingAndLeavesRecordsAsTheyWere) {
    std::vector<bool> reuse{true, false, false}, nothing(3, false);
    std::vector<int> map{-1, 1, -1}, signals{0, 2, 0};
    for (int form = 0; form < 9; ++form) {
        ForEachFailingAllocation([&] {
            OwnedEvents rows(NumberedRows(100));
            Gate all(CountsOf(rows.Sections), 0, 8);
            Pair pair;
            pair.Raw.swap(rows.Sections);
            Events &from = pair.Raw, &to = pair.Twin;
            EventSection record;
            try {
                if (form == 0) operations.AppendEventSection(from, to, 50);
                if (form == 1) operations.AppendEventSectionCompensation(from, to, from, reuse);
                if (form == 2) operations.SynchronousEventSectionCompensation(to, from, reuse);
                if (form == 2) operations.SynchronousEventSectionCompensation(to, from, nothing);
                if (form == 3) operations.VectorEventSection_Multi_Matrix(from, OVMatrix(3, 3), to);
                if (form == 4) operations.ExtractEventSection(to, from, all.Sections, signals);
                if (form == 5) operations.ExtractEventSection(to, from, map);
                if (form == 5) operations.ExtractEventSection(to, from, map);
                if (form == 6) record.Initial(*from[0], map);
                if (form == 7) record.Clone(*from[0]);
                if (form == 8) record.InsertSignal(0);
            } catch (OutOfMemoryException*) {
                EXPECT_TRUE(form != 5 || to.empty());
                EXPECT_EQ(record.Signals, nullptr);
                throw;
            }
            record.Release(*from[0]);
            if (form != 5) return;
            EXPECT_EQ(CountsOf(to), (std::vector{64, 36, 64, 36}));
            EXPECT_EQ(operations.CheckNoReuseCount(to, from), 2);
            operations.ReleaseVectorSection(to, map);
        });
    }
}

}  // namespace
}  // namespace Orvane
