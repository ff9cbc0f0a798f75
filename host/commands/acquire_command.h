// `orvane acquire`: a file of events from a simulated instrument.
#pragma once

#include <cstdint>
#include <string>

namespace Host {

struct AcquireOptions {
    std::string output;
    std::string gates;  ///< empty for those of BloodStrategy
    int events = 100'000;
    std::uint64_t seed = 1;
    int rate = 0;  ///< events per second; 0 for as many as possible
};

/// Acquires until there are enough events or the user interrupts, and writes what there is. Throws Refusal
/// for gates that cannot be used, OutputError when the file cannot be written, and
/// OutOfMemoryException* when the pool cannot hold the events.
void RunAcquire(const AcquireOptions& options);

}  // namespace Host
