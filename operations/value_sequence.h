// All values of a vector of signal sections as one sequence that can be reordered in place. Position p is
// counted across the sections.
#pragma once

#include <span>
#include <vector>

#include <orvane/Sections.h>

namespace Orvane {

class ValueSequence {
public:
    explicit ValueSequence(const std::vector<SignalSection*>& sections);

    int Count() const { return starts_.back(); }

    /// The values of positions `first` to `last` (exclusive), section by section.
    std::vector<std::span<float>> Spans(int first, int last) const;

    /// Reorders positions `first` to `last` until the values that do not exceed `limit` stand in front of the
    /// others and NaN. Returns the position of the first of those.
    int PartitionAtMost(int first, int last, float limit);

    /// Reorders positions `first` to `last`, no more than MaxSelected, as std::nth_element does (NaN last),
    /// and returns the value at position `nth`; sorts them if `sorted`.
    float SelectFew(int first, int nth, int last, bool sorted);
    static constexpr int MaxSelected = 1024;

private:
    std::span<float> Ahead(int first, int last) const;
    std::span<float> Behind(int first, int last) const;
    int PartitionFew(int first, int last, float limit);
    void Read(int first, int last, float* values) const;
    void Write(int first, int last, const float* values);

    std::vector<SignalSection*> sections_;  // those that hold values
    std::vector<int> starts_;               // the first position of each, and the end of the last
};

}  // namespace Orvane
