// Kernels of the histograms: bin numbers counted for several gates at once, and gates of virtual events.
// Event i of a gate is bit i % 32 of word i / 32; bits at or above a count are never used.
#pragma once

#include <cstdint>
#include <span>

#include "operations/model_kernels.h"

namespace Orvane {

struct GateCounters {
    const std::uint32_t* Members;  ///< one bit per event; null for every event
    Counters Bins;
};

/// Adds 1 to the counter of every bin number, in `all` and in every gate that has the event. Numbers at or
/// above a counter's capacity are skipped. Events that are not shown have the number 65535; `shown`, one bit
/// per event, tells them from those of bin 65535. It is null when every event is shown.
void CountByGate(const unsigned short* bins, int count, const std::uint32_t* shown, Counters all,
                 std::span<const GateCounters> gates);

/// Every event stands for `times` consecutive ones of a longer sequence: stores the bits of `count` of those,
/// from `first` on.
void RepeatBits(const std::uint32_t* bits, int times, int first, int count, std::uint32_t* out);

}  // namespace Orvane
