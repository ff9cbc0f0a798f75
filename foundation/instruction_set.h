// Kernels for several instruction sets from one source.
//
// A kernel's body is written once, as an always-inlined function without a target of its own. The macro
// ORVANE_MULTIVERSION wraps it into a baseline, an AVX2 and an AVX-512 function and defines the kernel
// proper, which calls the one for the active instruction set:
//
//     ORVANE_KERNEL_INLINE void AddBody(float* values, int count, float delta) {
//         for (int i = 0; i < count; ++i) values[i] += delta;
//     }
//     ORVANE_MULTIVERSION(void, Add, (float* values, int count, float delta), (values, count, delta))
//
// Kernels with intrinsics mark their wide functions with ORVANE_TARGET_AVX2 or ORVANE_TARGET_AVX512 under
// `#if ORVANE_WIDE_KERNELS`, keep a portable version beside them, and switch on ActiveInstructionSet().
// Targets are set per function, never per file: a file compiled for a wider set would also emit the inline
// functions it shares with others in that set, and the linker may keep those.
#pragma once

#include "foundation/platform.h"

#if defined(__x86_64__) && defined(__GNUC__) && ORVANE_ALIGNS_WIDE_VECTORS
#define ORVANE_WIDE_KERNELS 1
#else
#define ORVANE_WIDE_KERNELS 0
#endif

#if ORVANE_WIDE_KERNELS
#define ORVANE_TARGET_AVX2 __attribute__((target("avx2,bmi,bmi2,lzcnt,popcnt")))
#if defined(__clang__)
#define ORVANE_TARGET_AVX512 \
    __attribute__((target("avx512f,avx512bw,avx512cd,avx512dq,avx512vl,bmi,bmi2,lzcnt,popcnt")))
#else
#define ORVANE_TARGET_AVX512                                                        \
    __attribute__((                                                                 \
        target("avx512f,avx512bw,avx512cd,avx512dq,avx512vl,bmi,bmi2,lzcnt,popcnt," \
               "prefer-vector-width=512")))
#endif
#endif

/// The body of a kernel, or a helper of one: inlined everywhere, so that it takes its caller's instruction
/// set.
#if defined(__GNUC__)
#define ORVANE_KERNEL_INLINE inline __attribute__((always_inline))
#else
#define ORVANE_KERNEL_INLINE inline
#endif

namespace Orvane {

enum class InstructionSet { Baseline, Avx2, Avx512 };

/// The widest set that both this build and this processor offer.
InstructionSet BestInstructionSet();

/// The set whose kernels run: the best one unless SetActiveInstructionSet said otherwise.
InstructionSet ActiveInstructionSet();

/// Forces a set, for tests and benchmarks; one that is not offered gives the best below it. Not to be called
/// while kernels run.
void SetActiveInstructionSet(InstructionSet set);

}  // namespace Orvane

#if ORVANE_WIDE_KERNELS
#define ORVANE_MULTIVERSION(Return, Name, Parameters, Arguments) \
    ORVANE_TARGET_AVX512 static Return Name##Avx512 Parameters { \
        return Name##Body Arguments;                             \
    }                                                            \
    ORVANE_TARGET_AVX2 static Return Name##Avx2 Parameters {     \
        return Name##Body Arguments;                             \
    }                                                            \
    static Return Name##Baseline Parameters {                    \
        return Name##Body Arguments;                             \
    }                                                            \
    Return Name Parameters {                                     \
        switch (::Orvane::ActiveInstructionSet()) {              \
            case ::Orvane::InstructionSet::Avx512:               \
                return Name##Avx512 Arguments;                   \
            case ::Orvane::InstructionSet::Avx2:                 \
                return Name##Avx2 Arguments;                     \
            default:                                             \
                return Name##Baseline Arguments;                 \
        }                                                        \
    }
#else
#define ORVANE_MULTIVERSION(Return, Name, Parameters, Arguments) \
    Return Name Parameters {                                     \
        return Name##Body Arguments;                             \
    }
#endif
