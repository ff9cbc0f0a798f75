// A pool with sizes of its own, a limit that holds, and a cache that it may take back.
#include <iostream>
#include <vector>

#include <orvane/orvane.h>

using namespace Orvane;

namespace {
std::vector<EventSection*> cache;
}

class LimitedMemory : public OVMemoryAligned {
public:
    explicit LimitedMemory(int segments) : left_(segments) {}

    void* Malloc(int size, int alignment) override {
        void* memory = left_ > 0 ? OVMemoryAligned::Malloc(size, alignment) : nullptr;
        if (memory != nullptr) --left_;
        return memory;
    }
    void Free(void* memory) override {
        if (memory != nullptr) ++left_;
        OVMemoryAligned::Free(memory);
    }

private:
    int left_;
};

bool DropCache() {
    if (cache.empty()) return false;
    OVEventSection().ReleaseVectorSection(cache);
    return true;
}

void Print(const char* when) {
    MemoryStatisticsInfo info;
    MemoryManage::GetStatisticsInfo(info);
    std::cout << when << ": " << info.SegmentCount << " segments, " << info.FreeCount << " free, "
              << info.UsedFloatCount << " columns handed out\n";
}

void FillThePool() {
    OVEventSection events;
    std::vector<EventSection*> sample;
    events.NewEventSection(cache, 5000, 32);
    Print("with a cache");
    try {
        events.NewEventSection(sample, 2 * 8192, 32);
        Print("with a sample instead");
        events.NewEventSection(sample, 8192, 32);
    } catch (OutOfMemoryException* error) {
        std::cout << error->GetMessageException() << '\n';
        delete error;
    }
    events.ReleaseVectorSection(sample);
    Print("with nothing");
}

int main() {
    LimitedMemory memory(2);
    OVMemoryAligned* const before = MemoryManage::SetMemoryForTest(&memory);
    MemoryManage::InitMemoryManage(1 << 20, 32, 0, 8192, 256);
    MemoryManage::SetCallOutOfMemory(DropCache);
    FillThePool();
    MemoryManage::ReleaseAll();
    Print("after ReleaseAll");
    MemoryManage::SetCallOutOfMemory(nullptr);
    MemoryManage::SetMemoryForTest(before);
}
