// Plot descriptions: what they own, and which of their gates is the background.
#include <algorithm>

#include <orvane/OVPlotData.h>

namespace Orvane {

OVPlotData::~OVPlotData() {
    if (Gates != nullptr) {
        for (const OVPlotData_GateInfo* gate : *Gates)
            delete gate;
        delete Gates;
        Gates = nullptr;
    }
    delete Population;
    Population = nullptr;
}

int OVPlotData::FindBackgroundIndex() const {
    if (Gates == nullptr) return -1;
    const auto* wanted = Population == nullptr ? nullptr : Population->Filters;
    const auto found = std::find_if(Gates->begin(), Gates->end(), [wanted](const OVPlotData_GateInfo* gate) {
        return gate->Filters == wanted;
    });
    return found == Gates->end() ? -1 : static_cast<int>(found - Gates->begin());
}

}  // namespace Orvane
