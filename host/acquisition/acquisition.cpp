#include "acquisition/acquisition.h"

namespace Host {

Acquisition::~Acquisition() {
    Orvane::OVEventSection operations;
    operations.ReleaseVectorSection(window_, compensatedWindow_);
    operations.ReleaseVectorSection(events_);
    operations.ReleaseVectorSection(arrived_);
}

void Acquisition::Take(Orvane::OVCollectData& buffer) {
    Orvane::OVEventSection operations;
    operations.DealEvent(arrived_, channelMap_, gains_, buffer);
    operations.AppendEventSection(arrived_, events_);
    AppendToWindow();
    operations.RemoveEventSection(static_cast<int>(operations.GetTotalCount(window_)) - windowEvents_,
                                  window_, compensatedWindow_);
}

/// Buffers of a usual size get sections of their own, so that old ones go away whole; many small ones share.
void Acquisition::AppendToWindow() {
    constexpr int MostOwnSections = 16;
    Orvane::OVEventSection operations;
    CompensatedEvents compensated(arrived_, compensation_);
    std::vector<bool> shared;
    operations.CheckVectorReuseFlag(arrived_, compensated.Sections(), shared);
    const int limit = MostOwnSections * static_cast<int>(operations.GetTotalCount(arrived_));
    operations.AppendEventSection(arrived_, window_, limit);
    operations.AppendEventSectionCompensation(compensated.Sections(), compensatedWindow_, window_, shared,
                                              limit);
}

}  // namespace Host
