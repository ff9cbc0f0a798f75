#include <orvane/CriticalSection.h>

namespace Orvane {

CriticalSection::CriticalSection() {
    constexpr unsigned SpinCount = 4000;
    InitializeCriticalSectionEx(&section_, SpinCount, CRITICAL_SECTION_NO_DEBUG_INFO);
}

CriticalSection::~CriticalSection() {
    DeleteCriticalSection(&section_);
}

CRITICAL_SECTION* CriticalSection::GetCriticalSection() {
    return &section_;
}

AutoLock::AutoLock(CRITICAL_SECTION* section) : section_(section) {
    EnterCriticalSection(section_);
}

AutoLock::~AutoLock() {
    LeaveCriticalSection(section_);
}

}  // namespace Orvane
