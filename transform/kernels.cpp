#include "transform/kernels.h"

#include <orvane/OVConvertLinearAndLog.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "foundation/convert.h"
#include "foundation/instruction_set.h"
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

void MapExactly(const PixelMapping& mapping, const float* values, Pixel* pixels) {
    for (int i = 0; i < BlockSize; ++i) {
        pixels[i] = ExactPixel(mapping, values[i]);
    }
}

/// Nearly all positions fit 32-bit integers, which convert side by side.
ORVANE_KERNEL_INLINE void MapLinearBlock(const PixelMapping& mapping, const float* values, Pixel* pixels) {
    unsigned outside = 0;
    for (int i = 0; i < BlockSize; ++i) {
        const double position = (values[i] - mapping.Origin) * mapping.Scale + mapping.Constant;
        const bool fits = std::fabs(position) < 2147483648.0;
        outside |= static_cast<unsigned>(!fits);
        pixels[i] = static_cast<Pixel>(static_cast<int>(fits ? position : 0.0));
    }
    if (outside != 0) MapExactly(mapping, values, pixels);
}

void MapDoubtful(const PixelMapping& mapping, const float* values, const int* doubts, Pixel* pixels) {
    for (int i = 0; i < BlockSize; ++i) {
        if (doubts[i] != 0) pixels[i] = ExactPixel(mapping, values[i]);
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
        const int doubt = (lower ^ upper) | (bracket.Covers(v) ? 0 : 1);
        doubts[i] = v == 0.0F ? 0 : doubt;
        anyDoubt |= doubts[i];
        pixels[i] = static_cast<Pixel>(v == 0.0F ? zeroPixel : lower);
    }
    if (anyDoubt != 0) MapDoubtful(mapping, values, doubts, pixels);
}

ORVANE_KERNEL_INLINE void MirrorBlock(float base, Pixel* pixels) {
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

ORVANE_KERNEL_INLINE void ClampBlock(const FloatBounds& bounds, const float* values, Pixel* pixels) {
    for (int i = 0; i < BlockSize; ++i) {
        const Pixel belowHigh = values[i] >= bounds.High ? bounds.HighPixel : pixels[i];
        pixels[i] = values[i] <= bounds.Low ? bounds.LowPixel : belowHigh;
    }
}

/// A mapping with all that is decided once for a column.
struct ColumnMapping {
    explicit ColumnMapping(const PixelMapping& mapping)
        : Mapping(mapping),
          Bracket(mapping.Factor, mapping.Scale, mapping.Constant - mapping.Origin * mapping.Scale),
          ZeroPixel(ExactPixel(mapping, 0.0F)),
          Bounds{RoundedDown(mapping.Low), RoundedUp(mapping.High), mapping.LowPixel, mapping.HighPixel},
          IsClamped(!Bounds.IsAbsent()),
          IsBracketed(mapping.Kind == Form::Asinh && Bracket.IsProven()) {}

    ORVANE_KERNEL_INLINE void MapBlock(const float* values, Pixel* pixels) const {
        if (IsBracketed) {
            MapAsinhBlock(Mapping, Bracket, ZeroPixel, values, pixels);
        } else if (Mapping.Kind == Form::Linear) {
            MapLinearBlock(Mapping, values, pixels);
        } else {
            MapExactly(Mapping, values, pixels);
        }
        if (Mapping.Mirrored) MirrorBlock(Mapping.MirrorBase, pixels);
        if (IsClamped) ClampBlock(Bounds, values, pixels);
    }

    PixelMapping Mapping;
    AsinhBracket Bracket;
    int ZeroPixel;
    FloatBounds Bounds;
    bool IsClamped;
    bool IsBracketed;
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
