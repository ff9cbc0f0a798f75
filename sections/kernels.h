// Kernels over filter bits and over single columns. Words are in the machine's order: event i is bit i % 32
// of word i / 32. A count below 1 is an empty range.
#pragma once

#include <cstdint>

namespace Orvane {

/// The number of words that hold `bits` bits.
constexpr int WordsFor(int bits) {
    return bits / 32 + static_cast<int>(bits % 32 > 0);
}

void AndWords(std::uint32_t* dest, const std::uint32_t* other, int words);
void OrWords(std::uint32_t* dest, const std::uint32_t* other, int words);
void NotWords(std::uint32_t* dest, int words);

/// Sets or clears bits `start` to `start + count - 1`; the other bits of their words stay.
void FillBits(std::uint32_t* words, int start, int count, bool value);

/// The number of set bits among the first `bits`; the words behind the last of them are not read.
int CountBits(const std::uint32_t* words, int bits);

/// The number of bits set in both among the first `bits`.
int CountCommonBits(const std::uint32_t* a, const std::uint32_t* b, int bits);

/// The length of the shortest prefix with `k` set bits; 0 for `k` below 1, and when the first `bits`
/// bits hold fewer.
int PrefixWithSetBits(const std::uint32_t* words, int bits, int k);

/// Adds `delta` to every value.
void AddToColumn(float* values, int count, float delta);

/// values[i] = i.
void FillWithIndex(float* values, int count);

/// Raises `max` to every value above it and lowers `min` to every value below it, with the bits of the
/// one-by-one loop: NaN is skipped, a starting NaN stays, and of zeros of both signs the first met is kept.
void FindMaxAndMin(const float* values, int count, float& max, float& min);

/// model[i] = low 16 bits of `(values[i] - low) * factor` in float, truncated toward zero; 0 for
/// NaN and beyond 64 bits.
void ScaleToModel(const float* values, int count, float low, float factor, unsigned short* model);

/// The sum of the values, added in order in double.
double SumColumn(const float* values, int count);

/// `sum` plus the squares of `values[i] - mean`, each formed in float, added in order in double.
double AddSquaredDifferences(const float* values, int count, float mean, double sum);

/// The sum of the counters, in 32-bit arithmetic.
int SumCounters(const int* counters, int count);

/// Every counter becomes the low 32 bits of `counter * factor + 0.5`, truncated toward zero.
void ScaleCounters(int* counters, int count, double factor);

}  // namespace Orvane
