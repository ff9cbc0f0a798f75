// Who owns a section record between `new` and the caller's vector. For every kind of section with a Release()
// of its own.
#pragma once

#include <memory>
#include <vector>

#include "operations/section_vectors.h"

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

}  // namespace Orvane
