#include "operations/value_sequence.h"

#include <algorithm>
#include <cassert>

#include "operations/order_kernels.h"
#include "operations/statistics_rank_search.h"

namespace Orvane {

ValueSequence::ValueSequence(const std::vector<SignalSection*>& sections) : starts_{0} {
    for (SignalSection* section : sections) {
        if (section->Count <= 0) continue;
        sections_.push_back(section);
        starts_.push_back(starts_.back() + section->Count);
    }
}

// The values from position `first` on that lie in one section, as far as `last`.
std::span<float> ValueSequence::Ahead(int first, int last) const {
    if (first >= last) return {};
    const auto next = std::upper_bound(starts_.begin(), starts_.end(), first) - starts_.begin();
    const auto s = static_cast<std::size_t>(next - 1);
    return {sections_[s]->Values + (first - starts_[s]),
            static_cast<std::size_t>(std::min(last, starts_[s + 1]) - first)};
}

// The values in front of position `last` that lie in one section, as far as `first`.
std::span<float> ValueSequence::Behind(int first, int last) const {
    if (first >= last) return {};
    const auto next = std::lower_bound(starts_.begin(), starts_.end(), last) - starts_.begin();
    const auto s = static_cast<std::size_t>(next - 1);
    const int begin = std::max(first, starts_[s]);
    return {sections_[s]->Values + (begin - starts_[s]), static_cast<std::size_t>(last - begin)};
}

std::vector<std::span<float>> ValueSequence::Spans(int first, int last) const {
    std::vector<std::span<float>> spans;
    while (first < last) {
        spans.push_back(Ahead(first, last));
        first += static_cast<int>(spans.back().size());
    }
    return spans;
}

void ValueSequence::Read(int first, int last, float* values) const {
    for (const std::span<float> span : Spans(first, last))
        values = std::copy(span.begin(), span.end(), values);
}

void ValueSequence::Write(int first, int last, const float* values) {
    for (const std::span<float> span : Spans(first, last)) {
        std::copy_n(values, span.size(), span.begin());
        values += span.size();
    }
}

// Blocks are taken from both ends; what is misplaced in one is exchanged for what is misplaced in the other.
// Values in front of `first` and from `last` on are in place.
int ValueSequence::PartitionAtMost(int first, int last, float limit) {
    constexpr std::size_t BlockSize = PartitionBlock::MaxSize;
    PartitionBlock front;
    PartitionBlock back;
    while (true) {
        if (front.Moves == 0) {
            first += front.Size;
            const std::span<float> ahead = Ahead(first, last - back.Size);
            front.Take(ahead.first(std::min(ahead.size(), BlockSize)), limit, Misplaced::Above);
        }
        if (back.Moves == 0) {
            last -= back.Size;
            const std::span<float> behind = Behind(first + front.Size, last);
            back.Take(behind.last(std::min(behind.size(), BlockSize)), limit, Misplaced::AtMost);
        }
        if (front.Size == 0 || back.Size == 0) return PartitionFew(first, last, limit);
        ExchangeMisplaced(front, back);
    }
}

int ValueSequence::PartitionFew(int first, int last, float limit) {
    float values[MaxSelected];
    assert(last - first <= MaxSelected);
    Read(first, last, values);
    const float* border =
        std::partition(values, values + (last - first), [limit](float value) { return value <= limit; });
    Write(first, last, values);
    return first + static_cast<int>(border - values);
}

float ValueSequence::SelectFew(int first, int nth, int last, bool sorted) {
    float values[MaxSelected];
    const int count = last - first;
    assert(count <= MaxSelected);
    Read(first, last, values);
    const float selected = SelectInPlace(values, count, nth - first);
    if (sorted) {
        float* numbersEnd =
            std::partition(values, values + count, [](float value) { return value == value; });
        std::sort(values, numbersEnd);
    }
    Write(first, last, values);
    return selected;
}

}  // namespace Orvane
