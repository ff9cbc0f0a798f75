// An acquisition: raw buffers become events, which are kept for the file, and the last of them are kept
// compensated beside it, for the live display.
#pragma once

#include <utility>
#include <vector>

#include <orvane/OVEventSection.h>

#include "gating/compensation.h"

namespace Host {

class Acquisition {
public:
    /// `channelMap` and `gains` say what becomes of the channels of a buffer, as OVEventSection::DealEvent
    /// takes them. The live display shows the last `windowEvents` events. `compensation` must outlive this.
    Acquisition(std::vector<int> channelMap, std::vector<float> gains, const Compensation& compensation,
                int windowEvents)
        : channelMap_(std::move(channelMap)),
          gains_(std::move(gains)),
          compensation_(compensation),
          windowEvents_(windowEvents) {}
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;
    ~Acquisition();

    /// Takes the events of one buffer. Throws OutOfMemoryException* when the pool cannot hold them.
    void Take(Orvane::OVCollectData& buffer);

    /// All events so far.
    std::vector<Orvane::EventSection*>& Events() { return events_; }

    /// The last events, raw and compensated; the two share the columns that are the same.
    std::vector<Orvane::EventSection*>& Window() { return window_; }
    std::vector<Orvane::EventSection*>& CompensatedWindow() { return compensatedWindow_; }

private:
    void AppendToWindow();

    std::vector<int> channelMap_;
    std::vector<float> gains_;
    const Compensation& compensation_;
    int windowEvents_;
    std::vector<Orvane::EventSection*> arrived_;  ///< the events of the last buffer
    std::vector<Orvane::EventSection*> events_;
    std::vector<Orvane::EventSection*> window_;
    std::vector<Orvane::EventSection*> compensatedWindow_;
};

}  // namespace Host
