// How the records with one piece of storage give it back.
#pragma once

#include <utility>

namespace Orvane {

/// Clears the header, then returns the storage, if any: when the pool refuses it, releasing again is
/// harmless.
template <class Section, class Storage, class Free>
void ReleaseStorage(Section& section, Storage*& storage, Free free) {
    Storage* released = std::exchange(storage, nullptr);
    section.Init();
    if (released != nullptr) free(released);
}

}  // namespace Orvane
