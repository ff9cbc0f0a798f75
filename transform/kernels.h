// Kernels from columns of values to columns of pixels.
#pragma once

#include <cstdint>
#include <limits>

namespace Orvane {

/// What becomes of one value v, in double:
///
///     position = (a(v) - Origin) * Scale + Constant, where a(v) is v or asinh(v * Factor)
///     pixel    = the low 16 bits of position, truncated toward zero to 64 bits
///     pixel    = those of MirrorBase - pixel, in float, if the mapping is Mirrored
///     pixel    = LowPixel if v <= Low, else HighPixel if v >= High
///
/// An Origin or a Constant of 0 and bounds that are NaN are as good as absent.
struct PixelMapping {
    /// Fixed maps every value, NaN included, to LowPixel.
    enum class Form { Fixed, Linear, Asinh };

    Form Kind = Form::Fixed;
    double Factor = 0.0;
    double Origin = 0.0;
    double Scale = 0.0;
    double Constant = 0.0;
    bool Mirrored = false;
    float MirrorBase = 0.0F;
    double Low = std::numeric_limits<double>::quiet_NaN();
    double High = std::numeric_limits<double>::quiet_NaN();
    unsigned short LowPixel = 0;
    unsigned short HighPixel = 0;
};

/// The pixel of every value.
void MapColumn(const PixelMapping& mapping, const float* values, int count, unsigned short* pixels);

/// The pixel of every value whose bit is set, 65535 for the others; bit i % 32 of word i / 32 belongs to
/// value i.
void MapSelected(const PixelMapping& mapping, const float* values, const std::uint32_t* select, int count,
                 unsigned short* pixels);

/// The pixels of the values whose bit is set, one after another; nothing is written behind them.
void MapSelectedPacked(const PixelMapping& mapping, const float* values, const std::uint32_t* select,
                       int count, unsigned short* pixels);

}  // namespace Orvane
