#include <iostream>
#include <memory>
#include <vector>

#include <orvane/orvane.h>

using namespace Orvane;

int main() {
    // Eight events of two parameters: DATA of type F, as it stands in a file.
    float data[8][2] = {{120, 30}, {140, 35}, {125, 33}, {310, 80},
                        {330, 85}, {90, 20},  {318, 82}, {360, 15}};
    SegmentSection segment;
    segment.Data = data;
    segment.Count = sizeof(data);
    std::vector<SegmentSection*> segments{&segment};
    OVFCSPara layout;
    layout.ParCount = 2;
    layout.ByteWidth = 4;
    layout.DataType = 2;
    layout.LittleEndian = true;

    // A picture of 16 x 8 pixels, which shows 0 to 400 across and 0 to 100 upward.
    int cells[8][16];
    OVBitmapData picture;
    picture.Height = 8;
    picture.Width = 16;
    picture.Stride = sizeof(cells[0]);
    picture.Bits = cells[0];
    std::unique_ptr<IOVCoordinateTransformerX> across(
        OVCoordinateTransformerXFactory::CreateTransformer(0, 16, 0, 400, 0, false, true));
    std::unique_ptr<IOVCoordinateTransformerY> upward(
        OVCoordinateTransformerYFactory::CreateTransformer(0, 8, 0, 100, 0, false, true));

    std::vector<EventSection*> sample;
    std::vector<SignalSection*> x, y;
    std::vector<FilterSection*> gate;
    OVPlotData plot;

    // Load, gate and plot.
    OVEventSection().NewEventSection(sample, 8, layout.ParCount);
    OVFCSWriteRead().ReadFCSData(*sample[0], segments, layout);
    OVEventSection().GetVectorSignalSection(sample, 0, x);
    OVEventSection().GetVectorSignalSection(sample, 1, y);
    OVFilter().Filter_Rectangle(x, y, gate, 100, 350, 10, 90);
    plot.XSections = &x;
    plot.YSections = &y;
    plot.PopulationFilters = &gate;
    OVPlotViewDensity().RenderPlot(plot, picture, across.get(), upward.get());
    std::cout << gate[0]->TrueCount << " of " << sample[0]->Count << " events in the gate\n";

    for (auto& row : cells) {
        for (int count : row)
            std::cout << (count > 0 ? static_cast<char>('0' + count) : '.');
        std::cout << '\n';
    }

    // The gate's bits and the sample's columns go back to the pool; the signals only look at those columns.
    OVFilterSection().ReleaseVectorSection(gate);
    OVSignalSection().ReleaseVectorSectionShare(x);
    OVSignalSection().ReleaseVectorSectionShare(y);
    OVEventSection().ReleaseVectorSection(sample);
    MemoryManage::ReleaseAll();
}
