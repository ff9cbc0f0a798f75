#include "transform/kernels.h"

#include <orvane/OVConvertLinearAndLog.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "foundation/convert.h"
#include "foundation/instruction_set.h"
#include "foundation/intrinsics.h"
#include "operations/filter_kernels.h"
#include "sections/kernels.h"
#include "transform/asinh_bracket.h"

namespace Orvane {
namespace {

using Pixel = unsigned short;
using Form = PixelMapping::Form;

// Columns are mapped in blocks of this many values; the last one is filled up.
constexpr int BlockSize = 64;
constexpr float Infinity = std::numeric_limits<float>::infinity();

/// The largest float up to `bound`: floats are at most `bound` just when they are at most this.
float RoundedDown(double bound) {
    const auto nearest = static_cast<float>(bound);
    return nearest > bound ? std::nextafter(nearest, -Infinity) : nearest;
}

/// The smallest float from `bound` on.
float RoundedUp(double bound) {
    return -RoundedDown(-bound);
}

/// The stated formula of a Linear or Asinh mapping, without mirror and bounds.
Pixel ExactPixel(const PixelMapping& mapping, float value) {
    const double v = value;
    const double a =
        mapping.Kind == Form::Asinh ? OVConvertLinearAndLog().LinearConvertToAsinh(v, mapping.Factor) : v;
    return static_cast<Pixel>(TruncateToInt64((a - mapping.Origin) * mapping.Scale + mapping.Constant));
}

/// All values up to this, on either side of zero, have positions below 2^31 on a linear axis: (|v| +
/// |Origin|) |Scale| + |Constant| is. Negative, so that there are no such values, when nothing is known; half
/// of the room is given away, which covers all roundings.
float ReachOf(const PixelMapping& mapping) {
    const double room = 1073741824.0 - std::fabs(mapping.Constant);
    const double reach = room / std::fabs(mapping.Scale) - std::fabs(mapping.Origin);
    return reach > 0.0 ? static_cast<float>(std::min(reach, 1e38)) : -1.0F;
}

void MapExactly(const PixelMapping& mapping, const float* values, Pixel* pixels) {
    for (int i = 0; i < BlockSize; ++i) {
        pixels[i] = ExactPixel(mapping, values[i]);
    }
}

/// Values up to `reach` on either side of zero have positions that fit 32-bit integers, which convert side by
/// side. Others are rare.
template <bool HasOrigin>
ORVANE_KERNEL_INLINE void MapLinearBlock(const PixelMapping& mapping, float reach, const float* values,
                                         Pixel* pixels) {
    int anyBeyond = 0;
    for (int i = 0; i < BlockSize; ++i) {
        anyBeyond |= std::fabs(values[i]) <= reach ? 0 : -1;
    }
    if (anyBeyond != 0) return MapExactly(mapping, values, pixels);
    for (int i = 0; i < BlockSize; ++i) {
        const double v = values[i];
        const double distance = HasOrigin ? v - mapping.Origin : v;
        pixels[i] = static_cast<Pixel>(static_cast<int>(distance * mapping.Scale + mapping.Constant));
    }
}

#if ORVANE_WIDE_KERNELS

/// Four pixels of a linear axis without origin, as 32-bit integers.
ORVANE_TARGET_AVX2 ORVANE_KERNEL_INLINE __m128i FourLinearAvx2(const float* values, __m256d scale,
                                                               __m256d constant) {
    const __m256d v = _mm256_cvtps_pd(_mm_loadu_ps(values));
    const __m128i truncated = _mm256_cvttpd_epi32(_mm256_add_pd(_mm256_mul_pd(v, scale), constant));
    return _mm_and_si128(truncated, _mm_set1_epi32(0xFFFF));
}

/// MapLinearBlock<false>: GCC widens the values from registers, which costs more than from memory.
ORVANE_TARGET_AVX2 void MapLinearBlockAvx2(const PixelMapping& mapping, float reach, const float* values,
                                           Pixel* pixels) {
    const __m256d scale = _mm256_set1_pd(mapping.Scale);
    const __m256d constant = _mm256_set1_pd(mapping.Constant);
    const __m256 reaches = _mm256_set1_ps(reach);
    __m256 beyond = _mm256_setzero_ps();
    for (int i = 0; i < BlockSize; i += 8) {
        const __m256 magnitude = _mm256_andnot_ps(_mm256_set1_ps(-0.0F), _mm256_loadu_ps(values + i));
        beyond = _mm256_or_ps(beyond, _mm256_cmp_ps(magnitude, reaches, _CMP_NLE_UQ));
        const __m128i low = FourLinearAvx2(values + i, scale, constant);
        const __m128i high = FourLinearAvx2(values + i + 4, scale, constant);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels + i), _mm_packus_epi32(low, high));
    }
    if (_mm256_movemask_ps(beyond) != 0) MapExactly(mapping, values, pixels);
}

#endif

/// The doubtful values of a block are often all the same: the one that saturated events share.
void MapDoubtful(const PixelMapping& mapping, const float* values, const int* doubts, Pixel* pixels) {
    float last = std::numeric_limits<float>::quiet_NaN();
    Pixel lastPixel = 0;
    for (int i = 0; i < BlockSize; ++i) {
        if (doubts[i] == 0) continue;
        if (values[i] != last) {
            last = values[i];
            lastPixel = ExactPixel(mapping, last);
        }
        pixels[i] = lastPixel;
    }
}

/// A pixel is certain where both ends of the bracket have the same, which is nearly everywhere. Zeros, which
/// are frequent and lie on a pixel border when the axis is symmetric, are known beforehand.
ORVANE_KERNEL_INLINE void MapAsinhBlock(const PixelMapping& mapping, const AsinhBracket& bracket,
                                        int zeroPixel, const float* values, Pixel* pixels) {
    int doubts[BlockSize];
    int anyDoubt = 0;
    for (int i = 0; i < BlockSize; ++i) {
        const float v = values[i];
        const float at = bracket.At(v);
        const int lower = static_cast<int>(bracket.Lower(at));
        const int upper = static_cast<int>(bracket.Upper(at));
        const int doubt = (lower ^ upper) | (bracket.Covers(v) ? 0 : -1);
        doubts[i] = v == 0.0F ? 0 : doubt;
        anyDoubt |= doubts[i];
        pixels[i] = static_cast<Pixel>(v == 0.0F ? zeroPixel : lower);
    }
    if (anyDoubt != 0) MapDoubtful(mapping, values, doubts, pixels);
}

/// Counts whole pixels back from `base`; nearly always within 32-bit integers.
ORVANE_KERNEL_INLINE void MirrorBlock(float base, Pixel* pixels) {
    if (std::fabs(base) <= 1073741824.0F) {
        for (int i = 0; i < BlockSize; ++i) {
            pixels[i] = static_cast<Pixel>(static_cast<int>(base - static_cast<float>(pixels[i])));
        }
        return;
    }
    for (int i = 0; i < BlockSize; ++i) {
        const float mirrored = base - static_cast<float>(pixels[i]);
        pixels[i] = static_cast<Pixel>(TruncateToInt64(static_cast<double>(mirrored)));
    }
}

/// The bounds as floats, so that they need no conversion of the values.
struct FloatBounds {
    float Low;
    float High;
    Pixel LowPixel;
    Pixel HighPixel;
    bool IsAbsent() const { return std::isnan(Low) && std::isnan(High); }
};

/// The bounds come by value, because the compiler must assume that pixels overlap what it is referred to.
ORVANE_KERNEL_INLINE void ClampBlock(const FloatBounds bounds, const float* values, Pixel* pixels) {
    const int lowPixel = bounds.LowPixel;
    const int highPixel = bounds.HighPixel;
    for (int i = 0; i < BlockSize; ++i) {
        const float v = values[i];
        const int formula = pixels[i];
        const int belowHigh = v >= bounds.High ? highPixel : formula;
        pixels[i] = static_cast<Pixel>(v <= bounds.Low ? lowPixel : belowHigh);
    }
}

/// A mapping with all that is decided once for a column.
struct ColumnMapping {
    explicit ColumnMapping(const PixelMapping& mapping)
        : Mapping(mapping),
          Bracket(mapping.Factor, mapping.Scale, mapping.Constant - mapping.Origin * mapping.Scale),
          ZeroPixel(ExactPixel(mapping, 0.0F)),
          Reach(ReachOf(mapping)),
          Bounds{RoundedDown(mapping.Low), RoundedUp(mapping.High), mapping.LowPixel, mapping.HighPixel},
          IsClamped(!Bounds.IsAbsent()),
          IsBracketed(mapping.Kind == Form::Asinh && Bracket.IsProven()) {}

    ORVANE_KERNEL_INLINE void MapBlock(const float* values, Pixel* pixels) const {
        if (IsBracketed) {
            MapAsinhBlock(Mapping, Bracket, ZeroPixel, values, pixels);
        } else if (Mapping.Kind == Form::Linear) {
            MapAnyLinearBlock(values, pixels);
        } else {
            MapExactly(Mapping, values, pixels);
        }
        if (Mapping.Mirrored) MirrorBlock(Mapping.MirrorBase, pixels);
        if (IsClamped) ClampBlock(Bounds, values, pixels);
    }

    ORVANE_KERNEL_INLINE void MapAnyLinearBlock(const float* values, Pixel* pixels) const {
        if (Mapping.Origin != 0.0) return MapLinearBlock<true>(Mapping, Reach, values, pixels);
#if ORVANE_WIDE_KERNELS
        if (HasAvx2Only) return MapLinearBlockAvx2(Mapping, Reach, values, pixels);
#endif
        MapLinearBlock<false>(Mapping, Reach, values, pixels);
    }

    PixelMapping Mapping;
    AsinhBracket Bracket;
    int ZeroPixel;
    float Reach;
    FloatBounds Bounds;
    bool IsClamped;
    bool IsBracketed;
    bool HasAvx2Only = ActiveInstructionSet() == InstructionSet::Avx2;
};

ORVANE_KERNEL_INLINE void MapBlocksBody(const ColumnMapping& mapping, const float* values, int count,
                                        Pixel* pixels) {
    int i = 0;
    for (; count - i >= BlockSize; i += BlockSize) {
        mapping.MapBlock(values + i, pixels + i);
    }
    if (i >= count) return;
    float rest[BlockSize] = {};
    Pixel restPixels[BlockSize];
    std::copy(values + i, values + count, rest);
    mapping.MapBlock(rest, restPixels);
    std::copy_n(restPixels, count - i, pixels + i);
}

ORVANE_MULTIVERSION(void, MapBlocks,
                    (const ColumnMapping& mapping, const float* values, int count, Pixel* pixels),
                    (mapping, values, count, pixels))

/// pixels[i] becomes 65535 where bit i is clear.
ORVANE_KERNEL_INLINE void HideUnselectedBody(const std::uint32_t* select, int count, Pixel* pixels) {
    static constexpr Pixel Lanes[16] = {1U << 0,  1U << 1,  1U << 2,  1U << 3, 1U << 4,  1U << 5,
                                        1U << 6,  1U << 7,  1U << 8,  1U << 9, 1U << 10, 1U << 11,
                                        1U << 12, 1U << 13, 1U << 14, 1U << 15};
    const auto half = [select](int start) { return static_cast<Pixel>(select[start / 32] >> (start % 32)); };
    int start = 0;
    for (; count - start >= 16; start += 16) {
        const Pixel bits = half(start);
        // GCC vectorises this loop when it does not unroll it first.
#pragma GCC unroll 1
        for (int i = 0; i < 16; ++i) {
            pixels[start + i] = (bits & Lanes[i]) != 0 ? pixels[start + i] : Pixel{65535};
        }
    }
    if (start >= count) return;
    const Pixel bits = half(start);
    for (int i = 0; start + i < count; ++i) {
        if ((bits & Lanes[i]) == 0) pixels[start + i] = 65535;
    }
}

ORVANE_MULTIVERSION(void, HideUnselected, (const std::uint32_t* select, int count, Pixel* pixels),
                    (select, count, pixels))

}  // namespace

void MapColumn(const PixelMapping& mapping, const float* values, int count, Pixel* pixels) {
    if (mapping.Kind == Form::Fixed) {
        std::fill_n(pixels, count, mapping.LowPixel);
        return;
    }
    MapBlocks(ColumnMapping(mapping), values, count, pixels);
}

void MapSelected(const PixelMapping& mapping, const float* values, const std::uint32_t* select, int count,
                 Pixel* pixels) {
    MapColumn(mapping, values, count, pixels);
    HideUnselected(select, count, pixels);
}

void MapSelectedPacked(const PixelMapping& mapping, const float* values, const std::uint32_t* select,
                       int count, Pixel* pixels) {
    constexpr int TileSize = 1024;
    Pixel tile[TileSize];
    for (int start = 0; start < count; start += TileSize) {
        const int size = std::min(TileSize, count - start);
        MapColumn(mapping, values + start, size, tile);
        const int kept = KeepSelected(select + start / 32, size, tile);
        pixels = std::copy_n(tile, kept, pixels);
    }
}

}  // namespace Orvane
