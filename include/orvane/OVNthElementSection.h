// Order statistics over a vector of signal sections, taken as one sequence and reordered in place.
#pragma once

#include <vector>

#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Selection by rank over all values of a vector: sections in order, in each the values below its `Count`.
/// Position p of the sequence is counted across the sections.
///
/// NaN ranks above every number. Zeros of both signs are equal, and one that is returned is +0.0. Nothing is
/// taken from the pool and nothing is thrown.
class ORVANE_API OVNthElementSection {
public:
    /// Once no more than `sortLength` values are left to choose from they are sorted. It changes the order
    /// among the other values, never a result.
    explicit OVNthElementSection(int sortLength = 16);

    /// Reorders the values of positions `first` to `last` (exclusive), moving them across sections, until the
    /// value at position `nth` is the one that a full sort would put there: none before it is greater, none
    /// behind it smaller. Returns it. Needs 0 <= first <= nth < last <= the number of values; NaN otherwise,
    /// with nothing moved.
    float Nth_Element(std::vector<SignalSection*>& sections, int first, int nth, int last);

    /// The smallest value of positions `first` to `last` (exclusive); NaN when there is no number among them.
    float Min(std::vector<SignalSection*>& sections, int first, int last);

private:
    int sortLength_;
};

}  // namespace Orvane
