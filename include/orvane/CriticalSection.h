// A re-entrant critical section and the scoped lock over it.
#pragma once

#include <orvane/Platform.h>

namespace Orvane {

/// Owns one platform critical section, the record itself. Never assign one: assignment copies the record
/// bitwise.
class ORVANE_API CriticalSection {
public:
    /// Prepares the section with a spin count of 4000 and without debug information.
    CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = default;
    ~CriticalSection();

    /// The embedded record, for AutoLock. It lives as long as this object.
    CRITICAL_SECTION* GetCriticalSection();

private:
    CRITICAL_SECTION section_;
};

/// Holds a critical section from construction to the end of the scope, however the scope is left.
class ORVANE_API AutoLock {
public:
    /// Waits until no other thread holds `section`, which must outlive this object.
    explicit AutoLock(CRITICAL_SECTION* section);
    AutoLock(const AutoLock&) = delete;
    AutoLock& operator=(const AutoLock&) = delete;
    ~AutoLock();

private:
    CRITICAL_SECTION* section_;
};

}  // namespace Orvane
