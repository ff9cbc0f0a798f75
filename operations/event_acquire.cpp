// Event vectors: from acquisition buffers.
#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdlib>
#include <ctime>

#include <orvane/MemoryManage.h>
#include <orvane/OVEventSection.h>

#include "foundation/convert.h"
#include "operations/acquire_kernels.h"

namespace Orvane {
namespace {

SignalSource SourceOf(int channel, int channelCount) {
    if (channel == -1) return SignalSource::Ratio;
    if (channel < 0 || channel >= channelCount) return SignalSource::Nothing;
    if (channel == channelCount - 1) return SignalSource::LastChannel;
    return channel % 2 == 0 ? SignalSource::EvenChannel : SignalSource::OddChannel;
}

/// An even channel is spread over the width of its gain, an odd one over one unit.
int TenthsOf(SignalSource source, float gain) {
    if (source != SignalSource::EvenChannel) return 10;
    const auto tenths = static_cast<int>(TruncateToInt64(gain * 10.0F));
    assert(tenths != 0);
    return tenths;
}

std::vector<AcquiredSignal> PlanSignals(const std::vector<int>& channelMap, const std::vector<float>& gains,
                                        int channelCount) {
    assert(gains.size() >= channelMap.size());
    std::vector<AcquiredSignal> signals(channelMap.size());
    for (std::size_t s = 0; s < signals.size(); ++s) {
        signals[s].Source = SourceOf(channelMap[s], channelCount);
        signals[s].Channel = channelMap[s];
        signals[s].Gain = gains[s];
        signals[s].Tenths = TenthsOf(signals[s].Source, gains[s]);
    }
    return signals;
}

/// The events that begin within the buffer, an incomplete last one included.
int EventsIn(const OVCollectData& data) {
    if (data.dataCount < 1 || data.channelCount < 1) return 0;
    return (data.dataCount - 1) / data.channelCount + 1;
}

}  // namespace

void OVEventSection::DealEvent(std::vector<EventSection*>& sections, std::vector<int>& channelMap,
                               std::vector<float>& gains, OVCollectData& data) {
    std::srand(static_cast<unsigned>(std::time(nullptr)));
    const int capacity = MemoryManage::GetCapacity();
    const auto signalCount = static_cast<int>(channelMap.size());
    EventSection* section = GetNextSection(sections, signalCount, nullptr);
    section->Count = 0;
    int remaining = EventsIn(data);
    if (remaining == 0) return;  // the gains may be missing
    std::vector<AcquiredSignal> signals = PlanSignals(channelMap, gains, data.channelCount);
    const int* raw = data.data;
    for (;;) {
        const int count = std::min(remaining, capacity);
        AcquireEvents(signals, data, raw, count, section->Signals);
        section->Count = count;
        remaining -= count;
        if (remaining == 0) return;
        raw += static_cast<std::ptrdiff_t>(count) * data.channelCount;
        section = GetNextSection(sections, signalCount, section);
    }
}

}  // namespace Orvane
