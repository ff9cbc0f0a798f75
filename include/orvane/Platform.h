// The platform as a host sees it: how symbols are exported and what a critical section is. Everything else
// that differs between systems stays inside the library. On Windows this brings in the lean <windows.h>; a
// host that wants all of it includes it first.
#pragma once

#if defined(_WIN32)
#if !defined(WIN32_LEAN_AND_MEAN)
#define WIN32_LEAN_AND_MEAN
#endif
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <pthread.h>
#endif

/// Marks the symbols that the shared library exports.
#if defined(ORVANE_STATIC)
#define ORVANE_API
#elif !defined(_WIN32)
#define ORVANE_API __attribute__((visibility("default")))
#elif defined(ORVANE_BUILDING)
#define ORVANE_API __declspec(dllexport)
#else
#define ORVANE_API __declspec(dllimport)
#endif

namespace Orvane {

static_assert(sizeof(int) == 4, "Counts, indexes and sizes are 32-bit ints.");

#if defined(_WIN32)

using CRITICAL_SECTION = ::CRITICAL_SECTION;

#else

/// A recursive lock record. The owning thread may enter it again; it is free once left as often as entered.
struct CRITICAL_SECTION {
    pthread_mutex_t Mutex;  ///< the lock itself
};

/// Asks for a section without debug information; there is none to keep here.
constexpr unsigned CRITICAL_SECTION_NO_DEBUG_INFO = 0x01000000;

/// Prepares `section`. The spin count is a hint that this platform does not need. Returns whether it
/// succeeded.
ORVANE_API bool InitializeCriticalSectionEx(CRITICAL_SECTION* section, unsigned spinCount, unsigned flags);

/// Waits until no other thread is inside `section`, then enters it.
ORVANE_API void EnterCriticalSection(CRITICAL_SECTION* section);

/// Leaves `section`, which the calling thread must be inside.
ORVANE_API void LeaveCriticalSection(CRITICAL_SECTION* section);

/// Gives back what InitializeCriticalSectionEx took. Nobody may be inside.
ORVANE_API void DeleteCriticalSection(CRITICAL_SECTION* section);

#endif

}  // namespace Orvane
