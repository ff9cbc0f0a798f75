// What the operations on medians share.
#pragma once

#include "operations/statistics_rank_search.h"

namespace Orvane {

class OVNthElementSection;

/// The values with these ranks among the `count` of the sections, which may be left partially reordered.
RankedValues FindOrReorder(OVNthElementSection& nthElement, SignalSections& sections, int count, Ranks ranks);

/// Half the sum of the two values in the middle.
float MedianOf(RankedValues middle);

/// The robust SD and CV of a median absolute deviation.
float RobustSDOf(float medianDeviation);
float RobustCVOf(float robustSD, float median);

/// Four vectors of sections that live as long as a call.
class FourParts {
public:
    SignalSections& operator[](int part) { return parts_[part].Sections; }

private:
    TemporarySections parts_[4];
};

}  // namespace Orvane
