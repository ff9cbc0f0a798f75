#include <iostream>
#include <vector>

#include <orvane/orvane.h>

using namespace Orvane;

int main() {
    // Five events of two parameters: DATA of type F, as it stands in a file.
    float data[5][2] = {{120, 0.5F}, {250, 1}, {180, 8}, {90, 2.5F}, {310, 3}};
    SegmentSection segment;
    segment.Data = data;
    segment.Count = sizeof(data);
    std::vector<SegmentSection*> segments{&segment};
    OVFCSPara layout;
    layout.ParCount = 2;
    layout.ByteWidth = 4;
    layout.DataType = 2;
    layout.LittleEndian = true;

    OVEventSection events;
    std::vector<EventSection*> sample;
    events.NewEventSection(sample, 5, layout.ParCount);
    OVFCSWriteRead().ReadFCSData(*sample[0], segments, layout);

    // The second parameter as a view of the sample's own column. Median reorders it, so it comes last.
    std::vector<SignalSection*> signal;
    events.GetVectorSignalSection(sample, 1, signal);
    OVStatisticsSignalSection statistics;
    std::cout << "mean " << statistics.Average(signal) << ", SD " << statistics.SD(signal) << ", median "
              << statistics.Median(signal) << '\n';

    OVSignalSection().ReleaseVectorSectionShare(signal);
    events.ReleaseVectorSection(sample);
    MemoryManage::ReleaseAll();
}
