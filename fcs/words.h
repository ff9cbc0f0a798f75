// Single values of the raw bytes: loading and storing at any address, in either byte order.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "fcs/kernels.h"
#include "foundation/instruction_set.h"

namespace Orvane {

ORVANE_KERNEL_INLINE std::uint16_t ReverseBytes(std::uint16_t word) {
    return static_cast<std::uint16_t>((word << 8) | (word >> 8));
}
ORVANE_KERNEL_INLINE std::uint32_t ReverseBytes(std::uint32_t word) {
    return (word << 24) | ((word & 0xFF00U) << 8) | ((word >> 8) & 0xFF00U) | (word >> 24);
}
ORVANE_KERNEL_INLINE std::uint64_t ReverseBytes(std::uint64_t word) {
    const auto low = static_cast<std::uint32_t>(word);
    const auto high = static_cast<std::uint32_t>(word >> 32);
    return (static_cast<std::uint64_t>(ReverseBytes(low)) << 32) | ReverseBytes(high);
}

/// A stored word. Its size is what a value takes in the raw bytes.
template <class WordType, ByteOrder Order>
struct StoredWord {
    using Word = WordType;
    static constexpr std::ptrdiff_t Bytes = sizeof(Word);

    static ORVANE_KERNEL_INLINE Word Load(const unsigned char* raw) {
        Word word;
        std::memcpy(&word, raw, sizeof(Word));
        return Order == ByteOrder::Reversed ? ReverseBytes(word) : word;
    }
    static ORVANE_KERNEL_INLINE void Store(Word word, unsigned char* raw) {
        if (Order == ByteOrder::Reversed) word = ReverseBytes(word);
        std::memcpy(raw, &word, sizeof(Word));
    }
};

template <ByteOrder Order>
using Stored16 = StoredWord<std::uint16_t, Order>;
template <ByteOrder Order>
using Stored32 = StoredWord<std::uint32_t, Order>;

/// A float as it is: the bits of a NaN, too.
template <ByteOrder Order>
struct StoredFloat {
    static constexpr std::ptrdiff_t Bytes = 4;

    static ORVANE_KERNEL_INLINE float Load(const unsigned char* raw) {
        return std::bit_cast<float>(Stored32<Order>::Load(raw));
    }
    static ORVANE_KERNEL_INLINE void Store(float value, unsigned char* raw) {
        Stored32<Order>::Store(std::bit_cast<std::uint32_t>(value), raw);
    }
};

/// A double, narrowed to the nearest float and widened from it.
template <ByteOrder Order>
struct StoredDouble {
    static constexpr std::ptrdiff_t Bytes = 8;
    using Stored64 = StoredWord<std::uint64_t, Order>;

    static ORVANE_KERNEL_INLINE float Load(const unsigned char* raw) {
        return static_cast<float>(std::bit_cast<double>(Stored64::Load(raw)));
    }
    static ORVANE_KERNEL_INLINE void Store(float value, unsigned char* raw) {
        Stored64::Store(std::bit_cast<std::uint64_t>(static_cast<double>(value)), raw);
    }
};

}  // namespace Orvane
