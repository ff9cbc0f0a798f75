// A simulated flow cytometer: blood passes its detectors, and it hands over what they measured in buffers of
// raw integers. It knows nothing of sections or files.
//
// An event is a row of channels. Every measured value stands on an even channel, in tenths of a unit, with a
// word of flags behind it, 0 for "no fault". The last channel is the time in ticks since the buffer began.
#pragma once

#include <orvane/OVEventSection.h>

#include <cstdint>
#include <vector>

#include "acquisition/blood.h"

namespace Host {

class Instrument {
public:
    static constexpr double SecondsPerTick = 0.01;
    /// Measured values are below this.
    static constexpr double Range = 262144;
    /// Units per raw number. It also keeps the events the same from run to run: what DealEvent adds to an
    /// even channel is a random number of tenths below the gain, which is 0 then. It draws others with the C
    /// library's generator and the time for a seed.
    static constexpr float Gain = 0.1F;

    /// What becomes of the channels.
    struct Signal {
        const char* name;
        const char* marker;  ///< empty for none
        int channel;         ///< as OVEventSection::DealEvent takes it
    };
    static const std::vector<Signal>& Signals();

    /// The position of the first of DyeCount signals of dyes.
    static constexpr std::size_t FirstDye = 4;
    /// Row i, column j: what one unit of dye i gives in the detector of dye j.
    static std::vector<double> Spillover();

    /// Instruments with the same seed measure the same events, however they are divided into buffers.
    explicit Instrument(std::uint64_t seed) : random_(seed) {}

    /// Measures the next `events` events. The buffer holds them until the next call.
    Orvane::OVCollectData Measure(int events);

private:
    int Ticks() const;
    Cell DrawPulse(double& height);
    void MeasureEvent(int* channels);

    Random random_;
    std::int64_t microseconds_ = 0;
    std::vector<int> buffer_;
};

}  // namespace Host
