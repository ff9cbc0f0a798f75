#include <orvane/OVNthElementSection.h>

#include <algorithm>
#include <limits>

#include "operations/statistics_rank_search.h"
#include "operations/value_sequence.h"
#include "sections/kernels.h"

namespace Orvane {
namespace {

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

// A range of positions that holds the wanted one, narrowed until few are left.
class Narrowing {
public:
    Narrowing(ValueSequence& sequence, int first, int nth, int last)
        : sequence_(sequence), first_(first), nth_(nth), last_(last) {}

    float Select(int sortLength);

private:
    int Count() const { return last_ - first_; }
    bool HoldsNaN() const;
    Bracket SampleBracket() const;

    // Parts the range by a limit and keeps the side of the wanted position. Returns whether that is the lower
    // one.
    bool KeepAtMost(float limit) {
        const int border = sequence_.PartitionAtMost(first_, last_, limit);
        const bool isLower = nth_ < border;
        (isLower ? last_ : first_) = border;
        return isLower;
    }
    bool KeepBelow(float limit) { return limit > -Infinity && KeepAtMost(NextBelow(limit)); }

    ValueSequence& sequence_;
    int first_;
    int nth_;
    int last_;
};

// Values equal to a bound of the bracket are set aside in every round, so that the range always shrinks.
float Narrowing::Select(int sortLength) {
    if (HoldsNaN() && !KeepAtMost(Infinity)) return NaN;
    while (Count() > ValueSequence::MaxSelected) {
        const Bracket bracket = SampleBracket();
        if (!KeepAtMost(bracket.High)) continue;
        if (KeepAtMost(bracket.Low)) {
            if (!KeepBelow(bracket.Low)) return bracket.Low;
        } else if (!KeepBelow(bracket.High)) {
            return bracket.High;
        }
    }
    return sequence_.SelectFew(first_, nth_, last_, Count() <= sortLength);
}

bool Narrowing::HoldsNaN() const {
    int numbers = 0;
    for (const std::span<float> span : sequence_.Spans(first_, last_))
        numbers += CountAtMost(span, AsItStands{}, Infinity);
    return numbers < Count();
}

Bracket Narrowing::SampleBracket() const {
    float sample[SampleRoom];
    const int sampled = DrawSample(sequence_.Spans(first_, last_), Count(), sample);
    return BracketFromSample(sample, sampled, {nth_ - first_, nth_ - first_}, Count());
}

}  // namespace

OVNthElementSection::OVNthElementSection(int sortLength) : sortLength_(sortLength) {}

float OVNthElementSection::Nth_Element(std::vector<SignalSection*>& sections, int first, int nth, int last) {
    ValueSequence sequence(sections);
    if (first < 0 || nth < first || nth >= last || last > sequence.Count()) return NaN;
    return WithoutNegativeZero(Narrowing(sequence, first, nth, last).Select(sortLength_));
}

float OVNthElementSection::Min(std::vector<SignalSection*>& sections, int first, int last) {
    float min = Infinity;
    float max = -Infinity;
    for (const std::span<float> span : ValueSequence(sections).Spans(first, last))
        FindMaxAndMin(span.data(), static_cast<int>(span.size()), max, min);
    return min <= max ? WithoutNegativeZero(min) : NaN;
}

}  // namespace Orvane
