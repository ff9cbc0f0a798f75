// Who owns a section record between `new` and the caller's vector, and how vectors of sections are emptied.
// For every kind of section with a Release() of its own.
#pragma once

#include <algorithm>
#include <memory>
#include <vector>

namespace Orvane {

struct ReleaseAndDelete {
    template <class Section>
    void operator()(Section* section) const {
        section->Release();
        delete section;
    }
};

/// Owns a record that is not yet in a vector, with the storage that it has taken so far.
template <class Section, class Deleter = ReleaseAndDelete>
using OwnedSection = std::unique_ptr<Section, Deleter>;

/// Moves `section` to the end of the vector; when the vector cannot grow it is released.
template <class Section, class Deleter>
Section* Append(std::vector<Section*>& sections, OwnedSection<Section, Deleter> section) {
    sections.push_back(section.get());
    return section.release();
}

/// Takes the last record out of the vector, without its storage: for the caller to release as it must be.
template <class Section>
std::unique_ptr<Section> TakeLast(std::vector<Section*>& sections) {
    std::unique_ptr<Section> last(sections.back());
    sections.pop_back();
    return last;
}

/// Releases and deletes every section, the last one first. When the pool refuses one, the ones before it
/// stay.
template <class Section>
void ReleaseFromLast(std::vector<Section*>& sections) {
    while (!sections.empty())
        TakeLast(sections)->Release();
}

/// The same, the first one first.
template <class Section>
void ReleaseFromFirst(std::vector<Section*>& sections) {
    std::reverse(sections.begin(), sections.end());
    ReleaseFromLast(sections);
}

}  // namespace Orvane
