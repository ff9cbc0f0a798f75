#include <orvane/OVMemoryAligned.h>

#include "foundation/platform.h"

namespace Orvane {

void* OVMemoryAligned::Malloc(int size, int alignment) {
    return AllocateAligned(static_cast<std::size_t>(size), static_cast<std::size_t>(alignment));
}

void OVMemoryAligned::Free(void* p) {
    FreeAligned(p);
}

}  // namespace Orvane
