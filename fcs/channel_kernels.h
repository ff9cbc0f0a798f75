// From values to the channels that integer words hold.
#pragma once

#include <cstdint>

#include "fcs/kernels.h"

namespace Orvane {

/// How the values of one parameter become channels.
struct ChannelRule {
    double Offset;
    double LogScale;
    double Scale;
    double Range;
    std::uint32_t Top;  ///< what is written for everything from `Range` on
    bool IsLog;
};
ChannelRule MakeChannelRule(const OVFCSIntParFormat& format, int parameter);

/// The channels of `count` values, the low 32 bits of each; the words stand in place of floats, so that they
/// pass through tiles.
void ToChannels(const float* values, int count, const ChannelRule& rule, float* words);

}  // namespace Orvane
