// Kernels of the order statistics: counting, gathering, sampling and exchanging values by where they lie. NaN
// is in no range and ranks above every number.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

namespace Orvane {

/// The values from `Low` to `High`, both included, or all others, NaN among them. With Low > High there are
/// none.
struct ValueRange {
    float Low;
    float High;
    bool Complement = false;
};

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr ValueRange Nothing{Infinity, -Infinity};
constexpr ValueRange Everything{Infinity, -Infinity, true};

/// The float next to `value` below or above; infinities of that side and NaN stay.
inline float NextBelow(float value) {
    return std::nextafter(value, -Infinity);
}
inline float NextAbove(float value) {
    return std::nextafter(value, Infinity);
}

/// Low <= value < limit.
inline ValueRange HalfOpen(float low, float limit) {
    return limit > -Infinity ? ValueRange{low, NextBelow(limit)} : Nothing;
}
/// value < limit; nothing when the limit is NaN.
inline ValueRange Below(float limit) {
    return HalfOpen(-Infinity, limit);
}
/// Everything that is not below the limit, NaN included.
inline ValueRange NotBelow(float limit) {
    const ValueRange below = Below(limit);
    return {below.Low, below.High, true};
}

/// How a kernel sees a value: as it stands, or as its absolute deviation from a centre.
struct AsItStands {
    float operator()(float value) const { return value; }
};
struct DeviationFrom {
    float Centre;
    float operator()(float value) const { return std::fabs(value - Centre); }
};

struct Gathered {
    int Kept;
    int Below;  ///< values below the range's `Low`
};

/// Copies the values in `range`, as `form` shows them, to `out` in order. `out` has room for all of them and
/// does not overlap `values`.
Gathered GatherInRange(std::span<const float> values, AsItStands form, ValueRange range, float* out);
Gathered GatherInRange(std::span<const float> values, DeviationFrom form, ValueRange range, float* out);

/// Copies the values whose bit is set, in order; bit i % 32 of word i / 32 belongs to value i. Returns their
/// number.
int GatherGated(std::span<const float> values, const std::uint32_t* flags, float* out);

/// The number of values that do not exceed `limit`.
int CountAtMost(std::span<const float> values, AsItStands form, float limit);
int CountAtMost(std::span<const float> values, DeviationFrom form, float limit);

/// Draws about one in `stride` values from a sequence, span by span, at irregular distances that are the same
/// on every machine.
class Sampler {
public:
    explicit Sampler(int stride) : steps_(2 * static_cast<std::uint64_t>(stride) - 1) {}

    /// Copies the drawn ones among the next values of the sequence to `out`, no more than `room`. Returns
    /// their number.
    int Draw(std::span<const float> values, float* out, int room);

private:
    std::uint64_t steps_;
    std::uint64_t random_ = 1;
    std::size_t next_ = 0;
};

enum class Misplaced { Above, AtMost };

/// Up to 64 values in one place, and which of them a partition still has to move elsewhere.
struct PartitionBlock {
    static constexpr int MaxSize = 64;

    float* Values = nullptr;
    int Size = 0;
    std::uint64_t Moves = 0;  ///< bit i belongs to Values[i]

    /// Starts over with these values: misplaced are those that exceed `limit` (or are NaN), or those that do
    /// not.
    void Take(std::span<float> values, float limit, Misplaced misplaced);
};

/// Exchanges misplaced values of two blocks until one of them has none left.
void ExchangeMisplaced(PartitionBlock& a, PartitionBlock& b);

}  // namespace Orvane
