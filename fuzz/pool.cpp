// The pool: bytes are takes, returns, wrong returns, shortage and shrinking; it is recounted after each.
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/pool_traffic.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Orvane;
    constexpr int Capacities[] = {32, 64, 128, 1024};
    Fuzz::Input input(data, size);
    const int capacity = Capacities[input.Below(4)];
    const int blocks = 1 + input.Below(32);
    const int initCount = input.Below(4);
    const Testing::SmallPool pool(capacity, blocks);
    const MemoryStatisticsInfo sizes = Testing::Statistics();
    Testing::Traffic traffic([&](int below) { return input.Below(below); });
    MemoryManage::InitMemoryManage(sizes.SegmentSize, blocks, initCount, capacity, sizes.CapacityInt);
    while (!input.IsEmpty()) {
        traffic.Step();
        traffic.ExpectAgreement();
    }
    return 0;
}
