#include <orvane/OVSegmentSection.h>

#include "operations/section_vectors.h"

namespace Orvane {

void OVSegmentSection::NewVectorSection(std::vector<SegmentSection*>& sections, int n) {
    for (int i = 0; i < n; ++i) {
        AppendNew(sections, [](SegmentSection& section) { section.Initial(); });
    }
}

void OVSegmentSection::ReleaseVectorSection(std::vector<SegmentSection*>& sections) {
    ReleaseFromFirst(sections);
}

}  // namespace Orvane
