// Finding values by rank without reordering the data: a sample gives a bracket that very likely holds the
// wanted rank, one pass counts what lies below it and collects what lies inside, and the collected values are
// searched likewise until few are left. NaN ranks above every number; a zero that is returned is +0.0.
#pragma once

#include <optional>
#include <vector>

#include "operations/statistics_population.h"

namespace Orvane {

/// Two ranks of a sequence, counted from 0: the same one twice, or neighbours.
struct Ranks {
    int First;
    int Second;
};

struct RankedValues {
    float First;
    float Second;
};

/// The ranks of the values in the middle of `count`.
inline Ranks MiddleRanks(int count) {
    return {(count - 1) / 2, count / 2};
}

/// The values with these ranks, as `form` shows the values. Nothing when the bracket missed or the pool has
/// no storage for what is collected: never with few values, rarely with many.
std::optional<RankedValues> FindRanked(const std::vector<ValueSpan>& spans, AsItStands form, Ranks ranks);
std::optional<RankedValues> FindRanked(const std::vector<ValueSpan>& spans, DeviationFrom form, Ranks ranks);

/// What is returned of equal zeros, whichever was met.
inline float WithoutNegativeZero(float value) {
    return value + 0.0F;
}

/// Reorders `count` values so that the one with this rank is in its place, and returns it.
float SelectInPlace(float* values, int count, int rank);

/// Bounds between which a rank very likely lies; an infinity on a side where the sample has no bound to
/// offer.
struct Bracket {
    float Low;
    float High;
};

constexpr int SampleRoom = 2048;

/// Draws some thousand of the `total` values of a sequence, or all of them when there are not so many.
template <class Spans>
int DrawSample(const Spans& spans, int total, float (&sample)[SampleRoom]) {
    Sampler sampler(std::max(1, total / (SampleRoom / 2)));
    int sampled = 0;
    for (const auto& span : spans)
        sampled += sampler.Draw(span, sample + sampled, SampleRoom - sampled);
    return sampled;
}

/// The bracket of the ranks in a sequence of `total` values, from a sample of it, which is reordered.
Bracket BracketFromSample(float* sample, int sampled, Ranks ranks, int total);

}  // namespace Orvane
