#include "operations/acquire_kernels.h"

#include <algorithm>
#include <cstdlib>

namespace Orvane {
namespace {

float RandomTenths(int bound) {
    return static_cast<float>(std::rand() % bound) / 10.0F;
}

float RatioOf(const int* event, const OVCollectData& data) {
    const float denominator = static_cast<float>(event[data.ratioDenominatorChannel]) * data.denominatorScale;
    if (denominator == 0.0F) return 1.0F;
    return static_cast<float>(event[data.ratioNumeratorChannel]) / data.numeratorScale / denominator *
           1024.0F;
}

float ValueOf(const AcquiredSignal& signal, const int* event, const OVCollectData& data) {
    if (signal.Source == SignalSource::Ratio) return RatioOf(event, data);
    const auto raw = static_cast<float>(event[signal.Channel]);
    if (signal.Source == SignalSource::LastChannel) return raw + data.lastChannelOffset;
    const float scaled = signal.Source == SignalSource::EvenChannel ? signal.Gain * raw : raw / signal.Gain;
    return scaled + RandomTenths(signal.Tenths);
}

}  // namespace

void AcquireEvents(std::span<AcquiredSignal> signals, const OVCollectData& data, const int* raw, int count,
                   float* const* columns) {
    for (int begin = 0; begin < count; begin += TileEvents) {
        const int events = std::min(TileEvents, count - begin);
        for (int e = 0; e < events; ++e, raw += data.channelCount) {
            for (AcquiredSignal& signal : signals) {
                if (signal.Source != SignalSource::Nothing) signal.Tile[e] = ValueOf(signal, raw, data);
            }
        }
        for (std::size_t s = 0; s < signals.size(); ++s) {
            if (signals[s].Source == SignalSource::Nothing) continue;
            std::copy_n(signals[s].Tile, events, columns[s] + begin);
        }
    }
}

}  // namespace Orvane
