#include "operations/filter_kernels.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "foundation/intrinsics.h"
#include "sections/kernels.h"

namespace Orvane {
namespace {

// Gate numbers are formed as bit planes: plane p holds bit p of the number of each of 512 events. A filter
// then costs a handful of word operations per 32 events, however many events it holds, and the planes are
// spread into 16-bit numbers once at the end. The words of a tile are one cache line of each filter, because
// the filters' bits lie a power of two apart and share cache sets.
constexpr int TileWords = 16;
constexpr int MaxPlanes = 16;

struct Planes {
    int Count;  // planes in use
    std::uint32_t Words[MaxPlanes][TileWords];

    /// The bits of plane `p` for the 16 events of half word `half`.
    std::uint16_t Half(int p, int half) const {
        return static_cast<std::uint16_t>(Words[p][half / 2] >> (16 * (half % 2)));
    }
};

/// Resolves up to TileWords words from word `first` on, from the last filter to the first.
ORVANE_KERNEL_INLINE void ResolveBody(std::span<const std::uint32_t* const> filters,
                                      const std::uint32_t* base, int first, int words, Planes& planes) {
    std::uint32_t open[TileWords];
    for (int w = 0; w < words; ++w) {
        open[w] = base == nullptr ? ~std::uint32_t{0} : base[first + w];
    }
    for (int p = 0; p < planes.Count; ++p) {
        std::fill_n(planes.Words[p], words, 0U);
    }
    for (std::size_t number = filters.size(); number > 0; --number) {
        const std::uint32_t* filter = filters[number - 1] + first;
        std::uint32_t fresh[TileWords];
        for (int w = 0; w < words; ++w) {
            fresh[w] = filter[w] & open[w];
            open[w] ^= fresh[w];
        }
        for (int p = 0; p < planes.Count; ++p) {
            if (((number >> p) & 1U) == 0) continue;
            for (int w = 0; w < words; ++w) {
                planes.Words[p][w] |= fresh[w];
            }
        }
    }
}

ORVANE_KERNEL_INLINE void ResolveTileBody(std::span<const std::uint32_t* const> filters,
                                          const std::uint32_t* base, int first, int words, Planes& planes) {
    // A whole tile gets loops of known length.
    if (words == TileWords) return ResolveBody(filters, base, first, TileWords, planes);
    ResolveBody(filters, base, first, words, planes);
}

ORVANE_MULTIVERSION(void, ResolveTile,
                    (std::span<const std::uint32_t* const> filters, const std::uint32_t* base, int first,
                     int words, Planes& planes),
                    (filters, base, first, words, planes))

/// Writes the numbers of the events of `halves` half words.
void SpreadPortable(const Planes& planes, int halves, std::uint16_t unassigned, std::uint16_t* numbers) {
    // Multiplied by these, bit i of a half word comes to its top.
    static constexpr std::uint16_t ToTop[16] = {1U << 15, 1U << 14, 1U << 13, 1U << 12, 1U << 11, 1U << 10,
                                                1U << 9,  1U << 8,  1U << 7,  1U << 6,  1U << 5,  1U << 4,
                                                1U << 3,  1U << 2,  1U << 1,  1U << 0};
    for (int half = 0; half < halves; ++half, numbers += 16) {
        std::uint16_t lanes[16] = {};
        for (int p = planes.Count - 1; p >= 0; --p) {
            const std::uint16_t bits = planes.Half(p, half);
            // GCC vectorises these loops when it does not unroll them first.
#pragma GCC unroll 1
            for (int i = 0; i < 16; ++i) {
                const auto top = static_cast<std::uint16_t>(bits * ToTop[i]);
                lanes[i] = static_cast<std::uint16_t>(2 * lanes[i] + (top >> 15));
            }
        }
#pragma GCC unroll 1
        for (int i = 0; i < 16; ++i) {
            numbers[i] = lanes[i] == 0 ? unassigned : lanes[i];
        }
    }
}

#if ORVANE_WIDE_KERNELS
ORVANE_TARGET_AVX2 void SpreadAvx2(const Planes& planes, int halves, std::uint16_t unassigned,
                                   std::uint16_t* numbers) {
    const __m256i laneBits =
        _mm256_setr_epi16(1 << 0, 1 << 1, 1 << 2, 1 << 3, 1 << 4, 1 << 5, 1 << 6, 1 << 7, 1 << 8, 1 << 9,
                          1 << 10, 1 << 11, 1 << 12, 1 << 13, 1 << 14, std::numeric_limits<short>::min());
    const __m256i instead = _mm256_set1_epi16(static_cast<short>(unassigned));
    for (int half = 0; half < halves; ++half, numbers += 16) {
        __m256i lanes = _mm256_setzero_si256();
        for (int p = planes.Count - 1; p >= 0; --p) {
            const __m256i bits = _mm256_set1_epi16(static_cast<short>(planes.Half(p, half)));
            const __m256i minusOne = _mm256_cmpeq_epi16(_mm256_and_si256(bits, laneBits), laneBits);
            lanes = _mm256_sub_epi16(_mm256_add_epi16(lanes, lanes), minusOne);
        }
        const __m256i none = _mm256_cmpeq_epi16(lanes, _mm256_setzero_si256());
        lanes = _mm256_or_si256(lanes, _mm256_and_si256(none, instead));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(numbers), lanes);
    }
}
#endif

void Spread(const Planes& planes, int halves, std::uint16_t unassigned, std::uint16_t* numbers) {
#if ORVANE_WIDE_KERNELS
    if (ActiveInstructionSet() != InstructionSet::Baseline) {
        return SpreadAvx2(planes, halves, unassigned, numbers);
    }
#endif
    SpreadPortable(planes, halves, unassigned, numbers);
}

int KeepSelectedPortable(const std::uint32_t* select, int count, std::uint16_t* values) {
    int kept = 0;
    const auto keep = [&](int start, int size) {
        const std::uint32_t word = select[start / 32];
#pragma GCC unroll 32
        for (int i = 0; i < size; ++i) {
            values[kept] = values[start + i];
            kept += static_cast<int>((word >> i) & 1U);
        }
    };
    int start = 0;
    for (; count - start >= 32; start += 32) {
        keep(start, 32);
    }
    if (start < count) keep(start, count - start);
    return kept;
}

#if ORVANE_WIDE_KERNELS

/// For every set of eight lanes, the bytes that move its 16-bit lanes to the front, in order.
struct PackingTable {
    constexpr PackingTable() : Bytes() {
        for (unsigned lanes = 0; lanes < 256; ++lanes) {
            unsigned next = 0;
            for (unsigned lane = 0; lane < 8; ++lane) {
                if ((lanes >> lane & 1U) == 0) continue;
                Bytes[lanes][next++] = static_cast<std::uint8_t>(2 * lane);
                Bytes[lanes][next++] = static_cast<std::uint8_t>(2 * lane + 1);
            }
        }
    }
    alignas(16) std::uint8_t Bytes[256][16];
};

constexpr PackingTable Packing;

ORVANE_TARGET_AVX2 int KeepSelectedAvx2(const std::uint32_t* select, int count, std::uint16_t* values) {
    int kept = 0;
    int start = 0;
    // Eight lanes are stored, but never past the eight that were read.
    for (; count - start >= 8; start += 8) {
        const std::uint32_t lanes = (select[start / 32] >> (start % 32)) & 0xFFU;
        const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(values + start));
        const __m128i bytes = _mm_load_si128(reinterpret_cast<const __m128i*>(Packing.Bytes[lanes]));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(values + kept), _mm_shuffle_epi8(eight, bytes));
        kept += std::popcount(lanes);
    }
    for (; start < count; ++start) {
        values[kept] = values[start];
        kept += static_cast<int>((select[start / 32] >> (start % 32)) & 1U);
    }
    return kept;
}

#endif

/// packed[i] = the bits of values[i] at the set positions of masks[i], moved together at the low end.
void ExtractBitsPortable(const std::uint32_t* values, const std::uint32_t* masks, int words,
                         std::uint32_t* packed) {
    for (int w = 0; w < words; ++w) {
        packed[w] = 0;
        int position = 0;
        for (std::uint32_t mask = masks[w]; mask != 0; mask &= mask - 1, ++position) {
            packed[w] |= ((values[w] >> std::countr_zero(mask)) & 1U) << position;
        }
    }
}

#if ORVANE_WIDE_KERNELS
ORVANE_TARGET_AVX2 void ExtractBitsBmi2(const std::uint32_t* values, const std::uint32_t* masks, int words,
                                        std::uint32_t* packed) {
    for (int w = 0; w < words; ++w) {
        packed[w] = _pext_u32(values[w], masks[w]);
    }
}
#endif

void ExtractBits(const std::uint32_t* values, const std::uint32_t* masks, int words, std::uint32_t* packed) {
#if ORVANE_WIDE_KERNELS
    if (ActiveInstructionSet() != InstructionSet::Baseline)
        return ExtractBitsBmi2(values, masks, words, packed);
#endif
    ExtractBitsPortable(values, masks, words, packed);
}

/// Appends the low popcount(masks[i]) bits of every packed[i] behind the first `position` bits of `out`.
/// Returns the new position.
ORVANE_KERNEL_INLINE int AppendBitsBody(const std::uint32_t* packed, const std::uint32_t* masks, int words,
                                        std::uint32_t* out, int position) {
    std::uint32_t* next = out + position / 32;
    int filled = position % 32;
    std::uint64_t buffer = filled > 0 ? *next : 0;
    for (int w = 0; w < words; ++w) {
        buffer |= std::uint64_t{packed[w]} << filled;
        filled += std::popcount(masks[w]);
        if (filled < 32) continue;
        *next++ = static_cast<std::uint32_t>(buffer);
        buffer >>= 32;
        filled -= 32;
    }
    if (filled > 0) *next = static_cast<std::uint32_t>(buffer);
    return static_cast<int>(next - out) * 32 + filled;
}

ORVANE_MULTIVERSION(int, AppendBits,
                    (const std::uint32_t* packed, const std::uint32_t* masks, int words, std::uint32_t* out,
                     int position),
                    (packed, masks, words, out, position))

/// The bits of word `word` that belong to the events `begin` to `end - 1`; some must.
std::uint32_t RangeMask(int word, int begin, int end) {
    const int first = std::max(begin - 32 * word, 0);
    const int behind = std::max(32 * (word + 1) - end, 0);
    return (~std::uint32_t{0} << first) & (~std::uint32_t{0} >> behind);
}

}  // namespace

void NumberEvents(std::span<const std::uint32_t* const> filters, const std::uint32_t* base, int count,
                  std::uint16_t unassigned, std::uint16_t* numbers) {
    constexpr int TileEvents = 32 * TileWords;
    Planes planes;
    planes.Count = static_cast<int>(std::bit_width(filters.size()));
    int start = 0;
    for (; start + TileEvents <= count; start += TileEvents) {
        ResolveTile(filters, base, start / 32, TileWords, planes);
        Spread(planes, 2 * TileWords, unassigned, numbers + start);
    }
    const int rest = WordsFor(count - start);
    std::uint16_t last[TileEvents];
    ResolveTile(filters, base, start / 32, rest, planes);
    Spread(planes, 2 * rest, unassigned, last);
    std::copy_n(last, count - start, numbers + start);
}

int KeepSelected(const std::uint32_t* select, int count, std::uint16_t* values) {
#if ORVANE_WIDE_KERNELS
    if (ActiveInstructionSet() != InstructionSet::Baseline) return KeepSelectedAvx2(select, count, values);
#endif
    return KeepSelectedPortable(select, count, values);
}

void PackSelectedBits(const std::uint32_t* select, const std::uint32_t* bits, int begin, int end,
                      std::uint32_t* out, int position) {
    constexpr int BlockWords = 64;
    std::uint32_t masks[BlockWords];
    std::uint32_t packed[BlockWords];
    const int lastWord = WordsFor(end);
    for (int first = begin / 32; first < lastWord; first += BlockWords) {
        const int words = std::min(BlockWords, lastWord - first);
        for (int w = 0; w < words; ++w) {
            masks[w] = select[first + w] & RangeMask(first + w, begin, end);
        }
        ExtractBits(bits + first, masks, words, packed);
        position = AppendBits(packed, masks, words, out, position);
    }
}

int SelectSpaced(std::uint32_t* words, int count, float step, float& position, int& remaining) {
    int selected = 0;
    for (; position < static_cast<float>(count) && remaining > 0; --remaining, ++selected) {
        const auto event = static_cast<unsigned>(position);
        words[event / 32] |= 1U << (event % 32);
        position += step;
    }
    return selected;
}

}  // namespace Orvane
