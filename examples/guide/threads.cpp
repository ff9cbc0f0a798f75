// Two gates on one sample, each decided on a thread of its own.
#include <future>
#include <iostream>
#include <vector>

#include <orvane/orvane.h>

using namespace Orvane;

namespace {

void Fill(std::vector<EventSection*>& sample, int count) {
    OVEventSection().NewEventSection(sample, count, 2);
    for (EventSection* section : sample) {
        for (; section->Count < section->Capacity && count > 0; --count, ++section->Count) {
            section->SetValue(0, section->Count, static_cast<float>(count % 100));
            section->SetValue(1, section->Count, static_cast<float>(count % 37));
        }
    }
}

}  // namespace

void GateOnTwoThreads(std::vector<SignalSection*>& x, std::vector<SignalSection*>& y,
                      std::vector<FilterSection*>& low, std::vector<FilterSection*>& box) {
    std::future<void> other =
        std::async(std::launch::async, [&] { OVFilter().Filter_Vertical(x, low, 24, 0); });
    OVFilter().Filter_Rectangle(x, y, box, 10, 19, 0, 9);
    other.get();
}

int main() {
    std::vector<EventSection*> sample;
    Fill(sample, 100000);
    std::vector<SignalSection*> x;
    std::vector<SignalSection*> y;
    OVEventSection().GetVectorSignalSection(sample, 0, x);
    OVEventSection().GetVectorSignalSection(sample, 1, y);

    std::vector<FilterSection*> low;
    std::vector<FilterSection*> box;
    GateOnTwoThreads(x, y, low, box);
    OVFilterSection filters;
    std::cout << filters.GetTrueTotalCount(low) << " low, " << filters.GetTrueTotalCount(box)
              << " in the box, " << filters.GetTrueTotalCount(low, box) << " in both\n";

    filters.ReleaseVectorSection(low);
    filters.ReleaseVectorSection(box);
    OVSignalSection().ReleaseVectorSectionShare(x);
    OVSignalSection().ReleaseVectorSectionShare(y);
    OVEventSection().ReleaseVectorSection(sample);
    MemoryManage::ReleaseAll();
}
