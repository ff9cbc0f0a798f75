#include "operations/event_kernels.h"

#include <algorithm>
#include <bit>
#include <cstddef>

#include "foundation/intrinsics.h"

namespace Orvane {
namespace {

ORVANE_KERNEL_INLINE bool EqualColumnsBody(const float* a, const float* b, int count) {
    constexpr int Block = 512;
    for (int begin = 0; begin < count; begin += Block) {
        const int end = std::min(count, begin + Block);
        int differing = 0;
        for (int i = begin; i < end; ++i) {
            differing |= static_cast<int>(!(a[i] == b[i]));
        }
        if (differing != 0) return false;
    }
    return true;
}

// The quotients of a block are complete before the first is stored, so the compiler need not care which
// columns are the same.
ORVANE_KERNEL_INLINE void DivideColumnsBody(const float* numerator, const float* denominator, float* target,
                                            int count, float scale) {
    constexpr int Block = 512;
    float quotients[Block];
    for (int begin = 0; begin < count; begin += Block) {
        const int length = std::min(Block, count - begin);
        for (int i = 0; i < length; ++i) {
            const float quotient = numerator[begin + i] / denominator[begin + i] * scale;
            quotients[i] = denominator[begin + i] == 0.0F ? 1.0F : quotient;
        }
        std::copy_n(quotients, length, target + begin);
    }
}

/// The word that begins with event `first`, without the bits of events outside `begin` to `end - 1`.
ORVANE_KERNEL_INLINE std::uint32_t SelectedIn(const std::uint32_t* select, int first, int begin, int end) {
    constexpr std::uint32_t All = 0xFFFFFFFFU;
    std::uint32_t bits = select[first / 32];
    if (first < begin) bits &= All << (begin - first);
    if (end - first < 32) bits &= ~(All << (end - first));
    return bits;
}

ORVANE_KERNEL_INLINE float* CopyWord(std::uint32_t bits, const float* values, float* out) {
    if (bits == 0xFFFFFFFFU) return std::copy_n(values, 32, out);
    for (; bits != 0; bits &= bits - 1) {
        *out++ = values[std::countr_zero(bits)];
    }
    return out;
}

void CopySelectedPortable(const std::uint32_t* select, const float* values, int begin, int end, float* out) {
    for (int first = begin / 32 * 32; first < end; first += 32) {
        out = CopyWord(SelectedIn(select, first, begin, end), values + first, out);
    }
}

#if ORVANE_WIDE_KERNELS
ORVANE_TARGET_AVX512 float* CopyHalfWord(std::uint32_t bits, const float* values, float* out) {
    const auto mask = static_cast<__mmask16>(bits);
    const int selected = std::popcount(static_cast<std::uint16_t>(bits));
    const __m512 packed = _mm512_maskz_compress_ps(mask, _mm512_maskz_loadu_ps(mask, values));
    _mm512_mask_storeu_ps(out, static_cast<__mmask16>((1U << selected) - 1), packed);
    return out + selected;
}

ORVANE_TARGET_AVX512 void CopySelectedAvx512(const std::uint32_t* select, const float* values, int begin,
                                             int end, float* out) {
    for (int first = begin / 32 * 32; first < end; first += 32) {
        const std::uint32_t bits = SelectedIn(select, first, begin, end);
        if (bits == 0) continue;
        out = CopyHalfWord(bits & 0xFFFFU, values + first, out);
        out = CopyHalfWord(bits >> 16, values + first + 16, out);
    }
}
#endif

/// Widens one tile of every column; events at and behind `count` become zeros.
ORVANE_KERNEL_INLINE void LoadTile(const float* const* columns, int signals, int begin, int count,
                                   double* tile) {
    const int events = std::min(TileEvents, count - begin);
    for (int k = 0; k < signals; ++k, tile += TileEvents) {
        const float* values = columns[k] + begin;
        if (events == TileEvents) {
            std::copy_n(values, TileEvents, tile);
        } else {
            std::fill(std::copy_n(values, events, tile), tile + TileEvents, 0.0);
        }
    }
}

/// Column j of the product of one tile; `factors` is column j of the matrix.
ORVANE_KERNEL_INLINE void MultiplyTile(const double* tile, int signals, const double* factors,
                                       std::ptrdiff_t stride, double* sums) {
    std::fill_n(sums, TileEvents, 0.0);
    int k = 0;
    // Four terms a pass, added one after the other, keep the sums longer in registers.
    for (; k + 4 <= signals; k += 4, factors += 4 * stride) {
        const double* tile1 = tile + TileEvents;
        const double* tile2 = tile1 + TileEvents;
        const double* tile3 = tile2 + TileEvents;
        const double factor0 = factors[0];
        const double factor1 = factors[stride];
        const double factor2 = factors[2 * stride];
        const double factor3 = factors[3 * stride];
        for (int e = 0; e < TileEvents; ++e) {
            sums[e] =
                sums[e] + tile[e] * factor0 + tile1[e] * factor1 + tile2[e] * factor2 + tile3[e] * factor3;
        }
        tile = tile3 + TileEvents;
    }
    for (; k < signals; ++k, tile += TileEvents, factors += stride) {
        const double factor = *factors;
        for (int e = 0; e < TileEvents; ++e) {
            sums[e] += tile[e] * factor;
        }
    }
}

ORVANE_KERNEL_INLINE void MultiplyEventsBody(const float* const* source, float* const* dest, int signals,
                                             int count, const double* matrix, int stride, double* tile) {
    double sums[TileEvents];
    for (int begin = 0; begin < count; begin += TileEvents) {
        LoadTile(source, signals, begin, count, tile);
        for (int j = 0; j < signals; ++j) {
            MultiplyTile(tile, signals, matrix + j, stride, sums);
            std::copy_n(sums, std::min(TileEvents, count - begin), dest[j] + begin);
        }
    }
}

}  // namespace

ORVANE_MULTIVERSION(bool, EqualColumns, (const float* a, const float* b, int count), (a, b, count))

ORVANE_MULTIVERSION(void, DivideColumns,
                    (const float* numerator, const float* denominator, float* target, int count, float scale),
                    (numerator, denominator, target, count, scale))

void CopySelected(const std::uint32_t* select, const float* values, int begin, int end, float* out) {
#if ORVANE_WIDE_KERNELS
    if (ActiveInstructionSet() == InstructionSet::Avx512) {
        CopySelectedAvx512(select, values, begin, end, out);
        return;
    }
#endif
    CopySelectedPortable(select, values, begin, end, out);
}

ORVANE_MULTIVERSION(void, MultiplyEvents,
                    (const float* const* source, float* const* dest, int signals, int count,
                     const double* matrix, int stride, double* tile),
                    (source, dest, signals, count, matrix, stride, tile))

}  // namespace Orvane
