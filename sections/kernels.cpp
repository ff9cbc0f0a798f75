#include "sections/kernels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "foundation/convert.h"
#include "foundation/instruction_set.h"

namespace Orvane {
namespace {

// Lanes of the loops that keep several running values: enough for two of the widest registers.
constexpr int Lanes = 32;

constexpr std::uint32_t AllBits = ~std::uint32_t{0};

/// A word with its `bits` (1 to 31) lowest bits set.
ORVANE_KERNEL_INLINE std::uint32_t LowBits(int bits) {
    return (std::uint32_t{1} << bits) - 1;
}

/// The number of set bits of each byte of `word`, in that byte.
ORVANE_KERNEL_INLINE std::uint32_t CountInBytes(std::uint32_t word) {
    word -= (word >> 1) & 0x55555555U;
    word = (word & 0x33333333U) + ((word >> 2) & 0x33333333U);
    return (word + (word >> 4)) & 0x0F0F0F0FU;
}

ORVANE_KERNEL_INLINE std::uint32_t SumOfBytes(std::uint32_t word) {
    word = (word & 0x00FF00FFU) + ((word >> 8) & 0x00FF00FFU);
    return (word & 0xFFFFU) + (word >> 16);
}

struct PlainWords {
    const std::uint32_t* Words;
    ORVANE_KERNEL_INLINE std::uint32_t operator()(int i) const { return Words[i]; }
};

struct CommonWords {
    const std::uint32_t* A;
    const std::uint32_t* B;
    ORVANE_KERNEL_INLINE std::uint32_t operator()(int i) const { return A[i] & B[i]; }
};

/// The set bits of words `first` to `end - 1`. Three words at a time are added bit by bit into a word of ones
/// and a word of twos, whose counts per byte (24 at most) fit ten times into the byte sums of a lane.
template <class Source>
ORVANE_KERNEL_INLINE int CountInWords(Source word, int first, int end) {
    constexpr int Step = 3 * Lanes;
    constexpr int MostSteps = 10;
    std::uint32_t total = 0;
    int i = first;
    while (end - i >= Step) {
        std::uint32_t sums[Lanes] = {};
        const int steps = std::min(MostSteps, (end - i) / Step);
        for (int step = 0; step < steps; ++step, i += Step) {
            for (int lane = 0; lane < Lanes; ++lane) {
                const std::uint32_t a = word(i + lane);
                const std::uint32_t b = word(i + Lanes + lane);
                const std::uint32_t c = word(i + 2 * Lanes + lane);
                const std::uint32_t ones = a ^ b ^ c;
                const std::uint32_t twos = (a & b) | ((a ^ b) & c);
                sums[lane] += CountInBytes(ones) + 2 * CountInBytes(twos);
            }
        }
        for (const std::uint32_t sum : sums)
            total += SumOfBytes(sum);
    }
    for (; i < end; ++i)
        total += SumOfBytes(CountInBytes(word(i)));
    return static_cast<int>(total);
}

template <class Source>
ORVANE_KERNEL_INLINE int CountInBits(Source word, int bits) {
    const int whole = bits / 32;
    const int rest = bits % 32;
    const int count = CountInWords(word, 0, whole);
    return rest > 0 ? count + std::popcount(word(whole) & LowBits(rest)) : count;
}

/// The 1-based position of the `k`-th set bit of a word that has as many.
ORVANE_KERNEL_INLINE int PositionInWord(std::uint32_t word, int k) {
    for (int i = 1; i < k; ++i) {
        word &= word - 1;
    }
    return std::countr_zero(word) + 1;
}

ORVANE_KERNEL_INLINE void SetMasked(std::uint32_t& word, std::uint32_t mask, bool value) {
    word = value ? word | mask : word & ~mask;
}

ORVANE_KERNEL_INLINE void AndWordsBody(std::uint32_t* dest, const std::uint32_t* other, int words) {
    for (int i = 0; i < words; ++i) {
        dest[i] &= other[i];
    }
}

ORVANE_KERNEL_INLINE void OrWordsBody(std::uint32_t* dest, const std::uint32_t* other, int words) {
    for (int i = 0; i < words; ++i) {
        dest[i] |= other[i];
    }
}

ORVANE_KERNEL_INLINE void NotWordsBody(std::uint32_t* dest, int words) {
    for (int i = 0; i < words; ++i) {
        dest[i] = ~dest[i];
    }
}

ORVANE_KERNEL_INLINE int CountBitsBody(const std::uint32_t* words, int bits) {
    return CountInBits(PlainWords{words}, bits);
}

ORVANE_KERNEL_INLINE int CountCommonBitsBody(const std::uint32_t* a, const std::uint32_t* b, int bits) {
    return CountInBits(CommonWords{a, b}, bits);
}

ORVANE_KERNEL_INLINE int PrefixWithSetBitsBody(const std::uint32_t* words, int bits, int k) {
    constexpr int Block = 6 * Lanes;
    if (k < 1) return 0;
    const int whole = bits / 32;
    int first = 0;
    for (; whole - first >= Block; first += Block) {
        const int count = CountInWords(PlainWords{words}, first, first + Block);
        if (count >= k) break;
        k -= count;
    }
    for (int i = first; i < WordsFor(bits); ++i) {
        const std::uint32_t word = i < whole ? words[i] : words[i] & LowBits(bits % 32);
        const int count = std::popcount(word);
        if (count >= k) return 32 * i + PositionInWord(word, k);
        k -= count;
    }
    return 0;
}

ORVANE_KERNEL_INLINE void AddToColumnBody(float* values, int count, float delta) {
    for (int i = 0; i < count; ++i) {
        values[i] += delta;
    }
}

ORVANE_KERNEL_INLINE void FillWithIndexBody(float* values, int count) {
    for (int i = 0; i < count; ++i) {
        values[i] = static_cast<float>(i);
    }
}

struct Above {
    ORVANE_KERNEL_INLINE bool operator()(float a, float b) const { return a > b; }
};
struct Below {
    ORVANE_KERNEL_INLINE bool operator()(float a, float b) const { return a < b; }
};

/// The extreme of `start` and `lanes`, which saw the whole column. Only a zero that the column brought in may
/// have the other sign than the first one met.
template <class Beats>
ORVANE_KERNEL_INLINE float ExtremeOfLanes(const float* lanes, const float* values, int count, float start) {
    float extreme = start;
    for (int lane = 0; lane < Lanes; ++lane) {
        if (Beats()(lanes[lane], extreme)) extreme = lanes[lane];
    }
    if (extreme == 0.0F && start != 0.0F) return *std::find(values, values + count, 0.0F);
    return extreme;
}

ORVANE_KERNEL_INLINE void FindMaxAndMinBody(const float* values, int count, float& max, float& min) {
    float highest[Lanes];
    float lowest[Lanes];
    for (int lane = 0; lane < Lanes; ++lane) {
        highest[lane] = max;
        lowest[lane] = min;
    }
    int i = 0;
    for (; count - i >= Lanes; i += Lanes) {
        for (int lane = 0; lane < Lanes; ++lane) {
            const float value = values[i + lane];
            highest[lane] = value > highest[lane] ? value : highest[lane];
            lowest[lane] = value < lowest[lane] ? value : lowest[lane];
        }
    }
    for (; i < count; ++i) {
        if (values[i] > highest[0]) highest[0] = values[i];
        if (values[i] < lowest[0]) lowest[0] = values[i];
    }
    max = ExtremeOfLanes<Above>(highest, values, count, max);
    min = ExtremeOfLanes<Below>(lowest, values, count, min);
}

/// At most 64 values. Nearly all blocks fit 32-bit integers, which convert side by side.
ORVANE_KERNEL_INLINE void ScaleBlockToModel(const float* values, int count, float low, float factor,
                                            unsigned short* model) {
    float scaled[64];
    unsigned outside = 0;
    for (int i = 0; i < count; ++i) {
        scaled[i] = (values[i] - low) * factor;
        outside |= static_cast<unsigned>(!(std::fabs(scaled[i]) < 2147483648.0F));
    }
    if (outside == 0) {
        for (int i = 0; i < count; ++i) {
            model[i] = static_cast<unsigned short>(static_cast<int>(scaled[i]));
        }
    } else {
        for (int i = 0; i < count; ++i) {
            model[i] = static_cast<unsigned short>(TruncateToInt64(static_cast<double>(scaled[i])));
        }
    }
}

ORVANE_KERNEL_INLINE void ScaleToModelBody(const float* values, int count, float low, float factor,
                                           unsigned short* model) {
    int i = 0;
    for (; count - i >= 64; i += 64) {
        ScaleBlockToModel(values + i, 64, low, factor, model + i);
    }
    ScaleBlockToModel(values + i, count - i, low, factor, model + i);
}

ORVANE_KERNEL_INLINE int SumCountersBody(const int* counters, int count) {
    std::uint32_t sum = 0;
    for (int i = 0; i < count; ++i) {
        sum += static_cast<std::uint32_t>(counters[i]);
    }
    return static_cast<int>(sum);
}

ORVANE_KERNEL_INLINE void ScaleCountersBody(int* counters, int count, double factor) {
    for (int i = 0; i < count; ++i) {
        counters[i] = static_cast<int>(TruncateToInt64(counters[i] * factor + 0.5));
    }
}

}  // namespace

void FillBits(std::uint32_t* words, int start, int count, bool value) {
    if (count < 1) return;
    const int lastBit = start + count - 1;
    const int first = start / 32;
    const int last = lastBit / 32;
    const std::uint32_t head = AllBits << (start % 32);
    const std::uint32_t tail = AllBits >> (31 - lastBit % 32);
    if (first == last) return SetMasked(words[first], head & tail, value);
    SetMasked(words[first], head, value);
    std::fill(words + first + 1, words + last, value ? AllBits : 0U);
    SetMasked(words[last], tail, value);
}

double SumColumn(const float* values, int count) {
    double sum = 0.0;
    for (int i = 0; i < count; ++i) {
        sum += static_cast<double>(values[i]);
    }
    return sum;
}

double AddSquaredDifferences(const float* values, int count, float mean, double sum) {
    for (int i = 0; i < count; ++i) {
        const float difference = values[i] - mean;
        sum += static_cast<double>(difference * difference);
    }
    return sum;
}

ORVANE_MULTIVERSION(void, AndWords, (std::uint32_t * dest, const std::uint32_t* other, int words),
                    (dest, other, words))
ORVANE_MULTIVERSION(void, OrWords, (std::uint32_t * dest, const std::uint32_t* other, int words),
                    (dest, other, words))
ORVANE_MULTIVERSION(void, NotWords, (std::uint32_t * dest, int words), (dest, words))
ORVANE_MULTIVERSION(int, CountBits, (const std::uint32_t* words, int bits), (words, bits))
ORVANE_MULTIVERSION(int, CountCommonBits, (const std::uint32_t* a, const std::uint32_t* b, int bits),
                    (a, b, bits))
ORVANE_MULTIVERSION(int, PrefixWithSetBits, (const std::uint32_t* words, int bits, int k), (words, bits, k))
ORVANE_MULTIVERSION(void, AddToColumn, (float* values, int count, float delta), (values, count, delta))
ORVANE_MULTIVERSION(void, FillWithIndex, (float* values, int count), (values, count))
ORVANE_MULTIVERSION(void, FindMaxAndMin, (const float* values, int count, float& max, float& min),
                    (values, count, max, min))
ORVANE_MULTIVERSION(void, ScaleToModel,
                    (const float* values, int count, float low, float factor, unsigned short* model),
                    (values, count, low, factor, model))
ORVANE_MULTIVERSION(int, SumCounters, (const int* counters, int count), (counters, count))
ORVANE_MULTIVERSION(void, ScaleCounters, (int* counters, int count, double factor), (counters, count, factor))

}  // namespace Orvane
