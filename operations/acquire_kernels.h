// Kernels of acquisition: from raw events, one row of channels each, to columns.
#pragma once

#include <span>

#include <orvane/OVEventSection.h>

#include "operations/event_kernels.h"

namespace Orvane {

/// How a signal follows from the channels of a raw event.
enum class SignalSource { EvenChannel, OddChannel, LastChannel, Ratio, Nothing };

/// One signal to acquire, with the values of the tile being worked on.
struct AcquiredSignal {
    SignalSource Source = SignalSource::Nothing;
    int Channel = 0;
    float Gain = 0.0F;
    int Tenths = 1;  ///< bound of the random tenths that a channel below the last one gets
    float Tile[TileEvents] = {};
};

/// Turns the `count` raw events from `raw` on into the first `count` values of `columns`, one column per
/// signal. Draws from rand() signal by signal within event by event, for channels below the last one only.
void AcquireEvents(std::span<AcquiredSignal> signals, const OVCollectData& data, const int* raw, int count,
                   float* const* columns);

}  // namespace Orvane
