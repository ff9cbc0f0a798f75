// On which sides of two bounds 32 values lie, as two words. The primitive of every gate kernel.
#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/intrinsics.h"

namespace Orvane {

/// Whether a value equal to the lower bound lies beyond it.
enum class Lower { Closed, Open };

template <Lower Kind>
struct Bounds {
    float Low;
    float High;
};

/// Closed bounds meet between `low` and `high`, both included.
ORVANE_KERNEL_INLINE Bounds<Lower::Closed> Between(float low, float high) {
    return {low, high};
}

/// Open bounds part the values at and below `cut` from those above it.
ORVANE_KERNEL_INLINE Bounds<Lower::Open> CutAt(float cut) {
    return {cut, cut};
}

/// Bit i belongs to value i. NaN is on no side.
struct Sides {
    std::uint32_t AtMost = 0;  ///< values <= High
    std::uint32_t Beyond = 0;  ///< values >= Low, or > Low for an open bound

    ORVANE_KERNEL_INLINE std::uint32_t Both() const { return AtMost & Beyond; }
};

// Each set has its form of the same function, to be called from kernels for that set.

#if defined(__SSE2__)

/// The lowest bits of 16 lanes that are all ones or all zeros.
ORVANE_KERNEL_INLINE std::uint32_t BitsOfLanes(const __m128 (&lanes)[4]) {
    const __m128i low = _mm_packs_epi32(_mm_castps_si128(lanes[0]), _mm_castps_si128(lanes[1]));
    const __m128i high = _mm_packs_epi32(_mm_castps_si128(lanes[2]), _mm_castps_si128(lanes[3]));
    return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(low, high)));
}

template <Lower Kind>
ORVANE_KERNEL_INLINE Sides SidesBaseline(const float* values, Bounds<Kind> bounds) {
    const __m128 low = _mm_set1_ps(bounds.Low);
    const __m128 high = _mm_set1_ps(bounds.High);
    Sides sides;
    for (int i = 0; i < 32; i += 16) {
        __m128 atMost[4];
        __m128 beyond[4];
        for (std::ptrdiff_t part = 0; part < 4; ++part) {
            const __m128 lanes = _mm_loadu_ps(values + i + 4 * part);
            atMost[part] = _mm_cmple_ps(lanes, high);
            beyond[part] = Kind == Lower::Closed ? _mm_cmpge_ps(lanes, low) : _mm_cmpgt_ps(lanes, low);
        }
        sides.AtMost |= BitsOfLanes(atMost) << i;
        sides.Beyond |= BitsOfLanes(beyond) << i;
    }
    return sides;
}

#else

template <Lower Kind>
ORVANE_KERNEL_INLINE Sides SidesBaseline(const float* values, Bounds<Kind> bounds) {
    Sides sides;
    for (int i = 0; i < 32; ++i) {
        const bool beyond = Kind == Lower::Closed ? values[i] >= bounds.Low : values[i] > bounds.Low;
        sides.AtMost |= static_cast<std::uint32_t>(values[i] <= bounds.High) << i;
        sides.Beyond |= static_cast<std::uint32_t>(beyond) << i;
    }
    return sides;
}

#endif

#if ORVANE_WIDE_KERNELS

template <Lower Kind>
ORVANE_TARGET_AVX2 ORVANE_KERNEL_INLINE Sides SidesAvx2(const float* values, Bounds<Kind> bounds) {
    constexpr int Beyond = Kind == Lower::Closed ? _CMP_GE_OQ : _CMP_GT_OQ;
    const __m256 low = _mm256_set1_ps(bounds.Low);
    const __m256 high = _mm256_set1_ps(bounds.High);
    Sides sides;
    for (int i = 0; i < 32; i += 8) {
        const __m256 lanes = _mm256_loadu_ps(values + i);
        const int atMost = _mm256_movemask_ps(_mm256_cmp_ps(lanes, high, _CMP_LE_OQ));
        const int beyond = _mm256_movemask_ps(_mm256_cmp_ps(lanes, low, Beyond));
        sides.AtMost |= static_cast<std::uint32_t>(atMost) << i;
        sides.Beyond |= static_cast<std::uint32_t>(beyond) << i;
    }
    return sides;
}

template <Lower Kind>
ORVANE_TARGET_AVX512 ORVANE_KERNEL_INLINE Sides SidesAvx512(const float* values, Bounds<Kind> bounds) {
    constexpr int Beyond = Kind == Lower::Closed ? _CMP_GE_OQ : _CMP_GT_OQ;
    const __m512 low = _mm512_set1_ps(bounds.Low);
    const __m512 high = _mm512_set1_ps(bounds.High);
    Sides sides;
    for (int i = 0; i < 32; i += 16) {
        const __m512 lanes = _mm512_loadu_ps(values + i);
        sides.AtMost |= static_cast<std::uint32_t>(_mm512_cmp_ps_mask(lanes, high, _CMP_LE_OQ)) << i;
        sides.Beyond |= static_cast<std::uint32_t>(_mm512_cmp_ps_mask(lanes, low, Beyond)) << i;
    }
    return sides;
}

#endif

}  // namespace Orvane
