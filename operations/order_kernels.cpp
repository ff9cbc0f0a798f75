#include "operations/order_kernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "foundation/intrinsics.h"

namespace Orvane {
namespace {

// A Keep decides which of the values at positions i, i + 1, … are gathered, one, eight or sixteen at a time,
// and may replace them by what is to be gathered.

struct KeepGated {
    const std::uint32_t* Flags;

    ORVANE_KERNEL_INLINE unsigned Bits(int i, int lanes) const {
        return (Flags[i / 32] >> (i % 32)) & ((1U << lanes) - 1);
    }
    ORVANE_KERNEL_INLINE bool One(int i, float& /*value*/) { return Bits(i, 1) != 0; }
    Gathered Done(int kept) const { return {kept, 0}; }
#if ORVANE_WIDE_KERNELS
    ORVANE_TARGET_AVX2 ORVANE_KERNEL_INLINE unsigned Eight(int i, __m256& /*values*/) {
        return Bits(i, 8);
    }
    ORVANE_TARGET_AVX512 ORVANE_KERNEL_INLINE unsigned Sixteen(int i, __m512& /*values*/) {
        return Bits(i, 16);
    }
#endif
};

#if ORVANE_WIDE_KERNELS
ORVANE_TARGET_AVX2 ORVANE_KERNEL_INLINE __m256 Shown(AsItStands /*form*/, __m256 values) {
    return values;
}
ORVANE_TARGET_AVX2 ORVANE_KERNEL_INLINE __m256 Shown(DeviationFrom form, __m256 values) {
    return _mm256_andnot_ps(_mm256_set1_ps(-0.0F), _mm256_sub_ps(values, _mm256_set1_ps(form.Centre)));
}
ORVANE_TARGET_AVX512 ORVANE_KERNEL_INLINE __m512 Shown(AsItStands /*form*/, __m512 values) {
    return values;
}
ORVANE_TARGET_AVX512 ORVANE_KERNEL_INLINE __m512 Shown(DeviationFrom form, __m512 values) {
    return _mm512_abs_ps(_mm512_sub_ps(values, _mm512_set1_ps(form.Centre)));
}
#endif

template <class Form>
struct KeepInRange {
    Form Shows;
    ValueRange Range;
    int BelowCount = 0;

    Gathered Done(int kept) const { return {kept, BelowCount}; }
    ORVANE_KERNEL_INLINE bool One(int /*i*/, float& value) {
        value = Shows(value);
        BelowCount += static_cast<int>(value < Range.Low);
        return (static_cast<int>(value >= Range.Low) & static_cast<int>(value <= Range.High)) !=
               static_cast<int>(Range.Complement);
    }
#if ORVANE_WIDE_KERNELS
    ORVANE_TARGET_AVX2 ORVANE_KERNEL_INLINE unsigned Eight(int /*i*/, __m256& values) {
        values = Shown(Shows, values);
        const __m256 low = _mm256_set1_ps(Range.Low);
        const __m256 inside = _mm256_and_ps(_mm256_cmp_ps(values, low, _CMP_GE_OQ),
                                            _mm256_cmp_ps(values, _mm256_set1_ps(Range.High), _CMP_LE_OQ));
        BelowCount +=
            _mm_popcnt_u32(static_cast<unsigned>(_mm256_movemask_ps(_mm256_cmp_ps(values, low, _CMP_LT_OQ))));
        return static_cast<unsigned>(_mm256_movemask_ps(inside)) ^ (Range.Complement ? 0xFFU : 0U);
    }
    ORVANE_TARGET_AVX512 ORVANE_KERNEL_INLINE unsigned Sixteen(int /*i*/, __m512& values) {
        values = Shown(Shows, values);
        const __m512 low = _mm512_set1_ps(Range.Low);
        const __mmask16 atLeast = _mm512_cmp_ps_mask(values, low, _CMP_GE_OQ);
        const __mmask16 inside =
            _mm512_mask_cmp_ps_mask(atLeast, values, _mm512_set1_ps(Range.High), _CMP_LE_OQ);
        BelowCount += _mm_popcnt_u32(_mm512_cmp_ps_mask(values, low, _CMP_LT_OQ));
        return inside ^ (Range.Complement ? 0xFFFFU : 0U);
    }
#endif
};

// Gathers the values from position i on, behind the `kept` ones.
template <class Keep>
ORVANE_KERNEL_INLINE Gathered GatherFrom(int i, int kept, std::span<const float> values, Keep& keep,
                                         float* out) {
    for (; i < static_cast<int>(values.size()); ++i) {
        float value = values[static_cast<std::size_t>(i)];
        const bool isKept = keep.One(i, value);
        out[kept] = value;
        kept += static_cast<int>(isKept);
    }
    return keep.Done(kept);
}

#if ORVANE_WIDE_KERNELS

// For each mask of eight lanes the numbers of its set ones, four bits each, the first lowest.
constexpr std::array<std::uint32_t, 256> SetLanes = [] {
    std::array<std::uint32_t, 256> table{};
    for (unsigned mask = 0; mask < 256; ++mask) {
        unsigned shift = 0;
        for (unsigned lane = 0; lane < 8; ++lane) {
            if ((mask >> lane & 1U) == 0) continue;
            table[mask] |= lane << shift;
            shift += 4;
        }
    }
    return table;
}();

// Both wide forms store whole vectors: the gathered ones never run ahead of the values read.
template <class Keep>
ORVANE_TARGET_AVX2 Gathered GatherAvx2(std::span<const float> values, Keep keep, float* out) {
    const __m256i shifts = _mm256_setr_epi32(0, 4, 8, 12, 16, 20, 24, 28);
    int i = 0;
    int kept = 0;
    for (; i + 8 <= static_cast<int>(values.size()); i += 8) {
        __m256 lanes = _mm256_loadu_ps(values.data() + i);
        const unsigned mask = keep.Eight(i, lanes);
        const __m256i order = _mm256_srlv_epi32(_mm256_set1_epi32(static_cast<int>(SetLanes[mask])), shifts);
        _mm256_storeu_ps(out + kept, _mm256_permutevar8x32_ps(lanes, order));
        kept += _mm_popcnt_u32(mask);
    }
    return GatherFrom(i, kept, values, keep, out);
}

template <class Keep>
ORVANE_TARGET_AVX512 Gathered GatherAvx512(std::span<const float> values, Keep keep, float* out) {
    int i = 0;
    int kept = 0;
    for (; i + 16 <= static_cast<int>(values.size()); i += 16) {
        __m512 lanes = _mm512_loadu_ps(values.data() + i);
        const unsigned mask = keep.Sixteen(i, lanes);
        _mm512_storeu_ps(out + kept, _mm512_maskz_compress_ps(static_cast<__mmask16>(mask), lanes));
        kept += _mm_popcnt_u32(mask);
    }
    return GatherFrom(i, kept, values, keep, out);
}

#endif

template <class Keep>
Gathered Gather(std::span<const float> values, Keep keep, float* out) {
#if ORVANE_WIDE_KERNELS
    if (ActiveInstructionSet() == InstructionSet::Avx512) return GatherAvx512(values, keep, out);
    if (ActiveInstructionSet() == InstructionSet::Avx2) return GatherAvx2(values, keep, out);
#endif
    return GatherFrom(0, 0, values, keep, out);
}

template <class Form>
ORVANE_KERNEL_INLINE int CountShown(std::span<const float> values, Form form, float limit) {
    int count = 0;
    for (const float value : values)
        count += static_cast<int>(form(value) <= limit);
    return count;
}

ORVANE_KERNEL_INLINE int CountValuesBody(std::span<const float> values, float limit) {
    return CountShown(values, AsItStands{}, limit);
}
ORVANE_KERNEL_INLINE int CountDeviationsBody(std::span<const float> values, float centre, float limit) {
    return CountShown(values, DeviationFrom{centre}, limit);
}
ORVANE_MULTIVERSION(int, CountValues, (std::span<const float> values, float limit), (values, limit))
ORVANE_MULTIVERSION(int, CountDeviations, (std::span<const float> values, float centre, float limit),
                    (values, centre, limit))

// One bit for each of up to 64 values, set when the value does not exceed `limit`: those from value i on.
std::uint64_t AtMostMaskFrom(int i, const float* values, int count, float limit) {
    std::uint64_t mask = 0;
    for (; i < count; ++i)
        mask |= static_cast<std::uint64_t>(values[i] <= limit) << i;
    return mask;
}

#if ORVANE_WIDE_KERNELS

ORVANE_TARGET_AVX2 std::uint64_t AtMostMaskAvx2(const float* values, int count, float limit) {
    const __m256 limits = _mm256_set1_ps(limit);
    std::uint64_t mask = 0;
    int i = 0;
    for (; i + 8 <= count; i += 8) {
        const __m256 atMost = _mm256_cmp_ps(_mm256_loadu_ps(values + i), limits, _CMP_LE_OQ);
        mask |= static_cast<std::uint64_t>(_mm256_movemask_ps(atMost)) << i;
    }
    return mask | AtMostMaskFrom(i, values, count, limit);
}

ORVANE_TARGET_AVX512 std::uint64_t AtMostMaskAvx512(const float* values, int count, float limit) {
    const __m512 limits = _mm512_set1_ps(limit);
    std::uint64_t mask = 0;
    int i = 0;
    for (; i + 16 <= count; i += 16) {
        const __mmask16 atMost = _mm512_cmp_ps_mask(_mm512_loadu_ps(values + i), limits, _CMP_LE_OQ);
        mask |= static_cast<std::uint64_t>(atMost) << i;
    }
    return mask | AtMostMaskFrom(i, values, count, limit);
}

#endif

std::uint64_t AtMostMask(const float* values, int count, float limit) {
#if ORVANE_WIDE_KERNELS
    if (ActiveInstructionSet() == InstructionSet::Avx512) return AtMostMaskAvx512(values, count, limit);
    if (ActiveInstructionSet() == InstructionSet::Avx2) return AtMostMaskAvx2(values, count, limit);
#endif
    return AtMostMaskFrom(0, values, count, limit);
}

}  // namespace

Gathered GatherInRange(std::span<const float> values, AsItStands form, ValueRange range, float* out) {
    return Gather(values, KeepInRange<AsItStands>{form, range}, out);
}

Gathered GatherInRange(std::span<const float> values, DeviationFrom form, ValueRange range, float* out) {
    return Gather(values, KeepInRange<DeviationFrom>{form, range}, out);
}

int GatherGated(std::span<const float> values, const std::uint32_t* flags, float* out) {
    return Gather(values, KeepGated{flags}, out).Kept;
}

int CountAtMost(std::span<const float> values, AsItStands /*form*/, float limit) {
    return CountValues(values, limit);
}

int CountAtMost(std::span<const float> values, DeviationFrom form, float limit) {
    return CountDeviations(values, form.Centre, limit);
}

int Sampler::Draw(std::span<const float> values, float* out, int room) {
    int drawn = 0;
    for (; next_ < values.size() && drawn < room; ++drawn) {
        out[drawn] = values[next_];
        random_ = random_ * 6364136223846793005U + 1442695040888963407U;
        next_ += 1 + ((random_ >> 32) * steps_ >> 32);
    }
    next_ -= std::min(next_, values.size());
    return drawn;
}

void PartitionBlock::Take(std::span<float> values, float limit, Misplaced misplaced) {
    Values = values.data();
    Size = static_cast<int>(values.size());
    Moves = AtMostMask(Values, Size, limit);
    const std::uint64_t all = Size < MaxSize ? (std::uint64_t{1} << Size) - 1 : ~std::uint64_t{0};
    if (misplaced == Misplaced::Above) Moves ^= all;
}

void ExchangeMisplaced(PartitionBlock& a, PartitionBlock& b) {
    std::uint64_t movesA = a.Moves;
    std::uint64_t movesB = b.Moves;
    for (; movesA != 0 && movesB != 0; movesA &= movesA - 1, movesB &= movesB - 1)
        std::swap(a.Values[std::countr_zero(movesA)], b.Values[std::countr_zero(movesB)]);
    a.Moves = movesA;
    b.Moves = movesB;
}

}  // namespace Orvane
