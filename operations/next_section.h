// Filling a vector of sections one after another: which section is written next. Shared by the operations
// over event, signal and filter sections.
//
// `initialise` is given a new, zeroed record and takes its storage.
#pragma once

#include <vector>

#include "foundation/throw.h"
#include "operations/section_vectors.h"

namespace Orvane {

/// Gives every section its position as `Index`. Returns whether `wanted` is among them.
template <class Section>
bool RenumberSections(std::vector<Section*>& sections, const Section* wanted) {
    bool found = false;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        sections[i]->Index = static_cast<int>(i);
        found = found || sections[i] == wanted;
    }
    return found;
}

/// Makes sure that `section`, an element of the vector, has its position as `Index`.
template <class Section>
void EnsureIndex(std::vector<Section*>& sections, Section* section) {
    const auto index = static_cast<std::size_t>(section->Index);
    if (index < sections.size() && sections[index] == section) return;
    if (!RenumberSections(sections, section)) ThrowInvalidParameter("The section object is not in vector.");
}

/// The section at `position`, emptied; made and appended when the vector ends there. Its `Index` stays.
template <class Section, class Initialise>
Section* EmptySectionAt(std::vector<Section*>& sections, int position, Initialise initialise) {
    const auto at = static_cast<std::size_t>(position);
    if (at >= sections.size()) return AppendNew(sections, initialise);
    sections[at]->ClearData();
    return sections[at];
}

/// The section behind `current`, emptied and numbered. Throws InvalidParameterException* when `current` is
/// not in the vector.
template <class Section, class Initialise>
Section* SectionBehind(std::vector<Section*>& sections, Section* current, Initialise initialise) {
    EnsureIndex(sections, current);
    const int next = current->Index + 1;
    Section* section = EmptySectionAt(sections, next, initialise);
    section->Index = next;
    return section;
}

/// The section behind `current`, or the first one when `current` is null; emptied and numbered.
template <class Section, class Initialise>
Section* NextSection(std::vector<Section*>& sections, Section* current, Initialise initialise) {
    if (current != nullptr) return SectionBehind(sections, current, initialise);
    Section* first = EmptySectionAt(sections, 0, initialise);
    first->Index = 0;
    return first;
}

}  // namespace Orvane
