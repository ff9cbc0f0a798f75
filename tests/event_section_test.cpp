// Event vectors against a naive model, a vector of rows: growing, sharing, copying, extracting.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>

#include <orvane/orvane.h>

#include "tests/support/awkward.h"
#include "tests/support/events.h"
#include "tests/support/exceptions.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"

namespace Orvane {
namespace {

using namespace Testing;

OVEventSection operations;

Rows NumberedRows(int count) {
    Rows rows;
    for (int i = 0; i < count; ++i) {
        const auto value = static_cast<float>(i);
        rows.push_back({value, value + 0.25F, value + 0.5F});
    }
    return rows;
}

Rows RandomRows(int count, int signals) {
    Rows rows;
    for (int i = 0; i < count; ++i)
        rows.push_back(RandomFloats(signals, static_cast<unsigned>(i)));
    return rows;
}

/// The same bits, or both NaN.
bool SameRows(const Rows& a, const Rows& b) {
    const auto same = [](float x, float y) {
        return (x == y && std::signbit(x) == std::signbit(y)) || (std::isnan(x) && std::isnan(y));
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](const auto& x, const auto& y) {
        return std::equal(x.begin(), x.end(), y.begin(), y.end(), same);
    });
}

std::vector<int> CountsOf(const Events& sections) {
    std::vector<int> counts;
    for (const EventSection* section : sections)
        counts.push_back(section->Count);
    return counts;
}

constexpr int NoLimit = -1;

/// A raw vector, its compensated twin, whose own columns are 1000 above the raw ones, and the raw model.
struct Pair {
    ~Pair() { operations.ReleaseVectorSection(Raw, Twin); }

    Rows Compensated(Rows rows) const {
        for (auto& row : rows) {
            for (std::size_t s = 0; s < 3; ++s)
                if (!Reuse[s]) row[s] += 1000.0F;
        }
        return rows;
    }

    void Append(const Rows& rows, const std::vector<int>& cuts, int limit) {
        OwnedEvents raw(rows, cuts);
        OwnedEvents twin(Compensated(rows), cuts);
        if (limit != NoLimit) {
            operations.AppendEventSection(raw.Sections, Raw, limit);
            operations.AppendEventSectionCompensation(twin.Sections, Twin, Raw, Reuse, limit);
        } else {
            operations.AppendEventSection(raw.Sections, Raw);
            operations.AppendEventSectionCompensation(twin.Sections, Twin, Raw, Reuse);
        }
        Model.insert(Model.end(), rows.begin(), rows.end());
    }

    /// Shares other columns, and computes the twin's own ones, as a host does.
    void Share(const std::vector<bool>& reuse) {
        Reuse = reuse;
        operations.SynchronousEventSectionCompensation(Twin, Raw, Reuse);
        for (std::size_t i = 0; i < Raw.size(); ++i) {
            for (int s = 0; s < 3; ++s) {
                if (Reuse[static_cast<std::size_t>(s)]) continue;
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
        } else {
            const int limit = draw(2) == 0 ? draw(300) : NoLimit;
            pair.Append(NumberedRows(draw(130)), {draw(2), 31, 32, 33}, limit);
        }
        std::vector<bool> shared;
        operations.CheckVectorReuseFlag(pair.Raw, pair.Twin, shared);
        ASSERT_EQ(RowsOf(pair.Raw), pair.Model);
        ASSERT_EQ(RowsOf(pair.Twin), pair.Compensated(pair.Model));
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
        EXPECT_EQ(CountsOf(pair.Raw), limit == 39 ? (std::vector{64, 16}) : (std::vector{40, 40}));
        EXPECT_EQ(CountsOf(pair.Twin), CountsOf(pair.Raw));
        EXPECT_EQ(pair.Raw[1]->Index, limit == 39 ? 1 : 0);
        EXPECT_EQ(pair.Twin[1]->Index, 1);
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
        int Count, Signals;
        std::size_t Kept, Sections;
    } cases[] = {{129, 3, 3, 3}, {64, 3, 3, 3}, {63, 3, 1, 1}, {193, 3, 0, 4}, {10, 2, 0, 1}};
    for (const auto& row : cases) {
        OwnedEvents sample(NumberedRows(150), {50, 50});
        const Events before = sample.Sections;
        operations.SynchronousSignalValue(sample.Sections, row.Count, row.Signals);
        EXPECT_EQ(CountsOf(sample.Sections), std::vector<int>(row.Sections, 0));
        EXPECT_EQ(sample.Sections.front()->SignalCount, row.Signals);
        std::for_each(before.begin() + static_cast<std::ptrdiff_t>(row.Kept), before.end(),
                      [](const EventSection* givenUp) { delete givenUp; });
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
                  [&] { operations.CopyEventSection(source.Sections, dest.Sections, 7); }),
              "CopyData out of array capacity.");
}

/// Filters parallel to an event vector. Bits behind the last event are set and must not matter.
struct Selection {
    Selection(Events& sections, const std::function<bool(int)>& isSelected) {
        OVFilterSection().SynchronousVectorSection(Filters, sections);
        for (int event = 0; FilterSection * filter : Filters) {
            filter->SetAll(true);
            for (int e = 0; e < filter->Count; ++e)
                filter->SetFlag(e, isSelected(event++));
        }
    }
    ~Selection() { OVFilterSection().ReleaseVectorSection(Filters); }
    std::vector<FilterSection*> Filters;
};

/// Every test runs once per instruction set.
class EventKernels : public ::testing::TestWithParam<InstructionSet> {
private:
    ScopedInstructionSet set_{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(EventVectors, EventKernels, ::testing::ValuesIn(AvailableInstructionSets()));

TEST_P(EventKernels, ExtractionPacksTheSelectedEventsInOrder) {
    const std::function<bool(int)> rules[] = {
        [](int) { return false; }, [](int) { return true; }, [](int e) { return e < 128; },
        [](int e) { return e >= 33 && e < 97; }, [](int e) { return std::cos(e * e) > 0.0; }};
    const Rows rows = NumberedRows(300);
    std::vector<int> signals{2, 0, 2, 1};
    const SmallPool pool;
    OwnedEvents source(rows, {1, 31, 32, 33, 0, 64});
    for (const auto& isSelected : rules) {
        Rows expected;
        for (const auto& row : rows)
            if (isSelected(static_cast<int>(row[0]))) expected.push_back({row[2], row[0], row[2], row[1]});
        Selection selection(source.Sections, isSelected);
        OwnedEvents out;
        operations.ExtractEventSection(out.Sections, source.Sections, selection.Filters, signals);
        EXPECT_EQ(RowsOf(out.Sections), expected);
        EXPECT_EQ(out.Sections.size(), expected.size() / 64 + 1);
    }
}

TEST_P(EventKernels, MatrixProductGivesTheBitsOfTheProductOfEveryRow) {
    for (const int signals : {1, 3, 4, 9}) {
        const SmallPool pool(160);
        OVMatrix matrix(signals, signals);
        for (int i = 0; i < signals * signals; ++i)
            matrix.GetData()[i] = i % 5 == 0 ? 0.0 : std::sin(i);
        const Rows rows = RandomRows(250, signals);
        Rows expected;
        for (const auto& row : rows) {
            std::vector<double> wide(row.begin(), row.end());
            const OVMatrix product = OVMatrix(wide.data(), 1, signals) * matrix;
            expected.emplace_back(product.GetData(), product.GetData() + signals);
        }
        OwnedEvents source(rows);
        OwnedEvents dest;
        operations.VectorEventSection_Multi_Matrix(source.Sections, matrix, dest.Sections);
        EXPECT_TRUE(SameRows(RowsOf(dest.Sections), expected));

        // One section is made for the few events of two: the second is left out.
        OwnedEvents unpacked(Rows(rows.begin(), rows.begin() + 90), {70});
        OwnedEvents smaller;
        operations.VectorEventSection_Multi_Matrix(unpacked.Sections, matrix, smaller.Sections);
        EXPECT_EQ(CountsOf(smaller.Sections), (std::vector{70}));
    }
}

TEST_P(EventKernels, WidthIsTheScaledQuotientAlsoInPlaceAndOneOverZero) {
    for (const std::size_t target : {0U, 1U, 2U}) {
        const SmallPool pool(1024);
        Rows rows = RandomRows(1500, 3);
        OwnedEvents sample(rows);
        operations.CalcWidthSignalValue(sample.Sections, 0, 1, static_cast<int>(target), 1.7F);
        for (auto& row : rows)
            row[target] = row[1] == 0.0F ? 1.0F : row[0] / row[1] * 1.7F;
        EXPECT_TRUE(SameRows(RowsOf(sample.Sections), rows));
    }
}

TEST(EventVectors, EqualityIsThatOfFloats) {
    const SmallPool pool;
    Rows rows{{0.0F, 1.0F}};
    OwnedEvents a(rows);
    rows[0][0] = -0.0F;
    OwnedEvents negativeZero(rows);
    rows[0][1] = std::nanf("");
    OwnedEvents withNaN(rows);
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

TEST(EventVectors, AFailingPoolLosesNothing) {
    std::vector<bool> reuse{true, false, false};
    std::vector<bool> nothing(3, false);
    std::vector<int> map{-1, 1, -1};
    const std::function<void(Events & from, Events & to)> growing[] = {
        [](Events& from, Events& to) { operations.AppendEventSection(from, to, 50); },
        [&](Events& from, Events& to) { operations.AppendEventSectionCompensation(from, to, from, reuse); },
        [&](Events& from, Events& to) {
            operations.SynchronousEventSectionCompensation(to, from, reuse);
            operations.SynchronousEventSectionCompensation(to, from, nothing);
        },
        [](Events& from, Events& to) {
            operations.VectorEventSection_Multi_Matrix(from, OVMatrix(3, 3), to);
        },
        [](Events& from, Events& to) {
            std::vector<int> signals{0, 2, 0};
            Selection all(from, [](int) { return true; });
            operations.ExtractEventSection(to, from, all.Filters, signals);
        },
        [&](Events& from, Events& to) {
            try {
                operations.ExtractEventSection(to, from, map);
                operations.ExtractEventSection(to, from, map);
            } catch (OutOfMemoryException*) {
                EXPECT_TRUE(to.empty());
                throw;
            }
            EXPECT_EQ(CountsOf(to), (std::vector{64, 36, 64, 36}));
            EXPECT_EQ(operations.CheckNoReuseCount(to, from), 2);
            operations.ReleaseVectorSection(to, map);
        }};
    for (const auto& grow : growing) {
        ForEachFailingAllocation([&] {
            OwnedEvents from(NumberedRows(100));
            Pair pair;
            pair.Raw.swap(from.Sections);
            grow(pair.Raw, pair.Twin);
        });
    }
}

}  // namespace
}  // namespace Orvane
