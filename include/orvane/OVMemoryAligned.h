// The allocator behind the pool, replaceable by the host.
#pragma once

#include <orvane/Platform.h>

namespace Orvane {

/// Gives the pool its segments. Derive from it and install an instance with MemoryManage::SetMemoryForTest,
/// for instance to simulate exhaustion. The pool calls it with its lock held.
class ORVANE_API OVMemoryAligned {
public:
    /// `size` bytes at an address that is a multiple of `alignment` (a power of two), or null when the memory
    /// is not available. Large requests get more alignment than asked and are offered to the system as huge
    /// pages.
    virtual void* Malloc(int size, int alignment);

    /// Releases memory from Malloc. Null is ignored.
    virtual void Free(void* p);
};

}  // namespace Orvane
