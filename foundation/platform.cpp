#include "foundation/platform.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include <orvane/Platform.h>

#if defined(_WIN32)
#include <malloc.h>
#elif defined(__linux__)
#include <sys/mman.h>
#endif

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

namespace Orvane {

#if defined(_WIN32)

void* AllocateAligned(std::size_t size, std::size_t alignment) {
    return _aligned_malloc(size, alignment);
}

void FreeAligned(void* p) {
    _aligned_free(p);
}

LocalTime ReadLocalTime() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

#else

namespace {
constexpr std::size_t HugePage = std::size_t{2} << 20;
}

void* AllocateAligned(std::size_t size, std::size_t alignment) {
    const bool huge = size >= HugePage;
    const std::size_t effective = std::max({alignment, sizeof(void*), huge ? HugePage : 0});
    void* p = nullptr;
    if (posix_memalign(&p, effective, size) != 0) return nullptr;
#if defined(MADV_HUGEPAGE)
    if (huge) madvise(p, size, MADV_HUGEPAGE);  // a wish: memory without huge pages is as good, only slower
#endif
    return p;
}

void FreeAligned(void* p) {
    std::free(p);
}

LocalTime ReadLocalTime() {
    const std::time_t now = std::time(nullptr);
    std::tm fields{};
    localtime_r(&now, &fields);
    return {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday,
            fields.tm_hour,        fields.tm_min,     fields.tm_sec};
}

bool InitializeCriticalSectionEx(CRITICAL_SECTION* section, unsigned /*spinCount*/, unsigned /*flags*/) {
    pthread_mutexattr_t attributes;
    if (pthread_mutexattr_init(&attributes) != 0) return false;
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const bool made = pthread_mutex_init(&section->Mutex, &attributes) == 0;
    pthread_mutexattr_destroy(&attributes);
    return made;
}

void EnterCriticalSection(CRITICAL_SECTION* section) {
    pthread_mutex_lock(&section->Mutex);
}

void LeaveCriticalSection(CRITICAL_SECTION* section) {
    pthread_mutex_unlock(&section->Mutex);
}

void DeleteCriticalSection(CRITICAL_SECTION* section) {
    pthread_mutex_destroy(&section->Mutex);
}

#endif

FeatureLeaf ReadFeatureLeaf() {
    FeatureLeaf leaf;
#if defined(__x86_64__) || defined(__i386__)
    unsigned eax = 0;
    unsigned ebx = 0;
    __get_cpuid_count(1, 0, &eax, &ebx, &leaf.Ecx, &leaf.Edx);
#endif
    return leaf;
}

}  // namespace Orvane
