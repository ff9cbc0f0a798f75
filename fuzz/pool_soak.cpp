// The pool in long use: four threads take and return at random; at intervals they stop and it is recounted.
// Usage: pool_soak [STEPS]   (100000000 takes and returns unless said)
#include <array>
#include <barrier>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "memory/pool_checker.h"
#include "tests/support/pool_kinds.h"

namespace {

using namespace Orvane;
using Testing::Kinds;
using Testing::Storage;

constexpr int Threads = 4;
constexpr int Intervals = 100;

[[noreturn]] void Fail(const std::string& fault) {
    std::cerr << "pool_soak: " << fault << std::endl;
    std::abort();
}

/// What one thread holds: at first as much as it ever will, so that what the process needs shows at once. A
/// packet bears its thread's mark at both ends.
class Worker {
public:
    explicit Worker(unsigned char mark) : mark_(mark), random_(mark) {
        for (std::size_t i = 0; i < held_.size(); ++i) {
            held_[i].Kind = &Kinds[i == 0 ? 4 : i % 4];
            TakeOrReturn(held_[i]);
        }
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker() {
        for (Held& held : held_)
            if (held.Start != nullptr) TakeOrReturn(held);
    }

    void Step() { TakeOrReturn(held_[random_() % held_.size()]); }

private:
    struct Held {
        const Storage* Kind = nullptr;
        unsigned char* Start = nullptr;
    };

    void TakeOrReturn(Held& held) {
        const int last = held.Kind->Bytes() - 1;
        if (held.Start == nullptr) {
            held.Start = static_cast<unsigned char*>(held.Kind->Take());
            held.Start[0] = held.Start[last] = mark_;
        } else {
            if (held.Start[0] != mark_ || held.Start[last] != mark_) Fail("a packet was handed out twice");
            held.Kind->Return(std::exchange(held.Start, nullptr));
        }
        if (MemoryManage::GetUseSize() < 0) Fail("more came back than was handed out");
    }

    unsigned char mark_;
    std::mt19937 random_;
    std::array<Held, 64> held_{};
};

}  // namespace

int main(int argc, char** argv) {
    const std::int64_t steps = argc > 1 ? std::atoll(argv[1]) : 100'000'000;
    int count = 0;
    std::int64_t sizeAtFirst = 0;
    std::barrier intermission(Threads, [&]() noexcept {  // every thread waits
        const std::string fault = FindPoolFault();
        if (!fault.empty()) Fail(fault);
        if (CountBytesHandedOut() != MemoryManage::GetUseSize()) Fail("bytes handed out are miscounted");
        if (count++ == 0) sizeAtFirst = MemoryManage::GetNewSize();
        if (MemoryManage::GetNewSize() > 2 * sizeAtFirst) Fail("the pool keeps growing");
        if (count % (Intervals / 10) == 0)
            std::cout << count << " %: " << (MemoryManage::GetNewSize() >> 20) << " MiB" << std::endl;
    });
    const auto work = [&](unsigned char mark) {
        Worker worker(mark);
        for (int interval = 0; interval < Intervals; ++interval) {
            for (std::int64_t i = 0; i < steps / Intervals / Threads; ++i)
                worker.Step();
            intermission.arrive_and_wait();
        }
    };
    std::vector<std::thread> threads;
    for (unsigned char mark = 1; mark <= Threads; ++mark)
        threads.emplace_back(work, mark);
    for (std::thread& thread : threads)
        thread.join();
    if (MemoryManage::GetUseSize() != 0 || CountBytesHandedOut() != 0) Fail("something is still handed out");
}
