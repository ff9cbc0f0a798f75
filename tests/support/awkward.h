// The values that bite: shared by every test that compares a kernel with its plain formula.
#pragma once

#include <cfloat>
#include <cmath>
#include <random>
#include <vector>

namespace Orvane::Testing {

/// Zeros of both signs, denormals, the extremes, infinities and NaN, small integers and their neighbours.
inline std::vector<float> AwkwardFloats() {
    std::vector<float> values;
    for (const float value : {0.0F, FLT_TRUE_MIN, FLT_MIN, FLT_MAX, HUGE_VALF})
        values.insert(values.end(), {value, -value});
    values.push_back(NAN);
    for (const float edge : {1.0F, 2.0F, 1023.0F, 1024.0F, 65535.0F, 65536.0F, 16777216.0F})
        for (const float value : {edge, -edge})
            values.insert(values.end(),
                          {std::nextafter(value, -HUGE_VALF), value, std::nextafter(value, HUGE_VALF)});
    return values;
}

/// `count` values: mostly spread over some decades of both signs, one in sixteen awkward.
inline std::vector<float> RandomFloats(int count, unsigned seed) {
    const std::vector<float> awkward = AwkwardFloats();
    std::mt19937 random(seed);
    std::lognormal_distribution<float> magnitude(5.0F, 3.0F);
    std::vector<float> values;
    for (int i = 0; i < count; ++i) {
        const auto draw = random();
        if (draw % 16 == 0) values.push_back(awkward[(draw >> 8) % awkward.size()]);
        if (draw % 16 != 0) values.push_back((draw & 32U) != 0 ? magnitude(random) : -magnitude(random));
    }
    return values;
}

}  // namespace Orvane::Testing
