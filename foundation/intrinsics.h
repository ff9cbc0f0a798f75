// The vector intrinsics of the processor, for kernel files that keep a portable version beside them.
#pragma once

#include "foundation/instruction_set.h"

#if defined(__SSE2__)
#if !defined(__clang__)
// GCC's own AVX-512 headers raise false alarms where their functions are inlined.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>
#if !defined(__clang__)
#pragma GCC diagnostic pop
#endif
#endif
