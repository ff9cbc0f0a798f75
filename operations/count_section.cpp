#include <orvane/OVCountSection.h>

#include "operations/section_vectors.h"

namespace Orvane {

void OVCountSection::NewVectorSection(std::vector<CountSection*>& sections, int n) {
    // Deliberate: the records that the vector held are the caller's business.
    sections.clear();
    for (int i = 0; i < n; ++i) {
        AppendNew(sections, [](CountSection& section) { section.Initial(); });
    }
}

void OVCountSection::ReleaseVectorSection(std::vector<CountSection*>& sections) {
    ReleaseFromFirst(sections);
}

}  // namespace Orvane
