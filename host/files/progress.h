// A line on standard error that says how far the work is, for people who wait: only on a terminal, and only
// once it has taken a while.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>

namespace Host {

class Progress {
public:
    /// `total` is the amount of work in any unit.
    explicit Progress(std::uint64_t total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Removes the line.
    ~Progress();

    /// Notes that `amount` more is done. Any thread may call it.
    void Add(std::uint64_t amount);

private:
    using Clock = std::chrono::steady_clock;

    std::mutex mutex_;
    std::uint64_t total_;
    std::uint64_t done_ = 0;
    bool onTerminal_;
    bool shown_ = false;
    Clock::time_point next_;
};

}  // namespace Host
