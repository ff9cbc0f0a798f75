// Integer DATA on the way out: values are cut to channels column by column, then moved to rows.
#include "fcs/channel_kernels.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "fcs/row_kernels.h"
#include "fcs/tile_kernels.h"
#include "fcs/words.h"
#include "foundation/convert.h"
#include "foundation/instruction_set.h"

namespace Orvane {
namespace {

constexpr double TwoTo24 = 16777216.0;
constexpr double TwoTo31 = 2147483648.0;
constexpr double TwoTo32 = 4294967296.0;

// The stated formula, for every scale and range.
std::uint32_t Channel(double x, const ChannelRule& rule) {
    if (x < rule.Offset) return 0;
    const double y = (rule.IsLog ? std::log10(x * rule.LogScale) : x) * rule.Scale;
    if (y >= rule.Range) return rule.Top;
    if (y < 0) return 0;
    return static_cast<std::uint32_t>(TruncateToInt64(y));
}

// The smallest float that is not below `bound`: a float is below the one exactly when it is below the other.
float RoundUp(double bound) {
    const auto nearest = static_cast<float>(bound);
    return nearest < bound ? std::nextafter(nearest, std::numeric_limits<float>::infinity()) : nearest;
}

// With a whole range, cutting to `top` before truncating is the same as comparing with the range. NaN is cut
// to 0, and so is what the offset hides.
template <class Number>
ORVANE_KERNEL_INLINE Number CutChannel(float value, float offset, Number scale, Number top) {
    const Number y = (value < offset ? 0.0F : value) * scale;
    const Number notNegative = y > 0 ? y : 0;
    return notNegative < top ? notNegative : top;
}

// Linear scales with a whole range that 32 bits hold.
ORVANE_KERNEL_INLINE void ToLinearChannelsBody(const float* values, int count, float offset, double scale,
                                               double top, float* words) {
    for (int i = 0; i < count; ++i) {
        const double y = CutChannel(values[i], offset, scale, top);
        const bool high = y >= TwoTo31;
        const auto low = static_cast<std::int32_t>(y - (high ? TwoTo31 : 0.0));
        words[i] = std::bit_cast<float>(static_cast<std::uint32_t>(low) | (high ? 0x80000000U : 0U));
    }
}
ORVANE_MULTIVERSION(void, ToLinearChannels,
                    (const float* values, int count, float offset, double scale, double top, float* words),
                    (values, count, offset, scale, top, words))

// The usual scale of 1, and a top channel that a float holds.
ORVANE_KERNEL_INLINE void ToPlainChannelsBody(const float* values, int count, float offset, float top,
                                              float* words) {
    for (int i = 0; i < count; ++i) {
        words[i] = std::bit_cast<float>(static_cast<std::int32_t>(CutChannel(values[i], offset, 1.0F, top)));
    }
}
ORVANE_MULTIVERSION(void, ToPlainChannels,
                    (const float* values, int count, float offset, float top, float* words),
                    (values, count, offset, top, words))

template <class Stored>
void WriteChannelColumns(const EventRange& range, unsigned char* raw, const OVFCSIntParFormat& format) {
    const std::ptrdiff_t rowBytes = RowBytes(range, Stored::Bytes);
    InColumns(range, raw, Stored::Bytes, [&](unsigned char* to, int p, const float* column, int count) {
        float words[BlockEvents];
        ToChannels(column, count, MakeChannelRule(format, p), words);
        for (int e = 0; e < count; ++e) {
            const auto word = static_cast<typename Stored::Word>(std::bit_cast<std::uint32_t>(words[e]));
            Stored::Store(word, to + e * rowBytes);
        }
    });
}

// Makes the channels of a few tiles at a time and moves them on while they are in the cache.
template <class Convert>
void WriteChannelTiles(const EventRange& range, unsigned char* raw, int wordBytes, ByteOrder order,
                       const OVFCSIntParFormat& format, Convert convert) {
    constexpr int Block = 4 * TileEvents;
    alignas(64) float words[TileParameters][Block];
    float* columns[TileParameters];
    ChannelRule rules[TileParameters];
    for (int p = 0; p < range.ParCount; ++p) {
        columns[p] = words[p];
        rules[p] = MakeChannelRule(format, p);
    }
    for (int event = 0; event < range.Count; event += Block) {
        const int count = std::min(Block, range.Count - event);
        FetchAhead(range, event, Block);
        for (int p = 0; p < range.ParCount; ++p) {
            ToChannels(range.Columns[p] + range.First + event, count, rules[p], words[p]);
        }
        WriteThroughTiles(EventRange{columns, range.ParCount, 0, count},
                          raw + event * RowBytes(range, wordBytes), wordBytes, order, convert);
    }
}

template <class Word>
void WriteIntColumns(const EventRange& range, unsigned char* raw, ByteOrder order,
                     const OVFCSIntParFormat& format) {
    if (order == ByteOrder::Native) {
        return WriteChannelColumns<StoredWord<Word, ByteOrder::Native>>(range, raw, format);
    }
    WriteChannelColumns<StoredWord<Word, ByteOrder::Reversed>>(range, raw, format);
}

// `convert` stores the low bits of channels as words in the machine's order.
template <class Word, class Convert>
void WriteInt(const EventRange& range, unsigned char* raw, ByteOrder order, const OVFCSIntParFormat& format,
              Convert convert) {
    if (range.ParCount > TileParameters) return WriteIntColumns<Word>(range, raw, order, format);
    constexpr int WordBytes = sizeof(Word);
    InTiles(
        range, raw, WordBytes,
        [&](const EventRange& part, unsigned char* to, Stores) {
            WriteChannelTiles(part, to, WordBytes, order, format, convert);
        },
        [&](const EventRange& part, unsigned char* to) { WriteIntColumns<Word>(part, to, order, format); });
}

void CopyWords(const float* words, unsigned char* raw, int count) {
    std::memcpy(raw, words, static_cast<std::size_t>(count) * sizeof(float));
}

}  // namespace

ChannelRule MakeChannelRule(const OVFCSIntParFormat& format, int parameter) {
    const double range = format.Range[parameter];
    return {format.Offset[parameter],
            format.LogScale[parameter],
            format.Scale[parameter],
            range,
            static_cast<std::uint32_t>(TruncateToInt64(range - 1.0)),
            format.IsLog[parameter]};
}

void ToChannels(const float* values, int count, const ChannelRule& rule, float* words) {
    const bool isWhole = rule.Range >= 1 && rule.Range <= TwoTo32 && std::trunc(rule.Range) == rule.Range;
    if (rule.IsLog || !isWhole) {
        for (int i = 0; i < count; ++i)
            words[i] = std::bit_cast<float>(Channel(values[i], rule));
    } else if (rule.Scale == 1.0 && rule.Range <= TwoTo24) {
        ToPlainChannels(values, count, RoundUp(rule.Offset), static_cast<float>(rule.Top), words);
    } else {
        ToLinearChannels(values, count, RoundUp(rule.Offset), rule.Scale, rule.Top, words);
    }
}

void WriteInt16(const EventRange& range, unsigned char* raw, ByteOrder order,
                const OVFCSIntParFormat& format) {
    WriteInt<std::uint16_t>(range, raw, order, format, StoreLowHalves);
}

void WriteInt32(const EventRange& range, unsigned char* raw, ByteOrder order,
                const OVFCSIntParFormat& format) {
    WriteInt<std::uint32_t>(range, raw, order, format, CopyWords);
}

}  // namespace Orvane
