// The one drawer for everything that differs between systems and processors. The exported half, the critical
// section record, is in <orvane/Platform.h>.
#pragma once

#include <cstddef>

/// Whether vectors wider than 16 bytes are aligned when the compiler puts them on the stack. GCC does not
/// align them on Windows.
#if defined(_WIN32) && defined(__GNUC__)
#define ORVANE_ALIGNS_WIDE_VECTORS 0
#else
#define ORVANE_ALIGNS_WIDE_VECTORS 1
#endif

namespace Orvane {

/// Memory at a multiple of `alignment` (a power of two), or null. Requests of two MiB and more are aligned to
/// two MiB and offered to the system as huge pages, which makes the first touch of a fresh segment far
/// cheaper.
void* AllocateAligned(std::size_t size, std::size_t alignment);
void FreeAligned(void* p);

/// The processor's feature leaf (CPUID with EAX = 1, ECX = 0); zeros on processors without it.
struct FeatureLeaf {
    unsigned Ecx = 0;
    unsigned Edx = 0;
};
FeatureLeaf ReadFeatureLeaf();

/// The local time of day in calendar fields: full year, month and day from 1.
struct LocalTime {
    int Year, Month, Day, Hour, Minute, Second;
};
LocalTime ReadLocalTime();

}  // namespace Orvane
