// The loops over flat runs of values, which the compiler vectorises for each instruction set.
#include "fcs/row_kernels.h"

#include <bit>
#include <cstddef>
#include <cstdint>

#include "fcs/words.h"
#include "foundation/instruction_set.h"
#include "foundation/intrinsics.h"

namespace Orvane {
namespace {

using Native16 = Stored16<ByteOrder::Native>;
using Native32 = Stored32<ByteOrder::Native>;
using NativeDouble = StoredDouble<ByteOrder::Native>;

template <class Word>
ORVANE_KERNEL_INLINE void ReverseWords(const unsigned char* from, unsigned char* to, int count) {
    using Reversed = StoredWord<Word, ByteOrder::Reversed>;
    using Native = StoredWord<Word, ByteOrder::Native>;
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        Native::Store(Reversed::Load(from + i * Native::Bytes), to + i * Native::Bytes);
    }
}

#if defined(__SSE2__)

// The compiler makes a byte swap of the loop above, which the baseline has for single words only.
template <class Word>
void ReverseWordsSse2(const unsigned char* from, unsigned char* to, int count) {
    constexpr int HalvesReversed = sizeof(Word) == 8 ? 0x1B : 0xB1;
    constexpr std::size_t Step = 16 / sizeof(Word);
    const std::size_t whole = static_cast<std::size_t>(count) / Step * Step;
    for (std::size_t i = 0; i < whole; i += Step) {
        __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i * sizeof(Word)));
        v = _mm_or_si128(_mm_slli_epi16(v, 8), _mm_srli_epi16(v, 8));
        v = _mm_shufflehi_epi16(_mm_shufflelo_epi16(v, HalvesReversed), HalvesReversed);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i * sizeof(Word)), v);
    }
    const std::size_t done = whole * sizeof(Word);
    ReverseWords<Word>(from + done, to + done, count - static_cast<int>(whole));
}

#endif

// The number in the low bits of a double's fraction: unlike an unsigned conversion, every set does this side
// by side.
ORVANE_KERNEL_INLINE double ToDouble(std::uint32_t word) {
    constexpr double FractionOnly = 4503599627370496.0;  // 2^52
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(FractionOnly) | word) - FractionOnly;
}

template <class Stored, class Scale>
ORVANE_KERNEL_INLINE void ScaleWords(const unsigned char* raw, const Scale* scales, float* values,
                                     int count) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const auto word = static_cast<Scale>(Stored::Load(raw + i * Stored::Bytes));
        values[i] = static_cast<float>(word * scales[i]);
    }
}

ORVANE_KERNEL_INLINE void ReverseInLoopsBody(const unsigned char* from, unsigned char* to, int valueBytes,
                                             int count) {
    if (valueBytes == 2) return ReverseWords<std::uint16_t>(from, to, count);
    if (valueBytes == 4) return ReverseWords<std::uint32_t>(from, to, count);
    ReverseWords<std::uint64_t>(from, to, count);
}
ORVANE_MULTIVERSION(void, ReverseInLoops,
                    (const unsigned char* from, unsigned char* to, int valueBytes, int count),
                    (from, to, valueBytes, count))

}  // namespace

void ReverseValues(const unsigned char* from, unsigned char* to, int valueBytes, int count) {
#if defined(__SSE2__)
    if (ActiveInstructionSet() == InstructionSet::Baseline && valueBytes > 2) {
        if (valueBytes == 4) return ReverseWordsSse2<std::uint32_t>(from, to, count);
        return ReverseWordsSse2<std::uint64_t>(from, to, count);
    }
#endif
    ReverseInLoops(from, to, valueBytes, count);
}

ORVANE_KERNEL_INLINE void NarrowRowBody(const unsigned char* raw, float* values, int count) {
    for (std::ptrdiff_t i = 0; i < count; ++i)
        values[i] = NativeDouble::Load(raw + i * NativeDouble::Bytes);
}
ORVANE_MULTIVERSION(void, NarrowRow, (const unsigned char* raw, float* values, int count),
                    (raw, values, count))

ORVANE_KERNEL_INLINE void WidenRowBody(const float* values, unsigned char* raw, int count) {
    for (std::ptrdiff_t i = 0; i < count; ++i)
        NativeDouble::Store(values[i], raw + i * NativeDouble::Bytes);
}
ORVANE_MULTIVERSION(void, WidenRow, (const float* values, unsigned char* raw, int count),
                    (values, raw, count))

template <class Scale>
ORVANE_KERNEL_INLINE void ScaleRow16Body(const unsigned char* raw, const Scale* scales, float* values,
                                         int count) {
    ScaleWords<Native16>(raw, scales, values, count);
}
ORVANE_MULTIVERSION(void, ScaleRow16,
                    (const unsigned char* raw, const float* scales, float* values, int count),
                    (raw, scales, values, count))
ORVANE_MULTIVERSION(void, ScaleRow16,
                    (const unsigned char* raw, const double* scales, float* values, int count),
                    (raw, scales, values, count))

ORVANE_KERNEL_INLINE void ScaleRow32Body(const unsigned char* raw, const double* scales, float* values,
                                         int count) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        values[i] = static_cast<float>(ToDouble(Native32::Load(raw + i * Native32::Bytes)) * scales[i]);
    }
}
ORVANE_MULTIVERSION(void, ScaleRow32,
                    (const unsigned char* raw, const double* scales, float* values, int count),
                    (raw, scales, values, count))

ORVANE_KERNEL_INLINE void StoreLowHalvesBody(const float* words, unsigned char* raw, int count) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const auto low = static_cast<std::uint16_t>(std::bit_cast<std::uint32_t>(words[i]));
        Native16::Store(low, raw + i * Native16::Bytes);
    }
}
ORVANE_MULTIVERSION(void, StoreLowHalves, (const float* words, unsigned char* raw, int count),
                    (words, raw, count))

}  // namespace Orvane
