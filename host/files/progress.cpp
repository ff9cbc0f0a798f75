#include "files/progress.h"

#include <unistd.h>

#include <cstdio>

namespace Host {
namespace {

constexpr std::chrono::milliseconds Patience(1000);
constexpr std::chrono::milliseconds Interval(100);

bool StandardErrorIsTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

}  // namespace

Progress::Progress(std::uint64_t total)
    : total_(total), onTerminal_(StandardErrorIsTerminal()), next_(Clock::now() + Patience) {}

Progress::~Progress() {
    if (shown_) std::fputs("\r               \r", stderr);
}

void Progress::Add(std::uint64_t amount) {
    if (!onTerminal_) return;
    const std::lock_guard<std::mutex> lock(mutex_);
    done_ += amount;
    if (Clock::now() < next_) return;
    std::fprintf(stderr, "\rreading %3d %%", static_cast<int>(done_ * 100 / total_));
    std::fflush(stderr);
    shown_ = true;
    next_ = Clock::now() + Interval;
}

}  // namespace Host
