#include "operations/statistics_rank_search.h"

#include <cmath>

#include <orvane/Exceptions.h>

#include "memory/pooled.h"

namespace Orvane {
namespace {

// Up to this many values are copied and selected from at once.
constexpr int FewValues = 2048;

template <class Form>
class RankSearch {
public:
    RankSearch(const std::vector<ValueSpan>& spans, Form form) : spans_(spans), form_(form) {
        for (const ValueSpan& span : spans)
            total_ += static_cast<int>(span.size());
    }

    std::optional<RankedValues> Find(Ranks ranks);

private:
    RankedValues FindAmongFew(Ranks ranks) const;
    Bracket SampleBracket(Ranks ranks) const;
    bool Collect(ValueRange range);
    void MakeRoom(std::size_t wanted);
    std::optional<float> FindBeside(Bracket bracket, int rank) const;
    int CountUpTo(float limit) const;

    bool IsInside(int rank) const { return rank >= below_ && rank < below_ + inside_; }

    const std::vector<ValueSpan>& spans_;
    Form form_;
    int total_ = 0;

    std::vector<PooledColumn> columns_;
    std::vector<ValueSpan> collected_;  // one for each column, followed by the column's free rest
    std::size_t room_ = 0;
    int below_ = 0;
    int inside_ = 0;
};

template <class Form>
std::optional<RankedValues> RankSearch<Form>::Find(Ranks ranks) {
    if (total_ <= FewValues) return FindAmongFew(ranks);
    const Bracket bracket = SampleBracket(ranks);
    // What equals a bound is not collected: a histogram's channels may hold any number of events.
    if (!Collect({NextAbove(bracket.Low), NextBelow(bracket.High)})) return std::nullopt;

    RankSearch<AsItStands> inner(collected_, AsItStands{});
    const auto find = [&](int rank) -> std::optional<float> {
        if (!IsInside(rank)) return FindBeside(bracket, rank);
        const auto found = inner.Find({rank - below_, rank - below_});
        return found ? std::optional(found->First) : std::nullopt;
    };
    if (IsInside(ranks.First) && IsInside(ranks.Second))
        return inner.Find({ranks.First - below_, ranks.Second - below_});
    const std::optional<float> first = find(ranks.First);
    const std::optional<float> second = find(ranks.Second);
    if (!first || !second) return std::nullopt;
    return RankedValues{*first, *second};
}

template <class Form>
RankedValues RankSearch<Form>::FindAmongFew(Ranks ranks) const {
    float values[FewValues];
    int count = 0;
    for (const ValueSpan& span : spans_)
        count += GatherInRange(span, form_, Everything, values + count).Kept;
    const float first = SelectInPlace(values, count, ranks.First);
    if (ranks.Second == ranks.First) return {first, first};
    return {first, SelectInPlace(values + ranks.Second, count - ranks.Second, 0)};
}

template <class Form>
Bracket RankSearch<Form>::SampleBracket(Ranks ranks) const {
    float sample[SampleRoom];
    const int sampled = DrawSample(spans_, total_, sample);
    float shown[SampleRoom];
    GatherInRange({sample, static_cast<std::size_t>(sampled)}, form_, Everything, shown);
    return BracketFromSample(shown, sampled, ranks, total_);
}

// False when the bracket holds so much that searching it would not pay.
template <class Form>
bool RankSearch<Form>::Collect(ValueRange range) {
    for (ValueSpan span : spans_) {
        while (!span.empty()) {
            MakeRoom(span.size());
            const ValueSpan piece = span.first(std::min(span.size(), room_));
            ValueSpan& collected = collected_.back();
            float* free = columns_.back().Get() + collected.size();
            const Gathered gathered = GatherInRange(piece, form_, range, free);
            const auto kept = static_cast<std::size_t>(gathered.Kept);
            collected = {collected.data(), collected.size() + kept};
            room_ -= kept;
            below_ += gathered.Below;
            inside_ += gathered.Kept;
            if (inside_ > total_ / 2) return false;
            span = span.subspan(piece.size());
        }
    }
    return true;
}

// A piece may be kept whole, so it is no longer than the room; rests that would make short pieces stay
// unused.
template <class Form>
void RankSearch<Form>::MakeRoom(std::size_t wanted) {
    constexpr std::size_t ShortPiece = 256;
    const auto capacity = static_cast<std::size_t>(MemoryManage::GetCapacity());
    if (room_ > 0 && room_ >= std::min({wanted, ShortPiece, capacity / 4})) return;
    collected_.emplace_back(columns_.emplace_back().Get(), std::size_t{0});
    room_ = capacity;
}

// The value with a rank that is not inside the bracket, if it is one of the bounds or NaN.
template <class Form>
std::optional<float> RankSearch<Form>::FindBeside(Bracket bracket, int rank) const {
    if (rank < below_) {
        const bool isLow = bracket.Low == -Infinity || rank >= CountUpTo(NextBelow(bracket.Low));
        return isLow ? std::optional(WithoutNegativeZero(bracket.Low)) : std::nullopt;
    }
    if (rank < CountUpTo(bracket.High)) return WithoutNegativeZero(bracket.High);
    if (rank >= CountUpTo(Infinity)) return std::numeric_limits<float>::quiet_NaN();
    return std::nullopt;
}

template <class Form>
int RankSearch<Form>::CountUpTo(float limit) const {
    int count = 0;
    for (const ValueSpan& span : spans_)
        count += CountAtMost(span, form_, limit);
    return count;
}

template <class Form>
std::optional<RankedValues> Find(const std::vector<ValueSpan>& spans, Form form, Ranks ranks) {
    try {
        return RankSearch<Form>(spans, form).Find(ranks);
    } catch (OutOfMemoryException* error) {
        delete error;
        return std::nullopt;
    }
}

}  // namespace

std::optional<RankedValues> FindRanked(const std::vector<ValueSpan>& spans, AsItStands form, Ranks ranks) {
    return Find(spans, form, ranks);
}

std::optional<RankedValues> FindRanked(const std::vector<ValueSpan>& spans, DeviationFrom form, Ranks ranks) {
    return Find(spans, form, ranks);
}

float SelectInPlace(float* values, int count, int rank) {
    float* numbersEnd =
        std::partition(values, values + count, [](float value) { return !std::isnan(value); });
    if (values + rank >= numbersEnd) return values[rank];
    std::nth_element(values, values + rank, numbersEnd);
    return WithoutNegativeZero(values[rank]);
}

// Within the sample a rank of the whole strays by half the square root of the sample's size or less; four
// times that on either side misses once in some ten thousand times.
Bracket BracketFromSample(float* sample, int sampled, Ranks ranks, int total) {
    float* end = std::partition(sample, sample + sampled, [](float value) { return !std::isnan(value); });
    const int numbers = static_cast<int>(end - sample);
    const double scale = static_cast<double>(sampled) / total;
    const double margin = 2 * std::sqrt(sampled);
    const int low = static_cast<int>(ranks.First * scale - margin);
    const int high = static_cast<int>(ranks.Second * scale + margin);
    Bracket bracket{-Infinity, Infinity};
    if (high < numbers) {
        std::nth_element(sample, sample + high, end);
        bracket.High = sample[high];
        end = sample + high;
    }
    if (low > 0 && low < numbers) {
        std::nth_element(sample, sample + low, end);
        bracket.Low = sample[low];
    }
    return bracket;
}

}  // namespace Orvane
