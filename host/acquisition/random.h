// Random numbers that are the same on every machine. The C++ library's distributions and the functions of
// <cmath> may differ in the last bit; sums, products and square roots of doubles do not.
#pragma once

#include <cstdint>
#include <random>

namespace Host {

class Random {
public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}

    /// A whole number from 0 to `bound - 1`.
    int Below(int bound) { return static_cast<int>(engine_() % static_cast<std::uint64_t>(bound)); }

    /// Nearly normal, mean 0 and SD 1: a sum of twelve uniform numbers.
    double Normal() {
        constexpr int Draws = 3;
        constexpr double Mean = 12 * 32767.5;
        std::uint64_t sum = 0;
        for (int draw = 0; draw < Draws; ++draw) {
            for (std::uint64_t bits = engine_(); bits != 0; bits >>= 16U)
                sum += bits & 0xFFFFU;
        }
        return (static_cast<double>(sum) - Mean) / 65536;
    }

    /// Nearly e to the power of `width` times a normal number, as brightness is spread: always positive for
    /// a width up to 1.
    double Spread(double width) {
        double factor = 1 + width * Normal() / 8;
        factor *= factor;
        factor *= factor;
        return factor * factor;
    }

private:
    std::mt19937_64 engine_;
};

}  // namespace Host
