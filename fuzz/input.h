// The bytes of an input, taken as numbers. Past the end everything is zero.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "tests/support/awkward.h"

namespace Fuzz {

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), left_(size) {}

    bool IsEmpty() const { return left_ == 0; }
    std::size_t Left() const { return left_; }

    template <class Number>
    Number Take() {
        Number number{};
        const std::size_t size = std::min(sizeof number, left_);
        if (size != 0) std::memcpy(&number, data_, size);
        data_ += size;
        left_ -= size;
        return number;
    }

    /// A number from 0 to `below` - 1, from as many bytes as it needs.
    int Below(int below) { return (below <= 256 ? Take<std::uint8_t>() : Take<std::uint16_t>()) % below; }

    /// One byte is enough for the floats that matter: small steps around zero, and awkward ones. The rest is
    /// any float.
    float TakeFloat() {
        static const std::vector<float> Awkward = Orvane::Testing::AwkwardFloats();
        const auto choice = Take<std::uint8_t>();
        if (choice < 160) return static_cast<float>(choice - 80) / 4.0F;
        if (choice < 160 + Awkward.size()) return Awkward[choice - std::size_t{160}];
        return Take<float>();
    }

    /// All that is left.
    std::string Rest() {
        std::string rest(left_, '\0');
        for (char& byte : rest)
            byte = Take<char>();
        return rest;
    }

private:
    const std::uint8_t* data_;
    std::size_t left_;
};

}  // namespace Fuzz
